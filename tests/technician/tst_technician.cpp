// The technician's rules: what each key, closure and reprint sends, the
// console, the display, the fiscal documents and the test receipts; then
// key presses and documents against registers in virtual time.
#include "LineScript.h"
#include "RecordingOperator.h"
#include "RecordingStatus.h"
#include "link/Clock.h"
#include "link/VirtualLinePort.h"
#include "sim/VirtualEcr.h"
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
#include <QTest>

using namespace kelm;
using namespace kelm::technician;
using Button = Operator::Button;

namespace {

const QStringList kButtons = {"Ok", "Cancel", "Yes", "No"};

// Steps one a line: "clear", "send <record>", "panel <record>", "pause <ms>", "display".
QStringList stepTexts(const ExchangeSteps& steps)
{
    QStringList texts;
    for (const auto& s : steps) {
        using Kind = ExchangeStep::Kind;
        texts << (s.kind == Kind::ClearAnswer      ? QStringLiteral("clear")
                      : s.kind == Kind::Transaction  ? "send " + s.record
                      : s.kind == Kind::PanelCommand ? "panel " + s.record
                      : s.kind == Kind::Pause        ? "pause " + QString::number(s.pauseMs)
                                                     : QStringLiteral("display"));
    }
    return texts;
}

// The words of a key press: the answer cleared, the key sent, a short pause.
QStringList keyWords(int code)
{
    return {"clear", QStringLiteral("send )/%1/").arg(code), "pause 100"};
}

int keyIndex(const QString& caption)
{
    for (const EcrKey& k : ecrKeys())
        if (k.caption == caption)
            return k.index;
    return -1;
}

// A sequence named in a table: a key by caption ("#n": by index), "keypad N",
// "tab", "prelievi", "closure <button>", "totals", "reprint <button>",
// "after <the parameter's answer>".
ExchangeSteps stepsFor(const QString& what)
{
    const QString arg = what.section(u' ', 1);
    const auto button = Button(kButtons.indexOf(arg));
    FiscalDocuments documents;
    if (what.startsWith(u'#'))
        return keyPressSteps(what.mid(1).toInt(), documents);
    if (what.startsWith("keypad "))
        return keypadPressSteps(arg.toInt());
    if (what == "tab")
        return technicianTabSteps();
    if (what == "prelievi")
        return prelieviSteps();
    if (what.startsWith("closure "))
        return dailyClosureSteps(button);
    if (what == "totals")
        return salesTotalsSteps();
    if (what.startsWith("reprint "))
        return reprintRequestSteps(button);
    if (what.startsWith("after"))
        return reprintStepsAfter(arg);
    const int index = keyIndex(what);
    return index < 0 ? ExchangeSteps{{ExchangeStep::pause(-1)}} : keyPressSteps(index, documents);
}

QString describe(const Question& q)
{
    QStringList buttons;
    for (Button b : q.buttons)
        buttons << kButtons[int(b)];
    return QStringLiteral("%1: %2 [%3] default %4, icon %5").arg(q.title, q.text, buttons.join(u' '),
                                                                kButtons[int(q.defaultButton)]).arg(int(q.icon));
}

// A display answer: nine header characters, the two lines and their slashes.
QString displayAnswer(const QString& line1, const QString& line2)
{
    return "00/00/01/" + line1 + u'/' + line2 + u'/';
}

CustomerEntry threeLineCustomer()
{
    return {"01234567897", {"ROSSI SRL", "VIA ROMA 1", "00100 ROMA", "", "", ""}};
}

// The forms as a person fills them: each OK with the next entry.
struct FilledForms final : DocumentForms {
    void customer(FiscalDocuments& d) override { customerButton(d, kAcceptButton, customers.takeFirst()); }
    void creditNote(FiscalDocuments& d) override { creditNoteButton(d, kAcceptButton, "123-2010", "rif. 5"); }
    void piCf(FiscalDocuments& d) override { piCfButton(d, kAcceptButton, "01234567897"); }
    QList<CustomerEntry> customers;
};

} // namespace

class TechnicianTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void steps_data();
    void steps();
    void questions_data();
    void questions();
    void console_data();
    void console();
    void displayLines_data();
    void displayLines();
    void displayReads_data();
    void displayReads();
    void displayReadsZero_data();
    void displayReadsZero();
    void piCf_data();
    void piCf();
    void customer_data();
    void customer();
    void creditNote_data();
    void creditNote();
    void keyFilter_data();
    void keyFilter();
    void start_data();
    void start();
    void completion_data();
    void completion();
    void testReceipts_data();
    void testReceipts();
    void testReceiptPath_data();
    void testReceiptPath();
    void keysOnTheWire_data();
    void keysOnTheWire();
    void displayReadThreeTimesAtMost();
    void documentsOnASlowRegister_data();
    void documentsOnASlowRegister();
};

void TechnicianTest::steps_data()
{
    QTest::addColumn<QString>("what");
    QTest::addColumn<QStringList>("steps");
    const QStringList display{"display"};
    QTest::newRow("SC € then 1 and OK") << "SC \u20AC" << keyWords(67) + keyWords(22) + keyWords(90) + display;
    QTest::newRow("Magg € then 4 and OK") << "Magg \u20AC" << keyWords(67) + keyWords(37) + keyWords(90) + display;
    QTest::newRow("Altro (Tot4) then 4, OK") << "Altro (Tot4)" << keyWords(58) + keyWords(37) + keyWords(90) + display;
    QTest::newRow("00 is 0 twice") << "00" << keyWords(69) + keyWords(69) + display;
    QTest::newRow("0 once") << "0" << keyWords(69) + display;
    const std::pair<const char*, int> slowKeys[] = {{"PLU", 51}, {"Cassetto", 36}, {"Annullo Scontrino", 28},
                                                    {"Reso Merce", 43}, {"Storno", 35}, {"Avanzam. Carta", 21}};
    for (const auto& [caption, code] : slowKeys)
        QTest::newRow(caption) << caption << keyWords(code) + QStringList{"pause 200", "display"};
    QTest::newRow("SC % has no extra") << "SC %" << keyWords(60) + display;
    QTest::newRow("Sub Totale") << "Sub Totale" << keyWords(102) + display;
    QTest::newRow("cash with no document") << "Contanti" << keyWords(90) + display;
    QTest::newRow("OK shares the cash code only") << "OK" << keyWords(90) + display;
    QTest::newRow("down arrow") << "\\/" << keyWords(114) + display;
    QTest::newRow("up arrow") << "/\\" << keyWords(117) + display;
    QTest::newRow("trailing point") << "Corr. non corrisp." << keyWords(1) + display;
    for (int missing : {-1, 28, 29, 30, 31, 51})
        QTest::addRow("no key %d", missing) << QStringLiteral("#%1").arg(missing) << QStringList();
    QTest::newRow("keypad") << "keypad 61" << QStringList{"send )/61/", "pause 100", "display"};
    QTest::newRow("technician tab") << "tab" << QStringList{"panel (/"};
    QTest::newRow("prelievi") << "prelievi" << QStringList{"clear", "send 6/1/", "pause 100"};
    QTest::newRow("closure Cancel") << "closure Cancel" << QStringList();
    QTest::newRow("closure OK") << "closure Ok" << QStringList{"panel x/7/0/0/"};
    QTest::newRow("sales totals ask nothing") << "totals" << QStringList{"panel x/1/1/1/"};
    QTest::newRow("reprint yes") << "reprint Yes" << QStringList{"clear", "send B/12/"};
    QTest::newRow("reprint no") << "reprint No" << QStringList();
    const QStringList reprintOnly{"send )/120/"}, setFirst{"send G/12/1/1/42/", "pause 100", "send )/120/"};
    QTest::newRow("already 42") << "after 00/00/01/42/" << reprintOnly;
    QTest::newRow("42 and more after it") << "after 00/00/01/420/" << reprintOnly;
    QTest::newRow("other value") << "after 00/00/01/07/" << setFirst;
    QTest::newRow("42 one place early") << "after 00/00/0142//" << setFirst;
    QTest::newRow("refused, still 12 long") << "after 1A/00/01/42/" << reprintOnly;
    QTest::newRow("11 characters") << "after 00/00/01/42" << QStringList();
    QTest::newRow("no answer") << "after" << QStringList();
}

void TechnicianTest::steps()
{
    QFETCH(QString, what);
    QTEST(stepTexts(stepsFor(what)), "steps");
}

void TechnicianTest::questions_data()
{
    QTest::addColumn<Question>("question");
    QTest::addColumn<QString>("shown"); // icon 1 is Information, 2 Question
    QTest::newRow("closure") << dailyClosureQuestion()
                             << "ATTENZIONE: Si conferma di voler fare la chiusura giornaliera? [Ok Cancel] default Cancel, icon 1";
    QTest::newRow("reprint, one lone CR") << reprintQuestion()
                                          << "Attenzione: Vuoi ristampare\rl'ultimo scontrino? [Yes No] default Yes, icon 1";
    QTest::newRow("test receipts") << testReceiptQuestion()
                                   << "Attenzione: Consigliamo, prima di emettere \rscontrini di prova, di \rentrare in "
                                      "modalità apprendimento.\rVuoi continuare? [Yes No] default Yes, icon 2";
}

void TechnicianTest::questions()
{
    QFETCH(Question, question);
    QTEST(describe(question), "shown");
}

void TechnicianTest::console_data()
{
    QTest::addColumn<QString>("kind"); // typed, file, answer
    QTest::addColumn<QByteArray>("input");
    QTest::addColumn<QStringList>("output");
    QTest::newRow("slash added") << "typed" << QByteArray("x/1/1/1") << QStringList{"x/1/1/1/"};
    QTest::newRow("slash added after one") << "typed" << QByteArray("x/1/1/1/") << QStringList{"x/1/1/1//"};
    QTest::newRow("trimmed first") << "typed" << QByteArray("  a  ") << QStringList{"a/"};
    QTest::newRow("empty") << "typed" << QByteArray() << QStringList{"/"};
    QTest::newRow("two items on a line") << "file" << QByteArray("a/,b/\r\n") << QStringList{"a/", "b/"};
    QTest::newRow("slash completed") << "file" << QByteArray("x/1/1/1\r\nx/7/0/0/\r\n") << QStringList{"x/1/1/1/", "x/7/0/0/"};
    QTest::newRow("last line without end") << "file" << QByteArray("a/\nb") << QStringList{"a/", "b/"};
    QTest::newRow("quotes keep the comma") << "file" << QByteArray("\"3/S/A,B//1/1/1/1/\"\r\n") << QStringList{"3/S/A,B//1/1/1/1/"};
    QTest::newRow("slash added before the trim") << "file" << QByteArray("\"a/ \"\r\n") << QStringList{"a/ /"};
    QTest::newRow("empty line is a record") << "file" << QByteArray("a/\r\n\r\nb/\r\n") << QStringList{"a/", "/", "b/"};
    QTest::newRow("empty file") << "file" << QByteArray() << QStringList();
    QTest::newRow("accepted") << "answer" << QByteArray("00/00/01/") << QStringList{"00/00/01/"};
    QTest::newRow("refused") << "answer" << QByteArray("1A/00/") << QStringList{"Errore"};
    QTest::newRow("status without slash") << "answer" << QByteArray("00") << QStringList{"Errore"};
    QTest::newRow("no answer") << "answer" << QByteArray() << QStringList{"Errore"};
}

void TechnicianTest::console()
{
    QFETCH(QString, kind);
    QFETCH(QByteArray, input);
    const QString text = QString::fromLatin1(input);
    QTEST(kind == "file" ? commandFileRecords(input)
                         : QStringList{kind == "typed" ? singleCommandRecord(text) : consoleAnswerText(text)},
          "output");
}

void TechnicianTest::displayLines_data()
{
    QTest::addColumn<QString>("answer");
    QTest::addColumn<QString>("lines"); // "line1|line2", empty: not a display
    const QString line1 = "            0.00", line2 = "BENVENUTI       ";
    QTest::newRow("43 characters") << displayAnswer(line1, line2) << line1 + u'|' + line2;
    QTest::newRow("longer answer") << displayAnswer(line1, line2) + "EXTRA/" << line1 + u'|' + line2;
    QTest::newRow("42 characters") << displayAnswer(line1, line2).chopped(1) << QString();
    QTest::newRow("status only") << "00" << QString();
    QTest::newRow("empty") << QString() << QString();
}

void TechnicianTest::displayLines()
{
    QFETCH(QString, answer);
    const auto lines = technician::displayLines(answer);
    QTEST(lines ? lines->line1 + u'|' + lines->line2 : QString(), "lines");
}

void TechnicianTest::displayReads_data()
{
    QTest::addColumn<QStringList>("answers");
    QTest::addColumn<int>("reads");
    QTest::addColumn<bool>("shown");
    const QString good = displayAnswer(QString(16, u'1'), QString(16, u'2')), cut = good.left(42);
    QTest::newRow("first read good") << QStringList{good} << 1 << true;
    QTest::newRow("second read good") << QStringList{cut, good} << 2 << true;
    QTest::newRow("third read good") << QStringList{QString(), cut, good} << 3 << true;
    QTest::newRow("three short: display unchanged") << QStringList{cut, cut, cut, good} << 3 << false;
}

void TechnicianTest::displayReads()
{
    QFETCH(QStringList, answers);
    // The refresh as the worker runs it, against a register that answers from the list.
    int reads = 0;
    QString answer;
    do
        answer = answers.value(reads++);
    while (readDisplayAgain(reads, answer));
    QTEST(reads, "reads");
    QTEST(technician::displayLines(answer).has_value(), "shown");
}

void TechnicianTest::displayReadsZero_data()
{
    QTest::addColumn<QString>("line");
    QTest::addColumn<bool>("zero");
    QTest::newRow("idle") << "            0.00" << true;
    QTest::newRow("amount") << "           12.50" << false;
    QTest::newRow("cents only") << "            0.01" << false;
    QTest::newRow("empty") << QString() << true;
    QTest::newRow("blank") << QString(16, u' ') << true;
    QTest::newRow("word first") << "TOTALE      5.00" << true;
    QTest::newRow("comma ends the number") << "0,50" << true;
    QTest::newRow("negative zero") << "  -0.00" << true;
    QTest::newRow("negative amount") << "  -3.00" << false;
    QTest::newRow("blanks inside the number") << " 0 0 1" << false;
    QTest::newRow("second point ends it") << "0.0.5" << true;
    QTest::newRow("word after zero") << "0 PEZZI 5" << true;
}

void TechnicianTest::displayReadsZero()
{
    QFETCH(QString, line);
    QTEST(technician::displayReadsZero(line), "zero");
}

void TechnicianTest::piCf_data()
{
    QTest::addColumn<int>("index");
    QTest::addColumn<QString>("text");
    QTest::addColumn<PiCfOutcome>("outcome");
    QTest::addColumn<int>("length");
    QTest::addColumn<QString>("record");
    const auto closes = PiCfOutcome::Closes, wrong = PiCfOutcome::WrongLength;
    QTest::newRow("VAT number") << 1 << "01234567897" << closes << 11 << "'/1/01234567897/1111111111111111/";
    QTest::newRow("fiscal code upper-cased") << 1 << "rssmra80a01h501u" << closes << 16 << "'/2/11111111111/RSSMRA80A01H501U/";
    QTest::newRow("12 characters") << 1 << "012345678901" << wrong << 0 << QString();
    QTest::newRow("empty") << 1 << QString() << wrong << 0 << QString();
    QTest::newRow("blanks count") << 1 << " 0123456789 " << wrong << 0 << QString();
    QTest::newRow("cancel a good one") << 0 << "01234567897" << closes << 0 << QString();
    QTest::newRow("other index cancels") << 2 << "01234567897" << closes << 0 << QString();
}

void TechnicianTest::piCf()
{
    QFETCH(int, index);
    QFETCH(QString, text);
    QFETCH(QString, record);
    FiscalDocuments documents;
    documents.PiCfLength = 16;
    documents.PendingDocRecord = "-/1/";
    QTEST(piCfButton(documents, index, text), "outcome");
    QTEST(int(documents.PiCfLength), "length");
    QCOMPARE(documents.PendingDocRecord, record);
    QCOMPARE(stepTexts(piCfSteps(documents)), record.isEmpty() ? QStringList() : QStringList{"panel " + record});
    // Prepared by the credit note form too, on purpose: the form used last wins.
    creditNoteButton(documents, kAcceptButton, "123-2010", "rif");
    QCOMPARE(documents.PendingDocRecord, QStringLiteral("-/123-2010/"));
    piCfButton(documents, kAcceptButton, "01234567897");
    QCOMPARE(documents.PendingDocRecord, QStringLiteral("'/1/01234567897/1111111111111111/"));
    QCOMPARE(documents.CreditNoteRefRecord, QStringLiteral("7/1/1/rif/"));
}

void TechnicianTest::customer_data()
{
    QTest::addColumn<int>("index");
    QTest::addColumn<QString>("emptied"); // "P": the VAT number, a digit: that line
    QTest::addColumn<std::optional<CustomerBox>>("focus");
    using B = CustomerBox;
    QTest::newRow("three lines are enough") << 1 << "" << std::optional<B>();
    QTest::newRow("VAT number missing") << 1 << "P" << std::optional(B::PIva);
    QTest::newRow("line 1 missing") << 1 << "1" << std::optional(B::Riga0);
    QTest::newRow("line 2 missing") << 1 << "2" << std::optional(B::Riga1);
    QTest::newRow("line 3 missing") << 1 << "3" << std::optional(B::Riga2);
    QTest::newRow("first empty line gets the focus") << 1 << "23" << std::optional(B::Riga1);
    QTest::newRow("cancel") << 0 << "" << std::optional<B>();
}

void TechnicianTest::customer()
{
    QFETCH(int, index);
    QFETCH(QString, emptied);
    CustomerEntry entry = threeLineCustomer();
    if (emptied == "P")
        entry.PIva.clear();
    for (int line = 1; line <= 3; ++line)
        if (emptied.contains(QString::number(line)))
            entry.Righe[size_t(line - 1)].clear();
    FiscalDocuments documents;
    documents.CustomerSet = true;
    QTEST(customerButton(documents, index, entry), "focus");
    QCOMPARE(documents.CustomerSet, index == 1 && emptied.isEmpty());
    if (documents.CustomerSet) {
        QCOMPARE(documents.CustomerVatNumber, entry.PIva);
        QCOMPARE(documents.CustomerLines, entry.Righe);
    }
}

void TechnicianTest::creditNote_data()
{
    QTest::addColumn<int>("index");
    QTest::addColumn<QString>("pending");
    QTest::addColumn<QString>("reference");
    QTest::newRow("ok") << 1 << "-/123-2010/" << "7/1/1/sco 12 del 1/";
    QTest::newRow("cancel") << 0 << QString() << QString();
}

void TechnicianTest::creditNote()
{
    QFETCH(int, index);
    QFETCH(QString, pending);
    FiscalDocuments documents;
    documents.PendingDocRecord = "'/1/01234567897/1111111111111111/";
    creditNoteButton(documents, index, "123-2010", "sco 12 del 1");
    QCOMPARE(documents.CreditNoteSet, index == 1);
    QCOMPARE(documents.PendingDocRecord, pending);
    QTEST(documents.CreditNoteRefRecord, "reference");
    QCOMPARE(stepTexts(creditNoteOpeningSteps(documents)), pending.isEmpty() ? QStringList() : QStringList{"panel " + pending});
    QCOMPARE(documents.CreditNoteMark, documents.CreditNoteSet ? QStringLiteral("N/") : QString());
}

void TechnicianTest::keyFilter_data()
{
    QTest::addColumn<DocumentBox>("box");
    QTest::addColumn<QString>("typed");
    QTest::addColumn<QString>("taken"); // the keys that go through, as they go
    QTest::newRow("free text") << DocumentBox::FreeText << "/a" << "\\a";
    QTest::newRow("pratica") << DocumentBox::Pratica << "7- \bA/." << "7- \b";
    QTest::newRow("riferimento") << DocumentBox::Riferimento << "/\\r" << "\\r";
}

void TechnicianTest::keyFilter()
{
    QFETCH(DocumentBox, box);
    QFETCH(QString, typed);
    QString taken;
    for (QChar key : typed)
        if (const auto k = acceptedKey(box, key))
            taken += *k;
    QTEST(taken, "taken");
}

void TechnicianTest::start_data()
{
    QTest::addColumn<bool>("invoice"); // else the credit note button
    QTest::addColumn<bool>("customerSet");
    QTest::addColumn<bool>("creditNoteSet");
    QTest::addColumn<QString>("display");
    QTest::addColumn<QStringList>("messages");
    QTest::addColumn<bool>("showForm");
    const QString idle = "            0.00", selling = "            4.20";
    const QString customer = "Cliente già impostato", note = "Nota Credito già impostata", invoice = "Fattura già impostata";
    QTest::newRow("invoice, nothing pending") << true << false << false << idle << QStringList() << true;
    QTest::newRow("invoice during a sale") << true << false << false << selling << QStringList() << false;
    QTest::newRow("invoice twice") << true << true << false << idle << QStringList{customer} << false;
    QTest::newRow("invoice after a credit note") << true << false << true << idle << QStringList{note} << false;
    QTest::newRow("credit note, nothing pending") << false << false << false << idle << QStringList() << true;
    QTest::newRow("credit note during a sale") << false << false << false << selling << QStringList() << false;
    QTest::newRow("credit note again only warns") << false << false << true << idle << QStringList{note} << true;
    QTest::newRow("credit note after an invoice") << false << true << false << idle << QStringList{invoice} << false;
    QTest::newRow("credit note with both set") << false << true << true << idle << QStringList{note, invoice} << false;
}

void TechnicianTest::start()
{
    QFETCH(bool, invoice);
    QFETCH(QString, display);
    QFETCH(bool, customerSet);
    QFETCH(bool, creditNoteSet);
    FiscalDocuments documents;
    documents.CustomerSet = customerSet;
    documents.CreditNoteSet = creditNoteSet;
    const DocumentStart start = invoice ? startInvoice(documents, display) : startCreditNote(documents, display);
    QTEST(start.messages, "messages");
    QTEST(start.showForm, "showForm");
}

void TechnicianTest::completion_data()
{
    QTest::addColumn<bool>("invoice"); // else a credit note
    QTest::addColumn<int>("opened");   // the result of the invoice's opening
    QTest::addColumn<QStringList>("steps");
    // An invoice is paid by its own record: the cash key itself is not sent.
    const auto invoice = [](const QString& pi, const QString& customer) {
        return QStringList{"pause 100", "clear", "panel " + pi, "pause 100", "clear", "panel " + customer,
                           "pause 100", "pause 100", "send 5/1/0////", "pause 200", "send (/", "display"};
    };
    QTest::newRow("invoice") << true << 0
                             << invoice("'/1/01234567897/1111111111111111/", "j/ROSSI SRL/VIA ROMA 1/00100 ROMA///////0/");
    QTest::newRow("invoice not opened: empty records") << true << 26 << invoice("", "");
    QTest::newRow("refused by the link") << true << 1004 << invoice("", "");
    // A credit note sends the cash key twice.
    QTest::newRow("credit note") << false << 0
                                 << keyWords(90) + QStringList{"pause 100", "clear", "panel 7/1/1/rif.sco.123/", "pause 100",
                                                               "send )/90/", "pause 200", "clear", "send (/", "display"};
}

void TechnicianTest::completion()
{
    QFETCH(bool, invoice);
    QFETCH(int, opened);
    FiscalDocuments documents;
    if (invoice) {
        customerButton(documents, kAcceptButton, threeLineCustomer());
        QCOMPARE(stepTexts(invoiceOpeningSteps(documents)), QStringList{"panel 3/F/OPENFAT//0/0/0/0/"});
        invoiceOpened(documents, opened);
    } else {
        creditNoteButton(documents, kAcceptButton, "123-2010", "rif.sco.123");
    }
    QTEST(stepTexts(keyPressSteps(kCashKeyIndex, documents)), "steps");
    QVERIFY(!documents.CustomerSet && !documents.CreditNoteSet);
    // The document is over: the next cash key is a plain key again.
    QCOMPARE(stepTexts(keyPressSteps(kCashKeyIndex, documents)), keyWords(90) + QStringList{"display"});
}

void TechnicianTest::testReceipts_data()
{
    QTest::addColumn<int>("index");
    QTest::addColumn<QString>("caption");
    QTest::addColumn<QByteArray>("bytes");
    QTest::newRow("display notices") << 1 << "Avviso Display" << QByteArray("7/0/1/##PROMEMORIA##/\r\n7/0/0/#SVUOTA-CASSA#/\r\n");
    QTest::newRow("goods return") << 2 << "Reso Merce"
                                  << QByteArray("3/S/REPARTO1//1/5.26/1/4/\r\n3/S/REPARTO1//1/2.18/1/4/\r\nU/\r\n"
                                                "3/R/REPARTO1//1/7.43/1/4/\r\n5/1/0.00/////\r\n");
    QTest::newRow("printed notice") << 3 << "Avviso Stampato"
                                    << QByteArray("7/1/1/##PROMEMORIA##/\r\n7/1/0/#SVUOTA-CASSA#/\r\nw/1/1//\r\n").repeated(5) + "m//\r\n";
    QTest::newRow("invoice") << 4 << "Fattura"
                             << QByteArray("3/F/OPEN//1/1/1/4/\r\n3/S/REPARTO 1//1/80/1/4/\r\n3/S/REPARTO 1//1/70/1/4/\r\n"
                                           "'/1/01234567897/1111111111111111/\r\n"
                                           "j//INTESTAZIONE CLIENTE/VIA  _______ N.3/00100 CITTANOVA (XX)//////0/\r\n"
                                           "5/1/0.00/////\r\n");
    QTest::newRow("credit note") << 5 << "Nota di Credito"
                                 << QByteArray("-/123-2010/\r\n3/N/CAMICIA ROSSA/rif.sco.123del010109/1/1/1/4/\r\n5/1/0.00/////\r\n");
    QTest::newRow("plain receipt") << 6 << "Scontrino"
                                   << QByteArray("3/S/Coca Cola 1,70/second , descr/1/25.88/1/4/\r\n3/S/REPARTO2//1/25.88/2/10/\r\n"
                                                 "3/S/REPARTO3//1/7.33/3/20/\r\n4/10.00///0/0/0//\r\n5/1/0.00/////\r\n");
    for (int none : {0, 7, -1})
        QTest::addRow("no button %d", none) << none << QString() << QByteArray();
}

void TechnicianTest::testReceipts()
{
    QFETCH(int, index);
    QTEST(testReceiptCaption(index), "caption");
    QTEST(testReceiptFile(index), "bytes");
}

void TechnicianTest::testReceiptPath_data()
{
    QTest::addColumn<QString>("dir");
    QTest::addColumn<QString>("file");
    QTest::addColumn<std::optional<QString>>("path");
    const QString sep = QDir::separator();
    QTest::newRow("separator added") << "srv" << "scontrino.txt" << std::optional("srv" + sep + "scontrino.txt");
    QTest::newRow("separator not doubled") << "srv" + sep << "scontrino.txt" << std::optional("srv" + sep + "scontrino.txt");
    QTest::newRow("two characters are enough") << "d1" << "s.tx" << std::optional("d1" + sep + "s.tx");
    QTest::newRow("one character: nothing") << "c" << "s.tx" << std::optional<QString>();
    QTest::newRow("empty: nothing") << QString() << "s.tx" << std::optional<QString>();
}

void TechnicianTest::testReceiptPath()
{
    QFETCH(QString, dir);
    QFETCH(QString, file);
    QTEST(technician::testReceiptPath(dir, file), "path");
}

void TechnicianTest::keysOnTheWire_data()
{
    QTest::addColumn<QString>("caption");
    QTest::addColumn<QStringList>("records"); // frames the PC sent, display reads included
    QTest::addColumn<qint64>("pauses");       // virtual ms at least
    QTest::newRow("SC €") << "SC \u20AC" << QStringList{")/67/", ")/22/", ")/90/", "(/"} << qint64(300);
    QTest::newRow("PLU waits longer") << "PLU" << QStringList{")/51/", "(/"} << qint64(300);
    QTest::newRow("a digit") << "7" << QStringList{")/61/", "(/"} << qint64(100);
}

void TechnicianTest::keysOnTheWire()
{
    QFETCH(QString, caption);
    ScriptedPeer peer;
    peer.enqDefault = "<ACK>";
    for (int i = 0; i < 10; ++i)
        peer.frameReplies << QStringLiteral("<ACK><STX>00/00/01/%1/<ETX>").arg(QString(34, u' '));
    VirtualClock clock;
    VirtualLinePort port(peer, clock);
    QVERIFY(port.open("t", 9600));
    EcrLink link(port, clock);
    RecordingStatus status;
    FiscalDocuments documents;
    runSteps(link, status, keyPressSteps(keyIndex(caption), documents));
    QTEST(peer.records(), "records");
    QFETCH(qint64, pauses);
    QVERIFY(clock.nowMs() >= pauses);
}

void TechnicianTest::displayReadThreeTimesAtMost()
{
    ScriptedPeer peer;
    peer.enqDefault = "<ACK>";
    const QString cut = QStringLiteral("<ACK><STX>00/00/01/%1<ETX>").arg(QString(33, u'x')); // 42 characters
    peer.frameReplies = {"<ACK><STX>00/00/01/x/<ETX>", cut, cut, cut, cut};
    VirtualClock clock;
    VirtualLinePort port(peer, clock);
    QVERIFY(port.open("t", 9600));
    EcrLink link(port, clock);
    RecordingStatus status;
    FiscalDocuments documents;
    const StepOutcome out = runSteps(link, status, keyPressSteps(keyIndex("7"), documents));
    QCOMPARE(peer.records(), (QStringList{")/61/", "(/", "(/", "(/"}));
    QVERIFY(!out.display); // the display keeps what it showed
}

void TechnicianTest::documentsOnASlowRegister_data()
{
    QTest::addColumn<bool>("invoice"); // two invoices, else a credit note
    QTest::addColumn<QStringList>("wire"); // what the PC sent, display reads left out
    QStringList invoices;
    for (const QString v : {"01234567897", "09876543210"})
        invoices << "3/F/OPENFAT//0/0/0/0/" << ")/46/" << ")/5/" << "'/1/" + v + "/1111111111111111/"
                 << "j/CLIENTE " + v + "/VIA ROMA 1/00100 ROMA///////0/" << "5/1/0////";
    QTest::newRow("each invoice its customer, paid by its record") << true << invoices;
    QTest::newRow("a credit note sends the cash key twice")
        << false << QStringList{"-/123-2010/", ")/46/", ")/5/", ")/90/", "7/1/1/rif. 5/", ")/90/"};
}

void TechnicianTest::documentsOnASlowRegister()
{
    // A register that takes 1.5 s over every answer, in virtual time.
    QFETCH(bool, invoice);
    sim::VirtualEcrOptions options;
    options.answerDelayMs = 1500;
    sim::VirtualEcr ecr(options);
    WireTap tap(ecr);
    VirtualClock clock;
    VirtualLinePort port(tap, clock);
    port.open("virtual", 9600);
    EcrLink link(port, clock);
    RecordingOperator op;
    DocumentDesk desk;
    FilledForms forms;
    for (int n = 0; n < (invoice ? 2 : 1); ++n) {
        const QString vat = n ? "09876543210" : "01234567897";
        forms.customers << CustomerEntry{vat, {"CLIENTE " + vat, "VIA ROMA 1", "00100 ROMA", "", "", ""}};
        invoice ? desk.invoice(link, op, forms) : desk.creditNote(link, op, forms);
        for (const char* key : {"5", "REP-01", "Contanti"})
            desk.keyPress(link, op, keyIndex(key));
    }
    const QStringList wire = tap.records().filter(QRegularExpression("^[^(]"));
    QTEST(wire, "wire");
    QVERIFY(!desk.documents().CustomerSet && !desk.documents().CreditNoteSet);
    QVERIFY(clock.nowMs() > wire.size() * 1500);
}

QTEST_GUILESS_MAIN(TechnicianTest)
#include "tst_technician.moc"
