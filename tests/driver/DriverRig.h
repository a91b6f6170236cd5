#pragma once

#include "RecordingOperator.h"
#include "link/Clock.h"
#include "link/VirtualLinePort.h"
#include "server/ReceiptServer.h"
#include "sim/VirtualEcr.h"

#include <QDate>
#include <QDir>
#include <QFile>
#include <QTemporaryDir>

#include <atomic>

// Virtual time that, past stopAtMs, asks the server to stop as a shutdown does.
class RigClock final : public kelm::Clock {
public:
    qint64 nowMs() const override { return time.nowMs(); }
    void sleepMs(qint64 ms) override
    {
        time.sleepMs(ms);
        if (stopAtMs >= 0 && time.nowMs() >= stopAtMs)
            stop = true;
    }
    void advance(qint64 ms) { time.advance(ms); }
    kelm::VirtualClock time;
    qint64 stopAtMs = -1;
    std::atomic<bool> stop{false};
};

// The receipt server in virtual time, wired to the virtual register or to
// another far end, with a spool folder of its own. Settings can be changed
// before server() is first called.
class DriverRig {
public:
    explicit DriverRig(kelm::LinePeer* peer = nullptr)
        : port(peer ? *peer : ecr, clock), link(port, clock), log(spool.path(), [] { return now(); })
    {
        port.open(QStringLiteral("virtual"), 9600);
        settings.serverDir = spool.path();
        settings.serverFile = QStringLiteral("scontrino.txt");
        settings.fallbackDir = spool.path();
        log.setServerDir(spool.path());
        log.setEnabled(true);
    }

    static QDateTime now() { return QDateTime(QDate(2026, 11, 21), QTime(10, 30, 0)); }

    kelm::server::ReceiptServer& server()
    {
        if (!server_) {
            server_ = std::make_unique<kelm::server::ReceiptServer>(link, op, log, settings, &clock.stop,
                                                                    [] { return now(); });
            server_->runTimeListOn = true;
            server_->serialNumber = QStringLiteral("99KDV000001");
        }
        return *server_;
    }
    // Lines queued, then the queue sent.
    void process(const QStringList& lines)
    {
        for (const QString& line : lines)
            server().queue.append(kelm::server::QueuedLine(line));
        server().ProcessReceiptQueue();
    }

    QStringList journal() const { return QString::fromLatin1(ecr.journal().join('\n')).split(u'\n', Qt::SkipEmptyParts); }

    QString spoolFile(const QString& name) const { return QDir(spool.path()).filePath(name); }

    // A receipt file written a while ago (a fresh one is left to settle).
    void drop(const QString& name, const QByteArray& content, qint64 ageMs = 1000) const
    {
        QFile f(spoolFile(name));
        if (f.open(QIODevice::WriteOnly | QIODevice::Truncate)) {
            f.write(content);
            f.flush();
            f.setFileTime(QDateTime::currentDateTime().addMSecs(-ageMs), QFileDevice::FileModificationTime);
        }
    }

    // The message column of every line of the daily logs.
    QStringList logMessages() const
    {
        QStringList lines;
        for (const QString& name : QDir(spool.path()).entryList({QStringLiteral("*.log")}, QDir::Files | QDir::Hidden)) {
            QFile f(spoolFile(name));
            if (f.open(QIODevice::ReadOnly))
                for (const QByteArray& l : f.readAll().split('\n'))
                    if (!l.trimmed().isEmpty())
                        lines.append(QString::fromLatin1(l).mid(75).trimmed());
        }
        return lines;
    }

    QTemporaryDir spool;
    kelm::sim::VirtualEcr ecr;
    RigClock clock;
    kelm::VirtualLinePort port;
    kelm::EcrLink link;
    RecordingOperator op;
    kelm::RunTimeLog log;
    kelm::server::ReceiptServer::Settings settings;

private:
    std::unique_ptr<kelm::server::ReceiptServer> server_;
};
