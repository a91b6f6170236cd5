// The main window against the built-in virtual ECR: start-up, identity,
// configuration round trip, start modes, exit question, model adaptation,
// and a window that keeps answering while the register is slow.
#include "EcrWindow.h"
#include "app/IniFile.h"
#include "server/PendingQueue.h"
#include "ui/ModelAdaptation.h"

#include <QAction>
#include <QApplication>
#include <QCheckBox>
#include <QComboBox>
#include <QDialog>
#include <QElapsedTimer>
#include <QLineEdit>
#include <QProcess>
#include <QTabWidget>
#include <QTimer>

using namespace kelm;
using ui::MainForm;

class MainFormTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void startUpShowsTheRegister();
    void tabsAndTechnicianPage_data();
    void tabsAndTechnicianPage();
    void driverTroubleOnTheStatusBar();
    void missingModelOnTheStatusBar();
    void secondInstanceIsRefused();
    void startModes_data();
    void startModes();
    void configurationRoundTrip();
    void storedSettingsSurviveASave_data();
    void storedSettingsSurviveASave();
    void keptLinesWaitWhileTheServerIsOff();
    void exitQuestionWhileAReceiptIsOpen_data();
    void exitQuestionWhileAReceiptIsOpen();
    void modelAdaptation_data();
    void modelAdaptation();
    void windowAnswersWhileTheRegisterIsSlow();
};

void MainFormTest::startUpShowsTheRegister()
{
    EcrWindow w;
    QCOMPARE(w.form->windowTitle(), QStringLiteral(" KelmDrev - Versione : ") + QStringLiteral(KELMDREV_VERSION));
    QVERIFY(w.ready());
    QCOMPARE(w.panel(4), QStringLiteral("1.00"));
    // The start-up's "e/" fills the rate boxes.
    QTRY_COMPARE(w.find<QLineEdit>("txtIVA_0")->text(), QStringLiteral("22.00"));
    QVERIFY(readFile(w.ini()).contains("[Current]\r\nCampo=KD\r\nSN=99KDV000001\r\nNum=1\r\nFW=1.00\r\nDrev=" KELMDREV_VERSION "\r\n"));
    QVERIFY(w.find<QWidget>("VirtualEcrPanel"));
    QVERIFY(w.dialogs.shown.isEmpty());
    QCOMPARE(w.form->trayTip(), QStringLiteral("Kelm Drev - KD-99KDV000001\nServer non attivo"));
    // Closed, the panel comes back from the menu.
    auto* dock = w.find<QWidget>("dockVirtualEcr");
    auto* view = w.find<QAction>("mnuViewVirtualEcr");
    dock->close();
    QVERIFY(!view->isChecked());
    view->trigger();
    QVERIFY(dock->isVisible());
}

void MainFormTest::driverTroubleOnTheStatusBar()
{
    EcrWindow w("ServerStato=On\r\nServerFile=scontrino.txt\r\n");
    QVERIFY(w.ready());
    w.drop("3/S/PANE//1/1.00/1/4/\r\n3/S/X//1/1.00/99/4/\r\n5/1/0.00/////\r\n");
    QTRY_VERIFY_WITH_TIMEOUT(w.panel(2).startsWith("Comando '3/S/X//1/1.00/99/4/' - Errore N. "), 5000);
    QVERIFY(w.panel(2).endsWith(QStringLiteral(" - Il reparto non esiste")));
    QCOMPARE(w.panel(1), QStringLiteral("Attenzione!"));
    QVERIFY(w.form->trayTip().endsWith(u'\n' + w.panel(2)));
    QTest::qWait(500); // it stays
    QVERIFY(!w.panel(2).isEmpty());
    w.drop("3/S/PANE//1/1.00/1/4/\r\n5/1/0.00/////\r\n");
    QTRY_COMPARE_WITH_TIMEOUT(w.panel(2), QString(), 5000); // the next receipt went through
    QCOMPARE(w.form->trayTip(), QStringLiteral("Kelm Drev - KD-99KDV000001\nDriver attivo"));
}

void MainFormTest::tabsAndTechnicianPage_data()
{
    QTest::addColumn<QString>("password");
    QTest::addColumn<QString>("login"); // what is done in the login dialog, if it is opened
    QTest::addColumn<QString>("after"); // technician page, panel 4, credit flags, logged in
    QTest::newRow("no password: page open, not logged in") << "" << "" << "page panel4";
    QTest::newRow("a password: page closed") << "Abc" << "" << "panel4";
    QTest::newRow("Cancel leaves the page") << "" << "CancelButton" << "page";
    QTest::newRow("Escape is Cancel") << "" << "escape" << "page";
    QTest::newRow("close box is Cancel") << "Abc" << "close" << "";
    QTest::newRow("login") << "Abc" << "OKButton abc" << "page panel4 credit logged";
    QTest::newRow("refused login") << "" << "OKButton x" << "";
    QTest::newRow("password changed") << "Abc" << "Command1" << "page panel4 logged";
    QTest::newRow("change refused") << "" << "Command1 wrong" << "panel4";
}

void MainFormTest::tabsAndTechnicianPage()
{
    QFETCH(QString, password);
    QFETCH(QString, login);
    EcrWindow w({}, "virtual", false);
    w.passwords.values[technician::kLoginApplication] = password;
    QVERIFY(w.open());
    MainForm& form = *w.form;
    auto* tabs = w.find<QTabWidget>("SSTabPrimaria");
    QCOMPARE(tabs->count(), 4);
    QCOMPARE(tabs->tabText(0), QStringLiteral("Configuraz. &PC"));
    QCOMPARE(tabs->tabText(1), QStringLiteral("&Configuraz. ECR"));
    QCOMPARE(tabs->tabText(2), QStringLiteral("Uso come &ECR"));
    QCOMPARE(tabs->tabText(3), QStringLiteral("*Pannello del &Tecnico"));
    if (!login.isEmpty()) {
        QTimer::singleShot(0, [login] {
            auto* dialog = qobject_cast<QDialog*>(QApplication::activeModalWidget());
            QVERIFY(dialog);
            const QStringList words = login.split(u' ');
            dialog->findChild<QLineEdit*>(QStringLiteral("txtPassword"))->setText(words.value(1));
            dialog->findChild<QLineEdit*>(QStringLiteral("txtNewPassword_0"))->setText(QStringLiteral("New"));
            dialog->findChild<QLineEdit*>(QStringLiteral("txtNewPassword_1"))->setText(QStringLiteral("New"));
            if (words[0] == QStringLiteral("escape"))
                QTest::keyClick(dialog, Qt::Key_Escape);
            else if (words[0] == QStringLiteral("close"))
                dialog->close();
            else
                QTest::mouseClick(dialog->findChild<QPushButton*>(words[0]), Qt::LeftButton);
        });
        form.mnuFileTecnico_Click();
    }
    QStringList after;
    if (tabs->isTabEnabled(3))
        after << "page";
    if (!w.find<QLabel>("sbMain_4")->isHidden())
        after << "panel4";
    if (w.find<QCheckBox>("chkPagCrediti_1")->isEnabled())
        after << "credit";
    if (form.technicianLogged())
        after << "logged";
    QTEST(after.join(u' '), "after");
}

void MainFormTest::missingModelOnTheStatusBar()
{
    EcrWindow w({}, "virtual", false);
    w.writeIni("Dispositivo=virtual\r\n");
    QVERIFY(w.open()); // the window runs without the register
    QCOMPARE(w.panel(1), QStringLiteral("Errore Nei Parametri"));
    QCOMPARE(w.panel(2), QStringLiteral("Tipo Modello non impostato"));
    QTest::qWait(200);
    QCOMPARE(w.panel(3), QString());
}

void MainFormTest::secondInstanceIsRefused()
{
    EcrWindow w;
    w.form->hide(); // in the tray
    MainForm second({w.dir.path(), false}, &w.dialogs, &w.passwords);
    QVERIFY(!second.start());
    QCOMPARE(w.dialogs.shown, QStringList{"ATTENZIONE: Driver già attivo"});
    QTRY_VERIFY(w.form->isVisible()); // and the running window comes forward
    QVERIFY(w.ready()); // the first one is untouched
}

void MainFormTest::startModes_data()
{
    QTest::addColumn<QString>("mode");
    QTest::addColumn<bool>("visible");
    QTest::addColumn<bool>("minimized");
    QTest::addColumn<int>("tab");
    QTest::newRow("Normal") << "Normal" << true << false << 0;
    QTest::newRow("Minimized") << "Minimized" << true << true << 0;
    QTest::newRow("VirtualECR") << "VirtualECR" << true << false << 2;
    // With no tray to go to (as here) an iconized start must not lose the window.
    QTest::newRow("Iconized without a tray") << "Iconized" << true << false << 0;
}

void MainFormTest::startModes()
{
    QFETCH(QString, mode);
    QFETCH(bool, visible);
    QFETCH(bool, minimized);
    QFETCH(int, tab);
    EcrWindow w("ServerModalita=" + mode.toLatin1() + "\r\n");
    QCOMPARE(w.form->isVisible(), visible);
    QCOMPARE(w.form->isMinimized(), minimized);
    QCOMPARE(w.find<QTabWidget>("SSTabPrimaria")->currentIndex(), tab);
}

void MainFormTest::configurationRoundTrip()
{
    EcrWindow w;
    w.find<QComboBox>("cmbModello")->setCurrentText("Velt");
    w.find<QComboBox>("cmbComPort")->setCurrentText("Com7");
    w.find<QComboBox>("cmbSpeed")->setCurrentText("115200");
    w.find<QCheckBox>("chkSRV")->setChecked(true);
    w.find<QComboBox>("cmbSRVModalita")->setCurrentText("Minimized");
    w.find<QLineEdit>("txtSRVFile")->setText("*.txt");
    w.find<QCheckBox>("chkLog")->setChecked(false);
    w.find<QCheckBox>("chkWrapDescription")->setChecked(true);
    w.dialogs.chosenDirectory = w.spool() + "/other";
    QVERIFY(QDir().mkpath(w.dialogs.chosenDirectory));
    w.click("cmdSRVDir");
    QCOMPARE(w.dialogs.asked.last(), QStringLiteral("Indicare la cartella di lavoro temporanea del Server"));
    w.click("cmdSalvaConfigPC");
    // The running server takes its receipts from the new folder at once.
    writeFile(w.dialogs.chosenDirectory + "/nuovo.txt", "3/S/NUOVO//1/1.00/1/4/\r\n5/1/0.00/////\r\n");
    QTRY_VERIFY_WITH_TIMEOUT(w.journal().contains("3/S/NUOVO//1/1.00/1/4/"), 5000);
    w.form.reset();
    const IniFile ini(w.ini());
    const QMap<QString, QString> expected = {
        {"Modello", "Velt"}, {"Porta", "7"}, {"Velocita", "115200"}, {"Dispositivo", ""},
        {"ServerStato", "On"}, {"ServerModalita", "Minimized"}, {"ServerDir", w.spool() + "/other"},
        {"ServerFile", "*.txt"}, {"ServerLog", "Off"}, {"WrapDescription", "On"}, {"AlIvaAuto", "Off"}};
    for (auto it = expected.begin(); it != expected.end(); ++it)
        QCOMPARE(ini.read("Parametri", it.key(), "<missing>", 255), it.value());
    QVERIFY(w.open());
    QCOMPARE(w.find<QComboBox>("cmbComPort")->currentText(), QStringLiteral("Com7"));
    QCOMPARE(w.find<QComboBox>("cmbModello")->currentText(), QStringLiteral("Velt"));
    QVERIFY(w.find<QCheckBox>("chkSRV")->isChecked());
    QVERIFY(!w.find<QCheckBox>("chkLog")->isChecked());
}

void MainFormTest::storedSettingsSurviveASave_data()
{
    QTest::addColumn<QByteArray>("stored"); // section Parametri but for the spool
    QTest::addColumn<QByteArray>("kept");   // a line the save must leave as it is
    QTest::addColumn<QByteArray>("absent"); // a key the save must not write
    const QByteArray brio = "Modello=Kelm Brio\r\n", virt = "Dispositivo=virtual\r\n";
    QTest::newRow("a speed outside the list") << brio + "Velocita=19200\r\n" + virt << QByteArray("Velocita=19200\r\n")
                                              << QByteArray("<none>");
    QTest::newRow("a model outside the table") << "Modello=Cassa Nuova\r\nVelocita=9600\r\n" + virt
                                               << QByteArray("Modello=Cassa Nuova\r\n") << QByteArray("<none>");
    QTest::newRow("a ComN port writes no device") << brio + "Velocita=9600\r\nPorta=3\r\n" << QByteArray("Porta=3\r\n")
                                                  << QByteArray("Dispositivo");
}

void MainFormTest::storedSettingsSurviveASave()
{
    QFETCH(QByteArray, stored);
    QFETCH(QByteArray, kept);
    QFETCH(QByteArray, absent);
    EcrWindow w({}, "virtual", false);
    w.writeIni(stored);
    w.open();
    w.click("cmdSalvaConfigPC");
    const QByteArray saved = readFile(w.ini());
    QVERIFY2(saved.contains(kept) && !saved.contains(absent), saved.constData());
}

void MainFormTest::keptLinesWaitWhileTheServerIsOff()
{
    EcrWindow w("ServerStato=Off\r\n", "virtual", false);
    server::savePendingQueue(server::pendingQueuePath(w.dir.path()), {{"3/S/RIMASTO//1/1.00/1/4/"}, {"5/1/0.00/////"}});
    QVERIFY(w.open());
    QVERIFY(w.ready());
    std::atomic<bool> settled{false};
    w.form->session().post([&](EcrLink&) { settled = true; });
    QTRY_VERIFY(settled);
    QVERIFY(!w.journal().join(u'|').contains("RIMASTO"));
    w.find<QCheckBox>("chkSRV")->setChecked(true);
    QTRY_VERIFY(w.journal().join(u'|').contains("3/S/RIMASTO//1/1.00/1/4/|5/1/"));
}

void MainFormTest::exitQuestionWhileAReceiptIsOpen_data()
{
    QTest::addColumn<bool>("yes");
    QTest::newRow("No stays") << false;
    QTest::newRow("Yes leaves") << true;
}

void MainFormTest::exitQuestionWhileAReceiptIsOpen()
{
    QFETCH(bool, yes);
    // A register that takes 300 ms over every answer: Exit is chosen while
    // the file that opened the receipt is still being sent.
    QTemporaryDir simDir;
    const QString link = simDir.filePath(QStringLiteral("tty"));
    const QString journal = simDir.filePath(QStringLiteral("journal.txt"));
    QProcess sim;
    sim.start(QStringLiteral(ECRSIM_EXE), {"--link", link, "--delay", "300", "--journal", journal});
    QVERIFY(sim.waitForReadyRead(5000));
    EcrWindow w("ServerStato=On\r\nServerFile=scontrino.txt\r\n", link.toLatin1(), false);
    w.dialogs.answers = {yes ? ui::Dialogs::Button::Yes : ui::Dialogs::Button::No};
    QVERIFY(w.open());
    QVERIFY(w.ready());
    w.drop("3/S/UNO//1/1.00/1/4/\r\n3/S/DUE//1/1.00/1/4/\r\n3/S/TRE//1/1.00/1/4/\r\n5/1/0.00/////\r\n");
    QTRY_VERIFY_WITH_TIMEOUT(readFile(journal).contains("3/S/UNO//"), 10000);
    QVERIFY(!readFile(journal).contains("5/1/"));
    w.form->mnuFileExit_Click();
    QCOMPARE(w.dialogs.asked, QStringList{"ATTENZIONE: Scontrino Aperto !\r\n\r\nProseguo ?"});
    QCOMPARE(w.form->isVisible(), !yes);
    sim.write("quit\n");
    sim.waitForFinished(3000);
}

void MainFormTest::modelAdaptation_data()
{
    QTest::addColumn<int>("payments");
    QTest::addColumn<int>("messages");
    QTest::addColumn<bool>("flag3");
    QTest::addColumn<QString>("enabled"); // one letter a control: payments 0..8 | messages 0..9 | flag 3
    QTest::newRow("9 payments, 10 messages: everything on") << 9 << 10 << true << "111111111|1111111111|1";
    QTest::newRow("5 payments, 2 messages, no flag 3") << 5 << 2 << false << "111110000|1100000000|0";
}

void MainFormTest::modelAdaptation()
{
    QFETCH(int, payments);
    QFETCH(int, messages);
    QFETCH(bool, flag3);
    const QStringList names = {"txtPagDescr_%1", "txtScrollMSG_%1", "cmbFlagS_3"};
    const int counts[] = {9, 10, 1};
    QWidget root;
    for (int k = 0; k < 3; ++k)
        for (int j = 0; j < counts[k]; ++j)
            (new QLineEdit(&root))->setObjectName(names[k].arg(j));
    technician::ModelInfo model = technician::setupModelli().front();
    model.paymentTypes = qint16(payments);
    model.scrollingMessages = qint16(messages);
    model.sFlagAvailable[3] = flag3;
    ui::adaptFormToModel(&root, model);
    QStringList seen(3);
    for (int k = 0; k < 3; ++k)
        for (int j = 0; j < counts[k]; ++j)
            seen[k] += root.findChild<QWidget*>(names[k].arg(j))->isEnabled() ? u'1' : u'0';
    QTEST(seen.join(u'|'), "enabled");
}

void MainFormTest::windowAnswersWhileTheRegisterIsSlow()
{
    // A register that takes 1.5 s over every answer, on a real pty.
    QTemporaryDir simDir;
    const QString link = simDir.filePath(QStringLiteral("tty"));
    QProcess sim;
    sim.start(QStringLiteral(ECRSIM_EXE), {"--link", link, "--delay", "1500"});
    QVERIFY(sim.waitForReadyRead(5000));
    EcrWindow w({}, link.toLatin1(), false);
    int ticks = 0;
    QTimer clock;
    connect(&clock, &QTimer::timeout, [&] { ++ticks; });
    clock.start(20);
    QElapsedTimer elapsed;
    elapsed.start();
    QVERIFY(w.open());
    QVERIFY(elapsed.elapsed() < 1000); // start-up does not wait for the register
    QVERIFY(w.ready());
    // Several seconds of exchanges, and the UI thread went on ticking all along.
    QVERIFY2(ticks > elapsed.elapsed() / 20 / 2, qPrintable(QString::number(ticks)));
    sim.write("quit\n");
    sim.waitForFinished(3000);
}

QTEST_MAIN(MainFormTest)
#include "tst_ui_mainform.moc"
