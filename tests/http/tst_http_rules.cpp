// The HTTP service's rules: where it listens, who may ask, what a body must
// hold, and the ids it remembers across restarts.
#include "http/ApiRules.h"
#include "http/ReceiptIds.h"

#include "Table.h"
#include <QTemporaryDir>
#include <QTest>

using namespace kelm::http;

class HttpRulesTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void listen_data()
    {
        // empty: refused
        columns<QString, QString, int>("text", "address", "port");
        QTest::newRow("port alone: loopback") << "8080" << "127.0.0.1" << 8080;
        QTest::newRow("address and port") << "192.168.1.5:9000" << "192.168.1.5" << 9000;
        QTest::newRow("IPv6 in brackets") << "[::1]:80" << "::1" << 80;
        for (const char* text : {"0", "65536", "127.0.0.1:", "cassa:80"}) // port 0, too big, missing; a name
            QTest::addRow("refused: %s", text) << text << "" << 0;
    }
    void listen()
    {
        const QString& address = fetch<QString>("address");
        QString error;
        const auto listen = parseListenAddress(fetch<QString>("text"), error);
        QCOMPARE(listen.has_value(), !address.isEmpty());
        QCOMPARE(error.isEmpty(), listen.has_value());
        if (listen) {
            QCOMPARE(listen->address, QHostAddress(address));
            QTEST(int(listen->port), "port");
        }
    }
    void access_data()
    {
        columns<QString, bool, QString, QByteArray, QByteArray, int>("bound", "command", "token", "authorization", "host", "status");
        const auto access = [](const char* name, const char* bound, bool command, const char* token, const char* authorization,
                               const char* host, int status) {
            row(name, QString(bound), command, QString(token), QByteArray(authorization), QByteArray(host), status);
        };
        access("loopback receipt, no token", "127.0.0.1", false, "", "", "127.0.0.1:80", 0);
        access("localhost names loopback", "127.0.0.1", false, "", "", "LocalHost:80", 0);
        for (const char* host : {"evil.example:80", "127.0.0.1:81", ""}) // another name, another port, none
            access(host, "127.0.0.1", false, "", "", host, 421);
        access("command without a configured token", "127.0.0.1", true, "", "Bearer ", "localhost:80", 403);
        access("command, wrong token", "127.0.0.1", true, "s3", "Bearer s4", "localhost:80", 401);
        access("command, token", "127.0.0.1", true, "s3", "Bearer s3", "localhost:80", 0);
        access("LAN receipt without token", "10.0.0.2", false, "s3", "", "10.0.0.2:80", 401);
        access("LAN receipt with token", "10.0.0.2", false, "s3", "Bearer s3", "10.0.0.2:80", 0);
        access("LAN: localhost is not the bound address", "10.0.0.2", false, "s3", "Bearer s3", "localhost:80", 421);
        access("any address: any host", "0.0.0.0", false, "s3", "Bearer s3", "cassa1:80", 0);
    }
    void access()
    {
        const ListenAddress listen{QHostAddress(fetch<QString>("bound")), 80};
        Refusal refusal = checkHost(fetch<QByteArray>("host"), listen);
        if (!refusal.refused())
            refusal = checkToken(listen.address.isLoopback(), fetch<bool>("command"), fetch<QString>("token"),
                                 fetch<QByteArray>("authorization"));
        QTEST(refusal.status, "status");
        QCOMPARE(refusal.message.isEmpty(), refusal.status == 0);
    }
    void receiptBody_data(); // outside: moc does not read raw strings
    void receiptBody()
    {
        const QString& problem = fetch<QString>("problem");
        for (const QByteArray& body : fetch<QByteArrayList>("bodies")) {
            Refusal refusal;
            const auto post = parseReceiptPost(body, refusal);
            QVERIFY2(post.has_value() == problem.isEmpty(), body.constData());
            QVERIFY2(refusal.message.contains(problem), qPrintable(refusal.message));
            if (post)
                QCOMPARE(post->lines.first(), QStringLiteral("3/S/CAFFÈ//1/1.00/1/1/"));
            else
                QCOMPARE(refusal.status, 400);
        }
    }
    void ids()
    {
        QTemporaryDir dir;
        const QString path = dir.filePath(QStringLiteral("ids"));
        const QStringList lines{QStringLiteral("3/S/A//1/1.00/1/1/"), QStringLiteral("5/1/0.00/////")};
        {
            ReceiptIds ids(path, 7);
            QCOMPARE(ids.match(QStringLiteral("A"), lines), ReceiptIds::Match::New);
            QVERIFY(ids.remember(QStringLiteral("A"), lines));
        }
        const auto reopened = [&](int daysLater) { return ReceiptIds(path, 7, QDate::currentDate().addDays(daysLater)); };
        QCOMPARE(reopened(0).match(QStringLiteral("A"), lines), ReceiptIds::Match::Same);
        QCOMPARE(reopened(7).match(QStringLiteral("A"), {lines.first()}), ReceiptIds::Match::Other);
        QCOMPARE(reopened(8).match(QStringLiteral("A"), lines), ReceiptIds::Match::New);
        QCOMPARE(reopened(0).match(QStringLiteral("A"), lines), ReceiptIds::Match::New); // dropped from the file too
    }
};

void HttpRulesTest::receiptBody_data()
{
    // a word of the message; empty: accepted
    columns<QByteArrayList, QString>("bodies", "problem");
    row("good", QByteArrayList{R"({"id":"A-1.x_2","lines":["3/S/CAFFÈ//1/1.00/1/1/","5/1/0.00/////"]})"}, QString());
    row("not JSON", QByteArrayList{R"({"id":"A","lines":[)"}, QString("JSON"));
    row("not an object", QByteArrayList{R"(["3/S/"])"}, QString("oggetto"));
    // id missing, empty, a number, with a slash, too long
    row("bad id", QByteArrayList{R"({"lines":["5/"]})", R"({"id":"","lines":["5/"]})", R"({"id":7,"lines":["5/"]})",
                                 R"({"id":"../x","lines":["5/"]})", R"({"id":")" + QByteArray(129, 'a') + R"(","lines":["5/"]})"},
        QString("\"id\""));
    row("lines missing, empty, a text", QByteArrayList{R"({"id":"A"})", R"({"id":"A","lines":[]})", R"({"id":"A","lines":"5/"})"},
        QString("\"lines\""));
    row("a line a number", QByteArrayList{R"({"id":"A","lines":["5/",5]})"}, QString("Riga 2"));
    row("a line with STX or a line break", QByteArrayList{R"({"id":"A","lines":["3/S/\u0002/"]})",
                                                          R"({"id":"A","lines":["3/S/\n5/"]})"}, QString("controllo"));
    row("a line too long", QByteArrayList{R"({"id":"A","lines":[")" + QByteArray(2048, 'x') + R"("]})"}, QString("lungo"));
}

QTEST_APPLESS_MAIN(HttpRulesTest)
#include "tst_http_rules.moc"
