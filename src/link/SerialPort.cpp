#include "SerialPort.h"

#include <QDeadlineTimer>
#include <QThread>

#ifdef Q_OS_WIN
#include <windows.h>
#else
#include <termios.h>
#endif

namespace kelm {

namespace {

void sleepFor(qint64 ms)
{
    if (ms > 0)
        QThread::msleep(static_cast<unsigned long>(ms));
}

} // namespace

bool SerialPort::open(const QString& name, qint32 speed)
{
    lastError_.clear();
    if (speed < 1) {
        lastError_ = QStringLiteral("velocità non valida: %1").arg(speed);
        return false;
    }
    if (serial_.isOpen())
        serial_.close();
    serial_.setPortName(name);
    if (!serial_.setBaudRate(speed) || !serial_.setDataBits(QSerialPort::Data8)
        || !serial_.setParity(QSerialPort::NoParity) || !serial_.setStopBits(QSerialPort::OneStop)
        || !serial_.setFlowControl(QSerialPort::NoFlowControl)) {
        lastError_ = serial_.errorString();
        return false;
    }
    if (!serial_.open(QIODevice::ReadWrite)) {
        lastError_ = serial_.errorString();
        handle_ = PortHandle::Invalid;
        return false;
    }
    // DTR and RTS held on. A pseudo-terminal refuses both calls
    // (UnsupportedOperationError); it has no such lines, so that is harmless.
    serial_.setDataTerminalReady(true);
    serial_.setRequestToSend(true);
    serial_.setBreakEnabled(false);
    serial_.clearError();
    serial_.clear(QSerialPort::AllDirections);
    handle_ = PortHandle::Open;
    return true;
}

void SerialPort::close()
{
    if (serial_.isOpen()) {
        drainOutput();
        serial_.clear(QSerialPort::Input);
        serial_.close();
    }
    handle_ = PortHandle::Closed;
}

void SerialPort::drainOutput()
{
    // The protocol writes as if every write blocked until the byte left: the
    // CANs before a purge and the ACK before the port closes must reach the
    // register. The system queues them, so wait here, where the protocol is
    // about to throw bytes away, rather than after every byte.
    if (serial_.bytesToWrite() > 0 && !serial_.waitForBytesWritten(1000))
        serial_.clearError();
#ifdef Q_OS_WIN
    FlushFileBuffers(serial_.handle());
#else
    tcdrain(serial_.handle());
#endif
}

qint64 SerialPort::bytesWaiting()
{
    if (!serial_.isOpen())
        return 0;
    // Without an event loop the device is read only inside waitForReadyRead;
    // a zero wait moves whatever the system holds into the buffer.
    if (serial_.bytesAvailable() == 0)
        serial_.waitForReadyRead(0);
    return serial_.bytesAvailable();
}

quint8 SerialPort::readByte()
{
    char c = 0;
    if (bytesWaiting() == 0 || serial_.read(&c, 1) != 1) {
        serial_.clearError();
        return 0;
    }
    return static_cast<quint8>(c);
}

void SerialPort::writeByte(quint8 value)
{
    if (!serial_.isOpen())
        return;
    const char c = static_cast<char>(value);
    if (serial_.write(&c, 1) != 1) {
        serial_.clearError();
        return;
    }
    // A blocking write of the one byte: push it to the device now.
    if (!serial_.flush() && serial_.bytesToWrite() > 0 && !serial_.waitForBytesWritten(1000))
        serial_.clearError();
}

void SerialPort::purge()
{
    // Written bytes are drained, never discarded: a pseudo-terminal (and some
    // USB adapters) would otherwise drop what the far end has not read yet.
    // After the drain nothing is left to send, so only the input is cleared.
    if (serial_.isOpen()) {
        drainOutput();
        serial_.clear(QSerialPort::Input);
    }
}

void SerialPort::waitForReadyRead(qint64 ms)
{
    if (!serial_.isOpen()) {
        sleepFor(ms);
        return;
    }
    if (serial_.bytesAvailable() > 0)
        return;
    QDeadlineTimer deadline(ms);
    if (serial_.waitForReadyRead(static_cast<int>(ms)))
        return;
    // A device that has gone away answers at once with an error; sleep out
    // the rest so that the caller's time-outs still hold and nothing spins.
    if (serial_.error() != QSerialPort::TimeoutError && serial_.error() != QSerialPort::NoError) {
        serial_.clearError();
        sleepFor(deadline.remainingTime());
    }
}

} // namespace kelm
