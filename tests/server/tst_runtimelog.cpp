#include "app/RunTimeLog.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>
#include <QTest>

class TestRunTimeLog : public QObject {
    Q_OBJECT

private slots:
    void logFileName_data();
    void logFileName();
    void logLine_data();
    void logLine();
    void suppressed_data();
    void suppressed();
    void writeLogAppendsLines();
    void writeLogWritesNothing_data();
    void writeLogWritesNothing();
    void writeLogIntoMissingDirectory();
    void listKeepsNewestEntries();
    void entryDetail_data();
    void entryDetail();
};

namespace {

const QDateTime kWhen(QDate(2011, 12, 22), QTime(21, 7, 3));

QString sep()
{
    return QString(QDir::separator());
}

QByteArray readAll(const QString& path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

} // namespace

void TestRunTimeLog::logFileName_data()
{
    QTest::addColumn<QString>("serverDir");
    QTest::addColumn<QString>("logName");
    QTest::addColumn<QString>("expected");

    QTest::newRow("separator added") << QStringLiteral("/var/spool/kelm") << QStringLiteral("scontrino.tx")
                                     << QStringLiteral("/var/spool/kelm") + sep() + QStringLiteral("scontrino.tx 20111222.log");
    QTest::newRow("separator present") << QStringLiteral("/var/spool/kelm/") << QStringLiteral("scontrino.tx")
                                       << QStringLiteral("/var/spool/kelm/scontrino.tx 20111222.log");
    QTest::newRow("empty directory") << QString() << QStringLiteral("x")
                                     << QStringLiteral("/opt/kelm") + sep() + QStringLiteral("x 20111222.log");
    QTest::newRow("one-character directory") << QStringLiteral("/") << QStringLiteral("x")
                                             << QStringLiteral("/opt/kelm") + sep() + QStringLiteral("x 20111222.log");
    QTest::newRow("two-character directory") << QStringLiteral("ab") << QStringLiteral("x")
                                             << QStringLiteral("ab") + sep() + QStringLiteral("x 20111222.log");
    QTest::newRow("empty log name") << QStringLiteral("/srv/") << QString()
                                    << QStringLiteral("/srv/DREV 20111222.log");
    QTest::newRow("blank log name") << QStringLiteral("/srv/") << QStringLiteral("   ")
                                    << QStringLiteral("/srv/DREV 20111222.log");
    QTest::newRow("log name trimmed") << QStringLiteral("/srv/") << QStringLiteral(" ord ")
                                      << QStringLiteral("/srv/ord 20111222.log");
}

void TestRunTimeLog::logFileName()
{
    QFETCH(QString, serverDir);
    QFETCH(QString, logName);
    QTEST(kelm::logFileName(serverDir, logName, kWhen.date(), QStringLiteral("/opt/kelm")), "expected");
}

void TestRunTimeLog::logLine_data()
{
    QTest::addColumn<QString>("message");
    QTest::addColumn<QString>("record");
    QTest::addColumn<QString>("expected");

    const QString stamp = QStringLiteral("2011-12-22 21:07:03 - ");
    const QString fifty = QString(50, u'r');
    const QString hundredFifty = QString(150, u'm');

    QTest::newRow("padded") << QStringLiteral("Carta finita") << QStringLiteral("x/")
                            << stamp + QStringLiteral("x/") + QString(48, u' ') + QStringLiteral(" - ")
                                   + QStringLiteral("Carta finita") + QString(138, u' ');
    QTest::newRow("cut") << hundredFifty + QString(50, u'M') << fifty + QStringLiteral("RRR")
                         << stamp + fifty + QStringLiteral(" - ") + hundredFifty;
    QTest::newRow("exact widths") << hundredFifty << fifty << stamp + fifty + QStringLiteral(" - ") + hundredFifty;
    QTest::newRow("empty") << QString() << QString()
                           << stamp + QString(50, u' ') + QStringLiteral(" - ") + QString(150, u' ');
    QTest::newRow("blanks kept") << QStringLiteral(" a ") << QStringLiteral(" b ")
                                 << stamp + QStringLiteral(" b ") + QString(47, u' ') + QStringLiteral(" - ")
                                        + QStringLiteral(" a ") + QString(147, u' ');
}

void TestRunTimeLog::logLine()
{
    QFETCH(QString, message);
    QFETCH(QString, record);
    QFETCH(QString, expected);

    const QString line = kelm::logLine(kWhen, message, record);

    QCOMPARE(line, expected);
    QCOMPARE(line.size(), 225);
}

void TestRunTimeLog::suppressed_data()
{
    QTest::addColumn<QString>("message");
    QTest::addColumn<bool>("expected");

    QTest::newRow("busy refusal") << QStringLiteral("Comando 'x/7/0/0/' - Errore N. 26") << true;
    QTest::newRow("any 26 at the end") << QStringLiteral("Errore N. 126") << true;
    QTest::newRow("just 26") << QStringLiteral("26") << true;
    QTest::newRow("26 then a blank") << QStringLiteral("Errore N. 26 ") << false;
    QTest::newRow("26 inside") << QStringLiteral("Errore N. 261") << false;
    QTest::newRow("6 alone") << QStringLiteral("6") << false;
    QTest::newRow("empty") << QString() << false;
    QTest::newRow("ordinary") << QStringLiteral("Carta finita") << false;
}

void TestRunTimeLog::suppressed()
{
    QFETCH(QString, message);
    QTEST(kelm::isSuppressedLogMessage(message), "expected");
}

void TestRunTimeLog::writeLogAppendsLines()
{
    QTemporaryDir dir;
    QVERIFY(dir.isValid());
    QDateTime now = kWhen;
    kelm::RunTimeLog log(QString(), [&now] { return now; });
    log.setServerDir(dir.path());
    log.setLogName(QStringLiteral("scontrino.tx"));
    log.setEnabled(true);

    log.WriteLog(QStringLiteral("Carta finita"), QStringLiteral("3/S/A//1/1/1/4/"));
    log.WriteLog(QStringLiteral("Comando 'x/' - Errore N. 26"), QStringLiteral("x/"));
    log.WriteLog(QStringLiteral("Perché"), QStringLiteral("5/"));
    now = now.addDays(1);
    log.WriteLog(QStringLiteral("domani"), QStringLiteral("U/"));

    const QByteArray today = readAll(dir.filePath(QStringLiteral("scontrino.tx 20111222.log")));
    const QList<QByteArray> lines = today.split('\n');
    QCOMPARE(lines.size(), 3); // two lines and the empty text after the last line end
    QCOMPARE(lines[0], kelm::logLine(kWhen, QStringLiteral("Carta finita"), QStringLiteral("3/S/A//1/1/1/4/")).toLatin1() + '\r');
    QVERIFY(lines[1].contains("Perch\xE9"));
    QCOMPARE(lines[1].size(), 226);
    QVERIFY(readAll(dir.filePath(QStringLiteral("scontrino.tx 20111223.log"))).contains("domani"));
}

void TestRunTimeLog::writeLogWritesNothing_data()
{
    QTest::addColumn<bool>("enabled");
    QTest::addColumn<QString>("message");

    QTest::newRow("switched off") << false << QStringLiteral("Carta finita");
    QTest::newRow("busy refusal") << true << QStringLiteral("Comando 'U/' - Errore N. 26");
}

void TestRunTimeLog::writeLogWritesNothing()
{
    QFETCH(bool, enabled);
    QFETCH(QString, message);

    QTemporaryDir dir;
    QVERIFY(dir.isValid());
    kelm::RunTimeLog log(QString(), [] { return kWhen; });
    log.setServerDir(dir.path());
    log.setEnabled(enabled);

    log.WriteLog(message, QStringLiteral("U/"));

    QVERIFY(QDir(dir.path()).isEmpty());
}

void TestRunTimeLog::writeLogIntoMissingDirectory()
{
    QTemporaryDir dir;
    QVERIFY(dir.isValid());
    kelm::RunTimeLog log(QString(), [] { return kWhen; });
    log.setServerDir(dir.filePath(QStringLiteral("missing")));
    log.setEnabled(true);

    log.WriteLog(QStringLiteral("Carta finita"), QStringLiteral("U/"));

    QVERIFY(QDir(dir.path()).isEmpty());
}

void TestRunTimeLog::listKeepsNewestEntries()
{
    QStringList entries;
    for (int i = 0; i <= kelm::kRunTimeListCap; ++i)
        kelm::insertRunTimeEntry(entries, QString::number(i));

    QCOMPARE(entries.size(), kelm::kRunTimeListCap);
    QCOMPARE(entries.first(), QString::number(kelm::kRunTimeListCap));
    QCOMPARE(entries.last(), QStringLiteral("1"));
}

void TestRunTimeLog::entryDetail_data()
{
    QTest::addColumn<QString>("entry");
    QTest::addColumn<bool>("coherent");
    QTest::addColumn<QString>("title");
    QTest::addColumn<QString>("text");

    QTest::newRow("sent") << kelm::kPcToEcrTag + QStringLiteral("x/7/0/0/") << true
                          << QStringLiteral("Messaggio Da PC a ECR") << QStringLiteral("x/7/0/0/");
    QTest::newRow("as listed") << QStringLiteral("PC -> ECR : x/7/0/0/") << true
                               << QStringLiteral("Messaggio Da PC a ECR") << QStringLiteral("x/7/0/0/");
    QTest::newRow("from the ECR") << QStringLiteral("ECR        : Scontrino non aperto") << true
                                  << QStringLiteral("Messaggio Da ECR a PC") << QStringLiteral(" Scontrino non aperto");
    QTest::newRow("ECR tag") << kelm::kEcrTag + QStringLiteral("Carta") << true
                             << QStringLiteral("Messaggio Da ECR a PC") << QStringLiteral(" Carta");
    QTest::newRow("error entry") << QStringLiteral("ECR-errore :26-Busy, reinvia il comando Ripeto comando") << true
                                 << QStringLiteral("Messaggio Da ECR a PC")
                                 << QStringLiteral("26-Busy, reinvia il comando Ripeto comando");
    QTest::newRow("thirteen characters") << QStringLiteral("PC -> ECR : U") << true
                                         << QStringLiteral("Messaggio Da PC a ECR") << QStringLiteral("U");
    QTest::newRow("twelve characters") << QStringLiteral("PC -> ECR : ") << false << QString()
                                       << QStringLiteral("Trasmissione Non Coerente");
    QTest::newRow("empty") << QString() << false << QString() << QStringLiteral("Trasmissione Non Coerente");
}

void TestRunTimeLog::entryDetail()
{
    QFETCH(QString, entry);
    const kelm::RunTimeEntryDetail detail = kelm::runTimeEntryDetail(entry);
    QTEST(detail.coherent, "coherent");
    QTEST(detail.title, "title");
    QTEST(detail.text, "text");
}

QTEST_GUILESS_MAIN(TestRunTimeLog)
#include "tst_runtimelog.moc"
