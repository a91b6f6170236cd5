#include "app/CommandLine.h"
#include "app/SendCommand.h"

#include <QCoreApplication>
#include <QTextStream>

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
