// Fault soak: pushes receipt files through headless driver mode against
// ecrsim on a pseudo-terminal while faults are injected at random, then
// holds the register's journal against the files. Every record must have
// reached the register exactly once, in order, or be named in the driver's
// log with its reason. Prints the figures; exit status 0 when nothing was
// lost or duplicated.
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

    // Faults a real line and register produce; silence is left out because
    // the policy itself repeats a record after an unanswered frame, which
    // this comparison would count as a duplicate.
    const QStringList faults = argc > 5 ? QString::fromLatin1(argv[5]).split(u',')
                                        : QStringList{"busy 1", "busy 3", "nak 1", "garbage 1", "broken 1",
                                                      "short 1", "can 1", "paper 300", "cover 300",
                                                      "baud 9600", "baud 0"};
    QStringList expected;
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
        if (random.bounded(3) == 0) {
            sim.write(faults[int(random.bounded(faults.size()))].toLatin1() + '\n');
            sim.waitForBytesWritten(1000);
            ++injected;
        }
        writeAtomically(QDir(spool).filePath(QStringLiteral("r%1.txt").arg(i, 6, 10, QChar(u'0'))), content);
        // One customer after the other, as at a till: files waiting together
        // are taken in the order the folder lists them, which is no order.
        while (!QDir(spool).entryList({"*.txt"}, QDir::Files).isEmpty()) {
            if (driverGone())
                return 1;
            QThread::msleep(5);
        }
        sim.readAll();
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

    QStringList sent;
    for (const QString& r : lines(journal))
        if (!ownQuery(r))
            sent << r;
    QString logText;
    for (const QString& name : QDir(spool).entryList({"*.log"}, QDir::Files | QDir::Hidden))
        logText += lines(QDir(spool).filePath(name)).join(u'\n');

    // Walk both in order: a record missing from the journal must be named in
    // the log; anything else out of step is a loss or a duplicate.
    int lost = 0, explained = 0, duplicated = 0, pos = 0;
    for (const QString& record : expected) {
        if (pos < sent.size() && sent[pos] == record) {
            ++pos;
            while (pos < sent.size() && sent[pos] == record) {
                ++duplicated;
                ++pos;
            }
        } else if (logText.contains(record)) {
            ++explained;
        } else {
            ++lost;
            std::printf("LOST %s\n", qPrintable(record));
        }
    }
    const int extra = int(sent.size()) - pos;
    std::printf("files                      %d\n", files);
    std::printf("records                    %d\n", int(expected.size()));
    std::printf("faults injected            %d\n", injected);
    std::printf("records in the journal     %d\n", int(sent.size()));
    std::printf("not sent, named in the log %d\n", explained);
    std::printf("lost without a trace       %d\n", lost);
    std::printf("duplicated                 %d\n", duplicated + extra);
    std::printf("seconds                    %.1f\n", seconds);
    return lost == 0 && duplicated == 0 && extra == 0 ? 0 : 1;
}
