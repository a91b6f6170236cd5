// Fault soak: pushes receipt files through headless driver mode against
// ecrsim on a pseudo-terminal while faults are injected at random (the line
// pulled and plugged back, the register silent among them), then holds
// three things against each other: the receipt files, the register's
// journal and the answer files. A line in the journal must be "accettata"
// (or "incerta": its answer was lost with the line); a line not in it must
// say why; no line may be in the journal more often than the policy sent it
// (again only after an unanswered frame and a state "00"); no answer file
// may stay "in_corso". Prints the figures; exit status 0 when nothing was
// lost or duplicated without a trace.
//
//   kelmdrev_soak KELMDREV ECRSIM [FILES] [SEED] [FAULT,FAULT,...]
#include <QCoreApplication>
#include <QDir>
#include <QElapsedTimer>
#include <QFile>
#include <QProcess>
#include <QRandomGenerator>
#include <QTemporaryDir>
#include <QThread>

#include <cstdio>

namespace {

QStringList lines(const QString& path)
{
    QFile f(path);
    if (!f.open(QIODevice::ReadOnly))
        return {};
    QStringList out;
    for (const QByteArray& l : f.readAll().split('\n'))
        if (!l.trimmed().isEmpty())
            out << QString::fromLatin1(l.trimmed());
    return out;
}

void writeAtomically(const QString& path, const QByteArray& content)
{
    QFile f(path + QStringLiteral(".part"));
    f.open(QIODevice::WriteOnly);
    f.write(content);
    f.close();
    QFile::rename(path + QStringLiteral(".part"), path);
}

// Records the driver sends for its own reasons, not from the files.
bool ownQuery(const QString& record)
{
    static const QStringList queries = {"s/", "a/", "e/", "?/"};
    return queries.contains(record);
}

// An answer file: its state and each line's "Esito", in line order.
struct Answer {
    QString state;
    QStringList fates;
};
Answer answerFile(const QString& path)
{
    Answer answer;
    for (const QString& l : lines(path)) {
        if (l.startsWith(QStringLiteral("Stato=")))
            answer.state = l.mid(6);
        else if (l.startsWith(QStringLiteral("Esito=")))
            answer.fates << l.mid(6);
    }
    return answer;
}

} // namespace

int main(int argc, char** argv)
{
    QCoreApplication app(argc, argv);
    if (argc < 3) {
        std::fprintf(stderr, "usage: kelmdrev_soak KELMDREV ECRSIM [FILES] [SEED]\n");
        return 2;
    }
    const QString kelmdrev = QString::fromLocal8Bit(argv[1]);
    const QString ecrsim = QString::fromLocal8Bit(argv[2]);
    const int files = argc > 3 ? QString::fromLatin1(argv[3]).toInt() : 200;
    const quint32 seed = argc > 4 ? QString::fromLatin1(argv[4]).toUInt() : 1;
    QRandomGenerator random(seed);

    QTemporaryDir dir;
    const QString spool = dir.filePath(QStringLiteral("spool"));
    QDir().mkpath(spool);
    const QString link = dir.filePath(QStringLiteral("tty"));
    const QString journal = dir.filePath(QStringLiteral("journal.txt"));

    QProcess sim;
    sim.start(ecrsim, {"--link", link, "--journal", journal, "--delay", "1"});
    if (!sim.waitForReadyRead(5000))
        return 2;
    QFile ini(dir.filePath(QStringLiteral("KelmDrev.ini")));
    ini.open(QIODevice::WriteOnly);
    ini.write(QStringLiteral("[Parametri]\r\nModello=Kelm Brio\r\nVelocita=115200\r\nDispositivo=%1\r\n"
                             "ServerDir=%2\r\nServerFile=*.txt\r\nServerLog=On\r\n")
                  .arg(link, spool)
                  .toLatin1());
    ini.close();
    QProcess driver;
    driver.setProcessChannelMode(QProcess::ForwardedErrorChannel);
    driver.start(kelmdrev, {"--headless", "--home", dir.path()});
    // Never wait for a driver that is gone: a soak must end.
    auto driverGone = [&driver] {
        if (driver.state() != QProcess::NotRunning && !driver.waitForFinished(0))
            return false;
        std::fprintf(stderr, "the driver ended unexpectedly (exit %d)\n", driver.exitCode());
        return true;
    };
    while (!lines(journal).contains(QStringLiteral("e/"))) {
        if (driverGone())
            return 1;
        QThread::msleep(50);
    }

    // Faults a real line and register produce. A pulled plug is put back
    // after a while, as a person would.
    const QStringList faults = argc > 5 ? QString::fromLatin1(argv[5]).split(u',')
                                        : QStringList{"busy 1", "busy 3", "nak 1", "garbage 1", "broken 1",
                                                      "short 1", "can 1", "paper 300", "cover 300",
                                                      "baud 9600", "baud 0", "silence 1500", "silence 7000",
                                                      "unplug"};
    QList<QStringList> expected; // per file
    QElapsedTimer unplugged;
    qint64 unpluggedFor = 0;
    int injected = 0;
    QElapsedTimer wall;
    wall.start();
    for (int i = 0; i < files; ++i) {
        QByteArray content;
        QStringList receipt;
        const int items = 1 + int(random.bounded(4));
        for (int k = 0; k < items; ++k)
            receipt << QStringLiteral("3/S/F%1R%2//1/%3.%4/%5/4/")
                           .arg(i)
                           .arg(k)
                           .arg(random.bounded(1, 50))
                           .arg(random.bounded(10, 99))
                           .arg(random.bounded(1, 5));
        receipt << QStringLiteral("5/1/0.00/////");
        for (const QString& r : receipt)
            content += r.toLatin1() + "\r\n";
        expected << receipt;
        if (random.bounded(3) == 0 && !unplugged.isValid()) {
            const QString fault = faults[int(random.bounded(faults.size()))];
            sim.write(fault.toLatin1() + '\n');
            sim.waitForBytesWritten(1000);
            if (fault == QStringLiteral("unplug")) {
                unplugged.start();
                unpluggedFor = random.bounded(300, 8000);
            }
            ++injected;
        }
        writeAtomically(QDir(spool).filePath(QStringLiteral("r%1.txt").arg(i, 6, 10, QChar(u'0'))), content);
        // One customer after the other, as at a till: files waiting together
        // are taken in the order the folder lists them, which is no order.
        while (!QDir(spool).entryList({"*.txt"}, QDir::Files).isEmpty() || unplugged.isValid()) {
            if (driverGone())
                return 1;
            if (unplugged.isValid() && unplugged.hasExpired(unpluggedFor)) {
                sim.write("replug\n");
                sim.waitForBytesWritten(1000);
                unplugged.invalidate();
            }
            QThread::msleep(5);
        }
        sim.readAll();
    }
    // Every answer final before the driver stops (a stop would keep the
    // lines still queued for the next start).
    for (int i = 0; i < files; ++i) {
        const QString answer = QDir(spool).filePath(QStringLiteral("esiti/r%1.txt").arg(i, 6, 10, QChar(u'0')));
        QElapsedTimer waited;
        waited.start();
        while (answerFile(answer).state == QStringLiteral("in_corso") && !waited.hasExpired(30000)) {
            if (driverGone())
                return 1;
            QThread::msleep(20);
        }
    }
    while (!QDir(spool).entryList({"*.txt", "*.drev"}, QDir::Files).isEmpty()) {
        if (driverGone())
            return 1;
        QThread::msleep(50);
    }
    QThread::msleep(1500);
    const double seconds = double(wall.elapsed()) / 1000.0;
    driver.terminate();
    driver.waitForFinished(30000);
    sim.write("quit\n");
    sim.waitForFinished(3000);

    // The journal without the driver's own queries; for each record whether
    // the driver asked for the state just before it (a policy repeat).
    QStringList sent;
    QList<bool> afterState;
    bool asked = false;
    for (const QString& r : lines(journal)) {
        if (ownQuery(r)) {
            asked = asked || r == QStringLiteral("?/");
            continue;
        }
        sent << r;
        afterState << asked;
        asked = false;
    }

    // Walk files, answers and journal in order.
    int records = 0, accepted = 0, uncertainPrinted = 0, explained = 0, repeated = 0;
    int lost = 0, duplicated = 0, unfinished = 0, pos = 0;
    for (int i = 0; i < files; ++i) {
        const QString name = QStringLiteral("r%1.txt").arg(i, 6, 10, QChar(u'0'));
        const Answer answer = answerFile(QDir(spool).filePath(QStringLiteral("esiti/") + name));
        if (answer.state.isEmpty() || answer.state == QStringLiteral("in_corso")) {
            ++unfinished;
            std::printf("UNFINISHED %s (%s)\n", qPrintable(name), qPrintable(answer.state));
        }
        for (int k = 0; k < expected[i].size(); ++k) {
            const QString& record = expected[i][k];
            const QString fate = answer.fates.value(k);
            ++records;
            if (pos < sent.size() && sent[pos] == record) {
                ++pos;
                while (pos < sent.size() && sent[pos] == record) {
                    if (afterState[pos])
                        ++repeated;
                    else
                        ++duplicated;
                    ++pos;
                }
                if (fate == QStringLiteral("accettata")) {
                    ++accepted;
                } else if (fate == QStringLiteral("incerta")) {
                    ++uncertainPrinted;
                } else {
                    ++lost;
                    std::printf("PRINTED BUT '%s': %s %s\n", qPrintable(fate), qPrintable(name), qPrintable(record));
                }
            } else if (!fate.isEmpty() && fate != QStringLiteral("accettata") && fate != QStringLiteral("in_attesa")) {
                ++explained;
            } else {
                ++lost;
                std::printf("LOST %s %s (%s)\n", qPrintable(name), qPrintable(record), qPrintable(fate));
            }
        }
    }
    const int extra = int(sent.size()) - pos;
    std::printf("files                             %d\n", files);
    std::printf("lines                             %d\n", records);
    std::printf("faults injected                   %d\n", injected);
    std::printf("lines in the journal, accettata   %d\n", accepted);
    std::printf("lines in the journal, incerta     %d\n", uncertainPrinted);
    std::printf("not in the journal, and said why  %d\n", explained);
    std::printf("sent again by the policy          %d\n", repeated);
    std::printf("answer files not final            %d\n", unfinished);
    std::printf("lost or duplicated without trace  %d\n", lost + duplicated + extra);
    std::printf("seconds                           %.1f\n", seconds);
    return lost == 0 && duplicated == 0 && extra == 0 && unfinished == 0 ? 0 : 1;
}
