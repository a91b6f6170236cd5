// The panels' command road: results, LastAnswer and the status-bar texts.
#include "LineScript.h"
#include "RecordingStatus.h"
#include "link/Clock.h"
#include "link/PanelCommand.h"
#include "link/VirtualLinePort.h"

#include <QTest>

using namespace kelm;

namespace {

enum class Opening { Never, Refused, Open };

QString answerFrame(const QString& text) { return "<ACK><STX>" + text + "<ETX>"; }

} // namespace

Q_DECLARE_METATYPE(Opening)

class PanelCommandTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void result_data();
    void result();
    void successAfterFailureClearsTheBar();
};

void PanelCommandTest::result_data()
{
    QTest::addColumn<Opening>("opening");
    QTest::addColumn<QStringList>("enq");
    QTest::addColumn<QString>("reply");
    QTest::addColumn<int>("result");
    QTest::addColumn<QString>("errorText");
    QTest::addColumn<QString>("lastAnswer");
    QTest::addColumn<qint64>("elapsed");

    QTest::newRow("port never opened: no transaction")
        << Opening::Never << QStringList{} << QString() << 9999
        << "Err. 9999 : Comunicazione Impossibile" << QString() << qint64(0);
    QTest::newRow("open refused: the handshake runs and fails")
        << Opening::Refused << QStringList{} << QString() << 1004
        << "Err. 1004 : Comunicazione Impossibile" << QString() << qint64(3 * 1011);
    QTest::newRow("CAN to ENQ") << Opening::Open << QStringList{"<CAN>"} << QString() << 1002
                                << "Err. 1002 : Comunicazione Impossibile" << QString() << qint64(10);
    QTest::newRow("busy answer") << Opening::Open << QStringList{"<ACK>"} << answerFrame("1A/00/00/x/")
                                 << 26 << "Err. 26 : Comunicazione errata" << "1A/00/00/x/" << qint64(10);
    QTest::newRow("lower-case status reads as 16")
        << Opening::Open << QStringList{"<ACK>"} << answerFrame("1a/00/00/x/") << 16
        << "Err. 16 : Comunicazione errata" << "1a/00/00/x/" << qint64(10);
    QTest::newRow("accepted") << Opening::Open << QStringList{"<ACK>"} << answerFrame("00/00/01/x/")
                              << 0 << QString() << "00/00/01/x/" << qint64(10);
}

void PanelCommandTest::result()
{
    QFETCH(Opening, opening);
    QFETCH(QStringList, enq);
    QFETCH(QString, reply);
    QFETCH(int, result);
    QFETCH(QString, errorText);
    QFETCH(QString, lastAnswer);
    QFETCH(qint64, elapsed);

    ScriptedPeer peer;
    peer.enqReplies = enq;
    peer.frameReplies = {reply};
    VirtualClock clock;
    VirtualLinePort port(peer, clock);
    peer.plugged = opening != Opening::Refused;
    if (opening != Opening::Never)
        QCOMPARE(port.open(QStringLiteral("test"), 9600), opening == Opening::Open);
    EcrLink link(port, clock);
    RecordingStatus status;
    status.setPanel(1, QStringLiteral("before"));
    status.setPanel(2, QStringLiteral("before"));
    status.changes.clear();

    PanelCommand command(link, status);
    QCOMPARE(int(command(QStringLiteral("a/"))), result);
    QCOMPARE(int(command.LastResult), result);
    QCOMPARE(command.LastErrorText, errorText);
    QCOMPARE(command.LastAnswer, lastAnswer);
    QCOMPARE(clock.nowMs(), elapsed);
    if (errorText.isEmpty()) {
        QCOMPARE(status.panels[1], QString());
        QCOMPARE(status.panels[2], QString());
    } else {
        QCOMPARE(status.panels[1], QStringLiteral("Attenzione!"));
        QCOMPARE(status.panels[2], errorText);
    }
    // A port never opened leaves the bar uncleared before the message.
    QCOMPARE(status.changes.contains(QStringLiteral("1=")), opening != Opening::Never);
}

void PanelCommandTest::successAfterFailureClearsTheBar()
{
    ScriptedPeer peer;
    peer.enqReplies = {"<ACK>", "<ACK>"};
    peer.frameReplies = {answerFrame("08/00/00/x/"), answerFrame("00/00/01/x/")};
    VirtualClock clock;
    VirtualLinePort port(peer, clock);
    QVERIFY(port.open(QStringLiteral("test"), 9600));
    EcrLink link(port, clock);
    RecordingStatus status;
    PanelCommand command(link, status);

    QCOMPARE(int(command(QStringLiteral("d/99/"))), 8);
    QCOMPARE(status.panels[2], QStringLiteral("Err. 8 : Comunicazione errata"));
    QCOMPARE(int(command(QStringLiteral("a/"))), 0);
    QCOMPARE(status.panels[1], QString());
    QCOMPARE(status.panels[2], QString());
    QCOMPARE(command.LastErrorText, QString());
}

QTEST_APPLESS_MAIN(PanelCommandTest)
#include "tst_link_panel.moc"
