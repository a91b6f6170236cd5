// Receipt files in the spool folder: which are taken, how they are claimed,
// and what happens to them afterwards.
#include "DriverRig.h"

#include <QTest>

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
    void aFileStillBeingWrittenWaits();
    void testModeAsksBeforeDeleting_data();
    void testModeAsksBeforeDeleting();
    void twoFilesAreQueuedBeforeSending();
    void logFileNameFollowsTheMask_data();
    void logFileNameFollowsTheMask();
};

void SpoolTest::masks_data()
{
    QTest::addColumn<QString>("mask");
    QTest::addColumn<QStringList>("taken"); // sorted tags of the files taken

    QTest::newRow("exact name, any case") << "SCONTRINO.TXT" << QStringList{"SCONTRINO"};
    QTest::newRow("*.txt ends with") << "*.txt" << QStringList{"RECORD", "SCO1", "SCONTRINO"};
    QTest::newRow("SCO* begins with") << "SCO*" << QStringList{"SCO1", "SCODAT", "SCONTRINO"};
    QTest::newRow("*ord* contains") << "*ord*" << QStringList{"RECORD"};
    QTest::newRow("* takes all but forbidden") << "*" << QStringList{"OTHER", "RECORD", "SCO1", "SCODAT", "SCONTRINO"};
    QTest::newRow("*.* takes all but forbidden") << "*.*" << QStringList{"OTHER", "RECORD", "SCO1", "SCODAT", "SCONTRINO"};
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

void SpoolTest::aFileStillBeingWrittenWaits()
{
    DriverRig rig;
    rig.drop(QStringLiteral("scontrino.txt"), QByteArray("3/S/A//1/1.00/1/4/\r\n"), 0);
    rig.server().ScanServerDir();
    QVERIFY(rig.journal().isEmpty());
    rig.drop(QStringLiteral("scontrino.txt"), receipt(QStringLiteral("A")));
    rig.server().ScanServerDir();
    QCOMPARE(rig.journal(), (QStringList{"3/S/A//1/1.00/1/4/", "5/1/0.00/////"}));
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
