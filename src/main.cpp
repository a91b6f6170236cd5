#include "app/CommandLine.h"
#include "app/ConsoleOperator.h"
#include "app/ProgramFolder.h"
#include "app/SendCommand.h"
#include "app/ShutdownSignal.h"
#include "http/HttpService.h"
#include "service/DriverSession.h"
#include "ui/ItalianQt.h"
#include "ui/MainForm.h"

#include <QApplication>
#include <QTextStream>

namespace {

// The local HTTP service when --http or ServerHttp asks for it; `error` says
// why it could not start.
std::unique_ptr<kelm::http::HttpService> startHttp(const kelm::CommandLine& commandLine,
                                                   kelm::service::DriverSession& driver, const QString& folder,
                                                   QString& error)
{
    const kelm::ConfigPC& config = driver.config();
    const auto options = kelm::http::httpOptions(commandLine.http, config.httpListen, config.httpToken, folder,
                                                     config.answerDays, error);
    if (!options)
        return nullptr;
    auto service = std::make_unique<kelm::http::HttpService>(driver, *options);
    error = service->start();
    if (!error.isEmpty())
        return nullptr;
    return service;
}

int runHeadless(const kelm::CommandLine& commandLine)
{
    kelm::ConsoleOperator op(commandLine.verbose);
    const QString folder = kelm::ProgramFolder(commandLine.home);
    kelm::service::DriverSession driver({folder, commandLine.testMode, kelm::service::DriverSession::Mode::Headless}, op);
    const QString error = driver.start();
    if (!error.isEmpty()) {
        op.say(error);
        return 1;
    }
    QString httpError;
    const std::unique_ptr<kelm::http::HttpService> http = startHttp(commandLine, driver, folder, httpError);
    if (!httpError.isEmpty()) {
        op.say(httpError);
        return 1;
    }
    op.say(QStringLiteral("KelmDrev %1: driver avviato, cartella %2").arg(QStringLiteral(KELMDREV_VERSION), folder));
    if (http)
        op.say(QStringLiteral("Servizio HTTP sulla porta %1").arg(http->port()));
    QObject::connect(&driver, &kelm::service::DriverSession::stopped, QCoreApplication::instance(), &QCoreApplication::quit);
    kelm::onShutdownSignal(QCoreApplication::instance(), [&] {
        op.say(QStringLiteral("Arresto richiesto: chiudo dopo il record in corso"));
        driver.stop();
    });
    const int status = QCoreApplication::exec();
    op.say(QStringLiteral("Driver fermato"));
    return status;
}

int runWindow(const kelm::CommandLine& commandLine)
{
    QApplication::setQuitOnLastWindowClosed(false); // the tray icon keeps the driver alive
    kelm::ui::installQtItalian(*QCoreApplication::instance());
    const QString folder = kelm::ProgramFolder(commandLine.home);
    kelm::ui::MainForm form({folder, commandLine.testMode});
    if (!form.start())
        return 1;
    // Like the rest of the window's start-up, a service that cannot start
    // is reported and the window goes on.
    QString httpError;
    const std::unique_ptr<kelm::http::HttpService> http = startHttp(commandLine, form.session(), folder, httpError);
    if (!httpError.isEmpty())
        QTextStream(stderr) << httpError << Qt::endl;
    // Asked to end from outside (logout, shutdown, kill): close the port
    // cleanly, as the tray's exit does.
    kelm::onShutdownSignal(&form, [&form] { form.mnuPopEsci_Click(); });
    return QApplication::exec();
}

QStringList argumentsOf(int argc, char** argv)
{
    QStringList args;
    for (int i = 1; i < argc; ++i)
        args << QString::fromLocal8Bit(argv[i]);
    return args;
}

} // namespace

int main(int argc, char** argv)
{
    const kelm::CommandLine commandLine = kelm::ParseCommandLine(argumentsOf(argc, argv));
    // Only the window needs a display; the other modes run on any server.
    std::unique_ptr<QCoreApplication> app = commandLine.mode == kelm::CommandLine::Mode::Window
        ? std::make_unique<QApplication>(argc, argv)
        : std::make_unique<QCoreApplication>(argc, argv);
    QCoreApplication::setApplicationName(QStringLiteral("KelmDrev"));
    QCoreApplication::setApplicationVersion(QStringLiteral(KELMDREV_VERSION));

    QTextStream out(stdout);
    QTextStream err(stderr);
    if (!commandLine.error.isEmpty()) {
        err << commandLine.error << Qt::endl << Qt::endl << kelm::UsageText();
        return 2;
    }
    switch (commandLine.mode) {
    case kelm::CommandLine::Mode::Headless:
        return runHeadless(commandLine);
    case kelm::CommandLine::Mode::Send:
        return kelm::RunSendCommand(commandLine, out, err);
    case kelm::CommandLine::Mode::Version:
        out << "KelmDrev " << KELMDREV_VERSION << Qt::endl;
        return 0;
    case kelm::CommandLine::Mode::Help:
        out << kelm::UsageText();
        return 0;
    case kelm::CommandLine::Mode::Window:
        return runWindow(commandLine);
    }
    return 0;
}
