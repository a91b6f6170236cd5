// The main window against the built-in virtual ECR: start-up, identity,
// configuration round trip, start modes, exit question, model adaptation,
// and a window that keeps answering while the register is slow.
#include "ScriptedDialogs.h"
#include "app/IniFile.h"
#include "ui/MainForm.h"
#include "server/PendingQueue.h"
#include "ui/ModelAdaptation.h"

#include <QAction>
#include <QApplication>
#include <QCheckBox>
#include <QDialog>
#include <QComboBox>
#include <QDir>
#include <QFile>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QProcess>
#include <QPushButton>
#include <QTabWidget>
#include <QTemporaryDir>
#include <QTest>
#include <QElapsedTimer>
#include <QTimer>

using namespace kelm;
using ui::MainForm;

namespace {

QByteArray readFile(const QString& path)
{
    QFile f(path);
    return f.open(QIODevice::ReadOnly) ? f.readAll() : QByteArray();
}

void writeFile(const QString& path, const QByteArray& bytes)
{
    QFile f(path);
    if (f.open(QIODevice::WriteOnly))
        f.write(bytes);
}

struct Home {
    explicit Home(const QByteArray& extra = {}, const QByteArray& device = "virtual")
    {
        QDir().mkpath(spool());
        writeFile(dir.filePath("KelmDrev.ini"), "[Parametri]\r\nModello=Kelm Brio\r\nVelocita=9600\r\nDispositivo="
                                                    + device + "\r\nServerDir=" + spool().toLatin1() + "\r\n"
                                                    + extra);
    }
    QString spool() const { return dir.filePath("spool"); }
    QTemporaryDir dir;
};

QString panel(MainForm& form, int n)
{
    return form.findChild<QLabel*>(QStringLiteral("sbMain_%1").arg(n))->text();
}

} // namespace

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
    Home home;
    ScriptedDialogs dialogs;
    MemoryPasswords passwords;
    MainForm form({home.dir.path(), false}, &dialogs, &passwords);
    QVERIFY(form.start());
    QCOMPARE(form.windowTitle(), QStringLiteral(" KelmDrev - Versione : ") + QStringLiteral(KELMDREV_VERSION));
    QTRY_COMPARE(panel(form, 3), QStringLiteral("KD-99KDV000001"));
    QCOMPARE(panel(form, 4), QStringLiteral("1.00"));
    // The start-up's "e/" fills the rate boxes.
    QTRY_COMPARE(form.findChild<QLineEdit*>(QStringLiteral("txtIVA_0"))->text(), QStringLiteral("22.00"));
    const QByteArray ini = readFile(home.dir.filePath("KelmDrev.ini"));
    QVERIFY(ini.contains("[Current]\r\nCampo=KD\r\nSN=99KDV000001\r\nNum=1\r\nFW=1.00\r\nDrev=" KELMDREV_VERSION "\r\n"));
    QVERIFY(form.findChild<QWidget*>(QStringLiteral("VirtualEcrPanel")));
    QVERIFY(dialogs.shown.isEmpty());
    QCOMPARE(form.trayTip(), QStringLiteral("Kelm Drev - KD-99KDV000001\nServer non attivo"));
    // Closed, the panel comes back from the menu.
    auto* dock = form.findChild<QWidget*>(QStringLiteral("dockVirtualEcr"));
    auto* view = form.findChild<QAction*>(QStringLiteral("mnuViewVirtualEcr"));
    dock->close();
    QVERIFY(!view->isChecked());
    view->trigger();
    QVERIFY(dock->isVisible());
}

void MainFormTest::driverTroubleOnTheStatusBar()
{
    Home home("ServerStato=On\r\nServerFile=scontrino.txt\r\n");
    ScriptedDialogs dialogs;
    MemoryPasswords passwords;
    MainForm form({home.dir.path(), false}, &dialogs, &passwords);
    QVERIFY(form.start());
    QTRY_COMPARE(panel(form, 3), QStringLiteral("KD-99KDV000001"));
    const auto drop = [&](const QByteArray& lines) {
        writeFile(home.spool() + "/scontrino.tmp", lines);
        QFile::rename(home.spool() + "/scontrino.tmp", home.spool() + "/scontrino.txt");
    };
    drop("3/S/PANE//1/1.00/1/4/\r\n3/S/X//1/1.00/99/4/\r\n5/1/0.00/////\r\n");
    QTRY_VERIFY_WITH_TIMEOUT(panel(form, 2).startsWith("Comando '3/S/X//1/1.00/99/4/' - Errore N. "), 5000);
    QVERIFY(panel(form, 2).endsWith(QStringLiteral(" - Il reparto non esiste")));
    QCOMPARE(panel(form, 1), QStringLiteral("Attenzione!"));
    QVERIFY(form.trayTip().endsWith(u'\n' + panel(form, 2)));
    QTest::qWait(500); // it stays
    QVERIFY(!panel(form, 2).isEmpty());
    drop("3/S/PANE//1/1.00/1/4/\r\n5/1/0.00/////\r\n");
    QTRY_COMPARE_WITH_TIMEOUT(panel(form, 2), QString(), 5000); // the next receipt went through
    QCOMPARE(form.trayTip(), QStringLiteral("Kelm Drev - KD-99KDV000001\nDriver attivo"));
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
    Home home;
    ScriptedDialogs dialogs;
    MemoryPasswords passwords;
    passwords.values[technician::kLoginApplication] = password;
    MainForm form({home.dir.path(), false}, &dialogs, &passwords);
    QVERIFY(form.start());
    auto* tabs = form.findChild<QTabWidget*>(QStringLiteral("SSTabPrimaria"));
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
    if (!form.findChild<QLabel*>(QStringLiteral("sbMain_4"))->isHidden())
        after << "panel4";
    if (form.findChild<QCheckBox*>(QStringLiteral("chkPagCrediti_1"))->isEnabled())
        after << "credit";
    if (form.technicianLogged())
        after << "logged";
    QTEST(after.join(u' '), "after");
}

void MainFormTest::missingModelOnTheStatusBar()
{
    QTemporaryDir dir;
    writeFile(dir.filePath("KelmDrev.ini"), "[Parametri]\r\nDispositivo=virtual\r\n");
    ScriptedDialogs dialogs;
    MemoryPasswords passwords;
    MainForm form({dir.path(), false}, &dialogs, &passwords);
    QVERIFY(form.start()); // the window runs without the register
    QCOMPARE(panel(form, 1), QStringLiteral("Errore Nei Parametri"));
    QCOMPARE(panel(form, 2), QStringLiteral("Tipo Modello non impostato"));
    QTest::qWait(200);
    QCOMPARE(panel(form, 3), QString());
}

void MainFormTest::secondInstanceIsRefused()
{
    Home home;
    ScriptedDialogs dialogs;
    MemoryPasswords passwords;
    MainForm first({home.dir.path(), false}, &dialogs, &passwords);
    QVERIFY(first.start());
    first.hide(); // in the tray
    MainForm second({home.dir.path(), false}, &dialogs, &passwords);
    QVERIFY(!second.start());
    QCOMPARE(dialogs.shown, QStringList{"ATTENZIONE: Driver già attivo"});
    QTRY_VERIFY(first.isVisible()); // and the running window comes forward
    QTRY_COMPARE(panel(first, 3), QStringLiteral("KD-99KDV000001")); // the first one is untouched
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
    Home home("ServerModalita=" + mode.toLatin1() + "\r\n");
    ScriptedDialogs dialogs;
    MemoryPasswords passwords;
    MainForm form({home.dir.path(), false}, &dialogs, &passwords);
    QVERIFY(form.start());
    QCOMPARE(form.isVisible(), visible);
    QCOMPARE(form.isMinimized(), minimized);
    QCOMPARE(form.findChild<QTabWidget*>(QStringLiteral("SSTabPrimaria"))->currentIndex(), tab);
}

void MainFormTest::configurationRoundTrip()
{
    Home home;
    ScriptedDialogs dialogs;
    MemoryPasswords passwords;
    {
        MainForm form({home.dir.path(), false}, &dialogs, &passwords);
        QVERIFY(form.start());
        form.findChild<QComboBox*>(QStringLiteral("cmbModello"))->setCurrentText(QStringLiteral("Velt"));
        form.findChild<QComboBox*>(QStringLiteral("cmbComPort"))->setCurrentText(QStringLiteral("Com7"));
        form.findChild<QComboBox*>(QStringLiteral("cmbSpeed"))->setCurrentText(QStringLiteral("115200"));
        form.findChild<QCheckBox*>(QStringLiteral("chkSRV"))->setChecked(true);
        form.findChild<QComboBox*>(QStringLiteral("cmbSRVModalita"))->setCurrentText(QStringLiteral("Minimized"));
        form.findChild<QLineEdit*>(QStringLiteral("txtSRVFile"))->setText(QStringLiteral("*.txt"));
        form.findChild<QCheckBox*>(QStringLiteral("chkLog"))->setChecked(false);
        form.findChild<QCheckBox*>(QStringLiteral("chkWrapDescription"))->setChecked(true);
        dialogs.chosenDirectory = home.spool() + QStringLiteral("/other");
        QVERIFY(QDir().mkpath(dialogs.chosenDirectory));
        QTest::mouseClick(form.findChild<QPushButton*>(QStringLiteral("cmdSRVDir")), Qt::LeftButton);
        QCOMPARE(dialogs.asked.last(), QStringLiteral("Indicare la cartella di lavoro temporanea del Server"));
        QTest::mouseClick(form.findChild<QPushButton*>(QStringLiteral("cmdSalvaConfigPC")), Qt::LeftButton);
        // The running server takes its receipts from the new folder at once.
        writeFile(dialogs.chosenDirectory + "/nuovo.txt", "3/S/NUOVO//1/1.00/1/4/\r\n5/1/0.00/////\r\n");
        QTRY_VERIFY_WITH_TIMEOUT(readFile(home.dir.filePath("virtual-ecr-journal.txt")).contains("3/S/NUOVO//"), 5000);
    }
    const IniFile ini(home.dir.filePath("KelmDrev.ini"));
    const QMap<QString, QString> expected = {
        {"Modello", "Velt"}, {"Porta", "7"}, {"Velocita", "115200"}, {"Dispositivo", ""},
        {"ServerStato", "On"}, {"ServerModalita", "Minimized"}, {"ServerDir", home.spool() + "/other"},
        {"ServerFile", "*.txt"}, {"ServerLog", "Off"}, {"WrapDescription", "On"}, {"AlIvaAuto", "Off"}};
    for (auto it = expected.begin(); it != expected.end(); ++it)
        QCOMPARE(ini.read("Parametri", it.key(), "<missing>", 255), it.value());

    MainForm again({home.dir.path(), false}, &dialogs, &passwords);
    QVERIFY(again.start());
    QCOMPARE(again.findChild<QComboBox*>(QStringLiteral("cmbComPort"))->currentText(), QStringLiteral("Com7"));
    QCOMPARE(again.findChild<QComboBox*>(QStringLiteral("cmbModello"))->currentText(), QStringLiteral("Velt"));
    QVERIFY(again.findChild<QCheckBox*>(QStringLiteral("chkSRV"))->isChecked());
    QVERIFY(!again.findChild<QCheckBox*>(QStringLiteral("chkLog"))->isChecked());
}

void MainFormTest::storedSettingsSurviveASave_data()
{
    QTest::addColumn<QByteArray>("stored"); // section Parametri but for the spool
    QTest::addColumn<QByteArray>("kept");   // a line the save must leave as it is
    QTest::addColumn<QByteArray>("absent"); // a key the save must not write

    const QByteArray brio = "Modello=Kelm Brio\r\n";
    const QByteArray virt = "Dispositivo=virtual\r\n";
    QTest::newRow("a speed outside the list") << brio + "Velocita=19200\r\n" + virt << QByteArray("Velocita=19200\r\n")
                                              << QByteArray("<none>");
    QTest::newRow("a model outside the table") << "Modello=Cassa Nuova\r\nVelocita=9600\r\n" + virt
                                               << QByteArray("Modello=Cassa Nuova\r\n") << QByteArray("<none>");
    QTest::newRow("a ComN port writes no device") << brio + "Velocita=9600\r\nPorta=3\r\n"
                                                  << QByteArray("Porta=3\r\n") << QByteArray("Dispositivo");
}

void MainFormTest::storedSettingsSurviveASave()
{
    QFETCH(QByteArray, stored);
    QFETCH(QByteArray, kept);
    QFETCH(QByteArray, absent);
    Home home;
    const QString path = home.dir.filePath("KelmDrev.ini");
    writeFile(path, "[Parametri]\r\n" + stored + "ServerDir=" + home.spool().toLatin1() + "\r\n");
    ScriptedDialogs dialogs;
    MemoryPasswords passwords;
    MainForm form({home.dir.path(), false}, &dialogs, &passwords);
    form.start();
    QTest::mouseClick(form.findChild<QPushButton*>(QStringLiteral("cmdSalvaConfigPC")), Qt::LeftButton);
    const QByteArray saved = readFile(path);
    QVERIFY2(saved.contains(kept), saved.constData());
    QVERIFY2(!saved.contains(absent), saved.constData());
}

void MainFormTest::keptLinesWaitWhileTheServerIsOff()
{
    Home home("ServerStato=Off\r\n");
    server::savePendingQueue(server::pendingQueuePath(home.dir.path()),
                             {{QStringLiteral("3/S/RIMASTO//1/1.00/1/4/")}, {QStringLiteral("5/1/0.00/////")}});
    ScriptedDialogs dialogs;
    MemoryPasswords passwords;
    MainForm form({home.dir.path(), false}, &dialogs, &passwords);
    QVERIFY(form.start());
    QTRY_COMPARE(panel(form, 3), QStringLiteral("KD-99KDV000001"));
    std::atomic<bool> settled{false};
    form.session().post([&](EcrLink&) { settled = true; });
    QTRY_VERIFY(settled);
    QVERIFY(!readFile(home.dir.filePath("virtual-ecr-journal.txt")).contains("RIMASTO"));
    form.findChild<QCheckBox*>(QStringLiteral("chkSRV"))->setChecked(true);
    QTRY_VERIFY(readFile(home.dir.filePath("virtual-ecr-journal.txt")).contains("3/S/RIMASTO//1/1.00/1/4/\n5/1/"));
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
    Home home("ServerStato=On\r\nServerFile=scontrino.txt\r\n", link.toLatin1());
    ScriptedDialogs dialogs;
    dialogs.answers = {yes ? ui::Dialogs::Button::Yes : ui::Dialogs::Button::No};
    MemoryPasswords passwords;
    MainForm form({home.dir.path(), false}, &dialogs, &passwords);
    QVERIFY(form.start());
    QTRY_COMPARE_WITH_TIMEOUT(panel(form, 3), QStringLiteral("KD-99KDV000001"), 10000);
    writeFile(home.spool() + "/scontrino.tmp",
              "3/S/UNO//1/1.00/1/4/\r\n3/S/DUE//1/1.00/1/4/\r\n3/S/TRE//1/1.00/1/4/\r\n5/1/0.00/////\r\n");
    QFile::rename(home.spool() + "/scontrino.tmp", home.spool() + "/scontrino.txt");
    QTRY_VERIFY_WITH_TIMEOUT(readFile(journal).contains("3/S/UNO//"), 10000);
    QVERIFY(!readFile(journal).contains("5/1/"));
    form.mnuFileExit_Click();
    QCOMPARE(dialogs.asked, QStringList{"ATTENZIONE: Scontrino Aperto !\r\n\r\nProseguo ?"});
    QCOMPARE(form.isVisible(), !yes);
    sim.write("quit\n");
    sim.waitForFinished(3000);
}

void MainFormTest::modelAdaptation_data()
{
    QTest::addColumn<int>("payments");
    QTest::addColumn<int>("messages");
    QTest::addColumn<QString>("enabled");   // one letter a control: payments 0..8 | messages 0..9 | flag 3
    QTest::newRow("9 payments, 10 messages: everything on") << 9 << 10 << "111111111|1111111111|1";
    QTest::newRow("5 payments, 2 messages") << 5 << 2 << "111110000|1100000000|1";
}

void MainFormTest::modelAdaptation()
{
    QFETCH(int, payments);
    QFETCH(int, messages);
    QFETCH(QString, enabled);
    QWidget root;
    for (int j = 0; j < 9; ++j)
        (new QLineEdit(&root))->setObjectName(QStringLiteral("txtPagDescr_%1").arg(j));
    for (int j = 0; j < 10; ++j)
        (new QLineEdit(&root))->setObjectName(QStringLiteral("txtScrollMSG_%1").arg(j));
    (new QComboBox(&root))->setObjectName(QStringLiteral("cmbFlagS_3"));
    technician::ModelInfo model = technician::setupModelli().front();
    model.paymentTypes = static_cast<qint16>(payments);
    model.scrollingMessages = static_cast<qint16>(messages);
    ui::adaptFormToModel(&root, model);
    QString seen;
    for (int j = 0; j < 9; ++j)
        seen += root.findChild<QWidget*>(QStringLiteral("txtPagDescr_%1").arg(j))->isEnabled() ? u'1' : u'0';
    seen += u'|';
    for (int j = 0; j < 10; ++j)
        seen += root.findChild<QWidget*>(QStringLiteral("txtScrollMSG_%1").arg(j))->isEnabled() ? u'1' : u'0';
    seen += u'|';
    seen += root.findChild<QWidget*>(QStringLiteral("cmbFlagS_3"))->isEnabled() ? u'1' : u'0';
    QCOMPARE(seen, enabled);

    model.sFlagAvailable[3] = false;
    ui::adaptFormToModel(&root, model);
    QVERIFY(!root.findChild<QWidget*>(QStringLiteral("cmbFlagS_3"))->isEnabled());
}

void MainFormTest::windowAnswersWhileTheRegisterIsSlow()
{
    // A register that takes 1.5 s over every answer, on a real pty.
    QTemporaryDir simDir;
    const QString link = simDir.filePath(QStringLiteral("tty"));
    QProcess sim;
    sim.start(QStringLiteral(ECRSIM_EXE), {"--link", link, "--delay", "1500"});
    QVERIFY(sim.waitForReadyRead(5000));
    Home home({}, link.toLatin1());
    ScriptedDialogs dialogs;
    MemoryPasswords passwords;
    MainForm form({home.dir.path(), false}, &dialogs, &passwords);
    int ticks = 0;
    QTimer clock;
    connect(&clock, &QTimer::timeout, [&] { ++ticks; });
    clock.start(20);
    QElapsedTimer elapsed;
    elapsed.start();
    QVERIFY(form.start());
    QVERIFY(elapsed.elapsed() < 1000); // start-up does not wait for the register
    QTRY_COMPARE_WITH_TIMEOUT(panel(form, 3), QStringLiteral("KD-99KDV000001"), 15000);
    // Several seconds of exchanges, and the UI thread went on ticking all along.
    QVERIFY2(ticks > elapsed.elapsed() / 20 / 2, qPrintable(QString::number(ticks)));
    sim.write("quit\n");
    sim.waitForFinished(3000);
}

QTEST_MAIN(MainFormTest)
#include "tst_ui_mainform.moc"
