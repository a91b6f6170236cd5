// How fast the HTTP service answers GET /api/v1/status while the line is
// busy with a full PLU table download: the service reads the driver's status
// without waiting for the worker, so a long download must not slow it.
// Built-in virtual register at 115200 baud in real time; one client on a
// kept-alive connection asks every 5 ms.
#include "http/HttpService.h"
#include "programming/DownloadJob.h"
#include "service/DriverSession.h"

#include "PluTable.h"
#include "SilentOperator.h"

#include <QCoreApplication>
#include <QElapsedTimer>
#include <QFile>
#include <QTcpSocket>
#include <QTemporaryDir>
#include <QThread>

#include <algorithm>
#include <atomic>
#include <cstdio>

namespace {

// One GET on a kept-alive connection; false when the answer is not a 200.
bool getStatus(QTcpSocket& socket, quint16 port)
{
    socket.write("GET /api/v1/status HTTP/1.1\r\nHost: 127.0.0.1:" + QByteArray::number(port) + "\r\n\r\n");
    QByteArray all;
    qsizetype end = -1;
    qsizetype length = -1;
    while (socket.waitForReadyRead(5000)) {
        all += socket.readAll();
        end = all.indexOf("\r\n\r\n");
        const qsizetype at = all.indexOf("Content-Length: ");
        if (end > 0 && at > 0) {
            length = all.mid(at + 16, 12).split('\r').first().toInt();
            if (all.size() >= end + 4 + length)
                break;
        }
    }
    return all.startsWith("HTTP/1.1 200") && length >= 0 && all.size() >= end + 4 + length;
}

} // namespace

int main(int argc, char** argv)
{
    QCoreApplication app(argc, argv);
    const int plus = argc > 1 ? QString::fromLatin1(argv[1]).toInt() : 9000;
    QTemporaryDir home;
    QDir(home.path()).mkdir(QStringLiteral("spool"));
    QFile ini(home.filePath(QStringLiteral("KelmDrev.ini")));
    if (!ini.open(QIODevice::WriteOnly))
        return 1;
    ini.write("[Parametri]\r\nModello=Kelm Brio\r\nVelocita=115200\r\nDispositivo=virtual\r\nServerDir="
              + home.filePath(QStringLiteral("spool")).toUtf8() + "\r\n");
    ini.close();

    SilentOperator op;
    kelm::service::DriverSession driver({home.path(), false, kelm::service::DriverSession::Mode::Headless}, op);
    if (!driver.start().isEmpty())
        return 1;
    kelm::http::HttpService http(driver, {{QHostAddress(QHostAddress::LocalHost), 0}, {}, home.path(), 7});
    if (!http.start().isEmpty())
        return 1;
    while (driver.status().identity.serialNumber.isEmpty())
        QThread::msleep(10);

    std::atomic<bool> done{false};
    QElapsedTimer download;
    download.start();
    driver.post([&done, &op, rows = pluTable(plus)](kelm::EcrLink& link) {
        kelm::programming::runPluDownload(link, op, rows);
        done = true;
    });

    QTcpSocket socket;
    socket.connectToHost(QHostAddress::LocalHost, http.port());
    if (!socket.waitForConnected(5000))
        return 1;
    QList<double> ms;
    int failed = 0;
    while (!done) {
        QElapsedTimer one;
        one.start();
        failed += getStatus(socket, http.port()) ? 0 : 1;
        ms.append(double(one.nsecsElapsed()) / 1e6);
        QThread::msleep(5);
    }
    const double seconds = double(download.elapsed()) / 1000.0;
    std::sort(ms.begin(), ms.end());
    const auto at = [&ms](double q) { return ms.isEmpty() ? 0.0 : ms[qsizetype(q * double(ms.size() - 1))]; };
    std::printf("%d PLU downloaded in %.1f s; %lld GET /api/v1/status meanwhile, %d failed\n", plus, seconds,
                static_cast<long long>(ms.size()), failed);
    std::printf("latency ms: p50 %.2f  p90 %.2f  p99 %.2f  max %.2f\n", at(0.5), at(0.9), at(0.99), at(1.0));
    return failed == 0 && at(0.99) <= 50.0 ? 0 : 1;
}
