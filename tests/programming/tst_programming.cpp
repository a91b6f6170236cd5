// The ECR programming rules: record fields and numbers, header and footer,
// PLU records and file, S-parameters, scrolling messages, VAT rates,
// departments, payment types, what each download index does, asks and
// reports; and downloads against the virtual register in virtual time.
#include "RecordingOperator.h"
#include "app/VatRates.h"
#include "link/Clock.h"
#include "link/PanelCommand.h"
#include "link/VirtualLinePort.h"
#include "programming/Departments.h"
#include "programming/DownloadJob.h"
#include "programming/Downloads.h"
#include "programming/HeaderFooter.h"
#include "programming/Numbers.h"
#include "programming/PaymentTypes.h"
#include "programming/PluFile.h"
#include "programming/PrintLine.h"
#include "programming/RecordFields.h"
#include "programming/SParameters.h"
#include "programming/ScrollMessages.h"
#include "programming/VatRateRecord.h"
#include "sim/VirtualEcr.h"

#include <QTemporaryDir>
#include <QTest>

using namespace kelm;
using namespace kelm::programming;
using Button = Operator::Button;
using Icon = Operator::Icon;

namespace {

QString blanks(qsizetype n)
{
    return QString(n, u' ');
}

PluRow row(const QStringList& cells)
{
    PluRow r;
    for (qsizetype i = 0; i < cells.size() && i < kPluColumns; ++i)
        r[size_t(i)] = cells[i];
    return r;
}

PluRow row(const QString& line)
{
    return row(line.split(u'/'));
}

PaymentFlags flagsOf(const QString& digits)
{
    PaymentFlags flags{};
    for (qsizetype k = 0; k < digits.size() && k < kPaymentFlags; ++k)
        flags[size_t(k)] = digits[k] == u'1';
    return flags;
}

const QByteArray kExampleLine = "8001234567890/ACQUA 1L/1/0/0.5/0/100/00000000/12/6/";
const QString kResetRecord = "S/00001100001000000001000000/999999/999999/1000000/99999999/0/0/0/1/CASSA -1/"
                             "27/27/27/27/27/27/27/27/27/29/29/29/29/29/29/29/29/29/8/0/";

} // namespace

class ProgrammingTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void texts_data();
    void texts();
    void paddedLine_data();
    void paddedLine();
    void headerAndFooterRecords();
    void restoredLine_data();
    void restoredLine();
    void receiptLinesInTheSettingsFile();
    void pluRecord_data();
    void pluRecord();
    void parsePlu_data();
    void parsePlu();
    void surplusScan_data();
    void surplusScan();
    void pluFileSaved();
    void pluFileLoaded_data();
    void pluFileLoaded();
    void sParametersRecord_data();
    void sParametersRecord();
    void parseSParameters_data();
    void parseSParameters();
    void scrollMessages();
    void parseVatRates_data();
    void parseVatRates();
    void paymentTypeRecord_data();
    void paymentTypeRecord();
    void parsePaymentType_data();
    void parsePaymentType();
    void branches_data();
    void branches();
    void questions_data();
    void questions();
    void failure_data();
    void failure();
    void downloadOnTheRegister_data();
    void downloadOnTheRegister();
    void pluRowsComeAsTheyAreRead();
};

void ProgrammingTest::texts_data()
{
    QTest::addColumn<QString>("rule");
    QTest::addColumn<QStringList>("input");
    QTest::addColumn<QString>("expected");
    QTest::newRow("trimmed") << "fieldText" << QStringList{"  CONTANTI  ", "8"} << "CONTANTI";
    QTest::newRow("any width") << "fieldText" << QStringList{"  A LONG FREE TEXT ", "-1"} << "A LONG FREE TEXT";
    QTest::newRow("longer keeps its end") << "fieldText" << QStringList{"CASSA CENTRALE", "8"} << "CENTRALE";
    QTest::newRow("blank at the cut is trimmed") << "fieldText" << QStringList{"CARTA DI CREDITO", "8"} << "CREDITO";
    QTest::newRow("trailing blanks do not count") << "fieldText" << QStringList{"CASSA1   ", "6"} << "CASSA1";
    QTest::newRow("slash made backslash") << "fieldText" << QStringList{"A/B", "-1"} << "A\\B";
    QTest::newRow("tab is not a blank") << "fieldText" << QStringList{"\tA", "-1"} << "\tA";
    QTest::newRow("closed fields") << "answerFields" << QStringList{"00/00/01/A/B/C/"} << "A|B|C";
    QTest::newRow("empty fields kept") << "answerFields" << QStringList{"00/00/01//B//"} << "|B|";
    QTest::newRow("unclosed takes the rest") << "answerFields" << QStringList{"00/00/01/A/BC"} << "A|BC|";
    QTest::newRow("fewer than asked") << "answerFields" << QStringList{"00/00/01/A/"} << "A||";
    QTest::newRow("more than asked") << "answerFields" << QStringList{"00/00/01/A/B/C/D/E/"} << "A|B|C";
    QTest::newRow("short answer") << "answerFields" << QStringList{"00"} << "||";
    QTest::newRow("trailing zeros") << "numbers" << QStringList{"1.50"} << "1.5 1";
    QTest::newRow("decimal comma stops") << "numbers" << QStringList{"2,50"} << "2 2";
    QTest::newRow("no digits") << "numbers" << QStringList{"abc"} << "0 0";
    QTest::newRow("leading zeros") << "numbers" << QStringList{"007"} << "7 7";
    QTest::newRow("point first") << "numbers" << QStringList{".5"} << "0.5 0";
    QTest::newRow("zero fraction") << "numbers" << QStringList{"0.00"} << "0 0";
    QTest::newRow("three decimals") << "numbers" << QStringList{"999999.999"} << "999999.999 999999";
    QTest::newRow("negative") << "numbers" << QStringList{"-12.30"} << "-12.3 -12";
    QTest::newRow("negative zero") << "numbers" << QStringList{"-0.0"} << "0 0";
    QTest::newRow("negative below one") << "numbers" << QStringList{"-0.5"} << "-0.5 0";
    QTest::newRow("leading blanks") << "numbers" << QStringList{"  42x"} << "42 42";
    QTest::newRow("long number keeps its digits") << "numbers" << QStringList{"12345678901234567890.123456789"} << "12345678901234567890.123456789 12345678901234567890";
    QTest::newRow("first") << "departmentRecord" << QStringList{"1", "REPARTO1", "0"} << "D/1/REPARTO1/1//////";
    QTest::newRow("last code") << "departmentRecord" << QStringList{"20", " FRUTTA ", "4"} << "D/20/FRUTTA/5//////";
    QTest::newRow("no selection sends 0") << "departmentRecord" << QStringList{"7", "PANE", "-1"} << "D/7/PANE/0//////";
    QTest::newRow("index past the list sends 0") << "departmentRecord" << QStringList{"8", "X", "5"} << "D/8/X/0//////";
    QTest::newRow("slash in the text") << "departmentRecord" << QStringList{"3", "BAR/CAFFE", "1"} << "D/3/BAR\\CAFFE/2//////";
    QTest::newRow("placeholder-like text") << "departmentRecord" << QStringList{"4", "50%1 %2", "2"} << "D/4/50%1 %2/3//////";
    QTest::newRow("well formed") << "parseDepartment" << QStringList{"00/00/01/REPARTO1/1/"} << "REPARTO1 0";
    QTest::newRow("trimmed, code 5") << "parseDepartment" << QStringList{"00/00/01/  PANE  /5/0/0/"} << "PANE 4";
    QTest::newRow("code 0 is no selection") << "parseDepartment" << QStringList{"00/00/01/VARIE/0/"} << "VARIE -1";
    QTest::newRow("code past the list") << "parseDepartment" << QStringList{"00/00/01/VARIE/9/"} << "VARIE -1";
    QTest::newRow("only the first character counts") << "parseDepartment" << QStringList{"00/00/01/VARIE/12/"} << "VARIE 0";
    QTest::newRow("code not a digit") << "parseDepartment" << QStringList{"00/00/01/VARIE/A/"} << "VARIE -1";
    QTest::newRow("no slash: the rest") << "parseDepartment" << QStringList{"00/00/01/VARIE"} << "VARIE -1";
    QTest::newRow("truncated") << "parseDepartment" << QStringList{"00"} << " -1";
}

// Rules from texts to a text, by name: fieldText (text, width), answerFields
// (three fields, joined by "|"), numbers (decimal and whole forms),
// departmentRecord (number, description, VAT index), parseDepartment
// (description and VAT index).
void ProgrammingTest::texts()
{
    QFETCH(QString, rule);
    QFETCH(QStringList, input);
    const QString in = input[0];
    const auto number = [&](int k) { return input[k].toInt(); };
    QTEST(rule == "fieldText"          ? fieldText(in, number(1))
              : rule == "answerFields" ? answerFields(in, 3).join(u'|')
              : rule == "numbers"      ? decimalForm(in) + u' ' + wholeNumberForm(in)
              : rule == "departmentRecord"
              ? departmentRecord(number(0), {input[1], number(2)})
              : parseDepartment(in).description + u' ' + QString::number(parseDepartment(in).vatIndex),
          "expected");
}

void ProgrammingTest::paddedLine_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<int>("size");
    QTest::addColumn<int>("align");
    QTest::addColumn<QString>("expected");
    const QString bar = "BAR CENTRALE", twenty = "ABCDEFGHIJKLMNOPQRST", thirtyOne(31, u'X');
    QTest::newRow("centred, normal") << bar << 0 << 2 << blanks(10) + bar + blanks(10);
    QTest::newRow("centred, odd room") << "ABC" << 0 << 2 << blanks(14) + "ABC" + blanks(15);
    QTest::newRow("centred in double width") << "ABCD" << 2 << 2 << blanks(6) + "ABCD" + blanks(6);
    QTest::newRow("right") << bar << 0 << 1 << blanks(20) + bar;
    QTest::newRow("right trims first") << "  AB  " << 0 << 1 << blanks(30) + "AB";
    QTest::newRow("too long, left keeps the start") << twenty << 2 << 0 << twenty.left(16);
    QTest::newRow("too long, centred keeps the start") << twenty << 3 << 2 << twenty.left(16);
    QTest::newRow("too long, right keeps the end") << twenty << 2 << 1 << twenty.right(16);
    QTest::newRow("31 centred is left-aligned") << thirtyOne << 0 << 2 << thirtyOne + " ";
    QTest::newRow("empty") << "" << 0 << 2 << blanks(32);
    QTest::newRow("no size selected is 32 wide") << "A" << -1 << 0 << "A" + blanks(31);
    QTest::newRow("unknown alignment is left") << "A" << 2 << -1 << "A" + blanks(15);
}

void ProgrammingTest::paddedLine()
{
    QFETCH(QString, text);
    QFETCH(int, size);
    QFETCH(int, align);
    QTEST(programming::paddedLine(text, size, align), "expected");
}

void ProgrammingTest::headerAndFooterRecords()
{
    QList<HeaderLine> header(kHeaderLines, HeaderLine{});
    header[0] = {"BAR CENTRALE", 0, 2};
    header[3] = {"   ", 2, 0}; // blanks only: still an empty field
    header[4] = {"P.IVA 01/23", -1, 1};
    header[11] = {"GRAZIE", 3, 0};
    QCOMPARE(headerRecord(header), "H/1/" + blanks(10) + "BAR CENTRALE" + blanks(10) + "/1//1//3//0/" + blanks(21)
                                       + "P.IVA 01\\23/1//1//1//1//1//1//4/GRAZIE" + blanks(10) + "/");
    QList<HeaderLine> footer(kFooterLines, HeaderLine{});
    footer[1] = {QString(), 2, 0};
    footer[2] = {"ARRIVEDERCI", 1, 1};
    QCOMPARE(footerRecord(footer), "F/1/" + blanks(32) + "/3/" + blanks(16) + "/2/" + blanks(21) + "ARRIVEDERCI/");
}

void ProgrammingTest::restoredLine_data()
{
    QTest::addColumn<QString>("value");
    QTest::addColumn<int>("fields"); // set in order: alignment, size, text
    QTest::addColumn<HeaderLine>("line");
    QTest::newRow("centred, normal") << "20BAR CENTRALE" << 3 << HeaderLine{"BAR CENTRALE", 0, 2};
    QTest::newRow("right, double both") << "13X" << 3 << HeaderLine{"X", 3, 1};
    QTest::newRow("saved empty") << "00" << 0 << HeaderLine{};
    QTest::newRow("alignment out of list") << "30ABC" << 0 << HeaderLine{};
    QTest::newRow("size out of list: alignment only") << "14ABC" << 1 << HeaderLine{"ABC", 4, 1};
    QTest::newRow("non-digit reads 0") << "x1ABC" << 3 << HeaderLine{"ABC", 1, 0};
}

void ProgrammingTest::restoredLine()
{
    QFETCH(QString, value);
    const RestoredLine r = programming::restoredLine(value);
    QTEST(r.fields, "fields");
    if (r.fields > 0)
        QTEST(r.line, "line");
}

void ProgrammingTest::receiptLinesInTheSettingsFile()
{
    QTemporaryDir dir;
    const IniFile ini(dir.filePath("KelmDrev.ini"));
    QList<HeaderLine> header(kHeaderLines, HeaderLine{}), footer(kFooterLines, HeaderLine{});
    header[0] = {"  BAR CENTRALE ", 0, 2};
    header[11] = {"VIA ROMA 1/A", 3, -1};
    footer[2] = {"CIAO", 1, 1};
    QVERIFY(saveReceiptLines(ini, ReceiptLines::Header, header));
    QVERIFY(saveReceiptLines(ini, ReceiptLines::Footer, footer));
    QCOMPARE(ini.read("Intestazioni", "Head1", "-", 256), QStringLiteral("20BAR CENTRALE"));
    QCOMPARE(ini.read("Intestazioni", "Head2", "-", 256), QStringLiteral("00"));
    QCOMPARE(ini.read("Intestazioni", "Head12", "-", 256), QStringLiteral("03VIA ROMA 1\\A"));
    QCOMPARE(ini.read("Intestazioni", "Foot3", "-", 256), QStringLiteral("11CIAO"));
    const auto loaded = loadReceiptLines(ini, ReceiptLines::Header);
    QCOMPARE(loaded[0].line, (HeaderLine{"BAR CENTRALE", 0, 2}));
    QCOMPARE(loaded[1].fields, 0);
    QCOMPARE(loaded[11].line, (HeaderLine{"VIA ROMA 1\\A", 3, 0}));
    QCOMPARE(loadReceiptLines(ini, ReceiptLines::Footer)[2], (RestoredLine{{"CIAO", 1, 1}, 3}));
}

void ProgrammingTest::pluRecord_data()
{
    QTest::addColumn<int>("number");
    QTest::addColumn<QString>("cells");
    QTest::addColumn<QString>("expected");
    QTest::newRow("example") << 1 << "8001234567890/ACQUA 1L/1/0/0.50/0/100/00000000"
                             << "P/1/8001234567890/ACQUA 1L/1/0/0.5/0/100/00000000/";
    QTest::newRow("decimal comma cut") << 2 << "A/B/01//2,50/3.00/x/00000001" << "P/2/A/B/1/0/2/3/0/00000001/";
    QTest::newRow("counters never sent") << 3 << "C/ D /1/0/1/1/1/00000000/12/6" << "P/3/C/ D /1/0/1/1/1/00000000/";
    QTest::newRow("slash in a cell") << 4 << "C/1|2 KG/1/0/1/1/1/00000000" << "P/4/C/1\\2 KG/1/0/1/1/1/00000000/";
}

void ProgrammingTest::pluRecord()
{
    QFETCH(int, number);
    QFETCH(QString, cells);
    QTEST(programming::pluRecord(number, row(cells.split(u'/').replaceInStrings("|", "/"))), "expected");
    // The grid shows the numbers as they were sent, the texts as typed.
    QCOMPARE(withNormalisedNumbers(row("007/0.50/2,50/1.50/x/10.0/0.00/0.50/9.90/5,5")),
             row("007/0.50/2/1.5/0/10/0/0.50/9.90/5,5"));
}

void ProgrammingTest::parsePlu_data()
{
    QTest::addColumn<QString>("answer");
    QTest::addColumn<QString>("cells");
    QTest::newRow("fields in the answer's order") << "00/00/01/8001234567890/ ACQUA 1L /1/0/00000000/X/0.50/0/100.0/12/6.00/a/b/c/"
                                                  << "8001234567890/ACQUA 1L/1/0/0.5/0/100/00000000/12/6";
    QTest::newRow("free number") << "00/00/01//////////////" << "////0/0/0//0/0";
    QTest::newRow("truncated after the flags") << "00/00/01/C/D/1/0/00000000" << "C/D/1/0/0/0/0/00000000/0/0";
    QTest::newRow("status only") << "00" << "////0/0/0//0/0";
}

void ProgrammingTest::parsePlu()
{
    QFETCH(QString, answer);
    QFETCH(QString, cells);
    QCOMPARE(programming::parsePlu(answer), row(cells));
}

void ProgrammingTest::surplusScan_data()
{
    QTest::addColumn<int>("gridRows");
    QTest::addColumn<QList<int>>("held"); // PLU numbers the register holds
    QTest::addColumn<int>("lastProbed");
    QTest::addColumn<QList<int>>("deleted");
    QTest::newRow("3 rows, register holds 1..12")
        << 3 << QList<int>{1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12} << 22 << QList<int>{4, 5, 6, 7, 8, 9, 10, 11, 12};
    QTest::newRow("gap of 10 keeps what lies beyond") << 2 << QList<int>{3, 14} << 13 << QList<int>{3};
    QTest::newRow("gap of 9 is crossed") << 2 << QList<int>{3, 13} << 23 << QList<int>{3, 13};
    QTest::newRow("nothing beyond the grid") << 5 << QList<int>{} << 15 << QList<int>{};
    QTest::newRow("stops before 9000") << 8995 << QList<int>{8996, 8997, 8998, 8999, 9000} << 8999
                                       << QList<int>{8996, 8997, 8998, 8999};
    QTest::newRow("grid already full") << 8999 << QList<int>{9000} << 0 << QList<int>{};
}

void ProgrammingTest::surplusScan()
{
    QFETCH(int, gridRows);
    QFETCH(QList<int>, held);
    SurplusPluScan scan(gridRows);
    int lastProbed = 0;
    QList<int> deleted;
    while (!scan.finished()) {
        lastProbed = scan.number();
        if (scan.probed(held.contains(lastProbed) ? " 800123 " : "  "))
            deleted.append(lastProbed);
    }
    QTEST(lastProbed, "lastProbed");
    QTEST(deleted, "deleted");
}

void ProgrammingTest::pluFileSaved()
{
    QCOMPARE(pluFileBytes({row(QString::fromLatin1(kExampleLine)), row(QStringList{"CAFFÈ", "1/2 TAZZA"})}),
             kExampleLine + "\r\nCAFF\xC8/1\\2 TAZZA/////////\r\n");
    QCOMPARE(pluFileBytes({}), QByteArray());
    QByteArray many = (kExampleLine + "\r\n").repeated(kPluFileMaxLines) + "ONE MORE LINE, NEVER READ\r\n";
    const PluFileLoad load = loadPluFile(many);
    QCOMPARE(load.rows.size(), kPluFileMaxLines);
    QVERIFY(load.oddLines.isEmpty());
}

void ProgrammingTest::pluFileLoaded_data()
{
    QTest::addColumn<QByteArray>("bytes");
    QTest::addColumn<int>("rows");
    QTest::addColumn<QString>("first"); // code and flags of the first row
    QTest::addColumn<QList<int>>("oddLines");
    const QString example = "8001234567890 00000000";
    QTest::newRow("saved line") << kExampleLine + "\r\n" << 1 << example << QList<int>();
    QTest::newRow("eight fields, no final slash, LF")
        << QByteArray("A/ACQUA 1L/1/0/0.5/0/100/00000001\nB/PANE/2/0/1/0/5/00000000\n") << 2 << "A 00000001" << QList<int>();
    QTest::newRow("15 characters are skipped") << "123456789012345\r\n" + kExampleLine << 1 << example << QList<int>();
    QTest::newRow("16 characters are a row of one field") << QByteArray("1234567890123456\r\n") << 1 << "1234567890123456 "
                                                          << QList<int>{1};
    QTest::newRow("seven fields on line 2 are loaded too")
        << "A/ACQUA 1L/1/0/0.5/0/100/\r\n" + kExampleLine << 2 << "A " << QList<int>{1};
    QTest::newRow("eleven fields: the first eight") << kExampleLine + "X/\r\n" << 1 << example << QList<int>{1};
    QTest::newRow("blank lines are skipped") << "\r\n\r\n" + kExampleLine + "\r\n\r\n" << 1 << example << QList<int>();
    QTest::newRow("Windows-1252") << QByteArray("CAFF\xC8/TAZZA/1/0/1/0/5/00000000/") << 1 << "CAFFÈ 00000000" << QList<int>();
    QTest::newRow("empty file") << QByteArray() << 0 << "" << QList<int>();
}

void ProgrammingTest::pluFileLoaded()
{
    QFETCH(QByteArray, bytes);
    QFETCH(int, rows);
    const PluFileLoad load = loadPluFile(bytes);
    QCOMPARE(load.rows.size(), rows);
    QTEST(load.oddLines, "oddLines");
    if (rows > 0) {
        QTEST(load.rows[0][0] + u' ' + load.rows[0][7], "first");
        QVERIFY(load.rows[0][8].isEmpty() && load.rows[0][9].isEmpty());
    }
}

void ProgrammingTest::sParametersRecord_data()
{
    QTest::addColumn<int>("flag0");
    QTest::addColumn<QString>("number");
    QTest::addColumn<QString>("name");
    QTest::addColumn<QString>("weight0");
    QTest::addColumn<QString>("intensity");
    QTest::addColumn<QString>("expected");
    // The reset record with the fields that each case changes.
    const auto with = [](const QString& flag0, const QString& numberAndName, const QString& weight0, const QString& intensity) {
        return "S/" + flag0 + "0001100001000000001000000/999999/999999/1000000/99999999/0/0/0/" + numberAndName + "/"
            + weight0 + "/27/27/27/27/27/27/27/27/29/29/29/29/29/29/29/29/29/" + intensity + "/0/";
    };
    QTest::newRow("the reset record") << 0 << "1" << "CASSA -1" << "27" << "8" << kResetRecord;
    QTest::newRow("no selection sends 0") << -1 << "1" << "CASSA -1" << "27" << "8" << with("0", "1/CASSA -1", "27", "8");
    QTest::newRow("two-digit index sends its last digit") << 12 << "1" << "CASSA -1" << "27" << "8"
                                                          << with("2", "1/CASSA -1", "27", "8");
    QTest::newRow("name keeps its last 8") << 0 << "1" << "CASSA CENTRALE" << "27" << "8" << with("0", "1/CENTRALE", "27", "8");
    QTest::newRow("number keeps its last 3") << 0 << " 12345 " << "CASSA -1" << "27" << "8" << with("0", "345/CASSA -1", "27", "8");
    QTest::newRow("bar code keeps 2, intensity 3") << 0 << "1" << "X/Y" << "123" << "1234" << with("0", "1/X\\Y", "23", "234");
}

void ProgrammingTest::sParametersRecord()
{
    QFETCH(int, flag0);
    QFETCH(QString, number);
    QFETCH(QString, name);
    QFETCH(QString, weight0);
    QFETCH(QString, intensity);
    SParameters p = programming::parseSParameters(defaultSParametersAnswer());
    for (qsizetype i = kSFlagsSent; i < kSFlagCount; ++i)
        QCOMPARE(p.flags[size_t(i)], 0);
    p.flags[0] = flag0;
    p.flags[29] = 7; // shown, never sent
    p.registerNumber = number;
    p.registerName = name;
    p.barcodeWeight[0] = weight0;
    p.printerIntensity = intensity;
    QTEST(programming::sParametersRecord(p), "expected");
}

void ProgrammingTest::parseSParameters_data()
{
    QTest::addColumn<QString>("answer");
    QTest::addColumn<QList<int>>("firstFlags");
    QTest::addColumn<QString>("maximum0");
    QTest::addColumn<QString>("name");
    QTest::addColumn<QString>("payRate");
    QTest::newRow("flags only") << "00/00/01/12x9/" << QList<int>{1, 2, 0, 9, 0} << "0" << "" << "";
    QTest::newRow("cut in the maximums") << "00/00/01/1/12.5/7" << QList<int>{1, 0, 0, 0, 0} << "12" << "" << "";
    QTest::newRow("status only") << "00" << QList<int>{0, 0, 0, 0, 0} << "0" << "" << "";
    QTest::newRow("thirty-one fields") << defaultSParametersAnswer() + "/EXTRA/" << QList<int>{0, 0, 0, 0, 1} << "999999"
                                       << "CASSA -1" << "0";
}

void ProgrammingTest::parseSParameters()
{
    QFETCH(QString, answer);
    QFETCH(QList<int>, firstFlags);
    const SParameters p = programming::parseSParameters(answer);
    for (qsizetype i = 0; i < firstFlags.size(); ++i)
        QCOMPARE(p.flags[size_t(i)], firstFlags[i]);
    QCOMPARE(p.flags[kSFlagCount - 1], 0);
    QTEST(p.maximums[0], "maximum0");
    QTEST(p.registerName, "name");
    QTEST(p.payRateCode, "payRate");
}

void ProgrammingTest::scrollMessages()
{
    QCOMPARE(scrollMessageRecord("  BENVENUTI  "), QStringLiteral("o/BENVENUTI/"));
    QCOMPARE(scrollMessageRecord(""), QStringLiteral("o//"));
    QCOMPARE(scrollMessageRecord("SALDI 1/2"), QStringLiteral("o/SALDI 1\\2/"));
    QTemporaryDir dir;
    const IniFile ini(dir.filePath("KelmDrev.ini"));
    QVERIFY(ini.write("Messaggi", "Msg1", "EARLIER"));
    QVERIFY(saveScrollMessage(ini, 2, " SALDI " + QString(100, u'X')));
    QVERIFY(!saveScrollMessage(ini, 10, "NONE"));
    const auto messages = loadScrollMessages(ini);
    QCOMPARE(messages[0], QStringLiteral("EARLIER"));
    QCOMPARE(messages[1], QString());
    QCOMPARE(messages[2], ("SALDI " + QString(100, u'X')).left(95));
    QCOMPARE(messages[9], QString());
    QCOMPARE(ini.read("Messaggi", "Msg11", "-", 96), QStringLiteral("-"));
}

void ProgrammingTest::parseVatRates_data()
{
    QTest::addColumn<QString>("answer");
    QTest::addColumn<QStringList>("texts");
    QTest::addColumn<QList<int>>("table"); // entries 0..5
    QTest::newRow("five rates") << "00/00/01/4.00/10.50/22.00/0.00/11.5/" << QStringList{"4.00", "10.50", "22.00", "0.00", "11.5"}
                                << QList<int>{4, 10, 22, 0, 12, -1};
    QTest::newRow("short answer: every rate its text") << "00/00/01/4.00/22" << QStringList{"4.00", "22", "", "", ""}
                                                       << QList<int>{4, 22, 0, 0, 0, -1};
    QTest::newRow("header only") << "00/00/01/" << QStringList{"", "", "", "", ""} << QList<int>{0, 0, 0, 0, 0, -1};
}

void ProgrammingTest::parseVatRates()
{
    QFETCH(QString, answer);
    const VatRatesRead read = kelm::parseVatRates(answer);
    QTEST(QStringList(read.texts.begin(), read.texts.end()), "texts");
    QTEST(QList<int>(read.table.begin(), read.table.begin() + 6), "table");
    QCOMPARE(vatRatesRecord({"4.00", " 10.00 ", "22.00", "0.00", ""}), QStringLiteral("b/4.00/10.00/22.00/0.00//"));
}

void ProgrammingTest::paymentTypeRecord_data()
{
    QTest::addColumn<int>("number");
    QTest::addColumn<QStringList>("texts"); // description, short description, flags, rate, mark-up
    QTest::addColumn<bool>("active");
    QTest::addColumn<bool>("credit");
    QTest::addColumn<QString>("expected");
    QTest::newRow("cash") << 1 << QStringList{"CONTANTI", "CONT", "10000001", "0", "0"} << true << false
                          << "Y/1/CONTANTI/CONT/10000001/0/0//1/0/";
    QTest::newRow("last characters kept") << 2 << QStringList{"CARTA DI CREDITO", " CARTA ", "00100000", "12345", " 1.5 "}
                                          << false << true << "Y/2/CREDITO/ARTA/00100000/2345/1.5//0/1/";
    QTest::newRow("all flags, slash") << 9 << QStringList{"BUONI/PASTO", "B/P", "11111111", "", ""} << true << true
                                      << "Y/9/NI\\PASTO/B\\P/11111111////1/1/";
}

void ProgrammingTest::paymentTypeRecord()
{
    QFETCH(int, number);
    QFETCH(QStringList, texts);
    QFETCH(bool, active);
    QFETCH(bool, credit);
    const PaymentType p{texts[0], texts[1], active, credit, flagsOf(texts[2]), texts[3], texts[4]};
    QTEST(programming::paymentTypeRecord(number, p), "expected");
}

void ProgrammingTest::parsePaymentType_data()
{
    QTest::addColumn<QString>("answer");
    QTest::addColumn<QStringList>("read"); // description, short, flags, rate, change, mark-up
    QTest::newRow("answer order") << "00/00/01/CONTANTI/CONT/10000001/1.00/x/y/z/0.50/3/r/s/"
                                  << QStringList{"CONTANTI", "CONT", "10000001", "1.00", "0.50", "3"};
    QTest::newRow("flag 1 only") << "00/00/01/A/B/1/" << QStringList{"A", "B", "10000000", "", "", ""};
    QTest::newRow("not a 1 clears") << "00/00/01/A/B/2Y011x1/" << QStringList{"A", "B", "00011010", "", "", ""};
    QTest::newRow("truncated") << "00/0" << QStringList{"", "", "00000000", "", "", ""};
}

void ProgrammingTest::parsePaymentType()
{
    QFETCH(QString, answer);
    QFETCH(QStringList, read);
    const PaymentTypeRead p = programming::parsePaymentType(answer);
    QCOMPARE(p.flags, flagsOf(read[2]));
    QCOMPARE((QStringList{p.description, p.shortDescription, read[2], p.exchangeRate, p.change, p.markUp}), read);
}

void ProgrammingTest::branches_data()
{
    QTest::addColumn<int>("index");
    QTest::addColumn<DownloadTable>("table");
    QTest::addColumn<bool>("recordByRecord");
    QTest::addColumn<QString>("success");
    QTest::newRow("0") << 0 << DownloadTable::Header << false << "Intestazione Scaricata";
    QTest::newRow("1") << 1 << DownloadTable::Footer << false << "Piede di scontrino scaricato";
    QTest::newRow("2") << 2 << DownloadTable::Logo << false << "Logo Scaricato, ricordarsi di attivarlo";
    QTest::newRow("3") << 3 << DownloadTable::Departments << true << "Reparti scaricati";
    QTest::newRow("4") << 4 << DownloadTable::Plu << true << "PLU scaricate";
    QTest::newRow("5") << 5 << DownloadTable::Nothing << false << "";
    QTest::newRow("6") << 6 << DownloadTable::PaymentTypes << true << "Tabella pagamenti scaricate";
    QTest::newRow("7") << 7 << DownloadTable::ScrollMessage << false << "Messaggio Scorrevole scaricato\rRicordarsi di attivarlo";
    QTest::newRow("8") << 8 << DownloadTable::Nothing << false << "";
    QTest::newRow("9") << 9 << DownloadTable::SParameters << false << "Parametri S scaricati";
    QTest::newRow("10") << 10 << DownloadTable::VatRates << false << "Aliquote IVA scaricate";
    QTest::newRow("11") << 11 << DownloadTable::Unknown << false << "";
    QTest::newRow("-1") << -1 << DownloadTable::Unknown << false << "";
}

void ProgrammingTest::branches()
{
    QFETCH(int, index);
    const DownloadBranch b = downloadBranch(qint16(index));
    QTEST(b.table, "table");
    QTEST(b.recordByRecord, "recordByRecord");
    QCOMPARE(b.confirmation.has_value(), index == 0 || index == 10);
    const Notice success = downloadSuccess(b);
    QTEST(success.text, "success");
    QCOMPARE(success.title, QStringLiteral("Kelm Drev"));
    QCOMPARE(success.icon, Icon::Information);
    QCOMPARE(unknownDownloadIndex(), (Notice{"Errore 90 : Avvisare produttore", "Attenzione", Icon::Critical}));
}

void ProgrammingTest::questions_data()
{
    QTest::addColumn<Question>("question");
    QTest::addColumn<QString>("shown"); // buttons: 0 OK, 1 Cancel, 2 Yes, 3 No; icons: 2 Question, 3 Warning
    QTest::newRow("header") << *downloadBranch(0).confirmation
                            << "ATTENZIONE: L'intestazione degli scontrini si può cambiare un massimo di 60 volte. "
                               "Confermare Operazione? [0 1] default 1, proceed 0, icon 2";
    QTest::newRow("VAT rates") << *downloadBranch(10).confirmation
                               << "ATTENZIONE: Le aliquote IVA si possono cambiare un massimo di 20 volte. "
                                  "Confermare Operazione? [0 1] default 1, proceed 0, icon 2";
    QTest::newRow("empty PLU grid") << emptyPluGridQuestion()
                                    << "ATTENZIONE: La griglia PLU è vuota: lo scarico cancella tutte le PLU dell'ECR.\r\n"
                                       "Confermare Operazione? [0 1] default 1, proceed 0, icon 3";
    QTest::newRow("S-parameters reset") << resetSParametersQuestion()
                                        << "Kelm Drev: Ripristino tutti i valori a default  [2 3] default 3, proceed 2, icon 2";
}

void ProgrammingTest::questions()
{
    QFETCH(Question, question);
    QStringList buttons;
    for (Button b : question.buttons)
        buttons << QString::number(int(b));
    QTEST(QStringLiteral("%1: %2 [%3] default %4, proceed %5, icon %6")
              .arg(question.title, question.text, buttons.join(u' '))
              .arg(int(question.defaultButton))
              .arg(int(question.proceed))
              .arg(int(question.icon)),
          "shown");
}

void ProgrammingTest::failure_data()
{
    QTest::addColumn<int>("index");
    QTest::addColumn<QString>("answer");
    QTest::addColumn<QString>("identification");
    QTest::addColumn<QString>("expected");
    QTest::newRow("header, error 12") << 0 << "12/00/01/" << "" << "Errore in scarico intestazione\r\nErrore : 12\r\nData-Ora errata";
    QTest::newRow("PLU names its code") << 4 << "0C" << "8001234567890"
                                        << "Errore in scarico PLU 8001234567890\r\nErrore : 0C\r\nPagamento inesistente";
    QTest::newRow("no answer from the link") << 9 << "" << "" << "Errore in scarico parametri S\r\nErrore : \r\n";
    QTest::newRow("unknown code") << 3 << "FFx" << "" << "Errore in scarico Reparti\r\nErrore : FF\r\n";
}

void ProgrammingTest::failure()
{
    QFETCH(int, index);
    QFETCH(QString, answer);
    QFETCH(QString, identification);
    const Notice n = downloadFailure(downloadBranch(qint16(index)), answer, identification);
    QTEST(n.text, "expected");
    QCOMPARE(n.title, QStringLiteral("Attenzione"));
    QCOMPARE(n.icon, Icon::Critical);
}

void ProgrammingTest::downloadOnTheRegister_data()
{
    QTest::addColumn<int>("index");
    QTest::addColumn<QString>("fault");
    QTest::addColumn<QStringList>("shown");
    QTest::newRow("record by record: the others go on")
        << 3 << "refuse D/3/ 8"
        << QStringList{"Attenzione: Errore in scarico Reparti\r\nErrore : 08\r\nIl reparto non esiste", "Kelm Drev: Reparti scaricati"};
    QTest::newRow("one record refused: no success") << 9 << "refuse S 12"
                                                    << QStringList{"Attenzione: Errore in scarico parametri S\r\nErrore : 0C\r\n"
                                                                   "Pagamento inesistente"};
}

void ProgrammingTest::downloadOnTheRegister()
{
    QFETCH(int, index);
    QFETCH(QString, fault);
    sim::VirtualEcr ecr;
    VirtualClock clock;
    VirtualLinePort port(ecr, clock);
    port.open("virtual", 9600);
    EcrLink link(port, clock);
    RecordingOperator op;
    QCOMPARE(ecr.applyFault(fault, 0), QString());
    QList<DownloadRecord> records;
    for (int n = 1; n <= (index == 3 ? kDepartmentCount : 1); ++n)
        records << DownloadRecord{index == 3 ? programming::departmentRecord(n, {QStringLiteral("REPARTO%1").arg(n), n % 5}) : kResetRecord,
                                  QString()};
    runDownload(link, op, downloadBranch(qint16(index)), records);
    QTEST(op.messages, "shown");
    PanelCommand panel(link, op);
    if (index == 3) {
        QCOMPARE(int(panel(departmentReadRecord(7))), 0);
        QCOMPARE(programming::parseDepartment(panel.LastAnswer), (Department{"REPARTO7", 2}));
    }
}

void ProgrammingTest::pluRowsComeAsTheyAreRead()
{
    sim::VirtualEcr ecr;
    VirtualClock clock;
    VirtualLinePort port(ecr, clock);
    port.open("virtual", 9600);
    EcrLink link(port, clock);
    RecordingOperator op;
    QList<PluRow> rows;
    for (int n = 1; n <= 5; ++n)
        rows << row(QStringLiteral("80000000%1/ARTICOLO %1/1/0/%1,50/0/10/00000000").arg(n));
    const QList<PluRow> sent = runPluDownload(link, op, rows);
    QCOMPARE(sent[0][4], QStringLiteral("1")); // "1,50" as the grid now shows it
    QStringList asked; // the record just carried out as each row comes in
    const QList<PluRow> read = readPluTable(link, op, [&](int n, const PluRow& r) {
        asked << QString::fromLatin1(ecr.journal().last()) + QString::number(n) + r[0];
    });
    QCOMPARE(read.size(), 5);
    QCOMPARE(asked.size(), 5);
    for (int i = 0; i < 5; ++i) {
        QCOMPARE(asked[i], QStringLiteral("p/%1/%1").arg(i + 1) + sent[i][0]);
        for (int c = 0; c < 8; ++c)
            QCOMPARE(read[i][c], sent[i][c]);
    }
}

QTEST_GUILESS_MAIN(ProgrammingTest)
#include "tst_programming.moc"
