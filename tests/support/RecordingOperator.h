#pragma once

#include "app/Operator.h"

#include <QMap>
#include <QStringList>

// A person who answers from a script and remembers everything shown.
class RecordingOperator final : public kelm::Operator {
public:
    void setPanel(int panel, const QString& text) override { panels[panel] = text; }
    void showMessage(const QString& text, const QString& title, Icon) override
    {
        messages.append(title + QStringLiteral(": ") + text);
    }
    Button ask(const QString& text, const QString& title, Icon, const QList<Button>&, Button defaultButton) override
    {
        questions.append(title + QStringLiteral(": ") + text);
        return answers.isEmpty() ? defaultButton : answers.takeFirst();
    }
    void addRunTimeEntry(const QString& entry) override { runTime.append(entry); }
    void queueChanged(const QStringList& lines) override { queueSnapshots.append(lines.join(u'|')); }

    QMap<int, QString> panels;
    QStringList messages;
    QStringList questions;
    QList<Button> answers; // taken in order; the default answer when empty
    QStringList runTime;   // oldest first (the window shows newest on top)
    QStringList queueSnapshots;
};

// A question as "title: text [Ok Cancel] default Cancel, proceed Ok, icon 2" (the icon by its number).
inline QString questionText(const kelm::Question& q)
{
    static const QStringList names{"Ok", "Cancel", "Yes", "No"};
    QStringList buttons;
    for (kelm::Operator::Button b : q.buttons)
        buttons << names[int(b)];
    return QStringLiteral("%1: %2 [%3] default %4, proceed %5, icon %6")
        .arg(q.title, q.text, buttons.join(u' '), names[int(q.defaultButton)], names[int(q.proceed)])
        .arg(int(q.icon));
}
