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

// The receipt server wired to the virtual register in virtual time, with a
// spool folder of its own. Settings can be changed before server() is first
// called.
class DriverRig {
public:
    DriverRig()
        : port(ecr, clock), link(port, clock), log(spool.path(), [] { return now(); })
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
            server_ = std::make_unique<kelm::server::ReceiptServer>(link, op, log, settings, nullptr,
                                                                    [] { return now(); });
            server_->runTimeListOn = true;
            server_->serialNumber = QStringLiteral("99KDV000001");
        }
        return *server_;
    }

    QStringList journal() const
    {
        QStringList lines;
        for (const QByteArray& l : ecr.journal())
            lines.append(QString::fromLatin1(l));
        return lines;
    }

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
    kelm::VirtualClock clock;
    kelm::VirtualLinePort port;
    kelm::EcrLink link;
    RecordingOperator op;
    kelm::RunTimeLog log;
    kelm::server::ReceiptServer::Settings settings;

private:
    std::unique_ptr<kelm::server::ReceiptServer> server_;
};
