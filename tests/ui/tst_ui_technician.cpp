// The keyboard and technician pages against the built-in virtual register:
// the display after a sale, the console, an invoice completed on the cash
// key, the closure question both ways, the reprint sequence and the test
// receipt files.
#include "EcrWindow.h"
#include "technician/TestReceipts.h"
#include "ui/FrmCliente.h"
#include "ui/FrmNCred.h"
#include "ui/FrmPiCf.h"
#include "ui/MainForm.h"

#include <QApplication>
#include <QDir>
#include <QFile>
#include <QLabel>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QTabWidget>
#include <QTemporaryDir>
#include <QTest>
#include <QTimer>

using namespace kelm;
using Button = ui::Dialogs::Button;

namespace {

const QByteArray kSettings = "ServerStato=Off\r\nServerFile=scontrino.txt\r\n";

} // namespace

class TechnicianTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void displayAfterASale();
    void keyboardSaleHoldsReceiptFiles();
    void consoleAppendsTheSlash_data();
    void consoleAppendsTheSlash();
    void commandFileSendsEveryItem();
    void invoiceOnTheCashKey();
    void formClosedIsCancelled_data();
    void formClosedIsCancelled();
    void closureQuestion_data();
    void closureQuestion();
    void reprintSetsTheParameterOnce();
    void testReceiptFiles_data();
    void testReceiptFiles();
};

void TechnicianTest::displayAfterASale()
{
    EcrWindow w(kSettings);
    QVERIFY(w.ready());
    w.form->show();
    w.form->findChild<QTabWidget*>("SSTabPrimaria")->setCurrentIndex(2);
    w.form->activateWindow();
    QVERIFY(QTest::qWaitForWindowActive(w.form.get()));
    QTest::keyClick(w.form.get(), Qt::Key_5); // the PC's digit presses the register's "5"
    w.key(41); // "REP-01"
    QVERIFY(w.settle());
    const QString line1 = w.find<QLabel>("LblDisp1_0")->text();
    QVERIFY2(line1.contains(QStringLiteral("5")), qPrintable(line1));
    QCOMPARE(line1.size(), 16);
    // One register, one display, wherever it shows.
    QCOMPARE(w.find<QLineEdit>("txtVirtDSP_0")->text(), line1);
    QVERIFY(w.find<QLabel>("lblVirtualDisplay")->text().startsWith(line1));
    QVERIFY(w.journal().contains(QStringLiteral(")/46/")));
    QVERIFY(w.journal().contains(QStringLiteral(")/5/")));
}

void TechnicianTest::keyboardSaleHoldsReceiptFiles()
{
    EcrWindow w("ServerStato=On\r\nServerFile=scontrino.txt\r\n");
    QVERIFY(w.ready());
    w.key(17); // "5": a sale begins on the keyboard
    QVERIFY(w.settle());
    QFile file(QDir(w.spool()).filePath("scontrino.txt"));
    QVERIFY(file.open(QIODevice::WriteOnly));
    file.write("3/S/PANE//1/1.00/1/4/\r\n5/1/0.00/////\r\n");
    file.close();
    QTest::qWait(800); // three ticks and more
    QVERIFY(file.exists()); // it waits in the folder
    QVERIFY(w.find<QLabel>("sbMain_2")->text().startsWith(QStringLiteral("Vendita in corso dalla tastiera")));
    w.key(41); // "REP-01"
    w.key(43); // "Contanti": the display reads 0 again
    QTRY_VERIFY_WITH_TIMEOUT(!file.exists(), 5000);
    QTRY_VERIFY(w.journal().contains(QStringLiteral("5/1/0.00/////")));
    const QStringList j = w.journal();
    QVERIFY(j.indexOf(QStringLiteral(")/90/")) < j.indexOf(QStringLiteral("3/S/PANE//1/1.00/1/4/")));
}

void TechnicianTest::consoleAppendsTheSlash_data()
{
    QTest::addColumn<QString>("typed");
    QTest::addColumn<QString>("sent");
    QTest::newRow("slash added") << "x/1/1/1" << "x/1/1/1/";
    QTest::newRow("slash added even after one") << "a/" << "a//";
}

void TechnicianTest::consoleAppendsTheSlash()
{
    QFETCH(QString, typed);
    QFETCH(QString, sent);
    EcrWindow w(kSettings);
    w.find<QLineEdit>("txtSingleCMD")->setText(typed);
    QTest::keyClick(w.find<QLineEdit>("txtSingleCMD"), Qt::Key_Return); // Enter sends, as the button does
    QVERIFY(w.settle());
    QVERIFY2(w.journal().contains(sent), qPrintable(w.journal().join(u'|')));
    QVERIFY(w.find<QPlainTextEdit>("txtAnswerCMD")->toPlainText().startsWith(QStringLiteral("00/")));
    w.click("cmdTechCancAnswer");
    QCOMPARE(w.find<QPlainTextEdit>("txtAnswerCMD")->toPlainText(), QString());
}

void TechnicianTest::commandFileSendsEveryItem()
{
    EcrWindow w(kSettings);
    w.find<QLineEdit>("txtFileCMD")->setText(w.dir.filePath("missing.txt"));
    w.click("cmdSendCommand_1");
    QCOMPARE(w.find<QPlainTextEdit>("txtAnswerCMD")->toPlainText(), QStringLiteral("File inesistente"));
    QFile file(w.dir.filePath("commands.txt"));
    file.open(QIODevice::WriteOnly);
    file.write("a/,s/\r\nZ/\r\n");
    file.close();
    w.dialogs.chosenFile = file.fileName();
    w.click("cmdTechFile");
    QCOMPARE(w.find<QLineEdit>("txtFileCMD")->text(), file.fileName());
    w.click("cmdSendCommand_1");
    QVERIFY(w.settle());
    const QStringList j = w.journal();
    QVERIFY(j.indexOf(QStringLiteral("a/")) < j.lastIndexOf(QStringLiteral("s/")));
    // The last item was refused: the box shows its outcome.
    QCOMPARE(w.find<QPlainTextEdit>("txtAnswerCMD")->toPlainText(), QStringLiteral("Errore"));
}

void TechnicianTest::invoiceOnTheCashKey()
{
    // Two invoices keyed without waiting for the register: each form is
    // filled as soon as it shows, and the sale and the cash key follow at once.
    EcrWindow w(kSettings);
    QVERIFY(w.settle());
    QStringList customers = {QStringLiteral("01234567897"), QStringLiteral("09876543210")};
    QTimer filler;
    QObject::connect(&filler, &QTimer::timeout, [&] {
        for (QWidget* form : QApplication::topLevelWidgets()) {
            if (form->objectName() != QStringLiteral("FrmCliente") || !form->isVisible() || customers.isEmpty())
                continue;
            const QString vat = customers.takeFirst();
            form->findChild<QLineEdit*>("TxtPIva")->setText(vat);
            for (const QString box : {"TxtRiga_0", "TxtRiga_1", "TxtRiga_2"})
                form->findChild<QLineEdit*>(box)->setText(box + vat);
            QTest::mouseClick(form->findChild<QPushButton*>("CmdChiude_1"), Qt::LeftButton);
            for (int key : {17, 41, 43})
                w.key(key);
            if (!customers.isEmpty())
                w.click("CmdFat");
        }
    });
    filler.start(20);
    w.click("CmdFat");
    QVERIFY(QTest::qWaitFor([&] { return customers.isEmpty(); }, 10000));
    QVERIFY(w.settle());
    const QStringList j = w.journal().filter(QRegularExpression(QStringLiteral("^(3/F|'|j|5/)")));
    QStringList expected;
    for (const QString vat : {"01234567897", "09876543210"})
        expected << "3/F/OPENFAT//0/0/0/0/" << "'/1/" + vat + "/1111111111111111/"
                 << "j/TxtRiga_0" + vat + "/TxtRiga_1" + vat + "/TxtRiga_2" + vat + "///////0/" << "5/1/0////";
    QCOMPARE(j, expected);
}

void TechnicianTest::formClosedIsCancelled_data()
{
    QTest::addColumn<QString>("form");
    QTest::addColumn<bool>("escape"); // else the close box
    QTest::addColumn<QString>("left"); // customer set, credit note set, PiCfLength, pending record, reference
    for (const bool escape : {true, false}) {
        QTest::addRow("FrmPiCf %d", escape) << "FrmPiCf" << escape << "1 1 0  x/";
        QTest::addRow("FrmNCred %d", escape) << "FrmNCred" << escape << "1 0 11  ";
        QTest::addRow("FrmCliente %d", escape) << "FrmCliente" << escape << "0 1 11 x/ x/";
    }
}

void TechnicianTest::formClosedIsCancelled()
{
    QFETCH(QString, form);
    QFETCH(bool, escape);
    technician::FiscalDocuments d;
    d.CustomerSet = d.CreditNoteSet = true;
    d.PiCfLength = 11;
    d.PendingDocRecord = d.CreditNoteRefRecord = QStringLiteral("x/");
    ScriptedDialogs dialogs;
    const std::unique_ptr<QDialog> dialog = form == "FrmPiCf" ? std::make_unique<ui::FrmPiCf>(d, dialogs)
        : form == "FrmNCred" ? std::unique_ptr<QDialog>(std::make_unique<ui::FrmNCred>(d))
                             : std::make_unique<ui::FrmCliente>(d);
    dialog->show();
    escape ? QTest::keyClick(dialog.get(), Qt::Key_Escape) : void(dialog->close());
    QVERIFY(!dialog->isVisible());
    QTEST(QStringLiteral("%1 %2 %3 %4 %5").arg(int(d.CustomerSet)).arg(int(d.CreditNoteSet)).arg(d.PiCfLength)
              .arg(d.PendingDocRecord, d.CreditNoteRefRecord), "left");
}

void TechnicianTest::closureQuestion_data()
{
    QTest::addColumn<Button>("answer");
    QTest::newRow("Cancel closes nothing") << Button::Cancel;
    QTest::newRow("OK closes and writes the totals") << Button::Ok;
}

void TechnicianTest::closureQuestion()
{
    QFETCH(Button, answer);
    EcrWindow w(kSettings);
    w.key(17);
    w.key(41);
    w.key(43);
    QVERIFY(w.settle());
    w.dialogs.answers = {answer};
    w.click("cmdChiusuraGIornaliera_0");
    QVERIFY(w.settle());
    QCOMPARE(w.dialogs.asked, QStringList{"ATTENZIONE: Si conferma di voler fare la chiusura giornaliera?"});
    const bool closed = answer == Button::Ok;
    QCOMPARE(w.journal().contains(QStringLiteral("x/7/0/0/")), closed);
    QFile totals(w.spool() + QStringLiteral("Totali.txt")); // the folder name runs into the file name, as always
    QCOMPARE(totals.exists(), closed);
    if (closed) {
        QVERIFY(totals.open(QIODevice::ReadOnly));
        const QByteArray text = totals.readAll();
        QVERIFY2(text.startsWith("IVA 1 = "), text.constData());
        QVERIFY2(text.contains("TOTALE VENDITE = 0.05"), text.constData()); // "5" keys five cents
    }
}

void TechnicianTest::reprintSetsTheParameterOnce()
{
    EcrWindow w(kSettings);
    w.key(17);
    w.key(41);
    w.key(43); // a receipt to reprint
    QVERIFY(w.settle());
    w.dialogs.answers = {Button::Yes, Button::Yes};
    w.click("cmdDGFE_0");
    QVERIFY(w.settle());
    w.click("cmdDGFE_0");
    QVERIFY(w.settle());
    const QStringList j = w.journal().filter(QRegularExpression(QStringLiteral("^(B/12/|G/12/|\\)/120/)")));
    QVERIFY2(j == (QStringList{"B/12/", "G/12/1/1/42/", ")/120/", "B/12/", ")/120/"}), qPrintable(j.join(u'|') + " / " + w.dialogs.asked.join(u'|')));
    w.click("cmdDGFE_1"); // a placeholder: nothing happens
    QVERIFY(w.settle());
    QCOMPARE(w.journal().filter(QStringLiteral("B/12/")).size(), 2);
}

void TechnicianTest::testReceiptFiles_data()
{
    QTest::addColumn<int>("index");
    for (int i = technician::kFirstTestReceipt; i <= technician::kLastTestReceipt; ++i)
        QTest::newRow(qPrintable(technician::testReceiptCaption(i))) << i;
}

void TechnicianTest::testReceiptFiles()
{
    QFETCH(int, index);
    EcrWindow w(kSettings);
    w.dialogs.answers = {Button::Yes, Button::Yes};
    w.click(QStringLiteral("cmdDemoTicket_%1").arg(index));
    QFile file(QDir(w.spool()).filePath("scontrino.txt"));
    QVERIFY(file.open(QIODevice::ReadOnly));
    QCOMPARE(file.readAll(), technician::testReceiptFile(index));
    file.close();
    w.click(QStringLiteral("cmdDemoTicket_%1").arg(index)); // never over a waiting file
    QCOMPARE(w.dialogs.shown, QStringList{"Kelm Drev: File già esistente."});
}

QTEST_MAIN(TechnicianTest)
#include "tst_ui_technician.moc"
