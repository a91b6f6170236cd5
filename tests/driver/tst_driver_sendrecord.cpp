// The per-record error policy, against a scripted register in virtual time.
#include "LineScript.h"
#include "RecordingOperator.h"
#include "link/Clock.h"
#include "link/VirtualLinePort.h"
#include "server/ReceiptServer.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>
#include <QTest>

using namespace kelm;
using server::ReceiptServer;
using Outcome = ReceiptServer::SendOutcome;

namespace {

const QString kRecord = QStringLiteral("3/S/REPARTO1//1/5.26/1/4/");

// An acknowledged frame followed by an answer "status/state/01/x/".
QString answer(const QString& status, const QString& state = QStringLiteral("00"))
{
    return "<ACK><STX>" + status + "/" + state + "/01/x/<ETX>";
}

QStringList logLines(const QString& dir)
{
    QStringList lines;
    for (const QString& name : QDir(dir).entryList({QStringLiteral("*.log")}, QDir::Files)) {
        QFile f(QDir(dir).filePath(name));
        if (f.open(QIODevice::ReadOnly))
            for (const QByteArray& l : f.readAll().split('\n'))
                if (!l.trimmed().isEmpty())
                    lines.append(QString::fromLatin1(l).mid(19 + 3 + 50 + 3).trimmed()); // the message column
    }
    return lines;
}

// The receipt server against a scripted register, logging into a folder of
// its own.
struct ScriptedRig {
    ScriptedRig(const QString& enq, const QStringList& frameReplies, Clock& time)
        : clock(time), port(peer, clock), link(port, clock), log(dir.path()),
          server(link, op, log, settingsFor(dir.path()))
    {
        peer.enqDefault = enq;
        peer.frameReplies = frameReplies;
        port.open(QStringLiteral("test"), 9600);
        log.setServerDir(dir.path());
        log.setEnabled(true);
        server.runTimeListOn = true;
    }
    static ReceiptServer::Settings settingsFor(const QString& dir)
    {
        ReceiptServer::Settings settings;
        settings.serverDir = dir;
        return settings;
    }
    ScriptedPeer peer;
    Clock& clock;
    VirtualLinePort port;
    EcrLink link;
    RecordingOperator op;
    QTemporaryDir dir;
    RunTimeLog log;
    ReceiptServer server;
};

} // namespace

class SendRecordTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void policy_data();
    void policy();
    void fatalErrorEmptiesTheQueue();
    void stopGivesUpARepeatingRecord();
};

void SendRecordTest::policy_data()
{
    QTest::addColumn<QStringList>("frameReplies"); // one per frame the PC sends
    QTest::addColumn<QString>("enq");              // reply to every ENQ
    QTest::addColumn<QString>("fate"); // what the answer file says: fate and error number
    QTest::addColumn<QStringList>("records");      // what reached the register, in order
    QTest::addColumn<QStringList>("runTime");      // run-time list entries, oldest first
    QTest::addColumn<QStringList>("log");          // messages in the log file
    QTest::addColumn<qint64>("minElapsed");

    const QString r = kRecord;
    const QString q = QStringLiteral("?/");
    const QString busy = QStringLiteral("ECR-errore :26-Busy, reinvia il comando Ripeto comando");

    QTest::newRow("accepted") << QStringList{answer("00")} << "<ACK>" << "accettata" << QStringList{r}
                              << QStringList{} << QStringList{} << qint64(0);
    QTest::newRow("busy three times, then accepted: sent four times, each repeat logged")
        << QStringList{answer("1A"), answer("1A"), answer("1A"), answer("00")} << "<ACK>" << "accettata"
        << QStringList{r, r, r, r} << QStringList{busy, busy, busy}
        << QStringList{"Busy, reinvia il comando", "Busy, reinvia il comando", "Busy, reinvia il comando"}
        << qint64(300);
    QTest::newRow("refused: listed, logged, given up")
        << QStringList{answer("08")} << "<ACK>" << "rifiutata 8" << QStringList{r}
        << QStringList{"ECR-errore :8-Il reparto non esiste Ignoro l'errore"}
        << QStringList{"Il reparto non esiste"} << qint64(0);
    QTest::newRow("refused with 126: its number ends in 26, its text is still logged")
        << QStringList{answer("7E")} << "<ACK>" << "rifiutata 126" << QStringList{r}
        << QStringList{"ECR-errore :126-Raggiunto l'importo massimo per totale scontrino Ignoro l'errore"}
        << QStringList{"Raggiunto l'importo massimo per totale scontrino"} << qint64(0);
    QTest::newRow("unknown number counts as accepted")
        << QStringList{answer("48")} << "<ACK>" << "accettata" << QStringList{r} << QStringList{}
        << QStringList{} << qint64(0);
    QTest::newRow("NAK to the frame: wait a second, send again")
        << QStringList{"<NAK>", answer("00")} << "<ACK>" << "accettata" << QStringList{r, r}
        << QStringList{} << QStringList{} << qint64(1000);
    QTest::newRow("no answer, state 00: sent again")
        << QStringList{"<ACK>", answer("00"), answer("00")} << "<ACK>" << "accettata"
        << QStringList{r, q, r} << QStringList{} << QStringList{} << qint64(2000 + 100);
    QTest::newRow("no answer, state 01: given up silently")
        << QStringList{"<ACK>", answer("01")} << "<ACK>" << "incerta" << QStringList{r, q}
        << QStringList{} << QStringList{} << qint64(2000 + 100);
    QTest::newRow("paper out: repeated every 2 s until the bit clears")
        << QStringList{answer("00", "04"), answer("00", "05"), answer("00", "00")} << "<ACK>" << "accettata"
        << QStringList{r, r, r}
        << QStringList{"ECR        : Sostituire rotolo scontrino", "ECR        : Sostituire rotolo scontrino"}
        << QStringList{"Sostituire rotolo scontrino", "Sostituire rotolo scontrino"} << qint64(4000);
    QTest::newRow("state above 7 keeps the paper flag as it was")
        << QStringList{answer("00", "12")} << "<ACK>" << "accettata" << QStringList{r} << QStringList{}
        << QStringList{} << qint64(0);
    QTest::newRow("paper error: state queried until clear, then sent again")
        << QStringList{answer("31"), answer("31"), answer("00"), answer("00")} << "<ACK>" << "accettata"
        << QStringList{r, q, q, r}
        << QStringList{"ECR-errore :49-Carta finita Ricontrollo stato ECR e ripeto comando",
                       "ECR-errore :49-Carta finita Ricontrollo stato ECR e ripeto comando"}
        << QStringList{"Carta finita", "Carta finita"}
        << qint64(3000 + 500 + 3000 + 3000);
    QTest::newRow("cover open, then a refusal read from the state query")
        << QStringList{answer("32"), answer("08")} << "<ACK>" << "rifiutata 8" << QStringList{r, q}
        << QStringList{"ECR-errore :50-Portello rotolo aperto Ricontrollo stato ECR e ripeto comando",
                       "ECR-errore :8-Il reparto non esiste Ignoro l'errore"}
        << QStringList{"Portello rotolo aperto", "Il reparto non esiste"}
        << qint64(3000 + 500);
    QTest::newRow("no ACK to ENQ: link lost")
        << QStringList{} << "" << "non_inviata" << QStringList{}
        << QStringList{"ECR        : Comunicazione impossibile ! Cassa spenta o cavo interrotto o velocità errata"}
        << QStringList{"Comunicazione impossibile ! Cassa spenta o cavo interrotto o velocità errata"}
        << qint64(3000);
    QTest::newRow("CAN to ENQ: link lost at once")
        << QStringList{} << "<CAN>" << "non_inviata" << QStringList{}
        << QStringList{"ECR        : Comunicazione impossibile ! Cassa spenta o cavo interrotto o velocità errata"}
        << QStringList{"Comunicazione impossibile ! Cassa spenta o cavo interrotto o velocità errata"}
        << qint64(0);
}

void SendRecordTest::policy()
{
    QFETCH(QStringList, frameReplies);
    QFETCH(QString, enq);
    QFETCH(QString, fate);
    QFETCH(QStringList, records);
    QFETCH(QStringList, runTime);
    QFETCH(QStringList, log);
    QFETCH(qint64, minElapsed);

    VirtualClock clock;
    ScriptedRig rig(enq, frameReplies, clock);
    const Outcome outcome = rig.server.SendRecord(kRecord);
    QCOMPARE(outcome == Outcome::LinkLost, fate == QStringLiteral("non_inviata"));
    const server::LineOutcome& sent = rig.server.lastOutcome();
    QCOMPARE((server::fateName(sent.fate) + u' ' + sent.errorNumber).trimmed(), fate);
    QCOMPARE(rig.peer.records(), records);
    QCOMPARE(rig.op.runTime, runTime);
    QCOMPARE(logLines(rig.dir.path()), log);
    QVERIFY2(clock.nowMs() >= minElapsed, qPrintable(QString::number(clock.nowMs())));
    QVERIFY(rig.op.messages.isEmpty());
}

void SendRecordTest::fatalErrorEmptiesTheQueue()
{
    VirtualClock clock;
    ScriptedRig rig(QStringLiteral("<ACK>"), {answer("00"), answer("34")}, clock);
    server::OutcomeBook book;
    rig.server.setOutcomeBook(&book);
    const QStringList first{QStringLiteral("3/S/A//1/1.00/1/1/"), kRecord};
    const QStringList second{QStringLiteral("3/S/C//1/1.00/1/1/"), QStringLiteral("5/1/0.00/////")};
    rig.server.enqueue(server::LineOrigin::Source::File, QStringLiteral("a.txt"), first);
    rig.server.enqueue(server::LineOrigin::Source::File, QStringLiteral("b.txt"), second);

    rig.server.ProcessReceiptQueue();
    QCOMPARE(book.find(QStringLiteral("a.txt"))->state(), server::ReceiptState::PrintedWithRefusals);
    QCOMPARE(book.find(QStringLiteral("a.txt"))->lines.at(1).errorNumber, QStringLiteral("52"));
    QCOMPARE(book.find(QStringLiteral("b.txt"))->state(), server::ReceiptState::NotPrinted);
    QCOMPARE(book.find(QStringLiteral("b.txt"))->lines.at(0).reason, server::NotSentReason::FatalError);
    QCOMPARE(rig.peer.records(), (QStringList{"3/S/A//1/1.00/1/1/", kRecord}));
    QVERIFY(rig.server.queue.isEmpty());
    QVERIFY(!rig.server.ReceiptOpen);
    QCOMPARE(rig.op.messages, QStringList{"ATTENZIONE: errore grave. Chiamare Casa madre"});
    QCOMPARE(logLines(rig.dir.path()),
             (QStringList{"Stampante scollegata", "errore grave. Chiamare Casa madre"}));
}

void SendRecordTest::stopGivesUpARepeatingRecord()
{
    // Virtual time in which shutdown is asked for after 250 ms.
    class StoppingClock final : public Clock {
    public:
        std::atomic<bool> stop{false};
        qint64 nowMs() const override { return inner.nowMs(); }
        void sleepMs(qint64 ms) override
        {
            inner.sleepMs(ms);
            if (inner.nowMs() >= 250)
                stop = true;
        }
        VirtualClock inner;
    } clock;

    ScriptedPeer peer;
    peer.enqDefault = QStringLiteral("<ACK>");
    for (int i = 0; i < 50; ++i)
        peer.frameReplies.append(answer("1A"));
    VirtualLinePort port(peer, clock);
    QVERIFY(port.open(QStringLiteral("test"), 9600));
    EcrLink link(port, clock);
    RecordingOperator op;
    QTemporaryDir dir;
    RunTimeLog runTimeLog(dir.path());
    ReceiptServer server(link, op, runTimeLog, {}, &clock.stop);
    server.queue = {kRecord, QStringLiteral("5/1/0.00/////")};

    // Busy for ever: only the stop ends it, and the record goes back on top.
    server.ProcessReceiptQueue();
    QVERIFY(peer.records().size() >= 2);
    QVERIFY(peer.records().size() < 10);
    QCOMPARE(server::queueTexts(server.queue), (QStringList{kRecord, QStringLiteral("5/1/0.00/////")}));
}

QTEST_GUILESS_MAIN(SendRecordTest)
#include "tst_driver_sendrecord.moc"
