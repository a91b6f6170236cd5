#pragma once

#include "Port.h"

#include <QSerialPort>

namespace kelm {

// The real line: a serial device or a pseudo-terminal, through QSerialPort.
// Lives on the thread that uses it (the session's worker); it never needs an
// event loop because every read goes through waitForReadyRead.
class SerialPort final : public Port {
public:
    bool open(const QString& name, qint32 speed) override;
    void close() override;
    quint8 readByte() override;
    void writeByte(quint8 value) override;
    qint64 bytesWaiting() override;
    void purge() override;
    void waitForReadyRead(qint64 ms) override;
    PortHandle handle() const override { return handle_; }

    // What the system said when the last open failed.
    QString lastError() const { return lastError_; }

private:
    // Returns once every written byte has left the PC.
    void drainOutput();

    QSerialPort serial_;
    PortHandle handle_ = PortHandle::Closed;
    QString lastError_;
};

} // namespace kelm
