// The keyboard and technician pages against the built-in virtual register:
// the keys and the display, the console, an invoice completed on the cash
// key, the document forms, the closure question both ways, the reprint
// sequence and the test receipt files.
#include "EcrWindow.h"
#include "Table.h"
#include "technician/TestReceipts.h"
#include "technician/VirtualKeyboard.h"
#include "ui/DlgPreviewIntestazione.h"
#include "ui/FrmCliente.h"
#include "ui/FrmNCred.h"
#include "ui/FrmPiCf.h"

#include <QApplication>
#include <QLayout>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <QTabWidget>
#include <QTimer>

using namespace kelm;
using Button = ui::Dialogs::Button;

namespace {

const QByteArray kSettings = "ServerStato=Off\r\nServerFile=scontrino.txt\r\n";

// A sale keyed on the register: "5", "REP-01", "Contanti".
void sale(const EcrWindow& w)
{
    for (int key : {17, 41, 43})
        w.key(key);
}

} // namespace

class TechnicianTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void keysAndDisplay()
    {
        EcrWindow w(kSettings);
        QVERIFY(w.ready());
        w.form->show();
        w.find<QTabWidget>("SSTabPrimaria")->setCurrentIndex(2);
        w.form->activateWindow();
        QVERIFY(QTest::qWaitForWindowActive(w.form.get()));
        QTest::keyClicks(w.form.get(), "75"); // the PC's digits press the register's "7" and "5"
        w.key(41); // "REP-01"
        QVERIFY(w.settle());
        const QString line1 = w.find<QLabel>("LblDisp1_0")->text();
        QVERIFY2(line1.contains(QStringLiteral("75")), qPrintable(line1));
        QCOMPARE(line1.size(), 16);
        // One register, one display, wherever it shows.
        QCOMPARE(w.find<QLineEdit>("txtVirtDSP_0")->text(), line1);
        QVERIFY(w.find<QLabel>("lblVirtualDisplay")->text().startsWith(line1));
        const QStringList keys = w.journal().filter(QRegularExpression("^\\)/\\d+/$"));
        QCOMPARE(keys.join(u' '), QStringLiteral(")/61/ )/46/ )/5/"));
        // The technician's keypad presses the register's key of the same caption.
        QString expected;
        for (int i : {0, 1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 14, 11, 12, 13, 15}) { // a sale on REP-01, then the cash key
            auto* pad = w.find<QPushButton>(QStringLiteral("cmdVirtKBD_%1").arg(i));
            for (const technician::EcrKey& key : technician::ecrKeys())
                if (key.caption == pad->text())
                    expected += QStringLiteral(" )/%1/").arg(key.code);
            w.click(pad->objectName());
        }
        QVERIFY(w.settle());
        QCOMPARE(w.journal().filter(QRegularExpression("^\\)/\\d+/$")).mid(keys.size()).join(u' '), expected.mid(1));
    }

    void keyboardSaleHoldsReceiptFiles()
    {
        EcrWindow w("ServerStato=On\r\nServerFile=scontrino.txt\r\n");
        QVERIFY(w.ready());
        w.key(17); // "5": a sale begins on the keyboard
        QVERIFY(w.settle());
        w.drop("3/S/PANE//1/1.00/1/4/\r\n5/1/0.00/////\r\n");
        QTest::qWait(800); // three ticks and more
        QVERIFY(QFile::exists(w.spool() + "/scontrino.txt")); // it waits in the folder
        QVERIFY(w.panel(2).startsWith(QStringLiteral("Vendita in corso dalla tastiera")));
        w.key(41);
        w.key(43); // "Contanti": the display reads 0 again
        QTRY_VERIFY_WITH_TIMEOUT(!QFile::exists(w.spool() + "/scontrino.txt"), 5000);
        QTRY_VERIFY(w.journal().contains(QStringLiteral("5/1/0.00/////")));
        const QStringList j = w.journal();
        QVERIFY(j.indexOf(QStringLiteral(")/90/")) < j.indexOf(QStringLiteral("3/S/PANE//1/1.00/1/4/")));
    }

    void console()
    {
        EcrWindow w(kSettings);
        w.find<QLineEdit>("txtSingleCMD")->setText("a/");
        QTest::keyClick(w.find<QLineEdit>("txtSingleCMD"), Qt::Key_Return); // Enter sends, as the button does
        QVERIFY(w.settle());
        QVERIFY2(w.journal().contains("a//"), qPrintable(w.journal().join(u'|'))); // a slash added even after one
        QVERIFY(w.find<QPlainTextEdit>("txtAnswerCMD")->toPlainText().startsWith(QStringLiteral("00/")));
        w.click("cmdTechCancAnswer");
        QCOMPARE(w.find<QPlainTextEdit>("txtAnswerCMD")->toPlainText(), QString());
        // A command file, every item of every line.
        w.find<QLineEdit>("txtFileCMD")->setText(w.dir.filePath("missing.txt"));
        w.click("cmdSendCommand_1");
        QCOMPARE(w.find<QPlainTextEdit>("txtAnswerCMD")->toPlainText(), QStringLiteral("File inesistente"));
        w.dialogs.chosenFile = w.dir.filePath("commands.txt");
        writeFile(w.dialogs.chosenFile, "a/,s/\r\nZ/\r\n");
        w.click("cmdTechFile");
        QCOMPARE(w.find<QLineEdit>("txtFileCMD")->text(), w.dialogs.chosenFile);
        w.click("cmdSendCommand_1");
        QVERIFY(w.settle());
        const QStringList j = w.journal();
        QVERIFY(j.lastIndexOf(QStringLiteral("a/")) < j.lastIndexOf(QStringLiteral("s/")));
        // The last item was refused: the box shows its outcome.
        QCOMPARE(w.find<QPlainTextEdit>("txtAnswerCMD")->toPlainText(), QStringLiteral("Errore"));
    }

    void invoiceOnTheCashKey()
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
                sale(w);
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

    void documentForms_data()
    {
        // "escape", "close", or boxes to fill and the button to press; what is left: customer set,
        // credit note set, PiCfLength, pending record, reference.
        columns<QString, QString, QString>("form", "how", "left");
        for (const char* how : {"escape", "close"}) {
            row(qPrintable(QStringLiteral("FrmPiCf %1").arg(how)), "FrmPiCf", how, "1 1 0  x/");
            row(qPrintable(QStringLiteral("FrmNCred %1").arg(how)), "FrmNCred", how, "1 0 11  ");
            row(qPrintable(QStringLiteral("FrmCliente %1").arg(how)), "FrmCliente", how, "0 1 11 x/ x/");
        }
        row("FrmNCred OK", "FrmNCred", "TxtPratica=12-3 TxtRifer=R1 CmdChiude_1", "1 1 11 -/12-3/ 7/1/1/R1/");
    }
    void documentForms()
    {
        const QString form = fetch<QString>("form");
        technician::FiscalDocuments d;
        d.CustomerSet = d.CreditNoteSet = true;
        d.PiCfLength = 11;
        d.PendingDocRecord = d.CreditNoteRefRecord = QStringLiteral("x/");
        ScriptedDialogs dialogs;
        const std::unique_ptr<QDialog> dialog = form == "FrmPiCf" ? std::make_unique<ui::FrmPiCf>(d, dialogs)
            : form == "FrmNCred" ? std::unique_ptr<QDialog>(std::make_unique<ui::FrmNCred>(d))
                                 : std::make_unique<ui::FrmCliente>(d);
        dialog->show();
        const QString how = fetch<QString>("how");
        if (how == "escape")
            QTest::keyClick(dialog.get(), Qt::Key_Escape);
        else if (how == "close")
            dialog->close();
        else // the boxes filled by name, then OK
            for (const QString& box : how.split(u' ')) {
                const QStringList pair = box.split(u'=');
                pair.size() == 2 ? dialog->findChild<QLineEdit*>(pair[0])->setText(pair[1])
                                 : QTest::mouseClick(dialog->findChild<QPushButton*>(box), Qt::LeftButton);
            }
        QVERIFY(!dialog->isVisible());
        QCOMPARE(QStringLiteral("%1 %2 %3 %4 %5").arg(int(d.CustomerSet)).arg(int(d.CreditNoteSet)).arg(d.PiCfLength)
                     .arg(d.PendingDocRecord, d.CreditNoteRefRecord), fetch<QString>("left"));
    }

    void headerPreviewDoublesTallLines()
    {
        int heights[4];
        for (int size = 0; size < 4; ++size) {
            ui::DlgPreviewIntestazione dialog({{"A", size, 0}, {"B", 0, 0}});
            heights[size] = dialog.layout()->itemAt(0)->widget()->height();
        }
        QVERIFY(heights[0] < heights[1]);
        QCOMPARE(heights[0], heights[2]);
        QCOMPARE(heights[1], heights[3]);
    }

    void closureQuestion_data()
    {
        columns<bool>("ok");
        row("Cancel closes nothing", false);
        row("OK closes and writes the totals", true);
    }
    void closureQuestion()
    {
        EcrWindow w(kSettings);
        sale(w);
        QVERIFY(w.settle());
        const bool closed = fetch<bool>("ok");
        w.dialogs.answers = {closed ? Button::Ok : Button::Cancel};
        w.click(closed ? "cmdChiusuraGIornaliera_1" : "cmdChiusuraGIornaliera_0"); // both alike
        QVERIFY(w.settle());
        QCOMPARE(w.dialogs.asked, QStringList{"ATTENZIONE: Si conferma di voler fare la chiusura giornaliera?"});
        QCOMPARE(w.journal().contains(QStringLiteral("x/7/0/0/")), closed);
        // The folder name runs into the file name, as always.
        const QByteArray totals = readFile(w.spool() + QStringLiteral("Totali.txt"));
        QCOMPARE(QFile::exists(w.spool() + QStringLiteral("Totali.txt")), closed);
        if (closed) {
            QVERIFY2(totals.startsWith("IVA 1 = "), totals.constData());
            QVERIFY2(totals.contains("TOTALE VENDITE = 0.05"), totals.constData()); // "5" keys five cents
        }
    }

    void reprintSetsTheParameterOnce()
    {
        EcrWindow w(kSettings);
        sale(w); // a receipt to reprint
        QVERIFY(w.settle());
        w.dialogs.answers = {Button::Yes, Button::Yes};
        w.click("cmdDGFE_0");
        QVERIFY(w.settle());
        QVERIFY(w.settle());
        w.click("cmdDGFE_0");
        w.click("cmdDGFE_1"); // a placeholder: nothing happens
        QVERIFY(w.settle());
        const QStringList j = w.journal().filter(QRegularExpression(QStringLiteral("^(B/12/|G/12/|\\)/120/)")));
        QCOMPARE(j, (QStringList{"B/12/", "G/12/1/1/42/", ")/120/", "B/12/", ")/120/"}));
    }

    void testReceiptFiles()
    {
        EcrWindow w(kSettings);
        for (int i = technician::kFirstTestReceipt; i <= technician::kLastTestReceipt; ++i) {
            w.dialogs.answers = {Button::Yes, Button::Yes};
            w.click(QStringLiteral("cmdDemoTicket_%1").arg(i));
            QCOMPARE(readFile(w.spool() + "/scontrino.txt"), technician::testReceiptFile(i));
            w.click(QStringLiteral("cmdDemoTicket_%1").arg(i)); // never over a waiting file
            QCOMPARE(w.dialogs.shown.size(), i - technician::kFirstTestReceipt + 1);
            QVERIFY(QFile::remove(w.spool() + "/scontrino.txt"));
        }
        QCOMPARE(w.dialogs.shown.last(), QStringLiteral("Kelm Drev: File già esistente."));
    }
};

QTEST_MAIN(TechnicianTest)
#include "tst_ui_technician.moc"
