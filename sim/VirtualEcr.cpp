#include "VirtualEcr.h"

#include <QFile>

namespace kelm::sim {

VirtualEcr::VirtualEcr(VirtualEcrOptions options)
    : device_(faults_, std::move(options.identity), journal_, paper_),
      link_(faults_, [this](const QByteArray& record, qint64 nowMs) { return device_.execute(record, nowMs); },
            options.answerDelayMs)
{
    faults_.baud = options.baud;
    if (options.resume && !options.journalPath.isEmpty())
        replayJournal(options.journalPath);
    const LineFile::Mode mode = options.resume ? LineFile::Mode::Append : LineFile::Mode::Fresh;
    QStringList problems;
    QString error;
    if (!options.journalPath.isEmpty() && !journal_.open(options.journalPath, &error, mode))
        problems << error;
    if (!options.paperPath.isEmpty() && !paper_.open(options.paperPath, &error, mode))
        problems << error;
    for (const QString& f : options.faults)
        if (const QString e = sim::applyFault(faults_, f, std::nullopt); !e.isEmpty())
            problems << QStringLiteral("fault \"%1\": %2").arg(f, e);
    startError_ = problems.join('\n');
}

void VirtualEcr::replayJournal(const QString& path)
{
    // Runs before the files are opened, so nothing is written twice.
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        return; // a first run: nothing to carry on from
    for (const QByteArray& line : file.readAll().split('\n'))
        if (!line.isEmpty())
            device_.execute(line, 0);
}

void VirtualEcr::receive(quint8 value, qint64 nowMs, QList<kelm::TimedByte>& reply)
{
    link_.receive(value, nowMs, reply);
}

bool VirtualEcr::connected(qint64 nowMs) const
{
    Q_UNUSED(nowMs);
    return !faults_.unplugged;
}

QString VirtualEcr::applyFault(const QString& command, qint64 nowMs)
{
    return sim::applyFault(faults_, command, nowMs);
}

} // namespace kelm::sim
