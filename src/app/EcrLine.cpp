#include "EcrLine.h"

#include "app/PortName.h"
#include "link/SerialPort.h"
#include "link/VirtualLinePort.h"
#include "sim/VirtualEcr.h"

#include <algorithm>

namespace kelm {

namespace {

std::unique_ptr<sim::VirtualEcr> makeVirtualEcr(const QString& programFolder, qint32 speed)
{
    // The built-in register lives in the program folder and carries on where
    // the last run left it, at the configured speed as a real line would.
    sim::VirtualEcrOptions options;
    options.resume = true;
    options.baud = std::max(speed, 0);
    options.journalPath = programFolder + QStringLiteral("/virtual-ecr-journal.txt");
    options.paperPath = programFolder + QStringLiteral("/virtual-ecr-paper.txt");
    return std::make_unique<sim::VirtualEcr>(options);
}

} // namespace

EcrLine::EcrLine(const ConfigPC& config, const QString& programFolder)
    : name_(SystemPortName(config)), speed_(config.speed),
      link_([&]() -> Port& {
          if (IsVirtualDevice(config)) {
              auto ecr = makeVirtualEcr(programFolder, config.speed);
              peerError_ = ecr->startError();
              port_ = std::make_unique<VirtualLinePort>(*ecr, clock_);
              virtualEcr_ = ecr.get();
              peer_ = std::move(ecr);
          } else {
              port_ = std::make_unique<SerialPort>();
          }
          return *port_;
      }(), clock_)
{
}

EcrLine::~EcrLine()
{
    close();
}

bool EcrLine::open()
{
    openError_.clear();
    if (peerError_.isEmpty() && port_->open(name_, speed_))
        return true;
    openError_ = QStringLiteral("Impossibile Aprire Porta ") + name_;
    if (!peerError_.isEmpty())
        openError_ += QStringLiteral(" (") + peerError_ + u')';
    if (auto* serial = dynamic_cast<SerialPort*>(port_.get()); serial && !serial->lastError().isEmpty())
        openError_ += QStringLiteral(" (") + serial->lastError() + u')';
    return false;
}

void EcrLine::close()
{
    if (port_->handle() != PortHandle::Closed)
        port_->close();
}

} // namespace kelm
