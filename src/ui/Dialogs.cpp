#include "ui/Dialogs.h"

#include <QDir>
#include <QFileDialog>
#include <QInputDialog>
#include <QMessageBox>

namespace kelm::ui {

namespace {

QMessageBox::Icon boxIcon(Dialogs::Icon icon)
{
    switch (icon) {
    case Dialogs::Icon::NoIcon:
        return QMessageBox::NoIcon;
    case Dialogs::Icon::Information:
        return QMessageBox::Information;
    case Dialogs::Icon::Question:
        return QMessageBox::Question;
    case Dialogs::Icon::Warning:
        return QMessageBox::Warning;
    case Dialogs::Icon::Critical:
        return QMessageBox::Critical;
    }
    return QMessageBox::NoIcon;
}

QMessageBox::StandardButton boxButton(Dialogs::Button button)
{
    switch (button) {
    case Dialogs::Button::Ok:
        return QMessageBox::Ok;
    case Dialogs::Button::Cancel:
        return QMessageBox::Cancel;
    case Dialogs::Button::Yes:
        return QMessageBox::Yes;
    case Dialogs::Button::No:
        return QMessageBox::No;
    }
    return QMessageBox::NoButton;
}

// "BMP Files|*.bmp|All|*.*" as Qt writes it: "BMP Files (*.bmp);;All (*.*)".
QString qtFileFilter(const QString& filter)
{
    const QStringList parts = filter.split(u'|');
    QStringList filters;
    for (qsizetype i = 0; i + 1 < parts.size(); i += 2)
        filters << parts[i] + QStringLiteral(" (") + QString(parts[i + 1]).replace(u';', u' ') + u')';
    return filters.join(QStringLiteral(";;"));
}

} // namespace

void QtDialogs::showMessage(const QString& text, const QString& title, Icon icon)
{
    QMessageBox box(boxIcon(icon), title, text, QMessageBox::Ok, parent_);
    box.exec();
}

Dialogs::Button QtDialogs::ask(const QString& text, const QString& title, Icon icon,
                               const QList<Button>& buttons, Button defaultButton)
{
    QMessageBox box(boxIcon(icon), title, text, QMessageBox::NoButton, parent_);
    for (Button b : buttons)
        box.addButton(boxButton(b));
    box.setDefaultButton(boxButton(defaultButton));
    // Escape is the harmless answer whatever the default.
    const Button escape = buttons.contains(Button::Cancel) ? Button::Cancel
        : buttons.contains(Button::No)                     ? Button::No
                                                           : defaultButton;
    box.setEscapeButton(boxButton(escape));
    const int chosen = box.exec();
    for (Button b : buttons)
        if (chosen == boxButton(b))
            return b;
    return defaultButton;
}

QString QtDialogs::chooseDirectory(const QString& title, const QString& start)
{
    return QFileDialog::getExistingDirectory(parent_, title, start);
}

QString QtDialogs::inputText(const QString& title, const QString& prompt, const QString& proposed)
{
    return QInputDialog::getText(parent_, title, prompt, QLineEdit::Normal, proposed);
}

QString QtDialogs::chooseFile(const QString& title, const QString& filter)
{
    // Starts at the root of the file system and leaves the program's current
    // folder alone.
    return QFileDialog::getOpenFileName(parent_, title, QDir::rootPath(), qtFileFilter(filter));
}

} // namespace kelm::ui
