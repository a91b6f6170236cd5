// The register's state queries, against a scripted register.
#include "LineScript.h"
#include "RecordingOperator.h"
#include "link/Clock.h"
#include "link/VirtualLinePort.h"
#include "server/StatusQuery.h"

#include <QTest>

using namespace kelm;

class QueriesTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void statusByte_data();
    void statusByte();
    void errorState_data();
    void errorState();
};

void QueriesTest::statusByte_data()
{
    QTest::addColumn<QString>("enq");
    QTest::addColumn<QString>("reply");
    QTest::addColumn<int>("result");
    QTest::newRow("no error: the state digit (23rd character)")
        << "<ACK>" << "<ACK><STX>00/00/01/00000000000003/<ETX>" << 3;
    QTest::newRow("no error, answer too short for the digit") << "<ACK>" << "<ACK><STX>00/00/01/x/<ETX>" << 0;
    QTest::newRow("an error wins over the digit") << "<ACK>" << "<ACK><STX>31/04/01/0000000000003/<ETX>" << 49;
    QTest::newRow("link failure") << "<CAN>" << "" << 1002;
}

void QueriesTest::statusByte()
{
    QFETCH(QString, enq);
    QFETCH(QString, reply);
    QFETCH(int, result);
    ScriptedPeer peer;
    peer.enqReplies = {enq};
    peer.frameReplies = {reply};
    VirtualClock clock;
    VirtualLinePort port(peer, clock);
    QVERIFY(port.open(QStringLiteral("t"), 9600));
    EcrLink link(port, clock);
    QCOMPARE(server::QueryStatusByte(link), result);
    if (result < 1000)
        QCOMPARE(peer.records(), QStringList{"s/"});
}

void QueriesTest::errorState_data()
{
    QTest::addColumn<QString>("reply");
    QTest::addColumn<int>("result");
    QTest::addColumn<QString>("shown");
    QTest::newRow("no error") << "<ACK><STX>00/00/01/x/<ETX>" << 0 << "";
    QTest::newRow("paper out") << "<ACK><STX>31/04/01/x/<ETX>" << 49
                               << "Attenzione: Comando '?/' - Errore N. 49\r\nCarta finita";
    QTest::newRow("no answer") << "<ACK>" << 1005 << "";
}

void QueriesTest::errorState()
{
    QFETCH(QString, reply);
    QFETCH(int, result);
    QFETCH(QString, shown);
    ScriptedPeer peer;
    peer.enqReplies = {QStringLiteral("<ACK>")};
    peer.frameReplies = {reply};
    VirtualClock clock;
    VirtualLinePort port(peer, clock);
    QVERIFY(port.open(QStringLiteral("t"), 9600));
    EcrLink link(port, clock);
    RecordingOperator op;
    QCOMPARE(server::QueryErrorState(link, op), result);
    QCOMPARE(op.messages, shown.isEmpty() ? QStringList{} : QStringList{shown});
}

QTEST_GUILESS_MAIN(QueriesTest)
#include "tst_driver_queries.moc"
