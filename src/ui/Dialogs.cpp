#include "ui/Dialogs.h"

#include <QFileDialog>
#include <QMessageBox>

namespace kelm::ui {

namespace {

QMessageBox::Icon boxIcon(Dialogs::Icon icon)
{
    switch (icon) {
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

} // namespace kelm::ui
