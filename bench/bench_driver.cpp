// Records per second through the receipt server against the built-in virtual
// register in real time at the given baud (115200 unless told), with no
// added latency, next to the floor of the same bytes on the wire plus the
// protocol's fixed waits (CountingPeer).
#include "app/Operator.h"
#include "app/RunTimeLog.h"
#include "link/Clock.h"
#include "link/VirtualLinePort.h"
#include "server/ReceiptServer.h"
#include "sim/VirtualEcr.h"

#include "CountingPeer.h"
#include "SilentOperator.h"

#include <QCoreApplication>
#include <QElapsedTimer>
#include <QTemporaryDir>

#include <cstdio>
#include <sys/resource.h>

namespace {

double cpuSeconds()
{
    rusage u{};
    getrusage(RUSAGE_SELF, &u);
    return double(u.ru_utime.tv_sec + u.ru_stime.tv_sec) + double(u.ru_utime.tv_usec + u.ru_stime.tv_usec) / 1e6;
}

} // namespace

int main(int argc, char** argv)
{
    QCoreApplication app(argc, argv);
    const int records = argc > 1 ? QString::fromLatin1(argv[1]).toInt() : 999;

    kelm::sim::VirtualEcrOptions options;
    const qint32 baud = argc > 2 ? QString::fromLatin1(argv[2]).toInt() : 115200;
    options.answerDelayMs = 0;
    options.baud = baud;
    kelm::sim::VirtualEcr ecr(options);
    CountingPeer peer(ecr);
    kelm::SystemClock clock;
    kelm::VirtualLinePort port(peer, clock);
    port.open(QStringLiteral("virtual"), baud);
    kelm::EcrLink link(port, clock);
    SilentOperator op;
    QTemporaryDir dir;
    kelm::RunTimeLog log(dir.path());
    kelm::server::ReceiptServer server(link, op, log, {});
    for (int i = 0; i < records / 3; ++i)
        server.queue << QStringLiteral("3/S/REPARTO1//1/1.00/1/4/") << QStringLiteral("3/S/REPARTO2//2/0.50/2/4/")
                     << QStringLiteral("5/1/0.00/////");
    const int sent = int(server.queue.size());

    QElapsedTimer wall;
    const double cpu0 = cpuSeconds();
    wall.start();
    server.ProcessReceiptQueue();
    const double seconds = double(wall.nsecsElapsed()) / 1e9;
    const double cpu = cpuSeconds() - cpu0;

    const double floorSeconds = peer.floorSeconds(baud);
    std::printf("records                     %d at %d baud\n", sent, baud);
    std::printf("records per second          %.1f\n", sent / seconds);
    std::printf("floor (wire + fixed waits)  %.1f records per second\n", sent / floorSeconds);
    std::printf("time / floor                %.3f\n", seconds / floorSeconds);
    std::printf("CPU per 1000 records        %.3f s\n", cpu * 1000.0 / sent);
    std::printf("journal lines               %d\n", int(ecr.journal().size()));
    return int(ecr.journal().size()) == sent ? 0 : 1;
}
