#pragma once

#include "link/StatusPanels.h"

#include <QList>
#include <QStringList>
#include <QString>

namespace kelm {

// What an exchange needs from a person, wherever it runs: the window answers
// with message boxes (blocking queued calls to the UI thread), headless mode
// with its log and the default answer, tests with a script.
class Operator : public StatusPanels {
public:
    enum class Icon { NoIcon, Information, Question, Warning, Critical };
    enum class Button { Ok, Cancel, Yes, No };

    virtual void showMessage(const QString& text, const QString& title, Icon icon) = 0;
    virtual Button ask(const QString& text, const QString& title, Icon icon,
                       const QList<Button>& buttons, Button defaultButton) = 0;
    // One entry of the run-time list, direction tag included. Only called
    // while the list is switched on.
    virtual void addRunTimeEntry(const QString& entry) = 0;
    // The queue list: `lines` is what is waiting now, oldest first.
    virtual void queueChanged(const QStringList& lines) { Q_UNUSED(lines); }
};

// A question asked before an action, as data: what the operator sees and
// the one answer that lets the action go on.
struct Question {
    QString text;
    QString title;
    Operator::Icon icon = Operator::Icon::Question;
    QList<Operator::Button> buttons;
    Operator::Button defaultButton = Operator::Button::Cancel;
    Operator::Button proceed = Operator::Button::Ok;
};

} // namespace kelm
