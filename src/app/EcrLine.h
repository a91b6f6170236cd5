#pragma once

#include "app/Configuration.h"
#include "link/Clock.h"
#include "link/EcrLink.h"
#include "link/LinePeer.h"
#include "link/Port.h"

#include <memory>

namespace kelm {

namespace sim {
class VirtualEcr;
}

// The one line to the register as configured: a serial device, or the
// built-in virtual ECR, with the real clock. Owned by whoever runs the
// exchanges (the send command, the session's worker) and used on its thread.
class EcrLine {
public:
    // The virtual ECR, when configured, keeps its journal and paper roll in
    // `programFolder`.
    EcrLine(const ConfigPC& config, const QString& programFolder);
    ~EcrLine();

    // Opens with the configured name and speed. On failure the port holds
    // Invalid (or stays Closed for an unusable speed) and openError() says why.
    bool open();
    void close();

    const QString& name() const { return name_; }
    const QString& openError() const { return openError_; }
    Port& port() { return *port_; }
    EcrLink& link() { return link_; }
    // The built-in register, when that is what the line leads to.
    const sim::VirtualEcr* virtualEcr() const { return virtualEcr_; }

private:
    SystemClock clock_;
    QString name_;
    qint32 speed_;
    QString peerError_;
    std::unique_ptr<LinePeer> peer_;
    const sim::VirtualEcr* virtualEcr_ = nullptr;
    std::unique_ptr<Port> port_;
    EcrLink link_;
    QString openError_;
};

} // namespace kelm
