// The technician's rules: what each key, closure and reprint sends, the
// console, the display, the fiscal documents and the test receipts; then
// key presses and documents against registers in virtual time.
#include "RegisterRig.h"
#include "Table.h"
#include "technician/CommandConsole.h"
#include "technician/DocumentDesk.h"
#include "technician/DocumentKeyFilter.h"
#include "technician/EndOfDay.h"
#include "technician/LastReceiptReprint.h"
#include "technician/TestReceipts.h"
#include "technician/VirtualDisplay.h"
#include "technician/VirtualKeyboard.h"

#include <QDir>
#include <QRegularExpression>

#include <algorithm>
#include <functional>

using namespace kelm;
using namespace kelm::technician;
using Button = Operator::Button;

namespace {

// Steps one a line: "clear", "send <record>", "panel <record>", "pause <ms>", "display"; any
// other number a step carries follows it.
QStringList stepTexts(const ExchangeSteps& steps)
{
    const QStringList kinds{"clear", "send ", "panel ", "pause ", "display"}; // in the order of ExchangeStep::Kind
    QStringList texts;
    for (const auto& s : steps)
        texts << kinds[int(s.kind)] + s.record + (s.pauseMs ? QString::number(s.pauseMs) : QString());
    return texts;
}

// The words of a key press: the answer cleared, the key sent, a short pause.
QStringList keyWords(int code) { return {"clear", QStringLiteral("send )/%1/").arg(code), "pause 100"}; }

int keyIndex(const QString& caption)
{
    const auto k = std::ranges::find(ecrKeys(), caption, &EcrKey::caption);
    return k == ecrKeys().end() ? -1 : k->index;
}

// The forms as a person fills them: each OK with the next entry.
struct FilledForms final : DocumentForms {
    void customer(FiscalDocuments& d) override { customerButton(d, kAcceptButton, customers.takeFirst()); }
    void creditNote(FiscalDocuments& d) override { creditNoteButton(d, kAcceptButton, "123-2010", "rif. 5"); }
    void piCf(FiscalDocuments& d) override { piCfButton(d, kAcceptButton, "01234567897"); }
    QList<CustomerEntry> customers;
};

QString yes(bool b) { return b ? "yes" : "no"; }

// The VAT or fiscal code form: the button and the text; out: the outcome (0 closes), the length kept, the record
// pending and the steps that send it.
QStringList piCfOf(const QString& in)
{
    FiscalDocuments documents;
    documents.PiCfLength = 16;
    documents.PendingDocRecord = "-/1/";
    const PiCfOutcome outcome = piCfButton(documents, in.section(u'|', 0, 0).toInt(), in.section(u'|', 1));
    return QStringList{QString::number(int(outcome)), QString::number(documents.PiCfLength), documents.PendingDocRecord}
        + stepTexts(piCfSteps(documents));
}

// The customer form: the button, the VAT number and three lines, between bars; out: the box that gets the focus
// (0 VAT number, 1.. the lines), whether the customer is set, and what was kept.
QStringList customerOf(const QString& in)
{
    const QStringList f = in.split(u'|');
    FiscalDocuments documents;
    documents.CustomerSet = true;
    const auto focus = customerButton(documents, f[0].toInt(), {f[1], {f[2], f[3], f[4], "", "", ""}});
    return QStringList{focus ? QString::number(int(*focus)) : "none", yes(documents.CustomerSet), documents.CustomerVatNumber}
        + QStringList(documents.CustomerLines.begin(), documents.CustomerLines.begin() + 3);
}

// The credit note form's button; out: set, pending, reference, the opening steps, the mark; then the form
// used last wins, on purpose: the VAT form after it replaces the pending record, not the reference.
QStringList creditNoteOf(const QString& in)
{
    FiscalDocuments documents;
    documents.PendingDocRecord = "'/1/01234567897/1111111111111111/";
    creditNoteButton(documents, in.toInt(), "123-2010", "sco 12 del 1");
    QStringList out{yes(documents.CreditNoteSet), documents.PendingDocRecord, documents.CreditNoteRefRecord};
    out << stepTexts(creditNoteOpeningSteps(documents)) << documents.CreditNoteMark;
    piCfButton(documents, kAcceptButton, "01234567897");
    return out << documents.PendingDocRecord << documents.CreditNoteRefRecord;
}

// Starting a document: "I" the invoice button or "N" the credit note's, then "C" when a customer is set and
// "N" when a credit note is, then the display; out: the messages and whether the form shows.
QStringList startOf(const QString& in)
{
    FiscalDocuments documents;
    documents.CustomerSet = in[1] == u'C';
    documents.CreditNoteSet = in[2] == u'N';
    const DocumentStart start = in[0] == u'I' ? startInvoice(documents, in.mid(3)) : startCreditNote(documents, in.mid(3));
    return start.messages + QStringList{start.showForm ? "form" : "no form"};
}

// The cash key that ends a document: an invoice opened with the given result, or ("N") a credit note; out: the
// steps, then those of the next cash key, a plain key again.
QStringList completionOf(const QString& in)
{
    FiscalDocuments documents;
    QStringList out;
    if (in != "N") {
        customerButton(documents, kAcceptButton, {"01234567897", {"ROSSI SRL", "VIA ROMA 1", "00100 ROMA", "", "", ""}});
        out << stepTexts(invoiceOpeningSteps(documents));
        invoiceOpened(documents, in.toInt());
    } else {
        creditNoteButton(documents, kAcceptButton, "123-2010", "rif.sco.123");
    }
    out << stepTexts(keyPressSteps(kCashKeyIndex, documents)) << yes(documents.CustomerSet || documents.CreditNoteSet);
    return out << stepTexts(keyPressSteps(kCashKeyIndex, documents));
}

// Each rule from a text to lines, by name (see the rows for the inputs).
const QHash<QString, std::function<QStringList(const QString&)>> kRules{
    {"key", [](const QString& key) {
         FiscalDocuments documents;
         return stepTexts(keyPressSteps(key.startsWith(u'#') ? key.mid(1).toInt() : keyIndex(key), documents));
     }},
    {"keypad", [](const QString& code) { return stepTexts(keypadPressSteps(code.toInt())); }},
    {"tab", [](const QString&) { return stepTexts(technicianTabSteps()); }},
    {"prelievi", [](const QString&) { return stepTexts(prelieviSteps()); }},
    {"totals", [](const QString&) { return stepTexts(salesTotalsSteps()); }},
    {"closure ok", [](const QString&) { return stepTexts(dailyClosureSteps(Button::Ok)); }},
    {"reprint no", [](const QString&) { return stepTexts(reprintRequestSteps(Button::No)); }},
    {"after", [](const QString& answer) { return stepTexts(reprintStepsAfter(answer)); }},
    {"piCf", piCfOf},
    {"customer", customerOf},
    {"creditNote", creditNoteOf},
    {"start", startOf},
    {"completion", completionOf},
    {"question", [](const QString& which) {
         return QStringList{questionText(which == "closure" ? dailyClosureQuestion()
                                         : which == "reprint" ? reprintQuestion()
                                                              : testReceiptQuestion())};
     }},
    {"typed", [](const QString& text) { return QStringList{singleCommandRecord(text)}; }},
    {"file", [](const QString& text) { return commandFileRecords(text.toLatin1()); }},
    {"answer", [](const QString& text) { return QStringList{consoleAnswerText(text)}; }},
    {"display", [](const QString& answer) {
         const auto lines = technician::displayLines(answer);
         return lines ? QStringList{lines->line1, lines->line2} : QStringList();
     }},
    {"again", [](const QString& in) { return QStringList{yes(readDisplayAgain(in.left(1).toInt(), in.mid(1)))}; }},
    {"zero", [](const QString& line) { return QStringList{displayReadsZero(line) ? "zero" : "amount"}; }},
    // the box (0 free text, 1 pratica, 2 riferimento), then the keys typed; out: the keys that go through
    {"keys", [](const QString& typed) {
         QString taken;
         for (QChar key : typed.mid(1))
             if (const auto k = acceptedKey(DocumentBox(typed[0].digitValue()), key))
                 taken += *k;
         return QStringList{taken};
     }},
    {"path", [](const QString& dirAndFile) {
         const auto path = testReceiptPath(dirAndFile.section(u'|', 0, 0), dirAndFile.section(u'|', 1));
         return path ? QStringList{QDir::fromNativeSeparators(*path)} : QStringList();
     }},
    {"receipt", [](const QString& index) {
         return QStringList{testReceiptCaption(index.toInt()), QString::fromLatin1(testReceiptFile(index.toInt()))};
     }},
};

} // namespace

class TechnicianTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void rules_data();
    void rules();
    void onASlowRegister_data();
    void onASlowRegister();
};

void TechnicianTest::rules_data()
{
    columns<QString, QString, QStringList>("rule", "input", "output");
    const QStringList display{"display"};
    row("SC € then 1 and OK", "key", "SC \u20AC", keyWords(67) + keyWords(22) + keyWords(90) + display);
    row("Magg € then 4 and OK", "key", "Magg \u20AC", keyWords(67) + keyWords(37) + keyWords(90) + display);
    row("Altro (Tot4) then 4, OK", "key", "Altro (Tot4)", keyWords(58) + keyWords(37) + keyWords(90) + display);
    row("00 is 0 twice", "key", "00", keyWords(69) + keyWords(69) + display);
    const std::pair<const char*, int> slowKeys[] = {{"PLU", 51}, {"Cassetto", 36}, {"Annullo Scontrino", 28},
                                                    {"Reso Merce", 43}, {"Storno", 35}, {"Avanzam. Carta", 21}};
    for (const auto& [caption, code] : slowKeys)
        row(caption, "key", caption, keyWords(code) + QStringList{"pause 200", "display"});
    // One key, nothing more: SC % has no extra, cash with no document, OK shares the cash code only.
    const std::pair<const char*, int> plainKeys[] = {{"0", 69}, {"SC %", 60}, {"Sub Totale", 102}, {"Contanti", 90}, {"OK", 90},
                                                     {"\\/", 114}, {"/\\", 117}, {"Corr. non corrisp.", 1}};
    for (const auto& [caption, code] : plainKeys)
        row(caption, "key", caption, keyWords(code) + display);
    row("no such key", "key", anyOf({"#-1", "#28", "#29", "#30", "#31", "#51"}), QStringList());
    row("keypad", "keypad", "61", QStringList{"send )/61/", "pause 100", "display"});
    row("technician tab", "tab", "", QStringList{"panel (/"});
    row("prelievi", "prelievi", "", QStringList{"clear", "send 6/1/", "pause 100"});
    row("sales totals ask nothing", "totals", "", QStringList{"panel x/1/1/1/"});
    row("closure, on the panel's road", "closure ok", "", QStringList{"panel x/7/0/0/"});
    row("reprint no", "reprint no", "", QStringList());
    const QStringList reprintOnly{"send )/120/"}, setFirst{"send G/12/1/1/42/", "pause 100", "send )/120/"};
    row("42 (refused too, or more after it)", "after", anyOf({"00/00/01/42/", "00/00/01/420/", "1A/00/01/42/"}), reprintOnly);
    row("other value, or 42 one place early", "after", anyOf({"00/00/01/07/", "00/00/0142//"}), setFirst);
    row("11 characters or no answer", "after", anyOf({"00/00/01/42", ""}), QStringList());
    // VAT or fiscal code form; outcome 0 closes, 1 the wrong length.
    row("VAT number", "piCf", "1|01234567897", QStringList{"0", "11", "'/1/01234567897/1111111111111111/",
                                                           "panel '/1/01234567897/1111111111111111/"});
    row("fiscal code upper-cased", "piCf", "1|rssmra80a01h501u",
        QStringList{"0", "16", "'/2/11111111111/RSSMRA80A01H501U/", "panel '/2/11111111111/RSSMRA80A01H501U/"});
    row("12 characters, empty, blanks count", "piCf", anyOf({"1|012345678901", "1|", "1| 0123456789 "}),
        QStringList{"1", "0", ""});
    row("cancel a good one, other index", "piCf", anyOf({"0|01234567897", "2|01234567897"}), QStringList{"0", "0", ""});
    const QString rossi = "01234567897|ROSSI SRL|VIA ROMA 1|00100 ROMA";
    row("three lines are enough", "customer", "1|" + rossi, QStringList{"none", "yes"} + rossi.split(u'|'));
    row("VAT number missing", "customer", "1||ROSSI SRL|VIA ROMA 1|00100 ROMA", QStringList{"0", "no", "", "", "", ""});
    row("line 1 missing", "customer", "1|01234567897||VIA ROMA 1|00100 ROMA", QStringList{"1", "no", "", "", "", ""});
    row("line 3 missing", "customer", "1|01234567897|ROSSI SRL|VIA ROMA 1|", QStringList{"3", "no", "", "", "", ""});
    row("first empty line gets the focus", "customer", "1|01234567897|ROSSI SRL||", QStringList{"2", "no", "", "", "", ""});
    row("cancel the customer", "customer", "0|" + rossi, QStringList{"none", "no", "", "", "", ""});
    const QString vatRecord = "'/1/01234567897/1111111111111111/";
    row("credit note ok", "creditNote", "1",
        QStringList{"yes", "-/123-2010/", "7/1/1/sco 12 del 1/", "panel -/123-2010/", "N/", vatRecord, "7/1/1/sco 12 del 1/"});
    row("credit note cancelled", "creditNote", "0", QStringList{"no", "", "", "", vatRecord, ""});
    const QString idle = "            0.00", selling = "            4.20";
    const QString customer = "Cliente già impostato", note = "Nota Credito già impostata", invoice = "Fattura già impostata";
    row("nothing pending", "start", anyOf({"I--" + idle, "N--" + idle}), QStringList{"form"});
    row("during a sale", "start", anyOf({"I--" + selling, "N--" + selling}), QStringList{"no form"});
    row("invoice twice", "start", "IC-" + idle, QStringList{customer, "no form"});
    row("invoice after a credit note", "start", "I-N" + idle, QStringList{note, "no form"});
    row("credit note again only warns", "start", "N-N" + idle, QStringList{note, "form"});
    row("credit note after an invoice", "start", "NC-" + idle, QStringList{invoice, "no form"});
    row("credit note with both set", "start", "NCN" + idle, QStringList{note, invoice, "no form"});
    // An invoice is paid by its own record: the cash key itself is not sent.
    const auto paid = [](const QString& pi, const QString& lines) {
        return QStringList{"panel 3/F/OPENFAT//0/0/0/0/", "pause 100", "clear", "panel " + pi, "pause 100", "clear",
                           "panel " + lines, "pause 100", "pause 100", "send 5/1/0////", "pause 200", "send (/",
                           "display", "no"} + keyWords(90) + QStringList{"display"};
    };
    row("invoice", "completion", "0", paid("'/1/01234567897/1111111111111111/", "j/ROSSI SRL/VIA ROMA 1/00100 ROMA///////0/"));
    row("invoice not opened or refused: empty records", "completion", anyOf({"26", "1004"}), paid("", ""));
    // A credit note sends the cash key twice.
    row("credit note", "completion", "N",
        keyWords(90) + QStringList{"pause 100", "clear", "panel 7/1/1/rif.sco.123/", "pause 100", "send )/90/", "pause 200",
                                   "clear", "send (/", "display", "no"} + keyWords(90) + QStringList{"display"});
    // Icon 1 is Information, 2 Question.
    row("closure question", "question", "closure",
        QStringList{"ATTENZIONE: Si conferma di voler fare la chiusura giornaliera? [Ok Cancel] default Cancel, proceed Ok, icon 1"});
    row("reprint, one lone CR", "question", "reprint",
        QStringList{"Attenzione: Vuoi ristampare\rl'ultimo scontrino? [Yes No] default Yes, proceed Yes, icon 1"});
    row("test receipts question", "question", "test",
        QStringList{"Attenzione: Consigliamo, prima di emettere \rscontrini di prova, di \rentrare in "
                    "modalità apprendimento.\rVuoi continuare? [Yes No] default Yes, proceed Yes, icon 2"});
    row("trimmed first", "typed", "  a  ", QStringList{"a/"});
    row("empty", "typed", "", QStringList{"/"});
    // Two items on a line, a slash completed, an empty line, quotes keep the comma, the slash added before the trim,
    // a last line without its end.
    row("command file", "file", "a/,b/\r\nx/1/1/1\r\n\r\n\"3/S/A,B//1/1/1/1/\"\n\"a/ \"\r\nb",
        QStringList{"a/", "b/", "x/1/1/1/", "/", "3/S/A,B//1/1/1/1/", "a/ /", "b/"});
    row("empty file", "file", "", QStringList());
    row("accepted", "answer", "00/00/01/", QStringList{"00/00/01/"});
    row("refused, status without slash, no answer", "answer", anyOf({"1A/00/", "00", ""}), QStringList{"Errore"});
    // Nine header characters, the lines and their slashes.
    const QString line2 = "BENVENUTI       ", full = "00/00/01/" + idle + u'/' + line2 + u'/';
    row("43 characters or more", "display", anyOf({full, full + "EXTRA/"}), QStringList{idle, line2});
    row("42 characters, status only, empty", "display", anyOf({full.chopped(1), "00", ""}), QStringList());
    // Reads: the reads done, then the last answer; out: whether to read once more.
    const QString good = "00/00/01/" + QString(16, u'1') + u'/' + QString(16, u'2') + u'/', cut = good.left(42);
    row("a good read is enough, three at most", "again", anyOf({"1" + good, "3" + cut}), QStringList{"no"});
    row("cut or no answer: read again", "again", anyOf({"1" + cut, "2"}), QStringList{"yes"});
    // Idle, empty, blank, a word first, a comma or a second point ending the number, negative zero, a word after it.
    row("zero", "zero", anyOf({idle, "", QString(16, u' '), "TOTALE      5.00", "0,50", "0.0.5", "  -0.00", "0 PEZZI 5"}),
        QStringList{"zero"});
    row("amount", "zero", anyOf({"           12.50", "            0.01", "  -3.00", " 0 0 1"}), QStringList{"amount"});
    row("free text", "keys", "0/a", QStringList{"\\a"});
    row("pratica", "keys", "17- \bA/.", QStringList{"7- \b"});
    row("riferimento", "keys", "2/\\r", QStringList{"\\r"});
    row("separator added", "path", "srv|scontrino.txt", QStringList{"srv/scontrino.txt"});
    row("separator not doubled", "path", "srv/|scontrino.txt", QStringList{"srv/scontrino.txt"});
    row("two characters are enough", "path", "d1|s.tx", QStringList{"d1/s.tx"});
    row("one character or empty: nothing", "path", anyOf({"c|s.tx", "|s.tx"}), QStringList());
    row("display notices", "receipt", "1", QStringList{"Avviso Display", "7/0/1/##PROMEMORIA##/\r\n7/0/0/#SVUOTA-CASSA#/\r\n"});
    row("goods return", "receipt", "2",
        QStringList{"Reso Merce", "3/S/REPARTO1//1/5.26/1/4/\r\n3/S/REPARTO1//1/2.18/1/4/\r\nU/\r\n"
                                  "3/R/REPARTO1//1/7.43/1/4/\r\n5/1/0.00/////\r\n"});
    row("printed notice", "receipt", "3", QStringList{"Avviso Stampato",
        QStringLiteral("7/1/1/##PROMEMORIA##/\r\n7/1/0/#SVUOTA-CASSA#/\r\nw/1/1//\r\n").repeated(5) + "m//\r\n"});
    row("invoice", "receipt", "4",
        QStringList{"Fattura", "3/F/OPEN//1/1/1/4/\r\n3/S/REPARTO 1//1/80/1/4/\r\n3/S/REPARTO 1//1/70/1/4/\r\n"
                               "'/1/01234567897/1111111111111111/\r\n"
                               "j//INTESTAZIONE CLIENTE/VIA  _______ N.3/00100 CITTANOVA (XX)//////0/\r\n5/1/0.00/////\r\n"});
    row("credit note", "receipt", "5",
        QStringList{"Nota di Credito", "-/123-2010/\r\n3/N/CAMICIA ROSSA/rif.sco.123del010109/1/1/1/4/\r\n5/1/0.00/////\r\n"});
    row("plain receipt", "receipt", "6", QStringList{"Scontrino", "3/S/Coca Cola 1,70/second , descr/1/25.88/1/4/\r\n"
        "3/S/REPARTO2//1/25.88/2/10/\r\n3/S/REPARTO3//1/7.33/3/20/\r\n4/10.00///0/0/0//\r\n5/1/0.00/////\r\n"});
    row("no such button", "receipt", anyOf({"0", "7", "-1"}), QStringList{"", ""});
}

void TechnicianTest::rules()
{
    const auto& rule = kRules[fetch<QString>("rule")];
    for (const QString& input : fetch<QString>("input").split(kOr))
        QCOMPARE(rule(input), fetch<QStringList>("output"));
}

void TechnicianTest::onASlowRegister_data()
{
    // What is done: a key by caption, two invoices or a credit note; a fault of the register; what the PC sent, display
    // reads apart, and how many of those (a document reads it before it starts and after each key); virtual ms
    // spent in pauses at least; whether the last read showed.
    columns<QString, QString, QStringList, int, qint64, bool>("done", "fault", "wire", "reads", "pauses", "shown");
    row("display read three times at most", "7", "short 99", QStringList{")/61/"}, 3, qint64(100), false); // every answer cut
    QStringList invoices;
    for (const QString v : {"01234567897", "09876543210"})
        invoices << "3/F/OPENFAT//0/0/0/0/" << ")/46/" << ")/5/" << "'/1/" + v + "/1111111111111111/"
                 << "j/CLIENTE " + v + "/VIA ROMA 1/00100 ROMA///////0/" << "5/1/0////";
    row("each invoice its customer, paid by its record", "invoices", "", invoices, 8, qint64(0), true);
    row("a credit note sends the cash key twice", "credit note", "",
        QStringList{"-/123-2010/", ")/46/", ")/5/", ")/90/", "7/1/1/rif. 5/", ")/90/"}, 4, qint64(0), true);
}

// A register that takes 1.5 s over every answer, in virtual time.
void TechnicianTest::onASlowRegister()
{
    const QString done = fetch<QString>("done");
    RegisterRig reg(1500);
    QCOMPARE(fetch<QString>("fault").isEmpty() ? QString() : reg.ecr.applyFault(fetch<QString>("fault"), 0), QString());
    DocumentDesk desk;
    FilledForms forms;
    StepOutcome last;
    for (int n = 0; n < (done == "invoices" ? 2 : done == "credit note" ? 1 : 0); ++n) {
        const QString vat = n ? "09876543210" : "01234567897";
        forms.customers << CustomerEntry{vat, {"CLIENTE " + vat, "VIA ROMA 1", "00100 ROMA", "", "", ""}};
        done == "invoices" ? desk.invoice(reg.link, reg.op, forms) : desk.creditNote(reg.link, reg.op, forms);
        for (const char* key : {"5", "REP-01", "Contanti"})
            last = desk.keyPress(reg.link, reg.op, keyIndex(key));
    }
    if (done != "invoices" && done != "credit note")
        last = desk.keyPress(reg.link, reg.op, keyIndex(done));
    const QStringList records = reg.tap.records(), wire = records.filter(QRegularExpression("^[^(]"));
    QTEST(wire, "wire");
    QTEST(int(records.size() - wire.size()), "reads");
    QVERIFY(reg.clock.nowMs() >= records.size() * 1500 + fetch<qint64>("pauses"));
    QTEST(last.display.has_value(), "shown"); // else the display keeps what it showed
}

QTEST_GUILESS_MAIN(TechnicianTest)
#include "tst_technician.moc"
