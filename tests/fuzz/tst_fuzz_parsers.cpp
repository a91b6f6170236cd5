// Every reader of register answers, receipt files and settings files fed
// with seeded random bytes: truncated, over-long and nonsense input must
// give a defined result, never a crash or a read out of bounds (the suite
// also runs under AddressSanitizer). The inputs that once found something
// are kept as fixed cases.
#include "app/Configuration.h"
#include "app/EcrIdentity.h"
#include "app/IniFile.h"
#include "app/InputItems.h"
#include "app/VatRates.h"
#include "link/CodePage.h"
#include "programming/Departments.h"
#include "programming/HeaderFooter.h"
#include "programming/PaymentTypes.h"
#include "programming/PluFile.h"
#include "programming/PluRecord.h"
#include "programming/SParameters.h"
#include "server/CommandTable.h"
#include "server/EcrState.h"
#include "server/FileMask.h"
#include "server/ItemLineRewrite.h"
#include "server/ReceiptLines.h"
#include "server/TotalsFile.h"
#include "technician/CommandConsole.h"
#include "technician/LastReceiptReprint.h"
#include "technician/VirtualDisplay.h"

#include <QRandomGenerator>
#include <QTemporaryDir>
#include <QTest>

using namespace kelm;

namespace {

constexpr int kRounds = 3000;

// Bytes that look like the register's answers and the program's files often enough to reach deep into
// the parsers: three characters in four come from the alphabet, the rest are any byte; most inputs are short.
QByteArray randomBytes(QRandomGenerator& r, const QByteArray& alphabet, int shortest, int longest)
{
    QByteArray b(int(r.bounded(r.bounded(4) ? shortest : longest)), Qt::Uninitialized);
    for (char& c : b)
        c = static_cast<char>(r.bounded(4) ? alphabet[r.bounded(alphabet.size())] : r.bounded(256));
    return b;
}

// An answer as the PC reads it (Windows-1252), half of them after a status, state and number.
QString randomAnswer(QRandomGenerator& r)
{
    const QByteArray body = randomBytes(r, "////0123456789.,- ABCxyz\t\r\n\"[]=;", 60, 2500);
    return ansi::decode(r.bounded(2) ? "00/00/01/" + body : body);
}

const QByteArray kFileAlphabet = "[]=/\r\n;\"abcK0 ";

} // namespace

class FuzzTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void answerParsers()
    {
        QRandomGenerator r(20261121);
        VatRateTable rates = unknownVatRates();
        // First the short answers that once found something: around the
        // header's end and the display's bounds.
        const QStringList kept{QString(), QStringLiteral("00/00/01/"), QStringLiteral("00/00/01/") + QString(33, u'x'),
                               QString(40, u'/'), QStringLiteral("00/00/01/ab\u0000cd/ef/")};
        for (int round = 0; round < kRounds; ++round) {
            const QString a = round < kept.size() ? kept[round] : randomAnswer(r);
            parseIdentity(a);
            parseVatRates(a);
            programming::parseDepartment(a);
            programming::parsePlu(a);
            programming::parsePaymentType(a);
            programming::parseSParameters(a);
            programming::restoredLine(a);
            if (const auto lines = technician::displayLines(a)) {
                QVERIFY(a.size() >= 43);
                QCOMPARE(lines->line1.size(), 16);
                QCOMPARE(lines->line2.size(), 16);
            }
            technician::displayReadsZero(a);
            technician::reprintStepsAfter(a);
            technician::consoleAnswerText(a);
            server::totalsText(a);
            server::answerStatus(a);
            server::statusByteFromAnswer(a);
            server::paperOutAfter(a, round % 2);
            rates[static_cast<size_t>(round % kVatTableSize)] = qint32(r.bounded(100)) - 1;
            server::rewriteItemLine(QStringLiteral("3/") + a, {true, true, {int(r.bounded(40)) - 5, 30}, rates});
            const server::CommandDecision d = server::decideCommand(a, round % 2);
            QVERIFY(d.action != server::CommandAction::Send || !d.record.isEmpty() || a.isEmpty());
            server::NormalizeCustomerRecord(QStringLiteral("j/") + a);
            server::matchesFileMask(server::parseFileMask(a.left(12)), a.mid(12, 30));
        }
    }
    // Receipt files, command files, PLU files and settings files.
    void files()
    {
        QRandomGenerator r(7);
        QTemporaryDir dir;
        const QString path = dir.filePath(QStringLiteral("KelmDrev.ini"));
        for (int round = 0; round < kRounds / 3; ++round) {
            const QByteArray bytes = randomBytes(r, kFileAlphabet, 200, 20000);
            const QStringList lines = server::splitReceiptLines(bytes);
            for (const QString& line : lines) {
                QVERIFY(!line.contains(u'\r') && !line.contains(u'\n')); // never sent
                if (const auto normalized = server::normalizeQueueLine(line))
                    QVERIFY(normalized->endsWith(u'/'));
            }
            readInputItems(bytes);
            LoadForbiddenExtensions(bytes);
            programming::loadPluFile(bytes);
            technician::commandFileRecords(bytes);
            if (round % 3)
                continue;
            QFile f(path);
            QVERIFY(f.open(QIODevice::WriteOnly | QIODevice::Truncate));
            f.write(bytes);
            f.close();
            const IniFile ini(path);
            ini.read(QStringLiteral("Parametri"), QStringLiteral("Modello"), QString(), 64);
            // Whatever the file held, a key written reads back.
            const QString value = QStringLiteral("v%1 ; , \\ x").arg(round);
            QVERIFY(ini.write(QStringLiteral("Parametri"), QStringLiteral("Porta"), value));
            QCOMPARE(ini.read(QStringLiteral("parametri"), QStringLiteral("porta"), QString(), 255), value);
        }
    }
};

QTEST_APPLESS_MAIN(FuzzTest)
#include "tst_fuzz_parsers.moc"
