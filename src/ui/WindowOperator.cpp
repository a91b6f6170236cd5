#include "ui/WindowOperator.h"

#include <QThread>

namespace kelm::ui {

WindowOperator::WindowOperator(Dialogs& dialogs, QObject* parent) : QObject(parent), dialogs_(dialogs) {}

template <typename F>
void WindowOperator::onUiThread(F&& f)
{
    if (QThread::currentThread() == thread())
        f();
    else
        QMetaObject::invokeMethod(this, std::forward<F>(f), Qt::BlockingQueuedConnection);
}

void WindowOperator::setPanel(int panel, const QString& text)
{
    Q_EMIT panelChanged(panel, text);
}

bool WindowOperator::converse(const std::function<void()>& f)
{
    if (closing_)
        return false;
    onUiThread(f);
    return true;
}

void WindowOperator::showMessage(const QString& text, const QString& title, Icon icon)
{
    converse([&] { dialogs_.showMessage(text, title, icon); });
}

Operator::Button WindowOperator::ask(const QString& text, const QString& title, Icon icon,
                                     const QList<Button>& buttons, Button defaultButton)
{
    Button answer = defaultButton;
    converse([&] { answer = dialogs_.ask(text, title, icon, buttons, defaultButton); });
    return answer;
}

void WindowOperator::addRunTimeEntry(const QString& entry)
{
    Q_EMIT runTimeEntryAdded(entry);
}

void WindowOperator::queueChanged(const QStringList& lines)
{
    Q_EMIT queueLinesChanged(lines);
}

} // namespace kelm::ui
