// Downloads and read-backs against the virtual register, in virtual time.
#include "RecordingOperator.h"
#include "link/Clock.h"
#include "link/PanelCommand.h"
#include "link/VirtualLinePort.h"
#include "programming/Departments.h"
#include "programming/DownloadJob.h"
#include "sim/VirtualEcr.h"

#include <QTest>

using namespace kelm;
using namespace kelm::programming;

namespace {

struct Register {
    Register() : port(ecr, clock), link(port, clock) { port.open(QStringLiteral("virtual"), 9600); }
    sim::VirtualEcr ecr;
    VirtualClock clock;
    VirtualLinePort port;
    EcrLink link;
    RecordingOperator op;
};

PluRow plu(int n)
{
    PluRow row;
    row[0] = QStringLiteral("80000000%1").arg(n, 4, 10, QChar(u'0'));
    row[1] = QStringLiteral("ARTICOLO %1").arg(n);
    row[2] = QStringLiteral("1");
    row[3] = QStringLiteral("0");
    row[4] = QStringLiteral("%1,50").arg(n); // normalised to the whole part before sending
    row[5] = QStringLiteral("0");
    row[6] = QStringLiteral("10");
    row[7] = QStringLiteral("00000000");
    return row;
}

QList<PluRow> plus(int first, int last)
{
    QList<PluRow> rows;
    for (int n = first; n <= last; ++n)
        rows << plu(n);
    return rows;
}

} // namespace

class JobsTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void pluDownloadDeletesTheSurplus_data();
    void pluDownloadDeletesTheSurplus();
    void pluReadBackGivesWhatWasSent();
    void stopEndsAPluDownloadBetweenRecords();
    void departmentsWithOneRefused();
    void singleRecordFailureShowsNoSuccess();
};

void JobsTest::pluDownloadDeletesTheSurplus_data()
{
    QTest::addColumn<QList<int>>("held");     // PLU numbers on the register before
    QTest::addColumn<int>("gridRows");
    QTest::addColumn<QList<int>>("heldAfter");
    QTest::newRow("3 rows over 1..12: 4..12 deleted") << QList<int>{1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12} << 3
                                                     << QList<int>{1, 2, 3};
    QTest::newRow("a gap of ten keeps what is beyond it") << QList<int>{1, 2, 3, 4, 5, 16, 17} << 2
                                                           << QList<int>{1, 2, 16, 17};
    QTest::newRow("a gap of nine does not") << QList<int>{1, 2, 3, 4, 5, 15} << 2 << QList<int>{1, 2};
}

void JobsTest::pluDownloadDeletesTheSurplus()
{
    QFETCH(QList<int>, held);
    QFETCH(int, gridRows);
    QFETCH(QList<int>, heldAfter);
    Register ecr;
    for (int n : held) {
        PanelCommand panel(ecr.link, ecr.op);
        QCOMPARE(int(panel(pluRecord(n, plu(n)))), 0);
    }
    const QList<PluRow> sent = runPluDownload(ecr.link, ecr.op, plus(1, gridRows));
    QCOMPARE(sent.size(), gridRows);
    QCOMPARE(sent[0][4], QStringLiteral("1")); // "1,50" as the grid now shows it
    QCOMPARE(ecr.ecr.tables().plus.keys(), heldAfter);
    QCOMPARE(ecr.op.messages, QStringList{"Kelm Drev: PLU scaricate"});
}

void JobsTest::pluReadBackGivesWhatWasSent()
{
    Register ecr;
    const QList<PluRow> sent = runPluDownload(ecr.link, ecr.op, plus(1, 5));
    QStringList lastAsked; // the record just carried out as each row comes in: rows come as they are read
    const QList<PluRow> read = readPluTable(ecr.link, ecr.op, [&](int n, const PluRow& row) {
        lastAsked << QString::fromLatin1(ecr.ecr.journal().last()) + QString::number(n) + row[0];
    });
    QCOMPARE(read.size(), 5);
    QCOMPARE(lastAsked.size(), 5);
    for (int i = 0; i < 5; ++i)
        QCOMPARE(lastAsked[i], QStringLiteral("p/%1/%1").arg(i + 1) + sent[i][0]);
    for (int i = 0; i < 5; ++i)
        for (int c = 0; c < 8; ++c)
            QCOMPARE(read[i][c], sent[i][c]);
}

void JobsTest::stopEndsAPluDownloadBetweenRecords()
{
    Register ecr;
    std::atomic<bool> stop{false};
    int progressCalls = 0;
    runPluDownload(ecr.link, ecr.op, plus(1, 50), [&](int done, int) {
        ++progressCalls;
        if (done == 7)
            stop = true;
    }, &stop);
    QCOMPARE(progressCalls, 7);
    QCOMPARE(ecr.ecr.tables().plus.size(), 7); // what was sent stays sent
}

void JobsTest::departmentsWithOneRefused()
{
    Register ecr;
    QCOMPARE(ecr.ecr.applyFault(QStringLiteral("refuse D/3/ 8"), 0), QString());
    QList<DownloadRecord> records;
    for (int n = 1; n <= kDepartmentCount; ++n)
        records << DownloadRecord{departmentRecord(n, {QStringLiteral("REPARTO%1").arg(n), n % 5}), QString()};
    runDownload(ecr.link, ecr.op, downloadBranch(3), records);
    QCOMPARE(ecr.op.messages, (QStringList{"Attenzione: Errore in scarico Reparti\r\nErrore : 08\r\nIl reparto non esiste",
                                           "Kelm Drev: Reparti scaricati"}));
    PanelCommand panel(ecr.link, ecr.op);
    QCOMPARE(int(panel(departmentReadRecord(7))), 0);
    QCOMPARE(parseDepartment(panel.LastAnswer), (Department{QStringLiteral("REPARTO7"), 2}));
}

void JobsTest::singleRecordFailureShowsNoSuccess()
{
    Register ecr;
    QCOMPARE(ecr.ecr.applyFault(QStringLiteral("refuse S 12"), 0), QString());
    runDownload(ecr.link, ecr.op, downloadBranch(9), {DownloadRecord{QStringLiteral("S/0/"), QString()}});
    QCOMPARE(ecr.op.messages.size(), 1);
    QVERIFY(ecr.op.messages[0].startsWith(QStringLiteral("Attenzione: Errore in scarico parametri S\r\nErrore : 0C\r\n")));
}

QTEST_GUILESS_MAIN(JobsTest)
#include "tst_programming_jobs.moc"
