#pragma once

#include "app/EcrIdentity.h"
#include "app/Operator.h"

#include <QDateTime>
#include <QMutex>
#include <QString>

namespace kelm::service {

// What the driver looks like from outside, at one moment: enough for a
// point-of-sale program or a person to tell whether receipts get through.
struct DriverStatus {
    EcrIdentity identity;  // empty until the register has answered "a/"
    bool lineUp = false;   // the register answered and the line was not lost since
    QDateTime nextTry;     // while the line is down: when it is tried again
    bool serverOn = false; // the receipt server takes work (ServerStato, chkSRV)
    int queueLength = 0;   // lines waiting for the register
    bool receiptOpen = false;
    QString lastError;     // the last failure as the driver reported it, register's text included
    QDateTime lastErrorAt;
};

// Passes everything on to the real operator and keeps, on the side, what
// the status needs: the queue's length and the last failure reported on the
// status bar or in the run-time list. Read from any thread.
class StatusRecorder final : public Operator {
public:
    explicit StatusRecorder(Operator& next) : next_(next) {}

    void setPanel(int panel, const QString& text) override;
    void showMessage(const QString& text, const QString& title, Icon icon) override;
    Button ask(const QString& text, const QString& title, Icon icon, const QList<Button>& buttons,
               Button defaultButton) override;
    void addRunTimeEntry(const QString& entry) override;
    void queueChanged(const QStringList& lines) override;

    DriverStatus status() const;
    void update(const std::function<void(DriverStatus&)>& change);

private:
    void failure(const QString& text);

    Operator& next_;
    mutable QMutex mutex_;
    DriverStatus status_;
};

} // namespace kelm::service
