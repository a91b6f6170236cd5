// Receipt files in the spool folder: which are taken, how they are claimed,
// and what happens to them afterwards.
#include "DriverRig.h"
#include "server/ReceiptLines.h"

#include <QFileInfo>
#include <QTest>

#ifdef Q_OS_UNIX
#include <sys/stat.h>
#endif

using namespace kelm;

namespace {

QByteArray receipt(const QString& tag)
{
    return QStringLiteral("3/S/%1//1/1.00/1/4/\r\n5/1/0.00/////\r\n").arg(tag).toLatin1();
}

// The item tags the register printed, in order.
QStringList soldTags(const QStringList& journal)
{
    QStringList tags;
    for (const QString& line : journal)
        if (line.startsWith(QStringLiteral("3/S/")))
            tags.append(line.section(u'/', 2, 2));
    return tags;
}

} // namespace

class SpoolTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void masks_data();
    void masks();
    void lineEnds_data();
    void lineEnds();
    void claimedFilesAreGone();
    void nothingWhileTheRegisterIsUnknown();
    void aFileIsTakenOnceItStopsChanging_data();
    void aFileIsTakenOnceItStopsChanging();
    void aFileThatCannotBeClaimedIsLoggedOnce();
    void testModeAsksBeforeDeleting_data();
    void testModeAsksBeforeDeleting();
    void twoFilesAreQueuedBeforeSending();
    void badReceiptFiles_data();
    void badReceiptFiles();
    void linksAndPipesAreLeftAlone();
    void aLargeFileGoesThroughWhole();
    void logFileNameFollowsTheMask_data();
    void logFileNameFollowsTheMask();
};

void SpoolTest::masks_data()
{
    QTest::addColumn<QString>("mask");
    QTest::addColumn<QStringList>("taken"); // sorted tags of the files taken

    QTest::newRow("exact name, any case") << "SCONTRINO.TXT" << QStringList{"SCONTRINO"};
    QTest::newRow("a hidden file named") << ".scontrino.txt" << QStringList{"HIDDEN"};
    QTest::newRow("*.txt ends with") << "*.txt" << QStringList{"HIDDEN", "RECORD", "SCO1", "SCONTRINO"};
    QTest::newRow("SCO* begins with") << "SCO*" << QStringList{"SCO1", "SCODAT", "SCONTRINO"};
    QTest::newRow("*ord* contains") << "*ord*" << QStringList{"RECORD"};
    // The program's own files are never receipts, whatever the mask.
    QTest::newRow("* takes all but forbidden") << "*" << QStringList{"HIDDEN", "OTHER", "RECORD", "SCO1", "SCODAT", "SCONTRINO"};
    QTest::newRow("*.* takes all but forbidden") << "*.*" << QStringList{"HIDDEN", "OTHER", "RECORD", "SCO1", "SCODAT", "SCONTRINO"};
}

void SpoolTest::masks()
{
    QFETCH(QString, mask);
    QFETCH(QStringList, taken);
    DriverRig rig;
    rig.settings.serverFile = mask;
    rig.settings.forbiddenExtensions = {QStringLiteral("tmp"), QString(), QStringLiteral("log")};
    rig.drop(QStringLiteral("scontrino.txt"), receipt(QStringLiteral("SCONTRINO")));
    rig.drop(QStringLiteral("sco1.txt"), receipt(QStringLiteral("SCO1")));
    rig.drop(QStringLiteral("SCO.dat"), receipt(QStringLiteral("SCODAT")));
    rig.drop(QStringLiteral("record.txt"), receipt(QStringLiteral("RECORD")));
    rig.drop(QStringLiteral("other.dat"), receipt(QStringLiteral("OTHER")));
    rig.drop(QStringLiteral("scontrino.tmp"), receipt(QStringLiteral("TMP")));
    rig.drop(QStringLiteral(".scontrino.txt"), receipt(QStringLiteral("HIDDEN")));
    rig.drop(QStringLiteral("Totali.txt"), receipt(QStringLiteral("TOTALI")));
    rig.drop(QStringLiteral("99KDV00000120261121.FMN"), receipt(QStringLiteral("SNAPSHOT")));
    rig.server().ScanServerDir();
    QStringList tags = soldTags(rig.journal());
    tags.sort();
    QCOMPARE(tags, taken);
    QVERIFY(QFile::exists(rig.spoolFile(QStringLiteral("scontrino.tmp")))); // forbidden: never touched
}

void SpoolTest::lineEnds_data()
{
    QTest::addColumn<QByteArray>("content");
    QTest::newRow("CR LF") << QByteArray("3/S/A//1/1.00/1/4/\r\n5/1/0.00/////\r\n");
    QTest::newRow("LF") << QByteArray("3/S/A//1/1.00/1/4/\n5/1/0.00/////\n");
    QTest::newRow("no final line end") << QByteArray("3/S/A//1/1.00/1/4/\r\n5/1/0.00/////");
    QTest::newRow("no final slash either") << QByteArray("3/S/A//1/1.00/1/4\r\n5/1/0.00/////");
}

void SpoolTest::lineEnds()
{
    QFETCH(QByteArray, content);
    DriverRig rig;
    rig.drop(QStringLiteral("scontrino.txt"), content);
    rig.server().ScanServerDir();
    QCOMPARE(rig.journal(), (QStringList{"3/S/A//1/1.00/1/4/", "5/1/0.00/////"}));
}

void SpoolTest::claimedFilesAreGone()
{
    DriverRig rig;
    rig.drop(QStringLiteral("scontrino.txt"), receipt(QStringLiteral("A")));
    rig.server().ScanServerDir();
    QVERIFY(!QFile::exists(rig.spoolFile(QStringLiteral("scontrino.txt"))));
    QVERIFY(!QFile::exists(rig.spoolFile(QStringLiteral("scontrino.txt.drev"))));
    rig.server().ScanServerDir(); // nothing left to take twice
    QCOMPARE(soldTags(rig.journal()), QStringList{"A"});
}

void SpoolTest::nothingWhileTheRegisterIsUnknown()
{
    DriverRig rig;
    rig.server().serialNumber = QStringLiteral("   ");
    rig.drop(QStringLiteral("scontrino.txt"), receipt(QStringLiteral("A")));
    rig.server().ScanServerDir();
    QVERIFY(rig.journal().isEmpty());
    QVERIFY(QFile::exists(rig.spoolFile(QStringLiteral("scontrino.txt"))));
}

void SpoolTest::aFileIsTakenOnceItStopsChanging_data()
{
    QTest::addColumn<qint64>("ageMs");     // of its time stamp when first seen; negative: ahead
    QTest::addColumn<bool>("grows");       // written again before the second scan
    QTest::addColumn<qint64>("betweenMs"); // between the two scans
    QTest::addColumn<int>("takenAtScan");  // 1, 2, or 0 for not yet

    QTest::newRow("written a while ago: at once") << qint64(1000) << false << qint64(0) << 1;
    QTest::newRow("fresh: at the next tick") << qint64(0) << false << qint64(250) << 2;
    QTest::newRow("fresh, looked at again too soon") << qint64(0) << false << qint64(150) << 0;
    QTest::newRow("still growing") << qint64(0) << true << qint64(250) << 0;
    QTest::newRow("dated an hour ahead: at the next tick") << qint64(-3600000) << false << qint64(250) << 2;
    QTest::newRow("dated ahead and still growing") << qint64(-3600000) << true << qint64(250) << 0;
}

void SpoolTest::aFileIsTakenOnceItStopsChanging()
{
    QFETCH(qint64, ageMs);
    QFETCH(bool, grows);
    QFETCH(qint64, betweenMs);
    DriverRig rig;
    rig.drop(QStringLiteral("scontrino.txt"), QByteArray("3/S/A//1/1.00/1/4/\r\n"), ageMs);
    rig.server().ScanServerDir();
    const bool first = !rig.journal().isEmpty();
    if (grows)
        rig.drop(QStringLiteral("scontrino.txt"), receipt(QStringLiteral("A")), ageMs);
    rig.clock.advance(betweenMs);
    rig.server().ScanServerDir();
    QTEST(first ? 1 : rig.journal().isEmpty() ? 0 : 2, "takenAtScan");
}

void SpoolTest::aFileThatCannotBeClaimedIsLoggedOnce()
{
    DriverRig rig;
    rig.drop(QStringLiteral("scontrino.txt"), receipt(QStringLiteral("A")));
    // Where the claim would move it, a folder that cannot be removed.
    QVERIFY(QDir(rig.spool.path()).mkpath(QStringLiteral("scontrino.txt.drev/inside")));
    for (int tick = 0; tick < 8; ++tick) {
        rig.server().ScanServerDir();
        rig.clock.advance(100);
    }
    QCOMPARE(rig.logMessages(), QStringList{"File non acquisito, riprovo"});
    QVERIFY(rig.journal().isEmpty());
    QVERIFY(QFile::exists(rig.spoolFile(QStringLiteral("scontrino.txt"))));
    QVERIFY(QDir(rig.spoolFile(QStringLiteral("scontrino.txt.drev"))).removeRecursively());
    rig.clock.advance(250);
    rig.server().ScanServerDir();
    QCOMPARE(soldTags(rig.journal()), QStringList{"A"});
}

void SpoolTest::testModeAsksBeforeDeleting_data()
{
    QTest::addColumn<bool>("yes");
    QTest::newRow("Yes deletes the file") << true;
    QTest::newRow("No keeps it, and it is taken again") << false;
}

void SpoolTest::testModeAsksBeforeDeleting()
{
    QFETCH(bool, yes);
    DriverRig rig;
    rig.settings.testMode = true;
    rig.op.answers = {yes ? Operator::Button::Yes : Operator::Button::No};
    rig.drop(QStringLiteral("scontrino.txt"), receipt(QStringLiteral("A")));
    rig.server().ScanServerDir();
    QCOMPARE(rig.op.questions, QStringList{"Tes Mode: Vuoi cancellare file?"});
    QCOMPARE(QFile::exists(rig.spoolFile(QStringLiteral("scontrino.txt"))), !yes);
    QVERIFY(!QFile::exists(rig.spoolFile(QStringLiteral("scontrino.txt.drev"))));
    rig.op.answers = {Operator::Button::Yes};
    rig.server().ScanServerDir();
    QCOMPARE(soldTags(rig.journal()), yes ? QStringList{"A"} : (QStringList{"A", "A"}));
}

void SpoolTest::twoFilesAreQueuedBeforeSending()
{
    DriverRig rig;
    rig.settings.serverFile = QStringLiteral("*.txt");
    rig.drop(QStringLiteral("a.txt"), receipt(QStringLiteral("A")));
    rig.drop(QStringLiteral("b.txt"), receipt(QStringLiteral("B")));
    rig.server().ScanServerDir();
    const QStringList first = rig.op.queueSnapshots.mid(0, 2);
    QCOMPARE(first.size(), 2);
    QCOMPARE(first[1].count(u'|'), 3); // four lines waiting before the first is taken
    QCOMPARE(rig.journal().size(), 4);
}

void SpoolTest::badReceiptFiles_data()
{
    QTest::addColumn<QByteArray>("content");
    QTest::addColumn<QString>("item");    // the sale line as the register must get it, if it gets it
    const QByteArray pay = "5/1/0.00/////\r\n";
    QTest::newRow("UTF-8 with its mark") << QByteArray("\xEF\xBB\xBF" "3/S/CAFF\xC3\x88//1/1.00/1/4/\r\n") + pay
                                         << QStringLiteral("3/S/CAFF\u00C8//1/1.00/1/4/");
    QTest::newRow("UTF-8 without a mark") << QByteArray("3/S/CAFF\xC3\x88//1/1.00/1/4/\n") + pay
                                          << QStringLiteral("3/S/CAFF\u00C8//1/1.00/1/4/");
    QTest::newRow("Windows-1252 stays as it is") << QByteArray("3/S/CAFF\xC8//1/1.00/1/4/\r\n") + pay
                                                 << QStringLiteral("3/S/CAFF\u00C8//1/1.00/1/4/");
    QTest::newRow("binary bytes in a line") << QByteArray("3/S/A\x01\xFF//1/1.00/1/4/\r\n") + pay << QString();
    QTest::newRow("a frame byte in a line is not sent")
        << QByteArray("3/S/OK//1/1.00/1/4/\r\n3/S/A\x02\x03//1/1.00/1/4/\r\n") + pay
        << QStringLiteral("3/S/OK//1/1.00/1/4/");
    QTest::newRow("a NUL in a line") << QByteArray("3/S/A\0B//1/1.00/1/4/\r\n", 22) + pay << QString();
    QTest::newRow("a line longer than a frame is not sent")
        << QByteArray("3/S/OK//1/1.00/1/4/\r\n3/S/") + QByteArray(5000, 'L') + "//1/1.00/1/4/\r\n" + pay
        << QStringLiteral("3/S/OK//1/1.00/1/4/");
}

void SpoolTest::badReceiptFiles()
{
    QFETCH(QByteArray, content);
    QFETCH(QString, item);
    DriverRig rig;
    rig.drop(QStringLiteral("scontrino.txt"), content);
    rig.server().ScanServerDir();
    // Whatever the register made of the odd line, the receipt was closed
    // and nothing was left behind.
    QVERIFY(!rig.journal().isEmpty());
    QCOMPARE(rig.journal().last(), QStringLiteral("5/1/0.00/////"));
    QVERIFY(rig.server().queue.isEmpty());
    if (!item.isEmpty())
        QCOMPARE(rig.journal().first(), item);
    // A line that could not be sent is named in the log.
    if (rig.journal().size() < server::splitReceiptLines(content).size())
        QVERIFY(!rig.logMessages().filter(QStringLiteral("non inviato")).isEmpty());
}

void SpoolTest::linksAndPipesAreLeftAlone()
{
    DriverRig rig;
    rig.settings.serverFile = QStringLiteral("*.txt");
    QTemporaryDir elsewhere;
    QFile target(elsewhere.filePath(QStringLiteral("other.txt")));
    QVERIFY(target.open(QIODevice::WriteOnly));
    target.write("3/S/ELSEWHERE//1/1.00/1/4/\r\n");
    target.close();
    QVERIFY(QFile::link(target.fileName(), rig.spoolFile(QStringLiteral("link.txt"))));
#ifdef Q_OS_UNIX
    QVERIFY(::mkfifo(QFile::encodeName(rig.spoolFile(QStringLiteral("pipe.txt"))).constData(), 0600) == 0);
#endif
    rig.server().ScanServerDir();
    rig.server().ScanServerDir();
    QVERIFY(rig.journal().isEmpty()); // not followed, and no hang on the pipe
    QVERIFY(QFileInfo(rig.spoolFile(QStringLiteral("link.txt"))).isSymLink());
    QVERIFY(target.exists());
    const QStringList log = rig.logMessages();
    QCOMPARE(log.filter(QStringLiteral("Non è un file normale")).size(), QFileInfo::exists(rig.spoolFile("pipe.txt")) ? 2 : 1);
}

void SpoolTest::aLargeFileGoesThroughWhole()
{
    DriverRig rig;
    QByteArray content;
    for (int i = 0; i < 3000; ++i)
        content += "3/S/ITEM" + QByteArray::number(i) + "//1/0.01/1/4/\r\n";
    content += "5/1/0.00/////"; // and no line end after the last line
    rig.drop(QStringLiteral("scontrino.txt"), content);
    rig.server().ScanServerDir();
    const QStringList journal = rig.journal();
    QCOMPARE(journal.size(), 3001);
    QCOMPARE(journal[2999], QStringLiteral("3/S/ITEM2999//1/0.01/1/4/"));
    QCOMPARE(journal.last(), QStringLiteral("5/1/0.00/////"));
}

void SpoolTest::logFileNameFollowsTheMask_data()
{
    QTest::addColumn<QString>("mask");
    QTest::addColumn<QString>("fileName");
    QTest::addColumn<QString>("logName");
    QTest::newRow("one waiting file") << "scontrino.txt" << "scontrino.txt" << "scontrino.txt 20261121.log";
    QTest::newRow("*name mask") << "*.pos" << "a.pos" << ".pos 20261121.log";
    QTest::newRow("global mask") << "*" << "a.pos" << "DREV 20261121.log";
}

void SpoolTest::logFileNameFollowsTheMask()
{
    QFETCH(QString, mask);
    QFETCH(QString, fileName);
    QFETCH(QString, logName);
    DriverRig rig;
    rig.settings.serverFile = mask;
    rig.drop(fileName, QByteArray("Z/\r\n")); // an unknown command is always logged
    rig.server().ScanServerDir();
    QVERIFY2(QFile::exists(rig.spoolFile(logName)), qPrintable(QDir(rig.spool.path()).entryList().join(u' ')));
    QFile log(rig.spoolFile(logName));
    QVERIFY(log.open(QIODevice::ReadOnly));
    const QByteArray line = log.readLine();
    QCOMPARE(line.size(), 225 + 2);
    QCOMPARE(line.left(22), QByteArray("2026-11-21 10:30:00 - "));
    QCOMPARE(line.mid(22, 50), QByteArray("Z/").leftJustified(50, ' '));
}

QTEST_GUILESS_MAIN(SpoolTest)
#include "tst_driver_spool.moc"
