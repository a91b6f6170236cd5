// The main window against the built-in virtual ECR, driven as a user does:
// start-up, identity, technician login, configuration round trip, start modes,
// exit question, model adaptation, a window that keeps answering while the
// register is slow; the keys and the display, the console, an invoice completed
// on the cash key, the document forms, the closure and reprint; the ECR
// programming pages' downloads and read-backs, the logo pages, and the PLU page
// with its download, deletion beyond the grid and file. The records' fields,
// which PLUs are deleted and how files read are the unit tables'; here, that
// each page does it.
#include "EcrWindow.h"
#include "server/PendingQueue.h"
#include "technician/TestReceipts.h"
#include "technician/VirtualKeyboard.h"
#include "ui/ConfigPcTab.h"
#include "ui/DlgPreviewIntestazione.h"
#include "ui/EcrConfigTab.h"
#include "ui/FrmCliente.h"
#include "ui/FrmNCred.h"
#include "ui/FrmPiCf.h"
#include "ui/LogoPage.h"
#include "ui/ModelAdaptation.h"

#include <QAction>
#include <QApplication>
#include <QBuffer>
#include <QCheckBox>
#include <QDialog>
#include <QElapsedTimer>
#include <QFormLayout>
#include <QListWidget>
#include <QPainter>
#include <QProcess>
#include <QProgressBar>
#include <QScrollBar>
#include <QTimer>

using namespace kelm;
using ui::MainForm;
using Button = ui::Dialogs::Button;
using Buttons = QList<Button>;

namespace {

const QByteArray kSettings = "ServerStato=Off\r\nServerFile=scontrino.txt\r\n";

// A sale keyed on the register: "5", "REP-01", "Contanti".
const QStringList kSale{"cmdECR_17", "cmdECR_41", "cmdECR_43"};

const QString kAdvice = QStringLiteral(
    "Kelm Drev: Il sistema ridimensionerà automaticamente\r\nle immagini alla risoluzione più vicina a \r\n"
    "[64,128,256] x [64,128,256].\r\nSi consiglia di caricare immagini già\r\ndimensionate opportunamente");

// A picture of the given size, black with a white right edge four pixels wide, as a file of `format`.
QByteArray picture(QSize size, const char* format = "BMP")
{
    QImage image(size, QImage::Format_RGB888);
    image.fill(Qt::black);
    QPainter(&image).fillRect(size.width() - 4, 0, 4, size.height(), Qt::white);
    QBuffer buffer;
    buffer.open(QIODevice::WriteOnly);
    image.save(&buffer, format);
    return buffer.data();
}

// Loads `bytes` as a BMP file into logo page `page`.
void load(EcrWindow& w, int page, const QByteArray& bytes)
{
    w.dialogs.chosenFile = w.dir.filePath(QStringLiteral("logo%1.bmp").arg(w.dialogs.asked.size()));
    writeFile(w.dialogs.chosenFile, bytes);
    w.click(QStringLiteral("cmdBMPLoad_%1").arg(page));
}

// Appends one row per text: "code/description/…/" with the cells in column order.
void typeRows(const EcrWindow& w, const QStringList& lines)
{
    for (const QString& line : lines) {
        const int r = w.grid()->rowCount();
        w.grid()->setRowCount(r + 1);
        const QStringList cells = line.split(u'/');
        for (int c = 0; c < w.grid()->columnCount() && c < cells.size(); ++c)
            w.grid()->setItem(r, c, new QTableWidgetItem(cells[c]));
    }
}

// Each row as its ten cells, each closed by "/".
QStringList gridLines(const EcrWindow& w)
{
    QStringList lines;
    for (int r = 0; r < w.grid()->rowCount(); ++r) {
        lines << QString();
        for (int c = 0; c < w.grid()->columnCount(); ++c)
            lines.last() += (w.grid()->item(r, c) ? w.grid()->item(r, c)->text() : QString()) + u'/';
    }
    return lines;
}

QStringList items(int from, int to)
{
    QStringList rows;
    for (int n = from; n <= to; ++n)
        rows << QStringLiteral("CODE%1/ITEM %1/1/0/1,50/0/5/00000000/").arg(n);
    return rows;
}

// Waits until the download or read is over.
bool done(const EcrWindow& w)
{
    return QTest::qWaitFor([&] {
               return w.find<QProgressBar>("pbPLU_0")->isHidden() && w.find<QProgressBar>("pbPLU_1")->isHidden();
           })
        && w.settle();
}

} // namespace

class WindowTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void startUpShowsTheRegister()
    {
        EcrWindow w;
        QCOMPARE(w.form->windowTitle(), QStringLiteral(" KelmDrev - Versione : ") + QStringLiteral(KELMDREV_VERSION));
        QVERIFY(w.ready());
        // The start-up's "e/"; captions the user looks for, the tabs keep their access keys.
        QVERIFY(w.run({"sbMain_4?1.00", "txtIVA_0?22.00", "SSTabPrimaria?Configuraz. &PC|&Configuraz. ECR|Uso come &ECR|"
                       "*Pannello del &Tecnico", "cmdChiusuraGIornaliera_0?Chiusura Giornaliera", "cmdTechFile?...",
                       "cmdChiusuraGIornaliera_1?Chiusura Giornaliera", "cmdReportVenditeOP01_0?Totali Venduto",
                       "cmdReportVenditeOP01_1?Totali Venduto", "tray?Kelm Drev - KD-99KDV000001\nServer non attivo"}));
        QVERIFY(readFile(w.ini()).contains("[Current]\r\nCampo=KD\r\nSN=99KDV000001\r\nNum=1\r\nFW=1.00\r\nDrev="
                                           KELMDREV_VERSION "\r\n"));
        QVERIFY(w.dialogs.shown.isEmpty());
        // Closed, the virtual register's panel comes back from the menu.
        auto* dock = w.find<QWidget>("dockVirtualEcr");
        QVERIFY(dock->findChild<QWidget*>("VirtualEcrPanel"));
        dock->close();
        QVERIFY(!w.find<QAction>("mnuViewVirtualEcr")->isChecked());
        w.find<QAction>("mnuViewVirtualEcr")->trigger();
        QVERIFY(dock->isVisible());
        auto* srv = w.find<QComboBox>("cmbSRVModalita");
        auto* label = qobject_cast<QFormLayout*>(srv->parentWidget()->layout())->labelForField(srv);
        QCOMPARE(qobject_cast<QLabel*>(label)->text(), QStringLiteral("Avvio"));
        // A second window on the same folder is refused, and the running one comes forward from the tray.
        w.form->hide();
        MainForm second({w.dir.path(), false}, &w.dialogs, &w.passwords);
        QVERIFY(!second.start());
        QCOMPARE(w.dialogs.shown, QStringList{"ATTENZIONE: Driver già attivo"});
        QTRY_VERIFY(w.form->isVisible());
        QCOMPARE(w.panel(3), QStringLiteral("KD-99KDV000001")); // the first one is untouched
        // The run-time list: the newest entry on top, ten thousand at most.
        auto* list = w.find<QListWidget>("lstRunTime");
        w.fill("chkRunTimeLog", "1");
        for (int i = 0; i <= 10000; ++i)
            w.form->findChild<ui::ConfigPcTab*>()->addRunTimeEntry(QString::number(i));
        QCOMPARE(list->item(0)->text() + u'|' + list->item(list->count() - 1)->text(), QStringLiteral("10000|1"));
    }

    void technicianLogin_data()
    {
        // The entries the login and the password change read; what is done in the dialog, if it is opened;
        // what follows: the technician page, panel 4, credit flags, logged in, the new passwords' boxes emptied.
        columns<QString, QString, QString, QString, QString, QString>("login", "change", "action", "after", "shown", "stored");
        const QString wrong = "Attenzione: Password Errata";
        row("no password: page open, not logged in", "", "", "", "page panel4", "", "");
        row("a password: page closed", "Abc", "", "", "panel4", "", "Abc");
        row("Cancel leaves the page", "", "", "CancelButton", "page", "", "");
        row("Escape is Cancel", "", "", "escape", "page", "", "");
        row("close box is Cancel", "Abc", "", "close", "", "", "Abc");
        row("case and blanks do not count", "Abc", "x", "OKButton|aBC ", "page panel4 credit logged", "", "Abc");
        row("Enter logs in; blanks are nothing", "", "x", "return|   ", "page panel4 credit logged", "", "");
        row("refused login", "", "", "OKButton|x", "cleared", wrong, "");
        row("something stored, nothing typed", "Abc", "", "return", "cleared", wrong, "Abc");
        row("password changed, trimmed", "old", "", "Command1|| Abc | Abc ", "page panel4 logged", "", "Abc");
        row("new entries differ in case", "old", "", "Command1||Abc|abc", "cleared panel4", "Attenzione: Nuova Password Errata",
            "old");
        row("change checks its own entry", "old", "Cur", "Command1|old", "panel4", "Attenzione: Password corrente errata", "old");
        row("current compared without case", "old", "Cur", "Command1| cur|New|New", "page panel4 logged", "", "New");
    }
    void technicianLogin()
    {
        // The login dialog is driven through its own boxes and buttons: "button|typed|new|repeated".
        const QStringList action = fetch<QString>("action").split(u'|');
        EcrWindow w({}, "virtual", false);
        w.writeIni("Dispositivo=virtual\r\n"); // no model: no register, the login alone
        w.passwords.values[technician::kLoginApplication] = fetch<QString>("login");
        w.passwords.values[technician::kChangeApplication] = fetch<QString>("change");
        QVERIFY(w.open());
        QStringList after;
        if (!action[0].isEmpty()) {
            QTimer::singleShot(0, [&] {
                auto* dialog = qobject_cast<QDialog*>(QApplication::activeModalWidget());
                QVERIFY(dialog);
                auto* newPassword = dialog->findChild<QLineEdit*>("txtNewPassword_0");
                dialog->findChild<QLineEdit*>("txtPassword")->setText(action.value(1));
                newPassword->setText(action.value(2, "New"));
                dialog->findChild<QLineEdit*>("txtNewPassword_1")->setText(action.value(3, "New"));
                if (action[0] == "escape")
                    QTest::keyClick(dialog, Qt::Key_Escape);
                else if (action[0] == "return")
                    QTest::keyClick(dialog->findChild<QLineEdit*>("txtPassword"), Qt::Key_Return);
                else if (action[0] == "close")
                    dialog->close();
                else
                    QTest::mouseClick(dialog->findChild<QPushButton*>(action[0]), Qt::LeftButton);
                if (newPassword->text().isEmpty())
                    after << "cleared";
            });
            w.form->mnuFileTecnico_Click();
        }
        for (const auto& [flag, on] : {std::pair{"page", w.find<QTabWidget>("SSTabPrimaria")->isTabEnabled(3)},
                                       {"panel4", !w.find<QLabel>("sbMain_4")->isHidden()},
                                       {"credit", w.find<QCheckBox>("chkPagCrediti_1")->isEnabled()},
                                       {"logged", w.form->technicianLogged()}})
            if (on)
                after << flag;
        QCOMPARE(after.join(u' '), fetch<QString>("after"));
        QCOMPARE(w.dialogs.shown.join(u'|'), fetch<QString>("shown"));
        QCOMPARE(w.passwords.values[technician::kLoginApplication], fetch<QString>("stored"));
    }

    void startModes_data()
    {
        columns<QString, bool, int>("mode", "minimized", "tab");
        row("Normal", "Normal", false, 0);
        row("Minimized", "Minimized", true, 0);
        row("VirtualECR", "VirtualECR", false, 2);
        row("Iconized without a tray keeps the window", "Iconized", false, 0);
    }
    void startModes()
    {
        EcrWindow w("ServerModalita=" + fetch<QString>("mode").toLatin1() + "\r\n");
        QVERIFY(w.form->isVisible());
        QCOMPARE(w.form->isMinimized(), fetch<bool>("minimized"));
        QCOMPARE(w.find<QTabWidget>("SSTabPrimaria")->currentIndex(), fetch<int>("tab"));
    }

    void configurationRoundTrip()
    {
        EcrWindow w;
        w.dialogs.chosenDirectory = w.spool() + "/other";
        QVERIFY(QDir().mkpath(w.dialogs.chosenDirectory));
        QVERIFY(w.run({"cmbModello=Velt", "cmbComPort=Com7", "cmbSpeed=115200", "chkSRV=1", "cmbSRVModalita=Minimized",
                       "txtSRVFile=*.txt", "chkLog=0", "chkWrapDescription=1", "cmdSRVDir", "cmdSalvaConfigPC"}));
        QCOMPARE(w.dialogs.asked.last(), QStringLiteral("Indicare la cartella di lavoro temporanea del Server"));
        // The running server takes its receipts from the new folder at once.
        writeFile(w.dialogs.chosenDirectory + "/nuovo.txt", "3/S/NUOVO//1/1.00/1/4/\r\n5/1/0.00/////\r\n");
        QVERIFY(w.run({"<3/S/NUOVO//1/1.00/1/4/"}));
        w.form.reset();
        QVERIFY(w.run({"Parametri/Modello?Velt", "Parametri/Porta?7", "Parametri/Velocita?115200", "Parametri/Dispositivo?",
                       "Parametri/ServerStato?On", "Parametri/ServerModalita?Minimized", "Parametri/ServerFile?*.txt",
                       "Parametri/ServerDir?" + w.dialogs.chosenDirectory, "Parametri/ServerLog?Off",
                       "Parametri/WrapDescription?On", "Parametri/AlIvaAuto?Off"}));
        QVERIFY(w.open());
        QVERIFY(w.run({"cmbComPort?Com7", "chkLog?0"}));
    }

    void stepsInTheWindow_data()
    {
        // Section Parametri (none: the usual one), the answers to the questions, the steps (see EcrWindow::run);
        // out: questions asked, messages shown.
        columns<QByteArray, Buttons, QStringList, int, int>("ini", "answers", "steps", "asked", "shown");
        const QString trouble = "Comando '3/S/X//1/1.00/99/4/' - Errore N\\. .* - Il reparto non esiste$";
        // The folder name runs into the totals' file name, as always; "5" keys five cents.
        row("closure: Cancel closes nothing, both buttons alike", QByteArray(), Buttons{Button::Cancel, Button::Ok},
            kSale + QStringList{"cmdChiusuraGIornaliera_0", "@spoolTotali.txt?", "cmdChiusuraGIornaliera_1",
                               "@spoolTotali.txt~TOTALE VENDITE = 0.05", "*^x/7/?x/7/0/0/"}, 2, 0);
        row("reprint sets the parameter once; its second button is a placeholder", QByteArray(),
            Buttons{Button::Yes, Button::Yes}, kSale + QStringList{"cmdDGFE_0", "cmdDGFE_0", "cmdDGFE_1",
                        "*^(B/12/|G/12/|\\)/120/)?B/12/|G/12/1/1/42/|)/120/|B/12/|)/120/"}, 2, 0);
        // A model outside the table, a speed outside the list, and a ComN port that writes no device.
        row("stored settings survive a save", QByteArray("Modello=Cassa Nuova\r\nVelocita=19200\r\nPorta=3\r\n"),
            Buttons{}, QStringList{"cmdSalvaConfigPC", "Parametri/Modello?Cassa Nuova", "Parametri/Velocita?19200",
                                   "Parametri/Porta?3", "Parametri/Dispositivo?<none>"}, 0, 0);
        row("no model: the window runs without the register", QByteArray("Dispositivo=virtual\r\n"), Buttons{},
            QStringList{"sbMain_1?Errore Nei Parametri", "sbMain_2?Tipo Modello non impostato", "!", "sbMain_3?"}, 0, 0);
        row("driver trouble on the status bar, until a receipt goes through",
            QByteArray("Modello=Kelm Brio\r\nVelocita=9600\r\nDispositivo=virtual\r\nServerStato=On\r\n"
                       "ServerFile=scontrino.txt\r\n"), Buttons{},
            QStringList{">3/S/PANE//1/1.00/1/4/\r\n3/S/X//1/1.00/99/4/\r\n5/1/0.00/////\r\n", "sbMain_2~^" + trouble,
                        "sbMain_1?Attenzione!", "tray~\n" + trouble, "!H/", "sbMain_2~^" + trouble, // it stays
                        ">3/S/PANE//1/1.00/1/4/\r\n5/1/0.00/////\r\n", "sbMain_2?",
                        "tray?Kelm Drev - KD-99KDV000001\nDriver attivo"}, 0, 0);
        // Of the programming pages, the records' fields and the messages' texts are the programming tests'; here, that
        // each box is bound.
        row("header: Cancel sends and saves nothing, OK saves then sends", QByteArray(), Buttons{Button::Cancel, Button::Ok},
            QStringList{"txtHeaderText_0=BAR CENTRALE", "cmbHeaderAlign_0=Centrato", "cmdSetParametri_0", "!H/",
                        "Intestazioni/Head1?<none>", "cmdSetParametri_0", "Intestazioni/Head1?20BAR CENTRALE",
                        "<H/1/          BAR CENTRALE          /1//1//"}, 2, 1);
        row("VAT rates", QByteArray(), Buttons{Button::Ok},
            QStringList{"txtIVA_0=4.00", "txtIVA_1=10.00", "txtIVA_2=22.00", "txtIVA_3=5.00", "txtIVA_4=0.00",
                        "cmdSetParametri_10", "<b/4.00/10.00/22.00/5.00/0.00/", "txtIVA_0=", "txtIVA_2=", "cmdReadIVA",
                        "txtIVA_0?4.00", "txtIVA_2?22.00"}, 1, 1);
        row("departments: only values from the register are sent", QByteArray(), Buttons{},
            QStringList{"cmdSetParametri_3?off", "cmdreadParmIVAREP", "cmdSetParametri_3?Scarica reparti",
                        "txtDEPTDescription_6=BEVANDE", "cmbDPTCodIVA_6=2", "cmdSetParametri_3", "<D/7/BEVANDE/2//////",
                        "cmdDPTClear", "cmdSetParametri_3?off", "txtDEPTDescription_6?", "cmdreadParmIVAREP",
                        "txtDEPTDescription_6?BEVANDE", "cmbDPTCodIVA_6?2"}, 0, 1);
        // Empty rows would wipe the register's payment types: a read comes first. A typed slash shows as a backslash.
        row("payment types", QByteArray(), Buttons{},
            QStringList{"cmdSetParametri_6?off", "cmdReadPagamenti", "cmdSetParametri_6?Scarica pagamenti",
                        "txtPagDescr_1=CARTA DI CREDITO", "txtPagDescrBreve_1=CARTA", "chkPagResto_1=1", "cmdSetParametri_6",
                        "<Y/2/CREDITO/ARTA/10000000/0/0//1/0/", "cmdClearPagamenti", "txtPagDescr_1?", "chkPagAttivo_1?0",
                        "chkPagResto_1?0", "cmdReadPagamenti", "txtPagDescr_1?CREDITO", "chkPagResto_1?1", "chkPagAttivo_1?1",
                        "txtPagTasso_0=1/2", "txtPagTasso_0?1\\2", "txtPagMarkUp_8=1/2", "txtPagMarkUp_8?1\\2"}, 0, 1);
        // S-parameters wait for a read or a reset; only the selected scroll message, typed into, is saved and sent.
        row("S-parameters and scroll message", QByteArray(), Buttons{Button::Yes},
            QStringList{"cmdSetParametri_9?off", "cmdResetParmS",
                        "#Kelm Drev: Parametri S ripristinati a default ma non salvati.", "cmdSetParametri_9",
                        "<S/00001100001000000001000000/999999/999999/1000000/99999999/0/0/0/1/CASSA -1/27/"
                        "27/27/27/27/27/27/27/27/29/29/29/29/29/29/29/29/29/8/0/", "txtBCPriceLead_0=1/2",
                        "txtBCPriceLead_0?1\\2", "txtPRTIntensity=1/2", "txtPRTIntensity?1\\2", "txtScrollMSG_1=not selected",
                        "optScrollMSGEnable_1=1", "txtScrollMSG_2= SALDI 20% ", "cmdSetParametri_7", "Messaggi/Msg3?SALDI 20%",
                        "Messaggi/Msg2?<none>", "<o/SALDI 20%/", "txtScrollMSG_2=", "cmdReadScrolMSG",
                        "txtScrollMSG_2?SALDI 20%"}, 1, 3);
    }
    void stepsInTheWindow()
    {
        EcrWindow w(kSettings, "virtual", false);
        if (!fetch<QByteArray>("ini").isEmpty())
            w.writeIni(fetch<QByteArray>("ini"));
        QVERIFY(w.open() && w.settle());
        w.dialogs.answers = fetch<Buttons>("answers");
        QVERIFY(w.run(fetch<QStringList>("steps")) && w.settle());
        QCOMPARE(w.dialogs.asked.size(), fetch<int>("asked"));
        QVERIFY(w.shown(fetch<int>("shown")));
    }

    void keptLinesWaitWhileTheServerIsOff()
    {
        EcrWindow w("ServerStato=Off\r\n", "virtual", false);
        server::savePendingQueue(server::pendingQueuePath(w.dir.path()), {{"3/S/RIMASTO//1/1.00/1/4/"}, {"5/1/0.00/////"}});
        QVERIFY(w.open() && w.ready());
        std::atomic<bool> settled{false};
        w.form->session().post([&](EcrLink&) { settled = true; });
        QTRY_VERIFY(settled);
        QVERIFY(w.run({"!3/S/RIMASTO", "chkSRV=1", "*RIMASTO|^5/1/?3/S/RIMASTO//1/1.00/1/4/|5/1/0.00/////"}));
    }

    void exitQuestionWhileAReceiptIsOpen()
    {
        // A receipt file without its closing line leaves the receipt open: No stays, Yes leaves.
        EcrWindow w("ServerStato=On\r\nServerFile=scontrino.txt\r\n");
        QVERIFY(w.ready());
        w.dialogs.answers = {Button::No, Button::Yes};
        QVERIFY(w.run({">3/S/UNO//1/1.00/1/4/\r\n", "<3/S/UNO//1/1.00/1/4/"}) && w.settle());
        w.form->close(); // the close box asks as the menu does
        QVERIFY(w.form->isVisible());
        w.form->mnuFileExit_Click();
        QCOMPARE(w.dialogs.asked, QStringList(2, "ATTENZIONE: Scontrino Aperto !\r\n\r\nProseguo ?"));
        QVERIFY(!w.form->isVisible());
    }

    void modelAdaptation_data()
    {
        // One letter a control: payments 0..8 | messages 0..9 | flag 3.
        columns<int, int, bool, QString>("payments", "messages", "flag3", "enabled");
        row("9 payments, 10 messages: everything on", 9, 10, true, QString("111111111|1111111111|1"));
        row("5 payments, 2 messages, no flag 3", 5, 2, false, QString("111110000|1100000000|0"));
    }
    void modelAdaptation()
    {
        const QStringList names = {"txtPagDescr_%1", "txtScrollMSG_%1", "cmbFlagS_3"};
        const int counts[] = {9, 10, 1};
        QWidget root;
        for (int k = 0; k < 3; ++k)
            for (int j = 0; j < counts[k]; ++j)
                (new QLineEdit(&root))->setObjectName(names[k].arg(j));
        technician::ModelInfo model = technician::setupModelli().front();
        model.paymentTypes = qint16(fetch<int>("payments"));
        model.scrollingMessages = qint16(fetch<int>("messages"));
        model.sFlagAvailable[3] = fetch<bool>("flag3");
        ui::adaptFormToModel(&root, model);
        QStringList seen(3);
        for (int k = 0; k < 3; ++k)
            for (int j = 0; j < counts[k]; ++j)
                seen[k] += root.findChild<QWidget*>(names[k].arg(j))->isEnabled() ? u'1' : u'0';
        QCOMPARE(seen.join(u'|'), fetch<QString>("enabled"));
    }

#ifdef ECRSIM_EXE
    void windowAnswersWhileTheRegisterIsSlow()
    {
        // A register that takes 1 s over every answer, on a real pty.
        QTemporaryDir simDir;
        const QString link = simDir.filePath(QStringLiteral("tty"));
        QProcess sim;
        sim.start(QStringLiteral(ECRSIM_EXE), {"--link", link, "--delay", "1000"});
        QVERIFY(sim.waitForReadyRead(5000));
        EcrWindow w({}, link.toLatin1(), false);
        int ticks = 0;
        QTimer clock;
        connect(&clock, &QTimer::timeout, [&] { ++ticks; });
        clock.start(20);
        QElapsedTimer elapsed;
        elapsed.start();
        QVERIFY(w.open());
        QVERIFY(elapsed.elapsed() < 800); // start-up does not wait for the register
        QVERIFY(w.ready());
        // Several seconds of exchanges, and the UI thread went on ticking all along.
        QVERIFY2(ticks > elapsed.elapsed() / 20 / 2, qPrintable(QString::number(ticks)));
        sim.write("quit\n");
        sim.waitForFinished(3000);
    }
#endif

    void keysAndDisplay()
    {
        EcrWindow w(kSettings);
        QVERIFY(w.ready());
        w.form->show();
        w.find<QTabWidget>("SSTabPrimaria")->setCurrentIndex(2);
        w.form->activateWindow();
        QVERIFY(QTest::qWaitForWindowActive(w.form.get()));
        QTest::keyClicks(w.form.get(), "75"); // the PC's digits press the register's "7" and "5"
        QVERIFY(w.run({"cmdECR_41"})); // "REP-01"
        const QString line1 = w.value("LblDisp1_0");
        QVERIFY2(line1.contains(QStringLiteral("75")), qPrintable(line1));
        QCOMPARE(line1.size(), 16);
        // One register, one display, wherever it shows.
        QCOMPARE(w.value("txtVirtDSP_0"), line1);
        QVERIFY(w.value("lblVirtualDisplay").startsWith(line1));
        for (const technician::EcrKey& key : technician::ecrKeys()) // every key on the page, with its caption
            QCOMPARE(w.value("cmdECR_" + QString::number(key.index)), key.caption);
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
        // The console: Enter sends, as the button does, and a slash is added even after one; then a command file.
        w.find<QTabWidget>("SSTabPrimaria")->setCurrentIndex(3);
        w.fill("txtSingleCMD", "a/");
        QTest::keyClick(w.find<QLineEdit>("txtSingleCMD"), Qt::Key_Return);
        QVERIFY(w.run({"<a//", "txtAnswerCMD~^00/"}));
        w.dialogs.chosenFile = w.dir.filePath("commands.txt");
        writeFile(w.dialogs.chosenFile, "a/,s/\r\nZ/\r\n");
        QVERIFY(w.run({"cmdTechCancAnswer", "txtAnswerCMD?", "txtFileCMD=" + w.dir.filePath("missing.txt"), "cmdSendCommand_1",
                       "txtAnswerCMD?File inesistente", "cmdTechFile", "txtFileCMD?" + w.dialogs.chosenFile, "cmdSendCommand_1",
                       "txtAnswerCMD?Errore"})); // every item of every line sent; the last one was refused
        const QStringList j = w.journal();
        QVERIFY(j.lastIndexOf(QStringLiteral("a/")) < j.lastIndexOf(QStringLiteral("s/")));
    }

    void keyboardSaleHoldsReceiptFiles()
    {
        EcrWindow w("ServerStato=On\r\nServerFile=scontrino.txt\r\n");
        QVERIFY(w.ready());
        QVERIFY(w.run({"cmdECR_17", ">3/S/PANE//1/1.00/1/4/\r\n5/1/0.00/////\r\n"})); // "5": a sale begins on the keyboard
        QTest::qWait(800); // three ticks and more
        QVERIFY(QFile::exists(w.spool() + "/scontrino.txt")); // it waits in the folder
        // A console command clears the bar, not the warning; "Contanti": the display reads 0 again, and the file goes.
        QVERIFY(w.run({"sbMain_2~^Vendita in corso dalla tastiera", "txtSingleCMD=a/", "cmdSendCommand_0",
                       "sbMain_2~^Vendita in corso dalla tastiera", "cmdECR_41", "cmdECR_43", "<5/1/0.00/////"}));
        QVERIFY(!QFile::exists(w.spool() + "/scontrino.txt"));
        const QStringList j = w.journal();
        QVERIFY(j.indexOf(QStringLiteral(")/90/")) < j.indexOf(QStringLiteral("3/S/PANE//1/1.00/1/4/")));
    }

    void invoiceOnTheCashKey()
    {
        // The customer form filled as soon as it shows; the sale and the cash key follow at once.
        EcrWindow w(kSettings);
        QVERIFY(w.settle());
        QTimer filler;
        QObject::connect(&filler, &QTimer::timeout, [&] {
            for (QWidget* form : QApplication::topLevelWidgets()) {
                if (form->objectName() != QStringLiteral("FrmCliente") || !form->isVisible() || !filler.isActive())
                    continue;
                filler.stop();
                form->findChild<QLineEdit*>("TxtPIva")->setText("01234567897");
                for (const QString box : {"TxtRiga_0", "TxtRiga_1", "TxtRiga_2"})
                    form->findChild<QLineEdit*>(box)->setText(box);
                QTest::mouseClick(form->findChild<QPushButton*>("CmdChiude_1"), Qt::LeftButton);
                for (const QString& key : kSale)
                    w.click(key);
            }
        });
        filler.start(20);
        w.click("CmdFat");
        QTRY_VERIFY(!filler.isActive());
        QVERIFY(w.settle());
        QCOMPARE(w.journal().filter(QRegularExpression(QStringLiteral("^(3/F|'|j|5/)"))),
                 (QStringList{"3/F/OPENFAT//0/0/0/0/", "'/1/01234567897/1111111111111111/",
                              "j/TxtRiga_0/TxtRiga_1/TxtRiga_2///////0/", "5/1/0////"}));
    }

    void documentForms_data()
    {
        // "escape", "close", or boxes to fill and the button to press; what is left: customer set,
        // credit note set, PiCfLength, pending record, reference.
        columns<QString, QString, QString>("form", "how", "left");
        row("FrmPiCf escape", "FrmPiCf", "escape", "1 1 0  x/");
        row("FrmNCred escape", "FrmNCred", "escape", "1 0 11  ");
        row("FrmCliente close box", "FrmCliente", "close", "0 1 11 x/ x/");
        row("FrmNCred close box", "FrmNCred", "close", "1 0 11  ");
        row("FrmPiCf close box", "FrmPiCf", "close", "1 1 0  x/");
        row("FrmCliente escape", "FrmCliente", "escape", "0 1 11 x/ x/");
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

    void emptyAndUnknownIndices()
    {
        EcrWindow w;
        const QCursor* before = QGuiApplication::overrideCursor();
        for (int index : {5, 8, 11})
            w.form->findChild<ui::EcrConfigTab*>()->cmdSetParametri_Click(index);
        QCOMPARE(w.dialogs.shown, QStringList{"Attenzione: Errore 90 : Avvisare produttore"}); // 5 and 8 are empty slots
        QCOMPARE(QGuiApplication::overrideCursor(), before); // the hourglass is gone on every path
    }

    void logoLoading()
    {
        EcrWindow w;
        const auto logo = [&](int page) { return w.find<ui::LogoPage>("pageLoghi")->pictures()[page]; };
        load(w, 1, picture({70, 200}));
        QCOMPARE(w.dialogs.asked, QStringList{"Leggi BMP: BMP Files|*.bmp"});
        QCOMPARE(w.dialogs.shown,
                 QStringList({kAdvice, "Kelm Drev: Logo non  a dimensioni standard.\r\nRidimensione automatica"}));
        const QStringList fitted{"lbmBMPWidth_1?Largh.:128", "lblBMPHeight_1?Alt.:256", "cmbBMPLarghezza_1?128",
                                 "cmbBMPAltezza_1?256"};
        QVERIFY(w.run(fitted));
        QCOMPARE(w.find<QLabel>("picLogo_1")->pixmap().size(), QSize(128, 256));
        QVERIFY(logo(0).isNull());
        // A bad file changes nothing; which message each bad file gets is the programming tests'.
        const QImage before = logo(1);
        w.dialogs.shown.clear();
        load(w, 1, picture({64, 64}, "PNG"));
        QCOMPARE(w.dialogs.shown, QStringList({kAdvice, "Attenzione: Il file non è un'immagine BMP"}));
        QCOMPARE(logo(1), before);
        QVERIFY(w.run(fitted));
        w.find<QScrollBar>("HScrBMPZoom_1")->setValue(300);
        QCOMPARE(w.find<QLabel>("picLogo_1")->pixmap().size(), QSize(128, 256) * 3);
        // A standard size is kept as it is.
        w.dialogs.shown.clear();
        load(w, 0, picture({64, 64}));
        QCOMPARE(w.dialogs.shown, QStringList{kAdvice});
        QVERIFY(w.run({"lbmBMPWidth_0?Largh.:64", "lblBMPHeight_0?Alt.:64"}));
        QCOMPARE(w.find<QLabel>("picLogo_0")->pixmap().size(), QSize(64, 64));
    }

    void logoDownloadSendsThePageOnShow_data()
    {
        // Pages loaded, in order.
        columns<QList<int>, QString, QString, int>("loaded", "progress", "shown", "records");
        row("end logo on show", QList<int>{1, 0}, QString("0%"), QString("Kelm Drev: Logo Scaricato, ricordarsi di attivarlo"), 64);
        row("no picture on show", QList<int>{0}, QString(), QString("Kelm Drev: Logo non impostato"), 0);
    }
    void logoDownloadSendsThePageOnShow()
    {
        EcrWindow w;
        for (int page : fetch<QList<int>>("loaded"))
            load(w, page, picture(page == 1 ? QSize(128, 64) : QSize(64, 64)));
        w.dialogs.shown.clear();
        w.find<QTabWidget>("SSTabLoghi")->setCurrentIndex(1);
        w.click("cmdSetParametri_2");
        QCOMPARE(w.find<QProgressBar>("pbLogo")->text(), fetch<QString>("progress")); // from none of the records
        QVERIFY(w.shown(1));
        QCOMPARE(w.dialogs.shown[0], fetch<QString>("shown"));
        const QStringList records = w.journal().filter(QRegularExpression(QStringLiteral("^\\$/")));
        QCOMPARE(records.size(), fetch<int>("records"));
        QCOMPARE(records.filter(QStringLiteral("$/2/128/64/")).size(), records.size());
    }

    void downloadDeletesBeyondTheGridThenReads()
    {
        EcrWindow w;
        typeRows(w, items(1, 12));
        w.click("cmdSetParametri_4");
        QVERIFY(w.shown(1) && done(w));
        const qsizetype before = w.journal().size();
        w.click("cmdCancellaPLU");
        QCOMPARE(w.grid()->rowCount(), 0);
        typeRows(w, items(1, 3));
        w.click("cmdSetParametri_4");
        QVERIFY(!w.find<QProgressBar>("pbPLU_0")->isHidden());
        QVERIFY(w.shown(2) && done(w));
        QCOMPARE(w.dialogs.shown[1], QStringLiteral("Kelm Drev: PLU scaricate"));
        QCOMPARE(w.grid()->item(0, 4)->text(), QStringLiteral("1")); // "1,50" as sent
        // Which numbers are probed and deleted is the programming tests'; here, that the scan starts past the grid.
        const QStringList deleted = w.journal().mid(before).filter(QStringLiteral("////0/0/0/0/00000000/"));
        QCOMPARE(deleted.first(), QStringLiteral("P/4////0/0/0/0/00000000/"));
        QCOMPARE(deleted.last(), QStringLiteral("P/12////0/0/0/0/00000000/"));
        QVERIFY(w.run({"cmdCancellaPLU", "cmdReadPLU"}) && done(w));
        QCOMPARE(gridLines(w), items(1, 3).replaceInStrings("1,50/0/5/00000000/", "1/0/5/00000000/0/0/"));
    }

    void stopEndsTheDownloadBetweenRecords()
    {
        EcrWindow w;
        typeRows(w, items(1, 500));
        w.click("cmdSetParametri_4");
        QTRY_VERIFY(w.find<QProgressBar>("pbPLU_0")->value() >= 3);
        w.click("cmdStopPLU");
        QVERIFY(w.shown(1) && done(w));
        const QStringList sent = w.journal().filter(QRegularExpression(QStringLiteral("^P/")));
        QVERIFY(sent.size() >= 3 && sent.size() < 500);
        QCOMPARE(w.dialogs.shown[0],
                 QStringLiteral("Kelm Drev: Scarico PLU interrotto: %1 di 500 righe scaricate").arg(sent.size()));
        QCOMPARE(sent.last(), QStringLiteral("P/%1/CODE%1/ITEM %1/1/0/1/0/5/00000000/").arg(sent.size()));
        QVERIFY(w.journal().filter(QStringLiteral("p/")).isEmpty()); // no search beyond the grid
    }

    void downloadThatWouldDeleteOrFail_data()
    {
        columns<int, Buttons, QStringList, QStringList>("rows", "answers", "asked", "shown");
        const QString failure = QStringLiteral("Attenzione: Errore in scarico PLU BAD\r\nErrore : 08\r\nIl reparto non esiste");
        row("empty grid, Cancel preselected: nothing deleted", 0, Buttons{},
            QStringList{"ATTENZIONE: La griglia PLU è vuota: lo scarico cancella tutte le PLU dell'ECR.\r\n"
                        "Confermare Operazione?"},
            QStringList{});
        row("a failing row: OK goes on", 3, Buttons{}, QStringList(3, failure), QStringList{"Kelm Drev: PLU scaricate"});
        row("a failing row: Cancel stops", 3, Buttons{Button::Cancel}, QStringList{failure},
            QStringList{"Kelm Drev: Scarico PLU interrotto: 1 di 3 righe scaricate"});
    }
    void downloadThatWouldDeleteOrFail()
    {
        EcrWindow w;
        typeRows(w, QStringList(fetch<int>("rows"), QStringLiteral("BAD/X/99/0/1/0/0/00000000/")));
        w.dialogs.answers = fetch<Buttons>("answers");
        w.click("cmdSetParametri_4");
        QVERIFY(done(w));
        QCOMPARE(w.dialogs.asked, fetch<QStringList>("asked"));
        QCOMPARE(w.dialogs.shown, fetch<QStringList>("shown"));
        QVERIFY(fetch<int>("rows") > 0 || w.journal().filter(QStringLiteral("p/")).isEmpty()); // nothing read or deleted
    }

    void rowsAddedAndRemovedCommaTyped()
    {
        EcrWindow w;
        typeRows(w, items(1, 2));
        w.form->show();
        w.click("cmdPLUAggiungiRiga");
        QCOMPARE(w.grid()->rowCount(), 3);
        w.grid()->setCurrentCell(2, 4);
        w.grid()->editItem(w.grid()->item(2, 4));
        auto* editor = w.grid()->viewport()->findChild<QLineEdit*>();
        QVERIFY(editor);
        QTest::keyClicks(editor, QStringLiteral("2,50"));
        QCOMPARE(editor->text(), QStringLiteral("2.50")); // at once, before the cell is left
        QTest::keyClick(editor, Qt::Key_Return);
        QTRY_COMPARE(w.grid()->item(2, 4)->text(), QStringLiteral("2.50"));
        w.grid()->editItem(w.grid()->item(2, 1)); // a typed slash shows as a backslash
        QTest::keyClicks(w.grid()->viewport()->findChild<QLineEdit*>(), QStringLiteral("1/2"));
        QCOMPARE(w.grid()->viewport()->findChild<QLineEdit*>()->text(), QStringLiteral("1\\2"));
        w.grid()->setCurrentCell(0, 1);
        w.click("cmdPLUEliminaRiga");
        QCOMPARE(gridLines(w).first(), items(2, 2)[0] + "//");
        QCOMPARE(w.grid()->rowCount(), 2);
    }

    void loadAndSaveFile()
    {
        EcrWindow w;
        const QString kept = QStringLiteral("1/OLD/1/0/1/0/0/00000000/3/3/");
        typeRows(w, {kept});
        w.dialogs.typed = {w.dir.filePath("missing.txt"), QString(), w.dir.filePath("items.txt")};
        writeFile(w.dialogs.typed[2], "1/A/1/0/1/0/0/00000000/1/1/1/\r\n8001234567890/ACQUA/\r\n");
        for (int i = 0; i < 3; ++i)
            w.click("cmdPLULeggiFile");
        QCOMPARE(w.dialogs.asked, QStringList(3, "Attenzione: Indicare il nome del file PLU"));
        QCOMPARE(w.dialogs.proposals, QStringList(3, w.dir.path() + "/plu.txt"));
        QCOMPARE(w.dialogs.shown,
                 QStringList({"Attenzione: File Inesistente", "Attenzione: File Inesistente",
                              "Attenzione: Righe del file PLU con meno di 8 o più di 10 campi, caricate comunque: 1, 2"}));
        // Appended, counters not loaded; saved as the grid shows, and never over a file.
        const QStringList rows = {kept, "1/A/1/0/1/0/0/00000000///", "8001234567890/ACQUA/////////"};
        QCOMPARE(gridLines(w), rows);
        w.click("cmdPLUSalvaFile"); // the proposal is taken
        const QByteArray saved = (rows.join("\r\n") + "\r\n").toLatin1();
        QCOMPARE(readFile(w.dir.filePath("plu.txt")), saved);
        w.click("cmdCancellaPLU");
        w.click("cmdPLUSalvaFile");
        QCOMPARE(readFile(w.dir.filePath("plu.txt")), saved);
        QCOMPARE(w.dialogs.shown.last(), QStringLiteral("Attenzione: File già esistente"));
    }
};

QTEST_MAIN(WindowTest)
#include "tst_ui_window.moc"
