// Time of the two longest downloads of the programming tab, a full PLU table
// and a 256-row logo, against the built-in virtual register in real time with
// no answer delay and both directions paced at the line's speed, next to the
// floor that physics and the protocol set for the same bytes (CountingPeer).
#include "app/Operator.h"
#include "link/Clock.h"
#include "link/VirtualLinePort.h"
#include "logos/LogoRecords.h"
#include "programming/DownloadJob.h"
#include "sim/VirtualEcr.h"
#include "logos/LogoDownloadJob.h"

#include "CountingPeer.h"
#include "PluTable.h"
#include "SilentOperator.h"

#include <QCoreApplication>
#include <QElapsedTimer>
#include <QImage>

#include <cstdio>
#include <functional>

namespace {

using Download = std::function<void(kelm::EcrLink&, kelm::Operator&)>;

// Runs `download` on a fresh register at `baud` and prints one line.
bool measure(const char* what, qint32 baud, const Download& download)
{
    kelm::sim::VirtualEcrOptions options;
    options.baud = baud;
    options.answerDelayMs = 0;
    kelm::sim::VirtualEcr ecr(options);
    CountingPeer peer(ecr);
    kelm::SystemClock clock;
    kelm::VirtualLinePort port(peer, clock);
    if (!port.open(QStringLiteral("virtual"), baud))
        return false;
    kelm::EcrLink link(port, clock);
    SilentOperator op;

    QElapsedTimer timer;
    timer.start();
    download(link, op);
    const double seconds = double(timer.nsecsElapsed()) / 1e9;

    const auto records = ecr.journal().size();
    const double floor = peer.floorSeconds(baud);
    const double wire = peer.wireSeconds(baud);
    std::printf("%-14s %6d %7d %8lld %8lld %8.1f %8.1f %8.1f %6.3f\n", what, baud, int(records),
                static_cast<long long>(peer.toEcr), static_cast<long long>(peer.fromEcr), seconds, wire, floor,
                seconds / floor);
    return records > 0;
}

// A 256×256 logo whose rows all differ.
QList<kelm::logos::LogoRowRecord> logoRows()
{
    QImage logo(256, 256, QImage::Format_RGB888);
    for (int y = 0; y < logo.height(); ++y)
        for (int x = 0; x < logo.width(); ++x)
            logo.setPixelColor(x, y, (x / 8 + y) % 3 == 0 ? Qt::white : Qt::black);
    return kelm::logos::logoDownload({logo}, 0).records;
}

} // namespace

int main(int argc, char** argv)
{
    QCoreApplication app(argc, argv);
    const int plusFast = argc > 1 ? QString::fromLatin1(argv[1]).toInt() : 9000;
    const int plusSlow = argc > 2 ? QString::fromLatin1(argv[2]).toInt() : 9000;
    const auto plus = [](int count) {
        return [rows = pluTable(count)](kelm::EcrLink& link, kelm::Operator& op) {
            kelm::programming::runPluDownload(link, op, rows);
        };
    };
    const Download logo = [rows = logoRows()](kelm::EcrLink& link, kelm::Operator& op) {
        kelm::logos::runLogoDownload(link, op, rows);
    };

    std::printf("%-14s %6s %7s %8s %8s %8s %8s %8s %6s\n", "download", "baud", "records", "PC->ECR", "ECR->PC",
                "time s", "wire s", "floor s", "/floor");
    const QByteArray fast = QByteArray::number(plusFast) + " PLU";
    const QByteArray slow = QByteArray::number(plusSlow) + " PLU";
    bool ok = measure(fast.constData(), 115200, plus(plusFast));
    ok = measure("logo 256x256", 115200, logo) && ok;
    ok = measure(slow.constData(), 9600, plus(plusSlow)) && ok;
    ok = measure("logo 256x256", 9600, logo) && ok;
    return ok ? 0 : 1;
}
