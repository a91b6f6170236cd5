#pragma once

#include "app/Operator.h"
#include "ui/Dialogs.h"

#include <QObject>

#include <atomic>
#include <functional>

namespace kelm::ui {

// The Operator of the window: what the line's worker reports reaches the
// widgets through queued signals, and questions are asked on the UI thread
// while the worker waits for the answer. Nothing here ever touches a widget
// from the worker.
class WindowOperator final : public QObject, public Operator {
    Q_OBJECT

public:
    // Lives on the UI thread.
    explicit WindowOperator(Dialogs& dialogs, QObject* parent = nullptr);

    void setPanel(int panel, const QString& text) override;
    void showMessage(const QString& text, const QString& title, Icon icon) override;
    Button ask(const QString& text, const QString& title, Icon icon, const QList<Button>& buttons,
               Button defaultButton) override;
    void addRunTimeEntry(const QString& entry) override;
    void queueChanged(const QStringList& lines) override;

    // Runs `f` on the UI thread while the worker waits (a form, a question);
    // false, with nothing run, once the window is closing.
    bool converse(const std::function<void()>& f);

    // From now on the worker gets default answers at once: the window is
    // closing and waits for the worker, which must not wait for the window.
    void closeDown() { closing_ = true; }

Q_SIGNALS:
    void panelChanged(int panel, const QString& text);
    void runTimeEntryAdded(const QString& entry);
    void queueLinesChanged(const QStringList& lines);

private:
    template <typename F>
    void onUiThread(F&& f);

    Dialogs& dialogs_;
    std::atomic<bool> closing_{false};
};

} // namespace kelm::ui
