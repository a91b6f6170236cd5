#include "ui/RunningWindow.h"

#include <QCryptographicHash>
#include <QDir>
#include <QLocalServer>
#include <QLocalSocket>

namespace kelm::ui {

namespace {

constexpr int kConnectMs = 1000;

// One name per program folder, as the instance lock is.
QString serverName(const QString& programFolder)
{
    const QByteArray path = QDir(programFolder).absolutePath().toUtf8();
    return QStringLiteral("kelmdrev-")
        + QString::fromLatin1(QCryptographicHash::hash(path, QCryptographicHash::Sha1).toHex().left(16));
}

} // namespace

RunningWindow::RunningWindow(const QString& programFolder, std::function<void()> bringForward, QObject* parent)
    : QObject(parent), server_(new QLocalServer(this))
{
    // The instance lock is ours: a name left by a crashed run is stale.
    const QString name = serverName(programFolder);
    QLocalServer::removeServer(name);
    server_->listen(name);
    connect(server_, &QLocalServer::newConnection, this, [this, bringForward = std::move(bringForward)] {
        // Being called is the whole message.
        while (QLocalSocket* socket = server_->nextPendingConnection()) {
            socket->deleteLater();
            bringForward();
        }
    });
}

bool RunningWindow::callForward(const QString& programFolder)
{
    QLocalSocket socket;
    socket.connectToServer(serverName(programFolder));
    if (!socket.waitForConnected(kConnectMs))
        return false;
    socket.disconnectFromServer();
    return true;
}

} // namespace kelm::ui
