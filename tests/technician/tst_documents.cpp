#include "technician/DocumentKeyFilter.h"
#include "technician/FiscalDocuments.h"
#include "technician/VirtualKeyboard.h"

#include "StepText.h"

#include <QTest>

using namespace kelm::technician;

class TestDocuments : public QObject {
    Q_OBJECT

private slots:
    void piCf_data();
    void piCf();
    void laterFormWinsThePendingRecord();
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
};

namespace {

constexpr int kCancel = 0;
constexpr int kOk = 1;

const QString kIdle = QStringLiteral("            0.00");
const QString kSelling = QStringLiteral("            4.20");

CustomerEntry threeLineCustomer()
{
    return {QStringLiteral("01234567897"),
            {QStringLiteral("ROSSI SRL"), QStringLiteral("VIA ROMA 1"), QStringLiteral("00100 ROMA"), QString(),
             QString(), QString()}};
}

} // namespace

void TestDocuments::piCf_data()
{
    QTest::addColumn<int>("index");
    QTest::addColumn<QString>("text");
    QTest::addColumn<PiCfOutcome>("outcome");
    QTest::addColumn<int>("length");
    QTest::addColumn<QString>("record");

    QTest::newRow("VAT number") << kOk << QStringLiteral("01234567897") << PiCfOutcome::Closes << 11
                                << QStringLiteral("'/1/01234567897/1111111111111111/");
    QTest::newRow("fiscal code upper-cased") << kOk << QStringLiteral("rssmra80a01h501u") << PiCfOutcome::Closes
                                             << 16 << QStringLiteral("'/2/11111111111/RSSMRA80A01H501U/");
    QTest::newRow("12 characters") << kOk << QStringLiteral("012345678901") << PiCfOutcome::WrongLength << 0
                                   << QString();
    QTest::newRow("empty") << kOk << QString() << PiCfOutcome::WrongLength << 0 << QString();
    QTest::newRow("blanks count") << kOk << QStringLiteral(" 0123456789 ") << PiCfOutcome::WrongLength << 0
                                  << QString();
    QTest::newRow("cancel a good one") << kCancel << QStringLiteral("01234567897") << PiCfOutcome::Closes << 0
                                       << QString();
    QTest::newRow("other index cancels") << 2 << QStringLiteral("01234567897") << PiCfOutcome::Closes << 0
                                         << QString();
}

void TestDocuments::piCf()
{
    QFETCH(int, index);
    QFETCH(QString, text);
    FiscalDocuments documents;
    documents.PiCfLength = 16;
    documents.PendingDocRecord = QStringLiteral("-/1/");

    QTEST(piCfButton(documents, index, text), "outcome");
    QTEST(int(documents.PiCfLength), "length");
    QTEST(documents.PendingDocRecord, "record");
    QFETCH(QString, record);
    QCOMPARE(stepTexts(piCfSteps(documents)),
             record.isEmpty() ? QStringList() : QStringList{QStringLiteral("panel ") + record});
}

void TestDocuments::laterFormWinsThePendingRecord()
{
    FiscalDocuments documents;
    creditNoteButton(documents, kOk, QStringLiteral("123-2010"), QStringLiteral("rif"));
    piCfButton(documents, kOk, QStringLiteral("01234567897"));

    QCOMPARE(documents.PendingDocRecord, QStringLiteral("'/1/01234567897/1111111111111111/"));
    QVERIFY(documents.CreditNoteSet);
    QCOMPARE(documents.CreditNoteRefRecord, QStringLiteral("7/1/1/rif/"));
}

void TestDocuments::customer_data()
{
    QTest::addColumn<int>("index");
    QTest::addColumn<CustomerEntry>("entry");
    QTest::addColumn<std::optional<CustomerBox>>("focus");
    QTest::addColumn<bool>("customerSet");

    const CustomerEntry full = threeLineCustomer();
    QTest::newRow("three lines are enough") << kOk << full << std::optional<CustomerBox>() << true;
    CustomerEntry noVat = full;
    noVat.PIva.clear();
    QTest::newRow("VAT number missing") << kOk << noVat << std::optional(CustomerBox::PIva) << false;
    const CustomerBox required[] = {CustomerBox::Riga0, CustomerBox::Riga1, CustomerBox::Riga2};
    for (std::size_t line = 0; line < 3; ++line) {
        CustomerEntry missing = full;
        missing.Righe[line].clear();
        QTest::addRow("line %zu missing", line) << kOk << missing << std::optional(required[line]) << false;
    }
    CustomerEntry firstEmptyWins = full;
    firstEmptyWins.Righe[1].clear();
    firstEmptyWins.Righe[2].clear();
    QTest::newRow("first empty line gets the focus") << kOk << firstEmptyWins << std::optional(CustomerBox::Riga1)
                                                     << false;
    QTest::newRow("cancel") << kCancel << full << std::optional<CustomerBox>() << false;
}

void TestDocuments::customer()
{
    QFETCH(int, index);
    QFETCH(CustomerEntry, entry);
    FiscalDocuments documents;
    documents.CustomerSet = true;

    QTEST(customerButton(documents, index, entry), "focus");
    QTEST(documents.CustomerSet, "customerSet");
    if (documents.CustomerSet) {
        QCOMPARE(documents.CustomerVatNumber, entry.PIva);
        QCOMPARE(documents.CustomerLines, entry.Righe);
    }
}

void TestDocuments::creditNote_data()
{
    QTest::addColumn<int>("index");
    QTest::addColumn<bool>("set");
    QTest::addColumn<QString>("pending");
    QTest::addColumn<QString>("reference");
    QTest::addColumn<QStringList>("opening");

    QTest::newRow("ok") << kOk << true << QStringLiteral("-/123-2010/") << QStringLiteral("7/1/1/sco 12 del 1/")
                        << QStringList{QStringLiteral("panel -/123-2010/")};
    QTest::newRow("cancel") << kCancel << false << QString() << QString() << QStringList();
}

void TestDocuments::creditNote()
{
    QFETCH(int, index);
    FiscalDocuments documents;
    documents.PendingDocRecord = QStringLiteral("'/1/01234567897/1111111111111111/");

    creditNoteButton(documents, index, QStringLiteral("123-2010"), QStringLiteral("sco 12 del 1"));

    QTEST(documents.CreditNoteSet, "set");
    QTEST(documents.PendingDocRecord, "pending");
    QTEST(documents.CreditNoteRefRecord, "reference");
    QTEST(stepTexts(creditNoteOpeningSteps(documents)), "opening");
    QCOMPARE(documents.CreditNoteMark, documents.CreditNoteSet ? QStringLiteral("N/") : QString());
}

void TestDocuments::keyFilter_data()
{
    QTest::addColumn<DocumentBox>("box");
    QTest::addColumn<QChar>("key");
    QTest::addColumn<QString>("taken"); // empty: swallowed

    QTest::newRow("free text slash") << DocumentBox::FreeText << QChar(u'/') << QStringLiteral("\\");
    QTest::newRow("free text letter") << DocumentBox::FreeText << QChar(u'a') << QStringLiteral("a");
    QTest::newRow("pratica digit") << DocumentBox::Pratica << QChar(u'7') << QStringLiteral("7");
    QTest::newRow("pratica hyphen") << DocumentBox::Pratica << QChar(u'-') << QStringLiteral("-");
    QTest::newRow("pratica blank") << DocumentBox::Pratica << QChar(u' ') << QStringLiteral(" ");
    QTest::newRow("pratica backspace") << DocumentBox::Pratica << QChar(u'\b') << QStringLiteral("\b");
    QTest::newRow("pratica letter") << DocumentBox::Pratica << QChar(u'A') << QString();
    QTest::newRow("pratica slash") << DocumentBox::Pratica << QChar(u'/') << QString();
    QTest::newRow("pratica point") << DocumentBox::Pratica << QChar(u'.') << QString();
    QTest::newRow("riferimento slash") << DocumentBox::Riferimento << QChar(u'/') << QString();
    QTest::newRow("riferimento backslash") << DocumentBox::Riferimento << QChar(u'\\') << QStringLiteral("\\");
    QTest::newRow("riferimento letter") << DocumentBox::Riferimento << QChar(u'r') << QStringLiteral("r");
}

void TestDocuments::keyFilter()
{
    QFETCH(DocumentBox, box);
    QFETCH(QChar, key);
    const std::optional<QChar> taken = acceptedKey(box, key);
    QTEST(taken ? QString(*taken) : QString(), "taken");
}

void TestDocuments::start_data()
{
    QTest::addColumn<bool>("invoice"); // else the credit note button
    QTest::addColumn<bool>("customerSet");
    QTest::addColumn<bool>("creditNoteSet");
    QTest::addColumn<QString>("display");
    QTest::addColumn<QStringList>("messages");
    QTest::addColumn<bool>("showForm");

    const QString customer = QStringLiteral("Cliente già impostato");
    const QString creditNote = QStringLiteral("Nota Credito già impostata");
    const QString invoice = QStringLiteral("Fattura già impostata");
    QTest::newRow("invoice, nothing pending") << true << false << false << kIdle << QStringList() << true;
    QTest::newRow("invoice during a sale") << true << false << false << kSelling << QStringList() << false;
    QTest::newRow("invoice twice") << true << true << false << kIdle << QStringList{customer} << false;
    QTest::newRow("invoice after a credit note") << true << false << true << kIdle << QStringList{creditNote}
                                                 << false;
    QTest::newRow("credit note, nothing pending") << false << false << false << kIdle << QStringList() << true;
    QTest::newRow("credit note during a sale") << false << false << false << kSelling << QStringList() << false;
    QTest::newRow("credit note again only warns") << false << false << true << kIdle << QStringList{creditNote}
                                                  << true;
    QTest::newRow("credit note after an invoice") << false << true << false << kIdle << QStringList{invoice}
                                                  << false;
    QTest::newRow("credit note with both set") << false << true << true << kIdle
                                               << QStringList{creditNote, invoice} << false;
}

void TestDocuments::start()
{
    QFETCH(bool, invoice);
    QFETCH(QString, display);
    FiscalDocuments documents;
    QFETCH(bool, customerSet);
    QFETCH(bool, creditNoteSet);
    documents.CustomerSet = customerSet;
    documents.CreditNoteSet = creditNoteSet;

    const DocumentStart start =
        invoice ? startInvoice(documents, display) : startCreditNote(documents, display);
    QTEST(start.messages, "messages");
    QTEST(start.showForm, "showForm");
}

void TestDocuments::completion_data()
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
                             << invoice("'/1/01234567897/1111111111111111/",
                                        "j/ROSSI SRL/VIA ROMA 1/00100 ROMA///////0/");
    QTest::newRow("invoice not opened: empty records") << true << 26 << invoice("", "");
    QTest::newRow("refused by the link") << true << 1004 << invoice("", "");
    // A credit note sends the cash key twice.
    QTest::newRow("credit note") << false << 0
                                 << keyWords(90)
            + QStringList{"pause 100", "clear", "panel 7/1/1/rif.sco.123/", "pause 100", "send )/90/", "pause 200",
                          "clear", "send (/", "display"};
}

void TestDocuments::completion()
{
    QFETCH(bool, invoice);
    QFETCH(int, opened);
    FiscalDocuments documents;
    if (invoice) {
        customerButton(documents, kOk, threeLineCustomer());
        QCOMPARE(stepTexts(invoiceOpeningSteps(documents)), QStringList{"panel 3/F/OPENFAT//0/0/0/0/"});
        invoiceOpened(documents, opened);
    } else {
        creditNoteButton(documents, kOk, QStringLiteral("123-2010"), QStringLiteral("rif.sco.123"));
    }
    QTEST(stepTexts(keyPressSteps(kCashKeyIndex, documents)), "steps");
    QVERIFY(!documents.CustomerSet);
    QVERIFY(!documents.CreditNoteSet);
    // The document is over: the next cash key is a plain key again.
    QCOMPARE(stepTexts(keyPressSteps(kCashKeyIndex, documents)), keyWords(90) + QStringList{"display"});
}

QTEST_GUILESS_MAIN(TestDocuments)
#include "tst_documents.moc"
