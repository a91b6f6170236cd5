#include "app/CommandLine.h"
#include "app/ConsoleOperator.h"
#include "app/ProgramFolder.h"
#include "app/SendCommand.h"
#include "app/ShutdownSignal.h"
#include "service/DriverSession.h"

#include <QCoreApplication>
#include <QTextStream>

namespace {

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
    op.say(QStringLiteral("KelmDrev %1: driver avviato, cartella %2").arg(QStringLiteral(KELMDREV_VERSION), folder));
    QObject::connect(&driver, &kelm::service::DriverSession::stopped, qApp, &QCoreApplication::quit);
    kelm::onShutdownSignal(qApp, [&] {
        op.say(QStringLiteral("Arresto richiesto: chiudo dopo il record in corso"));
        driver.stop();
    });
    const int status = QCoreApplication::exec();
    op.say(QStringLiteral("Driver fermato"));
    return status;
}

} // namespace

int main(int argc, char** argv)
{
    QCoreApplication app(argc, argv);
    QCoreApplication::setApplicationName(QStringLiteral("KelmDrev"));
    QCoreApplication::setApplicationVersion(QStringLiteral(KELMDREV_VERSION));

    QTextStream out(stdout);
    QTextStream err(stderr);
    const kelm::CommandLine commandLine = kelm::ParseCommandLine(app.arguments().mid(1));
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
    case kelm::CommandLine::Mode::Window:
        out << kelm::UsageText();
        return 0;
    }
    return 0;
}
