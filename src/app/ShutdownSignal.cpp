#include "ShutdownSignal.h"

#include <QMetaObject>
#include <QPointer>

#ifdef Q_OS_WIN
#include <windows.h>
#else
#include <QSocketNotifier>

#include <csignal>
#include <sys/socket.h>
#include <unistd.h>
#endif

namespace kelm {

#ifdef Q_OS_WIN

namespace {
QPointer<QObject> g_context;
std::function<void()> g_handler;

BOOL WINAPI consoleHandler(DWORD)
{
    if (g_context)
        QMetaObject::invokeMethod(g_context, g_handler, Qt::QueuedConnection);
    return TRUE;
}
} // namespace

void onShutdownSignal(QObject* context, std::function<void()> handler)
{
    g_context = context;
    g_handler = std::move(handler);
    SetConsoleCtrlHandler(consoleHandler, TRUE);
}

#else

namespace {
int g_pipe[2] = {-1, -1};

// Only async-signal-safe work here: one byte down the pipe.
void signalHandler(int)
{
    const char byte = 1;
    [[maybe_unused]] const auto written = ::write(g_pipe[1], &byte, 1);
}
} // namespace

void onShutdownSignal(QObject* context, std::function<void()> handler)
{
    if (::socketpair(AF_UNIX, SOCK_STREAM, 0, g_pipe) != 0)
        return;
    auto* notifier = new QSocketNotifier(g_pipe[0], QSocketNotifier::Read, context);
    QObject::connect(notifier, &QSocketNotifier::activated, context, [handler = std::move(handler)] {
        char byte = 0;
        [[maybe_unused]] const auto got = ::read(g_pipe[0], &byte, 1);
        handler();
    });
    struct sigaction action {};
    action.sa_handler = signalHandler;
    sigemptyset(&action.sa_mask);
    action.sa_flags = SA_RESTART;
    sigaction(SIGINT, &action, nullptr);
    sigaction(SIGTERM, &action, nullptr);
}

#endif

} // namespace kelm
