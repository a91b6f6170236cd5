// ecrsim: the virtual register on a pseudo-terminal, for trying a program
// that drives the register with no register at hand.
#include "PtyHost.h"
#include "VirtualEcr.h"

#include "link/Clock.h"

#include <QCommandLineParser>
#include <QCoreApplication>

#include <csignal>
#include <cstdio>
#include <fcntl.h>
#include <unistd.h>

namespace {

int stopPipe[2] = {-1, -1};

void requestStop(int)
{
    const char byte = 0;
    (void)!::write(stopPipe[1], &byte, 1);
}

QString helpText(const QCommandLineParser& parser)
{
    return parser.helpText()
         + QStringLiteral("\nFaults (with --fault, or as lines on standard input while running):\n")
         + kelm::sim::faultHelp()
         + QStringLiteral(
               "  Error numbers are decimal. The first argument may also follow \"=\", as in\n"
               "  --fault busy=3; a fault with a blank needs quotes: --fault \"refuse 3/ 8\".\n"
               "  Time windows (silence, paper, cover) given with --fault start with the first byte\n"
               "  the register receives; given on standard input they start at once.\n"
               "\nStandard input, one command a line:\n"
               "  any fault above    answered \"ok\" or \"error: ...\"\n"
               "  status             receipt open or not, display lines, records carried out\n"
               "  quit               stop, as SIGINT and SIGTERM do\n"
               "\nOutput: \"ready\" on standard output once the link exists; \"unplugged\" and \"replugged\"\n"
               "when the line goes away and comes back. On stop the link is removed.\n");
}

} // namespace

int main(int argc, char** argv)
{
    QCoreApplication app(argc, argv);
    QCoreApplication::setApplicationName(QStringLiteral("ecrsim"));
    QCommandLineParser parser;
    parser.setApplicationDescription(QStringLiteral(
        "Virtual fiscal cash register on a pseudo-terminal. Point the program's serial port\n"
        "(its Dispositivo key) at the link path and talk to it as to the real register."));
    const QCommandLineOption help({QStringLiteral("h"), QStringLiteral("help")}, QStringLiteral("Show this help."));
    const QCommandLineOption link(QStringLiteral("link"),
        QStringLiteral("Symbolic link to create to the pty (required)."), QStringLiteral("PATH"));
    const QCommandLineOption journal(QStringLiteral("journal"),
        QStringLiteral("Write every record carried out, one a line, as received."), QStringLiteral("FILE"));
    const QCommandLineOption paper(QStringLiteral("paper"),
        QStringLiteral("Write what the printer prints, as text."), QStringLiteral("FILE"));
    const QCommandLineOption fault(QStringLiteral("fault"),
        QStringLiteral("A fault in force from the start (repeatable); see below."), QStringLiteral("FAULT"));
    const QCommandLineOption baud(QStringLiteral("baud"),
        QStringLiteral("Pace the bytes sent at N baud, 10 bits a byte (default 0: no pacing)."), QStringLiteral("N"), QStringLiteral("0"));
    const QCommandLineOption delay(QStringLiteral("delay"),
        QStringLiteral("Milliseconds the register takes before answering a record (default 5)."), QStringLiteral("MS"), QStringLiteral("5"));
    parser.addOptions({help, link, journal, paper, fault, baud, delay});

    if (!parser.parse(QCoreApplication::arguments())) {
        std::fprintf(stderr, "ecrsim: %s\nTry ecrsim --help.\n", qPrintable(parser.errorText()));
        return 2;
    }
    if (parser.isSet(help)) {
        std::fputs(qPrintable(helpText(parser)), stdout);
        return 0;
    }
    bool baudOk = false;
    bool delayOk = false;
    kelm::sim::VirtualEcrOptions options;
    options.journalPath = parser.value(journal);
    options.paperPath = parser.value(paper);
    options.faults = parser.values(fault);
    options.baud = parser.value(baud).toInt(&baudOk);
    options.answerDelayMs = parser.value(delay).toLongLong(&delayOk);
    QStringList problems;
    if (!parser.isSet(link))
        problems << QStringLiteral("--link PATH is required");
    if (!parser.positionalArguments().isEmpty())
        problems << QStringLiteral("unexpected argument \"%1\"").arg(parser.positionalArguments().first());
    if (!baudOk || options.baud < 0)
        problems << QStringLiteral("--baud wants a whole number of 0 or more, not \"%1\"").arg(parser.value(baud));
    if (!delayOk || options.answerDelayMs < 0 || options.answerDelayMs > 60000)
        problems << QStringLiteral("--delay wants milliseconds from 0 to 60000, not \"%1\"").arg(parser.value(delay));
    if (!problems.isEmpty()) {
        std::fprintf(stderr, "ecrsim: %s\nTry ecrsim --help.\n", qPrintable(problems.join(QStringLiteral("\necrsim: "))));
        return 2;
    }

    kelm::sim::VirtualEcr ecr(options);
    if (!ecr.startError().isEmpty()) {
        std::fprintf(stderr, "ecrsim: %s\n", qPrintable(ecr.startError()));
        return 2;
    }
    if (::pipe2(stopPipe, O_CLOEXEC) != 0) {
        std::perror("ecrsim: pipe");
        return 2;
    }
    struct sigaction action {};
    action.sa_handler = requestStop;
    sigemptyset(&action.sa_mask);
    ::sigaction(SIGINT, &action, nullptr);
    ::sigaction(SIGTERM, &action, nullptr);
    std::signal(SIGPIPE, SIG_IGN);

    kelm::sim::PtyHost host(ecr);
    QString error;
    if (!host.open(parser.value(link), &error)) {
        std::fprintf(stderr, "ecrsim: %s\n", qPrintable(error));
        return 2;
    }
    std::fprintf(stderr, "ecrsim: %s -> %s\n", qPrintable(parser.value(link)), host.slaveName().constData());
    std::fputs("ready\n", stdout);
    std::fflush(stdout);

    kelm::SystemClock clock;
    host.run(stopPipe[0], STDIN_FILENO, [&](const QByteArray& line) -> QByteArray {
        if (line == "quit")
            return "quit";
        if (line == "status")
            return "receipt " + QByteArray(ecr.receiptOpen() ? "open" : "closed") + " display \""
                   + ecr.displayLine1() + "|" + ecr.displayLine2() + "\" records "
                   + QByteArray::number(ecr.journal().size()) + "\n";
        const QString e = ecr.applyFault(QString::fromLocal8Bit(line), clock.nowMs());
        return e.isEmpty() ? QByteArray("ok\n") : "error: " + e.toLocal8Bit() + "\n";
    });
    host.close();
    return 0;
}
