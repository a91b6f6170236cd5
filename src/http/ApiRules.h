#pragma once

#include <QByteArray>
#include <QHostAddress>
#include <QString>
#include <QStringList>

#include <optional>

// The rules of the local HTTP service as plain values in, plain values out:
// where it listens, who may ask, and what a request body must hold.
namespace kelm::http {

// Bodies above this are refused with 413 before they are read whole.
constexpr qint64 kMaxBodyBytes = 1024 * 1024;
constexpr qsizetype kMaxIdCharacters = 128;

struct ListenAddress {
    QHostAddress address;
    quint16 port = 0;
};

// "PORT", "ADDRESS:PORT" or "[IPv6]:PORT"; 127.0.0.1 unless an address is
// given. Empty with `error` set when the text is not one of these.
std::optional<ListenAddress> parseListenAddress(const QString& text, QString& error);

// Whether a request may go on; `status` 0 when it may.
struct Refusal {
    int status = 0;
    QString message;
    bool refused() const { return status != 0; }
};

// Bound to loopback, only panel commands need the token; bound anywhere
// else, every request does. Without a configured token panel commands are
// refused altogether. `authorization` is the request's header as sent.
Refusal checkToken(bool loopback, bool panelCommand, const QString& token, const QByteArray& authorization);

// The Host header must name the address the service is bound to (or
// "localhost" for loopback): a web page elsewhere cannot reach the till's
// service through a name of its own that points here.
Refusal checkHost(const QByteArray& host, const ListenAddress& bound);

struct ReceiptPost {
    QString id;
    QStringList lines;
};

// {"id": "...", "lines": ["...", ...]}: an id that can also name a file,
// at least one line, every line one that a frame can carry.
std::optional<ReceiptPost> parseReceiptPost(const QByteArray& body, Refusal& refusal);

// {"record": "..."}: one non-blank record that a frame can carry.
std::optional<QString> parseCommandPost(const QByteArray& body, Refusal& refusal);

// Whether the id is one a client may use.
bool validId(const QString& id);

} // namespace kelm::http
