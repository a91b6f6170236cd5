// The HTTP service: its rules (where it listens, who may ask, what a body
// must hold, the ids it remembers across restarts), then over real
// connections in front of a driver session on the built-in virtual register:
// receipts posted, printed once and read back, bad requests that change
// nothing, fifty clients at once.
#include "http/ApiRules.h"
#include "http/HttpService.h"
#include "http/ReceiptIds.h"
#include "service/DriverSession.h"

#include "RecordingOperator.h"
#include "Table.h"

#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QSemaphore>
#include <QTcpSocket>
#include <QTemporaryDir>
#include <QTest>

using namespace kelm;
using namespace kelm::http;

namespace {

struct Reply {
    int status = 0;
    QJsonObject json;
};

QByteArray requestBytes(const QByteArray& method, const QByteArray& path, const QByteArray& body,
                        const QByteArray& headers, quint16 port)
{
    const QByteArray host = headers.contains("Host:") ? QByteArray() : "Host: 127.0.0.1:" + QByteArray::number(port) + "\r\n";
    return method + ' ' + path + " HTTP/1.1\r\n" + host + headers + "Content-Length: " + QByteArray::number(body.size())
        + "\r\nConnection: close\r\n\r\n" + body;
}

// Up to the end of the body its Content-Length announces.
Reply readReply(QTcpSocket& socket)
{
    QByteArray all;
    const auto complete = [&all] {
        const qsizetype end = all.indexOf("\r\n\r\n");
        const qsizetype length = all.indexOf("Content-Length: ");
        return end > 0 && length > 0 && all.size() >= end + 4 + all.mid(length + 16, 12).split('\r').first().toInt();
    };
    while (!complete() && (socket.bytesAvailable() > 0 || socket.waitForReadyRead(10000)))
        all += socket.readAll();
    Reply reply;
    reply.status = all.mid(9, 3).toInt();
    reply.json = QJsonDocument::fromJson(all.mid(all.indexOf("\r\n\r\n") + 4)).object();
    return reply;
}

} // namespace

class HttpTest : public QObject {
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
        QCOMPARE(reopened(7).match(QStringLiteral("A"), {lines.first()}), ReceiptIds::Match::Other);
        QCOMPARE(reopened(8).match(QStringLiteral("A"), lines), ReceiptIds::Match::New);
        QCOMPARE(reopened(0).match(QStringLiteral("A"), lines), ReceiptIds::Match::New); // dropped from the file too
    }
    // The rules need no program; the bad requests, all turned away, share one run.
    void init()
    {
        if (!QByteArrayList{"listen", "access", "receiptBody", "ids"}.contains(QTest::currentTestFunction()) && !http_)
            startProgram();
    }
    void cleanup()
    {
        if (QTest::currentTestFunction() != QByteArray("badRequestsChangeNothing") || !driver_->status().serverOn)
            stopProgram();
    }
    void receiptPrintedOnceAcrossRestart(); // and a panel command
    void badRequestsChangeNothing_data();
    void badRequestsChangeNothing();
    void fiftyClientsInOrder();
    void noFileTakenOnceStopped();

private:
    // The program on the built-in virtual register, in a fresh folder unless it is restarted.
    void startProgram(bool fresh = true)
    {
        if (fresh) {
            home_ = std::make_unique<QTemporaryDir>();
            QDir(home_->path()).mkdir(QStringLiteral("spool"));
            QFile ini(home_->filePath(QStringLiteral("KelmDrev.ini")));
            QVERIFY(ini.open(QIODevice::WriteOnly));
            ini.write("[Parametri]\r\nModello=Kelm Brio\r\nVelocita=115200\r\nDispositivo=virtual\r\nServerDir="
                      + home_->filePath(QStringLiteral("spool")).toUtf8() + "\r\nServerFile=*.txt\r\n");
        }
        driver_ = std::make_unique<service::DriverSession>(
            service::DriverSession::Options{home_->path(), false, service::DriverSession::Mode::Headless}, op_);
        QCOMPARE(driver_->start(), QString());
        http_ = std::make_unique<http::HttpService>(
            *driver_, http::HttpService::Options{{QHostAddress(QHostAddress::LocalHost), 0}, QStringLiteral("t0k"), home_->path(), 7});
        QCOMPARE(http_->start(), QString());
        const auto serialNumber = [this] {
            return call("GET", "/api/v1/status").json.value(QStringLiteral("register")).toObject().value(QStringLiteral("serialNumber"));
        };
        QTRY_VERIFY(!serialNumber().toString().isEmpty());
        QTRY_VERIFY(journal().contains(QStringLiteral("e/"))); // the start-up's last exchange
    }
    void stopProgram()
    {
        http_.reset();
        driver_.reset();
    }
    Reply call(const QByteArray& method, const QByteArray& path, const QByteArray& body = {}, const QByteArray& headers = {})
    {
        QTcpSocket socket;
        socket.connectToHost(QHostAddress::LocalHost, http_->port());
        socket.waitForConnected(5000);
        socket.write(requestBytes(method, path, body, headers, http_->port()));
        return readReply(socket);
    }
    QString state(const QString& id) { return call("GET", "/api/v1/receipts/" + id.toUtf8()).json[QStringLiteral("state")].toString(); }
    QStringList journal() const
    {
        QFile file(home_->filePath(QStringLiteral("virtual-ecr-journal.txt")));
        file.open(QIODevice::ReadOnly);
        return QString::fromLatin1(file.readAll()).split(u'\n', Qt::SkipEmptyParts);
    }

    std::unique_ptr<QTemporaryDir> home_;
    RecordingOperator op_; // written by the worker only
    std::unique_ptr<service::DriverSession> driver_;
    std::unique_ptr<http::HttpService> http_;
};

void HttpTest::receiptBody_data()
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

void HttpTest::receiptPrintedOnceAcrossRestart()
{
    const Reply panel = call("POST", "/api/v1/commands", R"({"record":"a/"})", "Authorization: Bearer t0k\r\n");
    QCOMPARE(panel.status, 200); // a panel command, with its result and the register's answer
    QCOMPARE(panel.json[QStringLiteral("result")].toInt(), 0);
    QVERIFY(panel.json[QStringLiteral("answer")].toString().startsWith(QStringLiteral("00/")));
    QVERIFY(call("GET", "/api/v1/status").json["lastError"].isNull()); // the identity on the bar is no error
    const QByteArray body = R"({"id":"R-1","lines":["3/S/CAFFÈ//1/1.20/1/1/","5/1/0.00/////"]})";
    Reply reply = call("POST", "/api/v1/receipts", body);
    QCOMPARE(reply.status, 202);
    QCOMPARE(reply.json[QStringLiteral("id")].toString(), QStringLiteral("R-1"));
    QTRY_COMPARE(state(QStringLiteral("R-1")), QStringLiteral("stampato"));
    const QJsonArray lines = call("GET", "/api/v1/receipts/R-1").json[QStringLiteral("lines")].toArray();
    QCOMPARE(lines.size(), 2);
    QCOMPARE(lines[0][QStringLiteral("outcome")].toString(), QStringLiteral("accettata"));

    reply = call("POST", "/api/v1/receipts", body);
    QCOMPARE(reply.status, 200);
    QCOMPARE(reply.json[QStringLiteral("state")].toString(), QStringLiteral("stampato"));
    const QByteArray otherLines = R"({"id":"R-1","lines":["5/1/0.00/////"]})";
    QCOMPARE(call("POST", "/api/v1/receipts", otherLines).status, 409);
    stopProgram();
    startProgram(false);
    reply = call("POST", "/api/v1/receipts", body);
    QCOMPARE(reply.status, 200);
    QCOMPARE(reply.json[QStringLiteral("state")].toString(), QStringLiteral("stampato"));
    QTest::qWait(300); // time enough for a wrong second print to show
    QCOMPARE(journal().filter(QStringLiteral("CAFF")).size(), 1);
}

void HttpTest::badRequestsChangeNothing_data()
{
    // error: the exact text where the reason is the client's to read, else only that there is one.
    columns<bool, QByteArray, QByteArray, QByteArray, QByteArray, int, QString>("serverOn", "method", "path", "body",
                                                                                "headers", "status", "error");
    const QByteArray post = "POST", receipts = "/api/v1/receipts", commands = "/api/v1/commands";
    const QByteArray good = R"({"id":"A","lines":["5/"]})", none;
    row("malformed JSON", true, post, receipts, QByteArray(R"({"id":"A",)"), none, 400, QString());
    row("body over the limit", true, post, receipts, QByteArray(2 * 1024 * 1024, ' '), none, 413, QString());
    row("unknown id", true, QByteArray("GET"), receipts + "/NOPE", none, none, 404, QString("Scontrino \"NOPE\" sconosciuto"));
    row("another address", true, post, receipts, good, QByteArray("Host: 192.168.1.9\r\n"), 421, QString());
    row("command without token", true, post, commands, QByteArray(R"({"record":"x/7/0/0/"})"), none, 401, QString());
    row("command, no record", true, post, commands, QByteArray(R"({"record":""})"), QByteArray("Authorization: Bearer t0k\r\n"),
        400, QString());
    row("wrong method", true, QByteArray("DELETE"), QByteArray("/api/v1/status"), none, none, 405,
        QString("Metodo non ammesso per /api/v1/status"));
    // Switched off in the window (the last row): a receipt is turned away, not kept for later.
    row("server off", false, post, receipts, good, none, 503, QString("Server scontrini spento: scontrino non accettato"));
}

void HttpTest::badRequestsChangeNothing()
{
    const QStringList before = journal();
    if (!fetch<bool>("serverOn")) {
        driver_->setServerEnabled(false);
        QTRY_VERIFY(!driver_->status().serverOn);
    }
    const Reply reply = call(fetch<QByteArray>("method"), fetch<QByteArray>("path"), fetch<QByteArray>("body"),
                             fetch<QByteArray>("headers"));
    QTEST(reply.status, "status");
    const QString error = reply.json[QStringLiteral("error")].toString();
    QVERIFY(!error.isEmpty());
    if (!fetch<QString>("error").isEmpty())
        QTEST(error, "error");
    QCOMPARE(state(QStringLiteral("A")), QString()); // not queued, not remembered
    QTest::qWait(100);
    QCOMPARE(journal(), before);
}

void HttpTest::fiftyClientsInOrder()
{
    constexpr int kClients = 50;
    std::vector<std::unique_ptr<QTcpSocket>> sockets;
    for (int n = 0; n < kClients; ++n) {
        sockets.push_back(std::make_unique<QTcpSocket>());
        sockets.back()->connectToHost(QHostAddress::LocalHost, http_->port());
    }
    for (int n = 0; n < kClients; ++n) {
        QVERIFY(sockets[n]->waitForConnected(5000));
        const QByteArray body = QString::fromLatin1(R"({"id":"C%1","lines":["3/S/CLIENTE %1//1/1.00/1/1/","5/1/0.00/////"]})").arg(n).toUtf8();
        sockets[n]->write(requestBytes("POST", "/api/v1/receipts", body, {}, http_->port()));
    }
    QMap<int, QString> byOrder; // accepted → description
    for (int n = 0; n < kClients; ++n) {
        const Reply reply = readReply(*sockets[n]);
        QCOMPARE(reply.status, 202);
        byOrder.insert(reply.json[QStringLiteral("accepted")].toInt(), QStringLiteral("3/S/CLIENTE %1/").arg(n));
    }
    QCOMPARE(byOrder.size(), kClients);
    for (int n = 0; n < kClients; ++n)
        QTRY_COMPARE(state(QStringLiteral("C%1").arg(n)), QStringLiteral("stampato"));
    const QStringList printed = journal().filter(QStringLiteral("3/S/CLIENTE"));
    QCOMPARE(printed.size(), kClients);
    for (int i = 0; i < kClients; ++i)
        QVERIFY2(printed[i].startsWith(byOrder.values()[i]), qPrintable(printed[i]));
}

// A stop asked while the worker is busy wins over the tick that came due
// meanwhile: a file dropped then stays in the folder for the next run.
void HttpTest::noFileTakenOnceStopped()
{
    const QString file = home_->filePath(QStringLiteral("spool/tardi.txt"));
    std::atomic<bool> stopped = false;
    connect(driver_.get(), &service::DriverSession::stopped, driver_.get(), [&stopped] { stopped = true; },
            Qt::DirectConnection);
    QSemaphore busy;
    driver_->post([&busy](EcrLink&) {
        busy.release();
        QThread::msleep(300); // longer than a tick
    });
    busy.acquire();
    driver_->post([this, file](EcrLink&) {
        QFile f(file);
        QVERIFY(f.open(QIODevice::WriteOnly));
        f.write("3/S/TARDI//1/1.00/1/4/\r\n5/1/0.00/////\r\n");
        f.flush();
        f.setFileTime(QDateTime::currentDateTime().addSecs(-5), QFileDevice::FileModificationTime);
        driver_->stop();
    });
    QTRY_VERIFY(stopped);
    QVERIFY(QFile::exists(file));
}

QTEST_MAIN(HttpTest)
#include "tst_http.moc"
