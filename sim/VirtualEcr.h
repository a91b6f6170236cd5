#pragma once

#include "EcrDevice.h"
#include "Faults.h"
#include "LineFile.h"
#include "LinkSide.h"

#include "link/LinePeer.h"

#include <QString>
#include <QStringList>

namespace kelm::sim {

struct VirtualEcrOptions {
    QString journalPath;      // one line per record carried out; empty: memory only
    QString paperPath;        // what the printer printed, as text; empty: memory only
    QStringList faults;       // fault commands in force from the start ("busy 3", ...)
    qint32 baud = 0;          // pace the bytes sent, 10 bits a byte; 0: no pacing
    qint64 answerDelayMs = 5; // time the register takes before it answers a record
    // Carry on from an earlier run: the records of the journal file are
    // carried out again, silently, before anything else (tables, counters,
    // totals and an open receipt come back as they were); journal and paper
    // are then written on at their ends.
    bool resume = false;
    Identity identity;
};

// The virtual register as the far end of a line: it plays the register's
// side of the link protocol over its device model. Hosts feed it the bytes
// the PC writes and deliver its reply bytes at the times it gives.
class VirtualEcr final : public kelm::LinePeer {
public:
    explicit VirtualEcr(VirtualEcrOptions options = {});
    // The link side calls back into this object: it cannot be copied or moved.
    VirtualEcr(const VirtualEcr&) = delete;
    VirtualEcr& operator=(const VirtualEcr&) = delete;

    // Empty when the journal and paper files are open and the start-up
    // faults were understood; otherwise what went wrong.
    const QString& startError() const { return startError_; }

    void receive(quint8 value, qint64 nowMs, QList<kelm::TimedByte>& reply) override;
    bool connected(qint64 nowMs) const override;

    // A fault command while running; empty result on success.
    QString applyFault(const QString& command, qint64 nowMs);

    const EcrDevice& device() const { return device_; }
    const QList<QByteArray>& journal() const { return journal_.lines(); }
    const QList<QByteArray>& paper() const { return paper_.lines(); }
    bool receiptOpen() const { return device_.sales().receiptOpen(); }
    QByteArray displayLine1() const { return device_.keyboard().line1(); }
    QByteArray displayLine2() const { return device_.keyboard().line2(); }
    const Tables& tables() const { return device_.tables(); }

private:
    void replayJournal(const QString& path);

    QString startError_;
    Faults faults_;
    LineFile journal_;
    LineFile paper_;
    EcrDevice device_;
    LinkSide link_;
};

} // namespace kelm::sim
