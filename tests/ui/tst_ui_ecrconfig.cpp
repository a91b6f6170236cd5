// The ECR programming tab against the built-in virtual register: the
// dispatcher's questions and messages, what reaches the register, and
// read-backs that give back what was downloaded.
#include "EcrWindow.h"
#include "app/IniFile.h"
#include "ui/EcrConfigTab.h"
#include "ui/MainForm.h"

#include <QCheckBox>
#include <QComboBox>
#include <QDir>
#include <QFile>
#include <QGuiApplication>
#include <QLineEdit>
#include <QPushButton>
#include <QRadioButton>
#include <QTableWidget>
#include <QTemporaryDir>
#include <QTest>

using namespace kelm;
using Button = ui::Dialogs::Button;


class EcrConfigTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void headerConfirmation_data();
    void headerConfirmation();
    void emptyAndUnknownIndices_data();
    void emptyAndUnknownIndices();
    void vatRatesDownloadThenRead();
    void departmentsDownloadThenRead();
    void paymentsDownloadThenRead();
    void sParametersResetRecord();
    void scrollMessageSavesOnlyTheSelected();
    void typedSlashShowsAsBackslash_data();
    void typedSlashShowsAsBackslash();
};

void EcrConfigTest::headerConfirmation_data()
{
    QTest::addColumn<bool>("ok");
    QTest::newRow("Cancel sends and saves nothing") << false;
    QTest::newRow("OK saves, then sends") << true;
}

void EcrConfigTest::headerConfirmation()
{
    QFETCH(bool, ok);
    EcrWindow w;
    w.dialogs.answers = {ok ? Button::Ok : Button::Cancel};
    w.find<QLineEdit>("txtHeaderText_0")->setText(QStringLiteral("BAR CENTRALE"));
    w.find<QComboBox>("cmbHeaderAlign_0")->setCurrentIndex(2);
    w.click("cmdSetParametri_0");
    QCOMPARE(w.dialogs.asked, QStringList{"ATTENZIONE: L'intestazione degli scontrini si può cambiare un massimo di "
                                          "60 volte. Confermare Operazione?"});
    const IniFile ini(w.dir.filePath("KelmDrev.ini"));
    if (!ok) {
        QTest::qWait(300);
        QCOMPARE(ini.read("Intestazioni", "Head1", "<none>", 256), QStringLiteral("<none>"));
        QVERIFY(w.journal().filter(QStringLiteral("H/")).isEmpty());
        QVERIFY(w.dialogs.shown.isEmpty());
        return;
    }
    QVERIFY(w.shown(1));
    QCOMPARE(w.dialogs.shown[0], QStringLiteral("Kelm Drev: Intestazione Scaricata"));
    QCOMPARE(ini.read("Intestazioni", "Head1", "<none>", 256), QStringLiteral("20BAR CENTRALE"));
    QCOMPARE(ini.read("Intestazioni", "Head2", "<none>", 256), QStringLiteral("00"));
    const QStringList header = w.journal().filter(QStringLiteral("H/"));
    QCOMPARE(header.size(), 1);
    QVERIFY(header[0].startsWith(QStringLiteral("H/1/          BAR CENTRALE          /1//1//")));
}

void EcrConfigTest::emptyAndUnknownIndices_data()
{
    QTest::addColumn<int>("index");
    QTest::addColumn<QStringList>("shown");
    QTest::newRow("5 is an empty slot") << 5 << QStringList{};
    QTest::newRow("8 is an empty slot") << 8 << QStringList{};
    QTest::newRow("11 is unknown") << 11 << QStringList{"Attenzione: Errore 90 : Avvisare produttore"};
}

void EcrConfigTest::emptyAndUnknownIndices()
{
    QFETCH(int, index);
    QFETCH(QStringList, shown);
    EcrWindow w;
    const QCursor* before = QGuiApplication::overrideCursor();
    w.form->findChild<ui::EcrConfigTab*>()->cmdSetParametri_Click(index);
    QCOMPARE(w.dialogs.shown, shown);
    QCOMPARE(QGuiApplication::overrideCursor(), before); // the hourglass is gone on every path
}

void EcrConfigTest::vatRatesDownloadThenRead()
{
    EcrWindow w;
    const QStringList rates = {"4.00", "10.00", "22.00", "5.00", "0.00"};
    for (int i = 0; i < 5; ++i)
        w.find<QLineEdit>(QStringLiteral("txtIVA_%1").arg(i))->setText(rates[i]);
    w.dialogs.answers = {Button::Ok};
    w.click("cmdSetParametri_10");
    QVERIFY(w.shown(1));
    QCOMPARE(w.dialogs.shown[0], QStringLiteral("Kelm Drev: Aliquote IVA scaricate"));
    QVERIFY(w.journal().contains(QStringLiteral("b/4.00/10.00/22.00/5.00/0.00/")));
    for (int i = 0; i < 5; ++i)
        w.find<QLineEdit>(QStringLiteral("txtIVA_%1").arg(i))->clear();
    w.click("cmdReadIVA");
    QTRY_COMPARE(w.find<QLineEdit>("txtIVA_2")->text(), QStringLiteral("22.00"));
    QCOMPARE(w.find<QLineEdit>("txtIVA_0")->text(), QStringLiteral("4.00"));
}

void EcrConfigTest::departmentsDownloadThenRead()
{
    EcrWindow w;
    QVERIFY(!w.find<QPushButton>("cmdSetParametri_3")->isEnabled()); // only values from the register
    w.click("cmdreadParmIVAREP");
    QTRY_VERIFY(w.find<QPushButton>("cmdSetParametri_3")->isEnabled());
    for (int i = 0; i < 20; ++i)
        w.find<QComboBox>(QStringLiteral("cmbDPTCodIVA_%1").arg(i))->setCurrentIndex(0);
    w.find<QLineEdit>("txtDEPTDescription_6")->setText(QStringLiteral("BEVANDE"));
    w.find<QComboBox>("cmbDPTCodIVA_6")->setCurrentIndex(1);
    w.click("cmdSetParametri_3");
    QVERIFY(w.shown(1));
    QCOMPARE(w.dialogs.shown[0], QStringLiteral("Kelm Drev: Reparti scaricati"));
    QVERIFY(w.journal().contains(QStringLiteral("D/7/BEVANDE/2//////")));
    w.click("cmdDPTClear");
    QVERIFY(!w.find<QPushButton>("cmdSetParametri_3")->isEnabled());
    QCOMPARE(w.find<QLineEdit>("txtDEPTDescription_6")->text(), QString());
    w.click("cmdreadParmIVAREP");
    QTRY_COMPARE(w.find<QLineEdit>("txtDEPTDescription_6")->text(), QStringLiteral("BEVANDE"));
    QCOMPARE(w.find<QComboBox>("cmbDPTCodIVA_6")->currentIndex(), 1);
}

void EcrConfigTest::paymentsDownloadThenRead()
{
    EcrWindow w;
    // Empty rows would wipe the register's payment types: a read comes first.
    QVERIFY(!w.find<QPushButton>("cmdSetParametri_6")->isEnabled());
    w.click("cmdReadPagamenti");
    QTRY_VERIFY(w.find<QPushButton>("cmdSetParametri_6")->isEnabled());
    QVERIFY(w.settle());
    w.find<QLineEdit>("txtPagDescr_1")->setText(QStringLiteral("CARTA DI CREDITO"));
    w.find<QLineEdit>("txtPagDescrBreve_1")->setText(QStringLiteral("CARTA"));
    w.find<QCheckBox>("chkPagResto_1")->setChecked(true);
    w.click("cmdSetParametri_6");
    QVERIFY(w.shown(1));
    QCOMPARE(w.dialogs.shown.last(), QStringLiteral("Kelm Drev: Tabella pagamenti scaricate"));
    QVERIFY(w.journal().contains(QStringLiteral("Y/2/CREDITO/ARTA/10000000/0/0//1/0/")));
    w.click("cmdClearPagamenti");
    QCOMPARE(w.find<QLineEdit>("txtPagDescr_1")->text(), QString());
    w.click("cmdReadPagamenti");
    QTRY_COMPARE(w.find<QLineEdit>("txtPagDescr_1")->text(), QStringLiteral("CREDITO"));
    QVERIFY(w.find<QCheckBox>("chkPagResto_1")->isChecked());
    QVERIFY(w.find<QCheckBox>("chkPagAttivo_1")->isChecked());
}

void EcrConfigTest::sParametersResetRecord()
{
    EcrWindow w;
    QVERIFY(!w.find<QPushButton>("cmdSetParametri_9")->isEnabled()); // until a read or a reset
    w.dialogs.answers = {Button::Yes};
    w.click("cmdResetParmS");
    QVERIFY(w.find<QPushButton>("cmdSetParametri_9")->isEnabled());
    QCOMPARE(w.dialogs.shown, QStringList{"Kelm Drev: Parametri S ripristinati a default ma non salvati."});
    w.click("cmdSetParametri_9");
    QVERIFY(w.shown(2));
    QVERIFY(w.journal().contains(QStringLiteral(
        "S/00001100001000000001000000/999999/999999/1000000/99999999/0/0/0/1/CASSA -1/27/27/27/27/27/27/27/27/27/"
        "29/29/29/29/29/29/29/29/29/8/0/")));
}

void EcrConfigTest::scrollMessageSavesOnlyTheSelected()
{
    EcrWindow w;
    w.find<QLineEdit>("txtScrollMSG_1")->setText(QStringLiteral("not selected"));
    w.find<QRadioButton>("optScrollMSGEnable_1")->setChecked(true);
    QTest::keyClicks(w.find<QLineEdit>("txtScrollMSG_2"), QStringLiteral(" SALDI 20% ")); // typing selects it
    w.click("cmdSetParametri_7");
    QVERIFY(w.shown(1));
    QCOMPARE(w.dialogs.shown[0], QStringLiteral("Kelm Drev: Messaggio Scorrevole scaricato\rRicordarsi di attivarlo"));
    const IniFile ini(w.dir.filePath("KelmDrev.ini"));
    QCOMPARE(ini.read("Messaggi", "Msg3", "<none>", 96), QStringLiteral("SALDI 20%"));
    QCOMPARE(ini.read("Messaggi", "Msg2", "<none>", 96), QStringLiteral("<none>"));
    QVERIFY(w.journal().contains(QStringLiteral("o/SALDI 20%/")));
}

void EcrConfigTest::typedSlashShowsAsBackslash_data()
{
    QTest::addColumn<QString>("box"); // a line edit, or "fgPLU" for a cell of the PLU grid
    for (const char* box : {"txtPagTasso_0", "txtPagMarkUp_8", "txtBCPriceLead_0", "txtPRTIntensity", "fgPLU"})
        QTest::newRow(box) << QString::fromLatin1(box);
}

void EcrConfigTest::typedSlashShowsAsBackslash()
{
    QFETCH(QString, box);
    EcrWindow w;
    QLineEdit* edit = w.find<QLineEdit>(box);
    if (auto* grid = w.find<QTableWidget>(box)) {
        grid->insertRow(0);
        grid->edit(grid->model()->index(0, 1));
        edit = grid->findChild<QLineEdit*>();
    }
    QVERIFY(edit);
    QTest::keyClicks(edit, QStringLiteral("1/2"));
    QCOMPARE(edit->text(), QStringLiteral("1\\2"));
}

QTEST_MAIN(EcrConfigTest)
#include "tst_ui_ecrconfig.moc"
