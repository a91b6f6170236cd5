// The ECR programming tab, the logo pages and the PLU page against the
// built-in virtual register: the dispatcher's questions and messages, what
// reaches the register, read-backs that give back what was downloaded, logos
// loaded, refused when bad and downloaded, and the PLU download with its
// deletion beyond the grid and the PLU file. Which PLUs are deleted and how a
// PLU file reads are the programming tests' tables; here, that the page does it.
#include "EcrWindow.h"
#include "app/IniFile.h"
#include "ui/EcrConfigTab.h"
#include "ui/LogoPage.h"

#include <QBuffer>
#include <QCheckBox>
#include <QComboBox>
#include <QLineEdit>
#include <QPainter>
#include <QProgressBar>
#include <QRadioButton>
#include <QRegularExpression>
#include <QScrollBar>
#include <QTabWidget>
#include <QTableWidget>

using namespace kelm;
using Button = ui::Dialogs::Button;
using Buttons = QList<Button>;

namespace {

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

const QImage& logo(const EcrWindow& w, int page)
{
    return w.find<ui::LogoPage>("pageLoghi")->pictures()[page];
}

QTableWidget* grid(const EcrWindow& w)
{
    return w.find<QTableWidget>(QStringLiteral("fgPLU"));
}

// Appends one row per text: "code/description/…/" with the cells in column order.
void typeRows(const EcrWindow& w, const QStringList& lines)
{
    for (const QString& line : lines) {
        const int r = grid(w)->rowCount();
        grid(w)->setRowCount(r + 1);
        const QStringList cells = line.split(u'/');
        for (int c = 0; c < grid(w)->columnCount() && c < cells.size(); ++c)
            grid(w)->setItem(r, c, new QTableWidgetItem(cells[c]));
    }
}

// Each row as its ten cells, each closed by "/".
QStringList gridLines(const EcrWindow& w)
{
    QStringList lines;
    for (int r = 0; r < grid(w)->rowCount(); ++r) {
        lines << QString();
        for (int c = 0; c < grid(w)->columnCount(); ++c)
            lines.last() += (grid(w)->item(r, c) ? grid(w)->item(r, c)->text() : QString()) + u'/';
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

class EcrConfigTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void pagesSendAndReadBack_data()
    {
        // The answers to the questions, the steps (see EcrWindow::run); out: how many questions and messages.
        // The records' fields and the messages' texts are the programming tests'; here, that each box is bound.
        columns<Buttons, QStringList, int, int>("answers", "steps", "asked", "shown");
        row("header: Cancel sends and saves nothing, OK saves then sends", Buttons{Button::Cancel, Button::Ok},
            QStringList{"txtHeaderText_0=BAR CENTRALE", "cmbHeaderAlign_0=Centrato", "cmdSetParametri_0", "!H/",
                        "Intestazioni/Head1?<none>", "cmdSetParametri_0", "Intestazioni/Head1?20BAR CENTRALE",
                        "<H/1/          BAR CENTRALE          /1//1//"},
            2, 1);
        row("VAT rates", Buttons{Button::Ok},
            QStringList{"txtIVA_0=4.00", "txtIVA_1=10.00", "txtIVA_2=22.00", "txtIVA_3=5.00", "txtIVA_4=0.00", "cmdSetParametri_10",
                        "<b/4.00/10.00/22.00/5.00/0.00/", "txtIVA_0=", "txtIVA_2=", "cmdReadIVA", "txtIVA_0?4.00", "txtIVA_2?22.00"},
            1, 1);
        row("departments: only values from the register are sent", Buttons{},
            QStringList{"cmdSetParametri_3?off", "cmdreadParmIVAREP", "cmdSetParametri_3?on", "txtDEPTDescription_6=BEVANDE",
                        "cmbDPTCodIVA_6=2", "cmdSetParametri_3", "<D/7/BEVANDE/2//////", "cmdDPTClear", "cmdSetParametri_3?off",
                        "txtDEPTDescription_6?", "cmdreadParmIVAREP", "txtDEPTDescription_6?BEVANDE", "cmbDPTCodIVA_6?2"},
            0, 1);
        // Empty rows would wipe the register's payment types: a read comes first.
        row("payment types", Buttons{},
            QStringList{"cmdSetParametri_6?off", "cmdReadPagamenti", "cmdSetParametri_6?on", "txtPagDescr_1=CARTA DI CREDITO",
                        "txtPagDescrBreve_1=CARTA", "chkPagResto_1=1", "cmdSetParametri_6", "<Y/2/CREDITO/ARTA/10000000/0/0//1/0/",
                        "cmdClearPagamenti", "txtPagDescr_1?", "chkPagAttivo_1?0", "chkPagResto_1?0", "cmdReadPagamenti",
                        "txtPagDescr_1?CREDITO", "chkPagResto_1?1", "chkPagAttivo_1?1", "txtPagTasso_0=1/2", "txtPagTasso_0?1\\2",
                        "txtPagMarkUp_8=1/2", "txtPagMarkUp_8?1\\2"}, // a typed slash shows as a backslash
            0, 1);
        // S-parameters wait for a read or a reset; only the selected scroll message, typed into, is saved and sent.
        row("S-parameters and scroll message", Buttons{Button::Yes},
            QStringList{"cmdSetParametri_9?off", "cmdResetParmS", "#Kelm Drev: Parametri S ripristinati a default ma non salvati.",
                        "cmdSetParametri_9", "<S/00001100001000000001000000/999999/999999/1000000/99999999/0/0/0/1/CASSA -1/27/"
                        "27/27/27/27/27/27/27/27/29/29/29/29/29/29/29/29/29/8/0/", "txtBCPriceLead_0=1/2",
                        "txtBCPriceLead_0?1\\2", "txtPRTIntensity=1/2", "txtPRTIntensity?1\\2", "txtScrollMSG_1=not selected",
                        "optScrollMSGEnable_1=1", "txtScrollMSG_2= SALDI 20% ", "cmdSetParametri_7", "Messaggi/Msg3?SALDI 20%",
                        "Messaggi/Msg2?<none>", "<o/SALDI 20%/", "txtScrollMSG_2=", "cmdReadScrolMSG", "txtScrollMSG_2?SALDI 20%"},
            1, 3);
    }
    void pagesSendAndReadBack()
    {
        EcrWindow w;
        QVERIFY(w.settle());
        w.dialogs.answers = fetch<Buttons>("answers");
        QVERIFY(w.run(fetch<QStringList>("steps")));
        QCOMPARE(w.dialogs.asked.size(), fetch<int>("asked"));
        QVERIFY(w.shown(fetch<int>("shown")));
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
        load(w, 1, picture({70, 200}));
        QCOMPARE(w.dialogs.asked, QStringList{"Leggi BMP: BMP Files|*.bmp"});
        QCOMPARE(w.dialogs.shown,
                 QStringList({kAdvice, "Kelm Drev: Logo non  a dimensioni standard.\r\nRidimensione automatica"}));
        const QStringList fitted{"lbmBMPWidth_1?Largh.:128", "lblBMPHeight_1?Alt.:256", "cmbBMPLarghezza_1?128",
                                 "cmbBMPAltezza_1?256"};
        QVERIFY(w.run(fitted));
        QCOMPARE(w.find<QLabel>("picLogo_1")->pixmap().size(), QSize(128, 256));
        QVERIFY(logo(w, 0).isNull());
        // A bad file changes nothing; which message each bad file gets is the programming tests'.
        const QImage before = logo(w, 1);
        w.dialogs.shown.clear();
        load(w, 1, picture({64, 64}, "PNG"));
        QCOMPARE(w.dialogs.shown, QStringList({kAdvice, "Attenzione: Il file non è un'immagine BMP"}));
        QCOMPARE(logo(w, 1), before);
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
        QCOMPARE(grid(w)->rowCount(), 0);
        typeRows(w, items(1, 3));
        w.click("cmdSetParametri_4");
        QVERIFY(!w.find<QProgressBar>("pbPLU_0")->isHidden());
        QVERIFY(w.shown(2) && done(w));
        QCOMPARE(w.dialogs.shown[1], QStringLiteral("Kelm Drev: PLU scaricate"));
        QCOMPARE(grid(w)->item(0, 4)->text(), QStringLiteral("1")); // "1,50" as sent
        // Which numbers are probed and deleted is the programming tests'; here, that the scan starts past the grid.
        const QStringList deleted = w.journal().mid(before).filter(QStringLiteral("////0/0/0/0/00000000/"));
        QCOMPARE(deleted.first(), QStringLiteral("P/4////0/0/0/0/00000000/"));
        QCOMPARE(deleted.last(), QStringLiteral("P/12////0/0/0/0/00000000/"));
        w.click("cmdCancellaPLU");
        w.click("cmdReadPLU");
        QVERIFY(done(w));
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
        QCOMPARE(grid(w)->rowCount(), 3);
        grid(w)->setCurrentCell(2, 4);
        grid(w)->editItem(grid(w)->item(2, 4));
        auto* editor = grid(w)->viewport()->findChild<QLineEdit*>();
        QVERIFY(editor);
        QTest::keyClicks(editor, QStringLiteral("2,50"));
        QCOMPARE(editor->text(), QStringLiteral("2.50")); // at once, before the cell is left
        QTest::keyClick(editor, Qt::Key_Return);
        QTRY_COMPARE(grid(w)->item(2, 4)->text(), QStringLiteral("2.50"));
        grid(w)->editItem(grid(w)->item(2, 1)); // a typed slash shows as a backslash
        QTest::keyClicks(grid(w)->viewport()->findChild<QLineEdit*>(), QStringLiteral("1/2"));
        QCOMPARE(grid(w)->viewport()->findChild<QLineEdit*>()->text(), QStringLiteral("1\\2"));
        grid(w)->setCurrentCell(0, 1);
        w.click("cmdPLUEliminaRiga");
        QCOMPARE(gridLines(w).first(), items(2, 2)[0] + "//");
        QCOMPARE(grid(w)->rowCount(), 2);
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

QTEST_MAIN(EcrConfigTest)
#include "tst_ui_ecrconfig.moc"
