#pragma once

#include <QFile>
#include <QProcess>
#include <QTemporaryDir>

#include <unistd.h>

// ecrsim as a program of its own (ECRSIM_EXE), its pty link and journal in a
// folder of its own, fault commands on its standard input.
struct EcrSimProcess {
    QTemporaryDir dir;
    QProcess process;
    const QString link = dir.filePath(QStringLiteral("ecr"));
    const QString journal = dir.filePath(QStringLiteral("journal.txt"));

    ~EcrSimProcess()
    {
        if (process.state() == QProcess::Running)
            process.write("quit\n");
        if (!process.waitForFinished(3000))
            process.kill();
    }
    bool start(const QStringList& extra = {})
    {
        process.start(QStringLiteral(ECRSIM_EXE), QStringList{"--link", link, "--journal", journal} + extra);
        return process.waitForStarted(5000) && nextLine() == "ready";
    }
    // The first line it says after the command ("unplug" and "replug" say a second one).
    QByteArray command(const QByteArray& line)
    {
        process.write(line + '\n');
        return nextLine();
    }
    QByteArray nextLine()
    {
        while (!process.canReadLine())
            if (!process.waitForReadyRead(5000))
                return {};
        return process.readLine().trimmed();
    }
};

// CPU seconds a process has used so far, user and system, all its threads.
inline double cpuSeconds(qint64 pid)
{
    QFile f(QStringLiteral("/proc/%1/stat").arg(pid));
    if (!f.open(QIODevice::ReadOnly))
        return -1;
    const QByteArray stat = f.readAll();
    const QList<QByteArray> fields = stat.mid(stat.lastIndexOf(')') + 2).split(' ');
    return double(fields.value(11).toLongLong() + fields.value(12).toLongLong()) / double(sysconf(_SC_CLK_TCK));
}
