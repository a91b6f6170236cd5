#include "EcrLine.h"

#include "app/PortName.h"
#include "link/SerialPort.h"

namespace kelm {

namespace {

std::unique_ptr<Port> makePort(const ConfigPC& config)
{
    Q_UNUSED(config);
    return std::make_unique<SerialPort>();
}

} // namespace

EcrLine::EcrLine(const ConfigPC& config)
    : name_(SystemPortName(config)), speed_(config.speed), port_(makePort(config)),
      link_(*port_, clock_)
{
}

EcrLine::~EcrLine()
{
    close();
}

bool EcrLine::open()
{
    openError_.clear();
    if (port_->open(name_, speed_))
        return true;
    openError_ = QStringLiteral("Impossibile Aprire Porta ") + name_;
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
