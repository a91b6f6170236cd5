// The ECR programming rules: record fields and numbers, header and footer,
// PLU records and file, S-parameters, scrolling messages, VAT rates,
// departments, payment types, what each download index does, asks and
// reports; logo pictures and their row records; and downloads against the
// virtual register in virtual time.
#include "RegisterRig.h"
#include "Table.h"
#include "app/VatRates.h"
#include "logos/LogoBitmap.h"
#include "logos/LogoDownloadJob.h"
#include "logos/LogoFit.h"
#include "logos/LogoRecords.h"
#include "logos/LogoTexts.h"
#include "logos/LogoThreshold.h"
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

#include <QBuffer>
#include <QDir>
#include <QFile>
#include <QTemporaryDir>

#include <algorithm>
#include <functional>
#include <numeric>

using namespace kelm;
using namespace kelm::programming;
using namespace kelm::logos;
using In = const QStringList&;

namespace {

QString blanks(qsizetype n) { return QString(n, u' '); }

// The cells of a row between slashes; "|" stands for a slash inside a cell.
PluRow pluRow(const QString& line)
{
    const QStringList cells = line.split(u'/').replaceInStrings("|", "/");
    PluRow r;
    std::ranges::copy(cells.first(std::min(cells.size(), kPluColumns)), r.begin());
    return r;
}

QString joined(const PluRow& r) { return QStringList(r.begin(), r.end()).join(u'/'); }

PaymentFlags flagsOf(const QString& digits)
{
    PaymentFlags flags{};
    std::ranges::transform(digits, flags.begin(), [](QChar c) { return c == u'1'; });
    return flags;
}

QString digitsOf(const PaymentFlags& flags)
{
    return std::accumulate(flags.begin(), flags.end(), QString(), [](const QString& d, bool f) { return d + (f ? u'1' : u'0'); });
}

QString shown(const Notice& n) { return n.title + ": " + n.text + " icon " + QString::number(int(n.icon)); }

// The reset values with some changed: pairs of a place (flag 0, register number, name, bar code weight 0, intensity)
// and its value.
QString sParametersWith(In in)
{
    QStringList v{"0", "1", "CASSA -1", "27", "8"};
    for (qsizetype i = 0; i + 1 < in.size(); i += 2)
        v[in[i].toInt()] = in[i + 1];
    SParameters p = parseSParameters(defaultSParametersAnswer());
    p.flags[29] = 7; // read and shown, never sent
    p.flags[0] = v[0].toInt();
    p.registerNumber = v[1];
    p.registerName = v[2];
    p.barcodeWeight[0] = v[3];
    p.printerIntensity = v[4];
    return sParametersRecord(p);
}

QString sParametersRead(In in)
{
    const SParameters p = parseSParameters(in[0]);
    QStringList flags;
    for (qsizetype i = 0; i < kSFlagCount; ++i)
        if (i < 5 || i >= kSFlagsSent)
            flags << QString::number(p.flags[size_t(i)]);
    return flags.join(u' ') + u'|' + p.maximums[0] + u'|' + p.registerName + u'|' + p.payRateCode;
}

// "Header" and so on, in the order of DownloadTable.
const QStringList kTables{"Header", "Footer", "Logo", "Departments", "Plu", "PaymentTypes", "ScrollMessage", "SParameters",
                          "VatRates", "Nothing", "Unknown"};

QString branchOf(In in)
{
    const DownloadBranch b = downloadBranch(qint16(in[0].toInt()));
    return kTables[int(b.table)] + (b.recordByRecord ? " by record" : "") + (b.confirmation ? " asks" : "") + ", "
        + shown(downloadSuccess(b)) + ", " + shown(unknownDownloadIndex());
}

// The scan against a register that holds the PLU numbers given after the grid's rows.
QString surplusOf(In in)
{
    SurplusPluScan scan(in[0].toInt());
    int lastProbed = 0;
    QStringList deleted;
    while (!scan.finished()) {
        lastProbed = scan.number();
        if (scan.probed(in.mid(1).contains(QString::number(lastProbed)) ? " 800123 " : "  "))
            deleted << QString::number(lastProbed);
    }
    return QString::number(lastProbed) + ": " + deleted.join(u' ');
}

QString pluFileOf(In in)
{
    const PluFileLoad load = loadPluFile(in[0].toLatin1());
    QStringList odd;
    for (int line : load.oddLines)
        odd << QString::number(line);
    const QString row1 = load.rows.isEmpty() ? QString() : joined(load.rows[0]);
    const QString first = row1.isEmpty() ? QString() : row1.section(u'/', 0, 0) + u' ' + row1.section(u'/', 7);
    return QStringLiteral("%1 rows, odd %2, first %3").arg(load.rows.size()).arg(odd.join(u' '), first);
}

QImage filled(QSize size, QColor colour)
{
    QImage image(size, QImage::Format_RGB32);
    image.fill(colour);
    return image;
}

// A pixel as "white", "black", or "kept" when it still has the colour it had.
QString pixel(const QImage& image, int x, int y, QColor kept)
{
    const QColor c = image.pixelColor(x, y);
    return c == Qt::white ? "white" : c == Qt::black ? "black" : c == kept ? "kept" : c.name();
}

// Only the first 256 pixels of each side are turned.
QString thresholdOf(In in)
{
    const QColor c(in[0].toInt(), in[1].toInt(), in[2].toInt());
    const QImage tall = thresholdToBlackAndWhite(filled({70, 300}, c)), square = thresholdToBlackAndWhite(filled({300, 300}, c));
    const QString size = QStringLiteral("%1x%2 ").arg(tall.width()).arg(tall.height());
    return size + QStringList{pixel(tall, 0, 0, c), pixel(tall, 69, 255, c), pixel(square, 255, 255, c), pixel(square, 256, 0, c),
                              pixel(square, 0, 256, c)}.join(u' ');
}

// Out: loaded size, fitted size, standard, the top left corner (light) and the bottom right (dark).
QString fitOf(In in)
{
    const QSize loaded(in[0].toInt(), in[1].toInt());
    QImage picture = filled(loaded, QColor(40, 40, 40));
    for (int x = 0; x < loaded.width() / 2; ++x)
        picture.setPixelColor(x, 0, QColor(230, 230, 230));
    const FittedLogo logo = fitLoadedLogo(picture);
    const QImage& f = logo.image;
    return QStringLiteral("%1x%2 %3x%4 %5 %6 %7")
        .arg(logo.loadedSize.width()).arg(logo.loadedSize.height()).arg(f.width()).arg(f.height())
        .arg(logo.standardSize ? "standard" : "fitted", pixel(f, 0, 0, {}),
             f.pixelColor(f.width() - 1, f.height() - 1) == Qt::white ? "white" : "dark");
}

QString resizeOf(In in)
{
    const QColor grey(200, 200, 200);
    const ResizedLogo r = resizeByHand(filled({64, 64}, grey), in[0], in[1]);
    const QString pixelOrError = r.error.isEmpty() ? pixel(r.image, 0, 0, grey) : r.error;
    return QStringLiteral("%1x%2 %3").arg(r.image.width()).arg(r.image.height()).arg(pixelOrError);
}

// A file with the given bytes ("<dir>": a folder, "<none>": no file); out: the error, the size and the bottom right
// pixel's colour, in the logo's format.
QString bmpOf(In in)
{
    QTemporaryDir dir;
    QFile file(dir.filePath("logo.bmp"));
    if (in[0] == "<dir>")
        QDir().mkdir(file.fileName());
    else if (in[0] != "<none>" && file.open(QIODevice::WriteOnly))
        file.write(in[0].toLatin1());
    file.close();
    const LoadedBitmap loaded = readBmpFile(file.fileName());
    const QImage& image = loaded.image;
    const QString corner = image.isNull() ? QString() : image.pixelColor(image.width() - 1, image.height() - 1).name();
    return QStringLiteral("%1 %2x%3 %4 %5").arg(loaded.error).arg(image.width()).arg(image.height())
        .arg(corner, image.isNull() || image.format() == kLogoFormat ? "" : "other format");
}

// Each rule from texts to a text, by name (see the rows for the inputs).
const QHash<QString, std::function<QString(In)>> kRules{
    {"numbers", [](In in) { return decimalForm(in[0]) + u' ' + wholeNumberForm(in[0]); }},
    {"departmentRecord", [](In in) { return departmentRecord(in[0].toInt(), {in[1], in[2].toInt()}); }},
    {"parseDepartment",
     [](In in) { return parseDepartment(in[0]).description + u' ' + QString::number(parseDepartment(in[0]).vatIndex); }},
    {"paddedLine", [](In in) { return paddedLine(in[0], in[1].toInt(), in[2].toInt()); }},
    {"restoredLine", [](In in) {
         const RestoredLine r = restoredLine(in[0]);
         return r.fields == 0 ? QStringLiteral("0")
                              : QStringLiteral("%1 %2 %3 %4").arg(r.fields).arg(r.line.text).arg(r.line.size).arg(r.line.align);
     }},
    {"pluRecord", [](In in) { return pluRecord(in[0].toInt(), pluRow(in[1])); }},
    {"normalised", [](In in) { return joined(withNormalisedNumbers(pluRow(in[0]))); }},
    {"parsePlu", [](In in) { return joined(parsePlu(in[0])); }},
    {"sParametersRecord", sParametersWith},
    {"parseSParameters", sParametersRead},
    {"scrollMessage", [](In in) { return scrollMessageRecord(in[0]); }},
    {"vatRatesRecord", [](In in) { return vatRatesRecord({in[0], in[1], in[2], in[3], in[4]}); }},
    {"parseVatRates", [](In in) {
         const VatRatesRead r = kelm::parseVatRates(in[0]);
         QStringList table;
         for (int i = 0; i < 6; ++i)
             table << QString::number(r.table[size_t(i)]);
         return QStringList(r.texts.begin(), r.texts.end()).join(u'|') + u' ' + table.join(u' ');
     }},
    {"paymentTypeRecord", [](In in) {
         return paymentTypeRecord(in[0].toInt(), {in[1], in[2], in[6] == "1", in[7] == "1", flagsOf(in[3]), in[4], in[5]});
     }},
    {"parsePaymentType", [](In in) {
         const PaymentTypeRead p = parsePaymentType(in[0]);
         return QStringList{p.description, p.shortDescription, digitsOf(p.flags), p.exchangeRate, p.change, p.markUp}.join(u'|');
     }},
    {"failure", [](In in) { return shown(downloadFailure(downloadBranch(qint16(in[0].toInt())), in[1], in[2])); }},
    {"branch", branchOf},
    {"surplus", surplusOf},
    {"pluFile", pluFileOf},
    {"pluBytes", [](In in) {
         QList<PluRow> rows;
         for (const QString& line : in)
             rows << pluRow(line);
         return QString::fromLatin1(pluFileBytes(rows));
     }},
    {"threshold", thresholdOf},
    {"fit", fitOf},
    {"resize", resizeOf},
    {"bmp", bmpOf},
    // icons: 2 Question, 3 Warning
    {"question", [](In in) {
         return questionText(in[0] == "plu" ? emptyPluGridQuestion()
                             : in[0] == "S" ? resetSParametersQuestion()
                                            : *downloadBranch(qint16(in[0].toInt())).confirmation);
     }},
};

const QByteArray kExampleLine = "8001234567890/ACQUA 1L/1/0/0.5/0/100/00000000/12/6/";
const QString kResetRecord = "S/00001100001000000001000000/999999/999999/1000000/99999999/0/0/0/1/CASSA -1/"
                             "27/27/27/27/27/27/27/27/27/29/29/29/29/29/29/29/29/29/8/0/";

QImage withPixels(QImage image, int y, const QList<int>& xs, QColor colour = Qt::white)
{
    for (const int x : xs)
        image.setPixelColor(x, y, colour);
    return image;
}

QByteArray encoded(const QImage& image, const char* format)
{
    QByteArray bytes;
    QBuffer buffer(&bytes);
    buffer.open(QIODevice::WriteOnly);
    image.save(&buffer, format);
    return bytes;
}

// A BMP whose width and height fields (at bytes 18 and 22) say otherwise.
QByteArray withHeaderSize(QByteArray bmp, qint32 width, qint32 height)
{
    for (int i = 0; i < 4; ++i) {
        bmp[18 + i] = char((width >> (8 * i)) & 0xFF);
        bmp[22 + i] = char((height >> (8 * i)) & 0xFF);
    }
    return bmp;
}

} // namespace

class ProgrammingTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void texts_data();
    void texts();
    void receiptLinesAndMessages();
    void downloadOnTheRegister_data();
    void downloadOnTheRegister();
    void pluRowsComeAsTheyAreRead();
    void logoRows_data();
    void logoRows();
};

void ProgrammingTest::texts_data()
{
    columns<QString, QStringList, QString>("rule", "input", "expected");
    row("tab is not a blank", "scrollMessage", QStringList{"\tA "}, "o/\tA/");
    row("no digits, zero fraction, negative zero", "numbers", QStringList{"abc", kOr, "0.00", kOr, "-0.0"}, "0 0");
    row("point first", "numbers", QStringList{".5"}, "0.5 0");
    row("negative", "numbers", QStringList{"-12.30"}, "-12.3 -12");
    row("negative below one", "numbers", QStringList{"-0.5"}, "-0.5 0");
    row("leading blanks", "numbers", QStringList{"  42x"}, "42 42");
    row("long number keeps its digits", "numbers", QStringList{"12345678901234567890.123456789"},
        "12345678901234567890.123456789 12345678901234567890");
    row("first department", "departmentRecord", QStringList{"1", "REPARTO1", "0"}, "D/1/REPARTO1/1//////");
    row("last code", "departmentRecord", QStringList{"20", " FRUTTA ", "4"}, "D/20/FRUTTA/5//////");
    row("no selection sends 0", "departmentRecord", QStringList{"7", "PANE", "-1"}, "D/7/PANE/0//////");
    row("index past the list sends 0", "departmentRecord", QStringList{"8", "X", "5"}, "D/8/X/0//////");
    row("slash in the text", "departmentRecord", QStringList{"3", "BAR/CAFFE", "1"}, "D/3/BAR\\CAFFE/2//////");
    row("placeholder-like text", "departmentRecord", QStringList{"4", "50%1 %2", "2"}, "D/4/50%1 %2/3//////");
    row("trimmed, code 5", "parseDepartment", QStringList{"00/00/01/  PANE  /5/0/0/"}, "PANE 4");
    row("code 0 is no selection, 9 past the list, A not a digit, none", "parseDepartment",
        QStringList{"00/00/01/VARIE/0/", kOr, "00/00/01/VARIE/9/", kOr, "00/00/01/VARIE/A/", kOr, "00/00/01/VARIE"}, "VARIE -1");
    row("only the first character counts", "parseDepartment", QStringList{"00/00/01/VARIE/12/"}, "VARIE 0");
    row("department truncated", "parseDepartment", QStringList{"00"}, " -1");
    // Print lines (the header record has one centred and one right-aligned): text, size (0 normal, 2 double width,
    // 3 both), alignment (0 left, 1 right, 2 centre).
    const QString twenty = "ABCDEFGHIJKLMNOPQRST", thirtyOne(31, u'X');
    row("centred, odd room", "paddedLine", QStringList{"ABC", "0", "2"}, blanks(14) + "ABC" + blanks(15));
    row("centred in double width", "paddedLine", QStringList{"ABCD", "2", "2"}, blanks(6) + "ABCD" + blanks(6));
    row("right trims first", "paddedLine", QStringList{"  AB  ", "0", "1"}, blanks(30) + "AB");
    row("too long, left or centred keeps the start", "paddedLine", QStringList{twenty, "2", "0", kOr, twenty, "3", "2"},
        twenty.left(16));
    row("too long, right keeps the end", "paddedLine", QStringList{twenty, "2", "1"}, twenty.right(16));
    row("31 centred is left-aligned", "paddedLine", QStringList{thirtyOne, "0", "2"}, thirtyOne + " ");
    row("empty", "paddedLine", QStringList{"", "0", "2"}, blanks(32));
    row("no size selected is 32 wide", "paddedLine", QStringList{"A", "-1", "0"}, "A" + blanks(31));
    row("unknown alignment is left", "paddedLine", QStringList{"A", "2", "-1"}, "A" + blanks(15));
    // Saved lines (see the settings file for one centred): fields set (alignment, size, text), text, size, alignment.
    row("right, double both", "restoredLine", QStringList{"13X"}, "3 X 3 1");
    row("saved empty, alignment out of list", "restoredLine", QStringList{"00", kOr, "30ABC"}, "0");
    row("size out of list: alignment only", "restoredLine", QStringList{"14ABC"}, "1 ABC 4 1");
    row("non-digit reads 0", "restoredLine", QStringList{"x1ABC"}, "3 ABC 1 0");
    row("example PLU", "pluRecord", QStringList{"1", "8001234567890/ACQUA 1L/1/0/0.50/0/100/00000000"},
        "P/1/8001234567890/ACQUA 1L/1/0/0.5/0/100/00000000/");
    row("decimal comma cut", "pluRecord", QStringList{"2", "A/B/01//2,50/3.00/x/00000001"}, "P/2/A/B/1/0/2/3/0/00000001/");
    row("counters never sent", "pluRecord", QStringList{"3", "C/ D /1/0/1/1/1/00000000/12/6"}, "P/3/C/ D /1/0/1/1/1/00000000/");
    row("slash in a cell", "pluRecord", QStringList{"4", "C/1|2 KG/1/0/1/1/1/00000000"}, "P/4/C/1\\2 KG/1/0/1/1/1/00000000/");
    // The grid shows the numbers as they were sent, the texts as typed.
    row("grid numbers", "normalised", QStringList{"007/0.50/2,50/1.50/x/10.0/0.00/0.50/9.90/5,5"},
        "007/0.50/2/1.5/0/10/0/0.50/9.90/5,5");
    row("fields in the answer's order", "parsePlu",
        QStringList{"00/00/01/8001234567890/ ACQUA 1L /1/0/00000000/X/0.50/0/100.0/12/6.00/a/b/c/"},
        "8001234567890/ACQUA 1L/1/0/0.5/0/100/00000000/12/6");
    row("free number, status only", "parsePlu", QStringList{"00/00/01//////////////", kOr, "00"}, "////0/0/0//0/0");
    row("truncated after the flags", "parsePlu", QStringList{"00/00/01/C/D/1/0/00000000"}, "C/D/1/0/0/0/0/00000000/0/0");
    // S-parameters from the reset values; flags past the sent ones never go.
    const auto reset = [](const QString& from, const QString& to) { return QString(kResetRecord).replace(from, to); };
    row("the reset record, no selection", "sParametersRecord", QStringList{"0", "0", kOr, "0", "-1"}, kResetRecord);
    row("two-digit index sends its last digit", "sParametersRecord", QStringList{"0", "12"}, reset("S/0", "S/2"));
    row("name keeps its last 8", "sParametersRecord", QStringList{"2", "CASSA CENTRALE"}, reset("CASSA -1", "CENTRALE"));
    row("number keeps its last 3", "sParametersRecord", QStringList{"1", " 12345 "}, reset("/1/CASSA", "/345/CASSA"));
    row("bar code keeps 2, intensity 3", "sParametersRecord", QStringList{"2", "X/Y", "3", "123", "4", "1234"},
        reset("1/CASSA -1/27/", "1/X\\Y/23/").replace("/8/0/", "/234/0/"));
    // Read: flags 0..4 and those never sent, maximum 0, name, pay rate.
    row("flags only", "parseSParameters", QStringList{"00/00/01/12x9/"}, "1 2 0 9 0 0 0 0 0|0||");
    row("cut in the maximums", "parseSParameters", QStringList{"00/00/01/1/12.5/7"}, "1 0 0 0 0 0 0 0 0|12||");
    row("S status only", "parseSParameters", QStringList{"00"}, "0 0 0 0 0 0 0 0 0|0||");
    row("thirty-one fields", "parseSParameters", QStringList{defaultSParametersAnswer() + "/EXTRA/"},
        "0 0 0 0 1 0 0 0 0|999999|CASSA -1|0");
    row("empty message", "scrollMessage", QStringList{""}, "o//");
    row("VAT rates trimmed", "vatRatesRecord", QStringList{"4.00", " 10.00 ", "22.00", "0.00", ""}, "b/4.00/10.00/22.00/0.00//");
    // Read: the five texts, then the table's entries 0..5.
    row("five rates", "parseVatRates", QStringList{"00/00/01/4.00/10.50/22.00/0.00/11.5/"},
        "4.00|10.50|22.00|0.00|11.5 4 10 22 0 12 -1");
    row("short answer: every rate its text", "parseVatRates", QStringList{"00/00/01/4.00/22"}, "4.00|22||| 4 22 0 0 0 -1");
    row("header only", "parseVatRates", QStringList{"00/00/01/"}, "|||| 0 0 0 0 0 -1");
    // Payment types: number, description, short description, flags, rate, mark-up, active, credit.
    row("cash", "paymentTypeRecord", QStringList{"1", "CONTANTI", "CONT", "10000001", "0", "0", "1", "0"},
        "Y/1/CONTANTI/CONT/10000001/0/0//1/0/");
    row("last characters kept", "paymentTypeRecord",
        QStringList{"2", "CARTA DI CREDITO", " CARTA ", "00100000", "12345", " 1.5 ", "0", "1"},
        "Y/2/CREDITO/ARTA/00100000/2345/1.5//0/1/");
    row("all flags, slash", "paymentTypeRecord", QStringList{"9", "BUONI/PASTO", "B/P", "11111111", "", "", "1", "1"},
        "Y/9/NI\\PASTO/B\\P/11111111////1/1/");
    // Read: description, short, flags, rate, change, mark-up.
    row("answer order", "parsePaymentType", QStringList{"00/00/01/CONTANTI/CONT/10000001/1.00/x/y/z/0.50/3/r/s/"},
        "CONTANTI|CONT|10000001|1.00|0.50|3");
    row("not a 1 clears", "parsePaymentType", QStringList{"00/00/01/A/B/2Y011x1/"}, "A|B|00011010|||");
    row("payment truncated", "parsePaymentType", QStringList{"00/0"}, "||00000000|||");
    // Failures: download index, answer, identification; icon 4 is Critical.
    row("header, error 12", "failure", QStringList{"0", "12/00/01/", ""},
        "Attenzione: Errore in scarico intestazione\r\nErrore : 12\r\nData-Ora errata icon 4");
    row("PLU names its code", "failure", QStringList{"4", "0C", "8001234567890"},
        "Attenzione: Errore in scarico PLU 8001234567890\r\nErrore : 0C\r\nPagamento inesistente icon 4");
    row("no answer from the link", "failure", QStringList{"9", "", ""},
        "Attenzione: Errore in scarico parametri S\r\nErrore : \r\n icon 4");
    row("unknown code", "failure", QStringList{"3", "FFx", ""},
        "Attenzione: Errore in scarico Reparti\r\nErrore : FF\r\n icon 4");
    // Branches: table, by record, asks; the success notice (icon 1 Information); an unknown index.
    const QString unknown = ", Attenzione: Errore 90 : Avvisare produttore icon 4";
    row("0", "branch", QStringList{"0"}, "Header asks, Kelm Drev: Intestazione Scaricata icon 1" + unknown);
    row("1", "branch", QStringList{"1"}, "Footer, Kelm Drev: Piede di scontrino scaricato icon 1" + unknown);
    row("3", "branch", QStringList{"3"}, "Departments by record, Kelm Drev: Reparti scaricati icon 1" + unknown);
    row("5 and 8", "branch", QStringList{"5", kOr, "8"}, "Nothing, Kelm Drev:  icon 1" + unknown);
    row("6", "branch", QStringList{"6"}, "PaymentTypes by record, Kelm Drev: Tabella pagamenti scaricate icon 1" + unknown);
    row("7", "branch", QStringList{"7"},
        "ScrollMessage, Kelm Drev: Messaggio Scorrevole scaricato\rRicordarsi di attivarlo icon 1" + unknown);
    row("9", "branch", QStringList{"9"}, "SParameters, Kelm Drev: Parametri S scaricati icon 1" + unknown);
    row("10", "branch", QStringList{"10"}, "VatRates asks, Kelm Drev: Aliquote IVA scaricate icon 1" + unknown);
    row("11 and -1", "branch", QStringList{"11", kOr, "-1"}, "Unknown, Kelm Drev:  icon 1" + unknown);
    // Surplus PLU scan: grid rows, then the numbers the register holds; out: the last probed and those deleted.
    row("gap of 10 keeps what lies beyond", "surplus", QStringList{"2", "3", "14"}, "13: 3");
    row("gap of 9 is crossed", "surplus", QStringList{"2", "3", "13"}, "23: 3 13");
    row("nothing beyond the grid", "surplus", QStringList{"5"}, "15: ");
    row("stops before 9000", "surplus", QStringList{"8995", "8996", "8997", "8998", "8999", "9000"}, "8999: 8996 8997 8998 8999");
    row("grid already full", "surplus", QStringList{"8999", "9000"}, "0: ");
    // PLU file: rows, odd lines, the first row's code and its fields from the flags on.
    const QString line = QString::fromLatin1(kExampleLine), example = "1 rows, odd , first 8001234567890 00000000//";
    // A saved line; 15 characters are skipped, and blank lines.
    row("saved line", "pluFile",
        QStringList{line + "\r\n", kOr, "123456789012345\r\n" + line, kOr, "\r\n\r\n" + line + "\r\n\r\n"}, example);
    row("eight fields, no final slash, LF", "pluFile",
        QStringList{"A/ACQUA 1L/1/0/0.5/0/100/00000001\nB/PANE/2/0/1/0/5/00000000\n"},
        "2 rows, odd , first A 00000001//");
    row("16 characters are a row of one field", "pluFile", QStringList{"1234567890123456\r\n"},
        "1 rows, odd 1, first 1234567890123456 //");
    row("seven fields on line 2 are loaded too", "pluFile", QStringList{"A/ACQUA 1L/1/0/0.5/0/100/\r\n" + line},
        "2 rows, odd 1, first A //");
    row("Windows-1252", "pluFile", QStringList{QString::fromLatin1("CAFF\xC8/TAZZA/1/0/1/0/5/00000000/")},
        "1 rows, odd , first CAFFÈ 00000000//");
    row("empty file", "pluFile", QStringList{""}, "0 rows, odd , first ");
    row("no more than the most lines", "pluFile",
        QStringList{(line + "\r\n").repeated(kPluFileMaxLines) + "ONE MORE LINE, NEVER READ\r\n"},
        QString::number(kPluFileMaxLines) + " rows, odd , first 8001234567890 00000000//");
    row("file saved", "pluBytes", QStringList{line, "CAFFÈ/1|2 TAZZA"}, line + "\r\nCAFF\u00C8/1\\2 TAZZA/////////\r\n");
    row("nothing saved", "pluBytes", QStringList(), "");
    // Threshold: the colour; out: the size kept, two pixels of a tall picture, three of a square one.
    row("all limits met", "threshold", QStringList{"151", "101", "161"}, "70x300 white white white kept kept");
    row("red, green or blue short; red and blue limits swapped", "threshold",
        QStringList{"150", "255", "255", kOr, "255", "100", "255", kOr, "255", "255", "160", kOr, "161", "101", "151"},
        "70x300 black black black kept kept");
    row("300x10", "fit", QStringList{"300", "10"}, "300x10 256x64 fitted white dark");
    row("one past 64", "fit", QStringList{"65", "65"}, "65x65 128x128 fitted white dark");
    row("one past 128", "fit", QStringList{"129", "129"}, "129x129 256x256 fitted white dark");
    row("two pixels", "fit", QStringList{"2", "2"}, "2x2 64x64 fitted white dark");
    row("one side standard", "fit", QStringList{"128", "100"}, "128x100 128x128 fitted white dark");
    const QString bmp = QString::fromLatin1(encoded(filled({70, 200}, Qt::red), "BMP"));
    const QString notBmp = "Il file non è un'immagine BMP 0x0  ", damaged = "Il file BMP è danneggiato 0x0  ";
    row("bmp", "bmp", QStringList{bmp}, " 70x200 #ff0000 ");
    row("one bit a pixel", "bmp",
        QStringList{QString::fromLatin1(encoded(filled({64, 64}, Qt::white).convertToFormat(QImage::Format_Mono), "BMP"))},
        " 64x64 #ffffff ");
    const QString png = QString::fromLatin1(encoded(filled({8, 8}, Qt::red), "PNG"));
    row("empty", "bmp", QStringList{""}, "Il file è vuoto 0x0  ");
    row("png, text, zero bytes", "bmp", QStringList{png, kOr, "$/1/64/64/1/\r\n", kOr, QString(512, QChar(0))}, notBmp);
    // Header or pixels cut short, zero width, an absurd size.
    row("damaged", "bmp",
        QStringList{bmp.left(20), kOr, bmp.left(bmp.size() / 2), kOr,
                    QString::fromLatin1(withHeaderSize(bmp.toLatin1(), 0, 200)), kOr,
                    QString::fromLatin1(withHeaderSize(bmp.toLatin1(), 1 << 30, 1 << 30))},
        damaged);
    row("no file, a folder", "bmp", QStringList{"<none>", kOr, "<dir>"}, kFileUnreadable + " 0x0  ");
    const QString wrong = "0x0 Valore di Larghezza o altezza errato";
    row("list values", "resize", QStringList{"128", "256"}, "128x256 kept");
    row("leading number", "resize", QStringList{" 64 px", "64"}, "64x64 kept");
    row("zero width, empty height, not a number, not a logo side", "resize",
        QStringList{"0", "64", kOr, "64", "", kOr, "largo", "64", kOr, "100", "64"}, wrong);
    row("header question", "question", QStringList{"0"},
        "ATTENZIONE: L'intestazione degli scontrini si può cambiare un massimo di 60 volte. "
        "Confermare Operazione? [Ok Cancel] default Cancel, proceed Ok, icon 2");
    row("VAT rates question", "question", QStringList{"10"},
        "ATTENZIONE: Le aliquote IVA si possono cambiare un massimo di 20 volte. "
        "Confermare Operazione? [Ok Cancel] default Cancel, proceed Ok, icon 2");
    row("empty PLU grid", "question", QStringList{"plu"},
        "ATTENZIONE: La griglia PLU è vuota: lo scarico cancella tutte le PLU dell'ECR.\r\n"
        "Confermare Operazione? [Ok Cancel] default Cancel, proceed Ok, icon 3");
    row("S-parameters reset", "question", QStringList{"S"},
        "Kelm Drev: Ripristino tutti i valori a default  [Yes No] default No, proceed Yes, icon 2");
}

void ProgrammingTest::texts()
{
    const auto& rule = kRules[fetch<QString>("rule")];
    for (const QStringList& in : eachInput(fetch<QStringList>("input")))
        QCOMPARE(rule(in), fetch<QString>("expected"));
}

// The header and footer records, then the lines and the scrolling messages in the settings file.
void ProgrammingTest::receiptLinesAndMessages()
{
    // Line 4 has blanks only: still an empty field.
    const QList<HeaderLine> header{{"BAR CENTRALE", 0, 2}, {}, {}, {"   ", 2, 0}, {"P.IVA 01/23", -1, 1}, {}, {}, {}, {}, {}, {},
                                   {"GRAZIE", 3, 0}};
    QCOMPARE(headerRecord(header), "H/1/" + blanks(10) + "BAR CENTRALE" + blanks(10) + "/1//1//3//0/" + blanks(21)
                                       + "P.IVA 01\\23/1//1//1//1//1//1//4/GRAZIE" + blanks(10) + "/");
    const QList<HeaderLine> footer{{}, {QString(), 2, 0}, {"ARRIVEDERCI", 1, 1}};
    QCOMPARE(footerRecord(footer), "F/1/" + blanks(32) + "/3/" + blanks(16) + "/2/" + blanks(21) + "ARRIVEDERCI/");
    QTemporaryDir dir;
    const IniFile ini(dir.filePath("KelmDrev.ini"));
    QVERIFY(saveReceiptLines(ini, ReceiptLines::Header, header));
    QVERIFY(saveReceiptLines(ini, ReceiptLines::Footer, footer));
    QStringList saved;
    for (const char* key : {"Head2", "Head4", "Head5", "Head12", "Foot3"})
        saved << ini.read("Intestazioni", key, "-", 256);
    QCOMPARE(saved, (QStringList{"00", "02", "10P.IVA 01\\23", "03GRAZIE", "11ARRIVEDERCI"}));
    QCOMPARE(loadReceiptLines(ini, ReceiptLines::Header)[4], (RestoredLine{{"P.IVA 01\\23", 0, 1}, 3}));
    QCOMPARE(loadReceiptLines(ini, ReceiptLines::Footer)[2], (RestoredLine{{"ARRIVEDERCI", 1, 1}, 3}));
    QVERIFY(ini.write("Messaggi", "Msg1", "EARLIER"));
    QVERIFY(saveScrollMessage(ini, 2, " SALDI " + QString(100, u'X')));
    QVERIFY(!saveScrollMessage(ini, 10, "NONE"));
    const auto messages = loadScrollMessages(ini);
    QCOMPARE(QStringList(messages.begin(), messages.end()).join(u'|'),
             "EARLIER||" + ("SALDI " + QString(100, u'X')).left(95) + "|||||||");
}

void ProgrammingTest::downloadOnTheRegister_data()
{
    columns<int, QString, QStringList>("index", "fault", "shown");
    row("record by record: the others go on", 3, "refuse D/3/ 8",
        QStringList{"Attenzione: Errore in scarico Reparti\r\nErrore : 08\r\nIl reparto non esiste",
                    "Kelm Drev: Reparti scaricati"});
    row("one record refused: no success", 9, "refuse S 12",
        QStringList{"Attenzione: Errore in scarico parametri S\r\nErrore : 0C\r\nPagamento inesistente"});
    row("logo, each row counted", 2, "", QStringList{"Kelm Drev: Logo Scaricato, ricordarsi di attivarlo", "1 of 64", "64 of 64"});
}

void ProgrammingTest::downloadOnTheRegister()
{
    const int index = fetch<int>("index");
    RegisterRig reg;
    if (const QString fault = fetch<QString>("fault"); !fault.isEmpty())
        QCOMPARE(reg.ecr.applyFault(fault, 0), QString());
    QList<DownloadRecord> records;
    for (int n = 1; n <= (index == 3 ? kDepartmentCount : 1); ++n)
        records << DownloadRecord{index == 3 ? departmentRecord(n, {"REPARTO" + QString::number(n), n % 5}) : kResetRecord, {}};
    QStringList progress; // the first and the last, one for every row
    if (index == 2)
        runLogoDownload(reg.link, reg.op, logoDownload({filled({64, 64}, Qt::black), filled({128, 64}, Qt::black)}, 0).records,
                        [&](int n, int total) { progress << QStringLiteral("%1 of %2").arg(n).arg(total); });
    else
        runDownload(reg.link, reg.op, downloadBranch(qint16(index)), records);
    QTEST(reg.op.messages + progress.mid(0, 1) + progress.mid(63), "shown");
}

void ProgrammingTest::pluRowsComeAsTheyAreRead()
{
    RegisterRig reg;
    runPluDownload(reg.link, reg.op, {pluRow("A/X/1/0/1/0/1/00000000"), pluRow("B/Y/1/0/1/0/1/00000000")});
    QStringList asked; // the record just carried out as each row comes in
    readPluTable(reg.link, reg.op, [&](int n, auto& r) { asked << reg.tap.records().last() + QString::number(n) + r[0]; });
    QCOMPARE(asked, (QStringList{"p/1/1A", "p/2/2B"}));
}

void ProgrammingTest::logoRows_data()
{
    columns<QImage, QImage, int, int, QString>("head", "end", "page", "row", "record"); // or the refusal
    QImage white64(64, 64, QImage::Format_RGB888);
    white64.fill(Qt::white);
    const auto black = [](int width, int height) { return filled({width, height}, Qt::black); };
    const QImage b64 = black(64, 64);
    const QString z(64, u'0');
    row("64 wide, all white", white64, b64, 0, 1, QStringLiteral("$/1/64/64/1/FFFFFFFFFFFFFFFF/"));
    row("end page, 128 wide", white64, black(128, 64), 1, 1, "$/2/128/64/1/" + z.left(32) + "/");
    row("256 wide, last row", black(256, 256), b64, 0, 256, "$/1/256/256/256/" + z.left(64) + "/");
    row("rightmost pixel counts 8", withPixels(b64, 4, {63}), b64, 0, 5, "$/1/64/64/5/8" + z.left(15) + "/");
    row("second nibble", withPixels(b64, 0, {58, 57}), b64, 0, 1, "$/1/64/64/1/06" + z.left(14) + "/");
    row("left edge pixel counts 1", withPixels(b64, 63, {0}), b64, 0, 64, "$/1/64/64/64/" + z.left(15) + "1/");
    row("nearly white is black", withPixels(b64, 0, {63, 62, 61}, QColor(255, 255, 254)), b64, 0, 1,
        "$/1/64/64/1/" + z.left(16) + "/");
    row("upper-case digits", withPixels(b64, 0, {63, 62, 60}), b64, 0, 1, "$/1/64/64/1/D" + z.left(15) + "/");
    row("height not limited", black(64, 300), b64, 0, 300, "$/1/64/300/300/" + z.left(16) + "/");
    // Refused: no picture, 63 wide, 63 high, 257 wide; no such page, a negative one.
    const std::pair<QImage, int> refused[] = {{QImage(), 0}, {black(63, 64), 0}, {black(64, 63), 0}, {black(257, 64), 0},
                                              {b64, 2}, {b64, -1}};
    for (const auto& [image, page] : refused)
        QTest::addRow("%dx%d, page %d", image.width(), image.height(), page) << image << image << page << 1 << kLogoNotSet;
}

void ProgrammingTest::logoRows()
{
    const int page = fetch<int>("page");
    const LogoDownload download = logoDownload({fetch<QImage>("head"), fetch<QImage>("end")}, page);
    QTEST(download.refusal.isEmpty() ? download.records.value(fetch<int>("row") - 1).record : download.refusal, "record");
    QCOMPARE(download.records.size(), download.refusal.isEmpty() ? fetch<QImage>(page == 0 ? "head" : "end").height() : 0);
    for (qsizetype i = 0; i < download.records.size(); ++i)
        QCOMPARE(download.records[i].row, i + 1);
}

QTEST_GUILESS_MAIN(ProgrammingTest)
#include "tst_programming.moc"
