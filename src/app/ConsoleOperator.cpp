#include "ConsoleOperator.h"

#include <QDateTime>

#include <cstdio>

namespace kelm {

namespace {

QString stamp()
{
    return QDateTime::currentDateTime().toString(QStringLiteral("yyyy-MM-dd HH:mm:ss "));
}

QString oneLine(QString text)
{
    return text.replace(QStringLiteral("\r\n"), QStringLiteral(" ")).replace(u'\r', u' ').replace(u'\n', u' ');
}

QString buttonName(Operator::Button b)
{
    switch (b) {
    case Operator::Button::Ok:
        return QStringLiteral("OK");
    case Operator::Button::Cancel:
        return QStringLiteral("Annulla");
    case Operator::Button::Yes:
        return QStringLiteral("Sì");
    case Operator::Button::No:
        return QStringLiteral("No");
    }
    return QString();
}

} // namespace

ConsoleOperator::ConsoleOperator(bool verbose) : out_(stdout), err_(stderr), verbose_(verbose) {}

void ConsoleOperator::say(const QString& text)
{
    QMutexLocker lock(&mutex_);
    err_ << stamp() << oneLine(text) << Qt::endl;
}

void ConsoleOperator::setPanel(int panel, const QString& text)
{
    if (panel == 1) {
        QMutexLocker lock(&mutex_);
        title_ = text;
        return;
    }
    if (text.isEmpty())
        return;
    if (panel == 3 || panel == 4) {
        say((panel == 3 ? QStringLiteral("ECR: ") : QStringLiteral("Firmware ECR: ")) + text);
        return;
    }
    QString title;
    {
        QMutexLocker lock(&mutex_);
        title = title_;
    }
    say(title.isEmpty() ? text : title + QStringLiteral(": ") + text);
}

void ConsoleOperator::showMessage(const QString& text, const QString& title, Icon icon)
{
    Q_UNUSED(icon);
    say(title + QStringLiteral(": ") + text);
}

Operator::Button ConsoleOperator::ask(const QString& text, const QString& title, Icon icon,
                                      const QList<Button>& buttons, Button defaultButton)
{
    Q_UNUSED(icon);
    Q_UNUSED(buttons);
    say(title + QStringLiteral(": ") + text + QStringLiteral(" -> ") + buttonName(defaultButton));
    return defaultButton;
}

void ConsoleOperator::addRunTimeEntry(const QString& entry)
{
    if (!verbose_)
        return;
    QMutexLocker lock(&mutex_);
    out_ << stamp() << entry << Qt::endl;
}

} // namespace kelm
