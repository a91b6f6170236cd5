#pragma once

#include "Clock.h"
#include "LinePeer.h"
#include "Port.h"

#include <deque>

namespace kelm {

// A Port whose far end is a LinePeer, in the time of the given Clock: with a
// VirtualClock a test runs seconds of protocol in no real time; with the
// SystemClock the built-in virtual ECR answers in real time.
class VirtualLinePort final : public Port {
public:
    VirtualLinePort(LinePeer& peer, Clock& clock) : peer_(peer), clock_(clock) {}

    bool open(const QString& name, qint32 speed) override;
    void close() override;
    quint8 readByte() override;
    void writeByte(quint8 value) override;
    qint64 bytesWaiting() override;
    void purge() override;
    void waitForReadyRead(qint64 ms) override;
    PortHandle handle() const override { return handle_; }

private:
    LinePeer& peer_;
    Clock& clock_;
    std::deque<TimedByte> incoming_;
    PortHandle handle_ = PortHandle::Closed;
};

} // namespace kelm
