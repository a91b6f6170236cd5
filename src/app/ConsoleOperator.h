#pragma once

#include "app/Operator.h"

#include <QMutex>
#include <QTextStream>

namespace kelm {

// The person behind a headless driver is its log: messages and status-bar
// texts go to standard error with a time stamp, questions take their default
// answer (and say so), the run-time list goes to standard output when asked
// for. Callable from any thread.
class ConsoleOperator final : public Operator {
public:
    explicit ConsoleOperator(bool verbose);

    void setPanel(int panel, const QString& text) override;
    void showMessage(const QString& text, const QString& title, Icon icon) override;
    Button ask(const QString& text, const QString& title, Icon icon, const QList<Button>& buttons,
               Button defaultButton) override;
    void addRunTimeEntry(const QString& entry) override;

    // A line of its own on standard error, time-stamped.
    void say(const QString& text);

private:
    QMutex mutex_;
    QTextStream out_;
    QTextStream err_;
    bool verbose_;
    QString title_;
};

} // namespace kelm
