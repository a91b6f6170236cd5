// The HTTP service over real connections, in front of a driver session on
// the built-in virtual register: receipts posted, printed once and read
// back, bad requests that change nothing, fifty clients at once.
#include "http/HttpService.h"
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

class HttpServiceTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void init()
    {
        home_ = std::make_unique<QTemporaryDir>();
        QDir(home_->path()).mkdir(QStringLiteral("spool"));
        QFile ini(home_->filePath(QStringLiteral("KelmDrev.ini")));
        QVERIFY(ini.open(QIODevice::WriteOnly));
        ini.write("[Parametri]\r\nModello=Kelm Brio\r\nVelocita=115200\r\nDispositivo=virtual\r\nServerDir="
                  + home_->filePath(QStringLiteral("spool")).toUtf8() + "\r\nServerFile=*.txt\r\n");
        ini.close();
        startProgram();
    }
    void cleanup() { stopProgram(); }
    void receiptPrintedOnceAcrossRestart();
    void badRequestsChangeNothing_data();
    void badRequestsChangeNothing();
    void fiftyClientsInOrder();
    void panelCommand();
    void noFileTakenOnceStopped();

private:
    void startProgram()
    {
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

void HttpServiceTest::receiptPrintedOnceAcrossRestart()
{
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
    startProgram();
    reply = call("POST", "/api/v1/receipts", body);
    QCOMPARE(reply.status, 200);
    QCOMPARE(reply.json[QStringLiteral("state")].toString(), QStringLiteral("stampato"));
    QTest::qWait(300); // time enough for a wrong second print to show
    QCOMPARE(journal().filter(QStringLiteral("CAFF")).size(), 1);
}

void HttpServiceTest::badRequestsChangeNothing_data()
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
    // Switched off in the window: a receipt is turned away, not kept for later.
    row("server off", false, post, receipts, good, none, 503, QString("Server scontrini spento: scontrino non accettato"));
}

void HttpServiceTest::badRequestsChangeNothing()
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

void HttpServiceTest::fiftyClientsInOrder()
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

void HttpServiceTest::panelCommand()
{
    const QByteArray body = R"({"record":"a/"})";
    const Reply reply = call("POST", "/api/v1/commands", body, "Authorization: Bearer t0k\r\n");
    QCOMPARE(reply.status, 200);
    QCOMPARE(reply.json[QStringLiteral("result")].toInt(), 0);
    QVERIFY(reply.json[QStringLiteral("answer")].toString().startsWith(QStringLiteral("00/")));
}

// A stop asked while the worker is busy wins over the tick that came due
// meanwhile: a file dropped then stays in the folder for the next run.
void HttpServiceTest::noFileTakenOnceStopped()
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

QTEST_MAIN(HttpServiceTest)
#include "tst_http_service.moc"
