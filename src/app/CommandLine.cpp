#include "CommandLine.h"

namespace kelm {

CommandLine ParseCommandLine(const QStringList& arguments)
{
    CommandLine cl;
    QStringList rest;
    bool sending = false;
    for (qsizetype i = 0; i < arguments.size(); ++i) {
        const QString& word = arguments[i];
        if (word == QStringLiteral("--home")) {
            if (i + 1 >= arguments.size()) {
                cl.error = QStringLiteral("--home vuole il nome di una cartella");
                return cl;
            }
            cl.home = arguments[++i];
        } else if (word == QStringLiteral("--http")) {
            if (i + 1 >= arguments.size()) {
                cl.error = QStringLiteral("--http vuole una porta, per esempio: --http 8080 o --http 127.0.0.1:8080");
                return cl;
            }
            cl.http = arguments[++i];
        } else if (word.startsWith(QStringLiteral("--home="))) {
            cl.home = word.mid(7);
        } else if (word == QStringLiteral("--help") || word == QStringLiteral("-h")) {
            cl.mode = CommandLine::Mode::Help;
        } else if (word == QStringLiteral("--headless")) {
            cl.mode = CommandLine::Mode::Headless;
        } else if (word == QStringLiteral("--verbose")) {
            cl.verbose = true;
        } else if (word == QStringLiteral("--version")) {
            cl.mode = CommandLine::Mode::Version;
        } else if (sending) {
            cl.records.append(word);
        } else if (word == QStringLiteral("send") && rest.isEmpty()) {
            sending = true;
        } else if (word.startsWith(QStringLiteral("--"))) {
            cl.error = QStringLiteral("opzione sconosciuta: %1").arg(word);
            return cl;
        } else {
            rest.append(word);
        }
    }
    if (cl.mode == CommandLine::Mode::Help || cl.mode == CommandLine::Mode::Version)
        return cl;
    if (sending) {
        cl.mode = CommandLine::Mode::Send;
        if (cl.records.isEmpty())
            cl.error = QStringLiteral("send vuole almeno un record, per esempio: send a/");
    }
    cl.testMode = rest.join(u' ').toUpper() == QStringLiteral("/TESTMODE");
    return cl;
}

QString UsageText()
{
    return QStringLiteral(
        "KelmDrev - driver and configuration tool for a fiscal cash register (ECR)\n"
        "\n"
        "Usage:\n"
        "  kelmdrev [--home DIR] [/TESTMODE]      the window: driver mode, ECR programming and\n"
        "                                          technician functions, with a tray icon\n"
        "  kelmdrev --headless [--home DIR] [--verbose] [/TESTMODE]\n"
        "                                          driver mode without a window: takes the receipt\n"
        "                                          files of the server directory until SIGINT/SIGTERM\n"
        "  kelmdrev send [--home DIR] RECORD...    send each record to the ECR and print\n"
        "                                          result <TAB> answer, one line per record\n"
        "\n"
        "Options:\n"
        "  --home DIR   folder of KelmDrev.ini and FileExt.ini (default: the program's\n"
        "               folder when writable, else the per-user configuration folder)\n"
        "  --headless   run driver mode with no window\n"
        "  --http [ADDRESS:]PORT  with the window or --headless: the local HTTP service\n"
        "               (bound to 127.0.0.1 unless an address is given; ServerHttp in\n"
        "               [Parametri] does the same, TokenHttp sets its bearer token)\n"
        "  --verbose    with --headless: print the run-time list on standard output\n"
        "  --version    print the version\n"
        "  -h, --help   this text\n"
        "  /TESTMODE    test mode: receipt files are copied, not renamed (any case)\n"
        "\n"
        "The line is set in KelmDrev.ini, section [Parametri]: Porta=N (ComN; on Linux\n"
        "/dev/ttyS(N-1)), Velocita=9600|115200|230400, or Dispositivo=PATH for any\n"
        "device (/dev/ttyUSB0, a pseudo-terminal, \\\\.\\COM12), or Dispositivo=virtual\n"
        "for the built-in virtual ECR. Modello must name a model.\n"
        "\n"
        "Exit status of send: 0 when every result is 0, 1 when any is not, 2 when the\n"
        "configuration or the port cannot be used.\n");
}

} // namespace kelm
