#pragma once

#include "app/Operator.h"

#include <QString>

class QWidget;

namespace kelm::ui {

// The window's modal conversations: message boxes and choosers. Tests
// answer them from a script instead of hunting for windows. Called on the
// UI thread only.
class Dialogs {
public:
    using Icon = Operator::Icon;
    using Button = Operator::Button;

    virtual ~Dialogs() = default;
    virtual void showMessage(const QString& text, const QString& title, Icon icon) = 0;
    virtual Button ask(const QString& text, const QString& title, Icon icon, const QList<Button>& buttons,
                       Button defaultButton) = 0;
    // A folder, or an empty text when the user cancels.
    virtual QString chooseDirectory(const QString& title, const QString& start) = 0;
    // A line of text typed by the user, `proposed` being offered; an empty
    // text when the user cancels, as a conversation with nobody there does.
    virtual QString inputText(const QString& title, const QString& prompt, const QString& proposed) = 0;
    // An existing file to open, or an empty text when the user cancels.
    // `filter` pairs a description and its patterns: "BMP Files|*.bmp".
    virtual QString chooseFile(const QString& title, const QString& filter) = 0;
};

// Asks a question given as data; true when the answer lets the action go on.
inline bool confirmed(Dialogs& dialogs, const Question& q)
{
    return dialogs.ask(q.text, q.title, q.icon, q.buttons, q.defaultButton) == q.proceed;
}

// The real thing, with QMessageBox and QFileDialog, parented to `parent`.
class QtDialogs final : public Dialogs {
public:
    explicit QtDialogs(QWidget* parent) : parent_(parent) {}
    void showMessage(const QString& text, const QString& title, Icon icon) override;
    Button ask(const QString& text, const QString& title, Icon icon, const QList<Button>& buttons,
               Button defaultButton) override;
    QString chooseDirectory(const QString& title, const QString& start) override;
    QString inputText(const QString& title, const QString& prompt, const QString& proposed) override;
    QString chooseFile(const QString& title, const QString& filter) override;

private:
    QWidget* parent_;
};

} // namespace kelm::ui
