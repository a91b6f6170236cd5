#pragma once

#include <QString>
#include <QtGlobal>

namespace kelm {

// What the one handle of the serial line holds. A port never opened (or
// closed again) is Closed; an open that the system refused leaves Invalid,
// on which every operation fails quietly. Panel commands tell the two apart.
enum class PortHandle { Closed, Invalid, Open };

// Byte level of the line to the ECR. Every operation is non-blocking except
// waitForReadyRead, which sleeps (never spins) until a byte may have arrived
// or the time has passed.
class Port {
public:
    virtual ~Port() = default;

    // Opens exclusively with 8 data bits, no parity, 1 stop bit, no flow
    // control. A speed below 1 fails before anything is opened.
    virtual bool open(const QString& name, qint32 speed) = 0;
    // Lets every written byte leave, discards what was received and closes;
    // harmless on a closed port.
    virtual void close() = 0;
    // The next received byte, or 0 when nothing could be read.
    virtual quint8 readByte() = 0;
    virtual void writeByte(quint8 value) = 0;
    // Bytes received and not yet read.
    virtual qint64 bytesWaiting() = 0;
    // Discards what was received. Bytes already written are never thrown
    // away: they leave first, as they would after a blocking write.
    virtual void purge() = 0;
    // Sleeps until a byte may be waiting or ms milliseconds have passed.
    virtual void waitForReadyRead(qint64 ms) = 0;
    virtual PortHandle handle() const = 0;

    bool isOpen() const { return handle() == PortHandle::Open; }
};

} // namespace kelm
