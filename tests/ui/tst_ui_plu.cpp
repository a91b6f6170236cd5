// The PLU page against the built-in virtual register: the download with its
// deletion of the register's PLUs beyond the grid, the read-back, and the
// PLU file through its buttons.
#include "EcrWindow.h"

#include <QLineEdit>
#include <QProgressBar>
#include <QRegularExpression>
#include <QTableWidget>

using Button = kelm::ui::Dialogs::Button;
using Buttons = QList<Button>;

namespace {

QTableWidget* grid(const EcrWindow& w)
{
    return w.find<QTableWidget>(QStringLiteral("fgPLU"));
}

// Appends one row per text: "code/description/…/" with the cells in
// column order.
void typeRows(const EcrWindow& w, const QStringList& lines)
{
    QTableWidget* g = grid(w);
    for (const QString& line : lines) {
        const int r = g->rowCount();
        g->setRowCount(r + 1);
        const QStringList cells = line.split(u'/');
        for (int c = 0; c < g->columnCount() && c < cells.size(); ++c)
            g->setItem(r, c, new QTableWidgetItem(cells[c]));
    }
}

// Each row as its ten cells, each closed by "/".
QStringList gridLines(const EcrWindow& w)
{
    QStringList lines;
    QTableWidget* g = grid(w);
    for (int r = 0; r < g->rowCount(); ++r) {
        QString line;
        for (int c = 0; c < g->columnCount(); ++c)
            line += (g->item(r, c) ? g->item(r, c)->text() : QString()) + u'/';
        lines << line;
    }
    return lines;
}

QString item(int n)
{
    return n == 0 ? QStringLiteral("/////////")
                  : QStringLiteral("CODE%1/ITEM %1/1/0/1,50/0/5/00000000/").arg(n);
}

bool barsHidden(const EcrWindow& w)
{
    return w.find<QProgressBar>(QStringLiteral("pbPLU_0"))->isHidden()
        && w.find<QProgressBar>(QStringLiteral("pbPLU_1"))->isHidden();
}

} // namespace

class PluPageTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void downloadDeletesBeyondTheGrid_data();
    void downloadDeletesBeyondTheGrid();
    void stopEndsTheDownloadBetweenRecords();
    void downloadThatWouldDeleteOrFail_data();
    void downloadThatWouldDeleteOrFail();
    void rowsAddedAndRemovedCommaTyped();
    void loadFile_data();
    void loadFile();
    void saveFile_data();
    void saveFile();
};

void PluPageTest::downloadDeletesBeyondTheGrid_data()
{
    QTest::addColumn<QList<int>>("held"); // the register's PLUs before: an item's number, 0 for a free one
    QTest::addColumn<int>("gridRows");
    QTest::addColumn<QList<int>>("deleted");
    QTest::addColumn<int>("lastProbed");
    QList<int> twelve;
    for (int n = 1; n <= 12; ++n)
        twelve << n;
    QTest::newRow("3 rows over 12 PLUs") << twelve << 3 << QList<int>{4, 5, 6, 7, 8, 9, 10, 11, 12} << 22;
    QTest::newRow("10 free numbers keep what lies beyond")
        << QList<int>{1, 2, 3, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 14} << 1 << QList<int>{2, 3} << 13;
}

void PluPageTest::downloadDeletesBeyondTheGrid()
{
    QFETCH(QList<int>, held);
    QFETCH(int, gridRows);
    QFETCH(QList<int>, deleted);
    QFETCH(int, lastProbed);
    EcrWindow w;
    QStringList rows;
    for (int n : held)
        rows << item(n);
    typeRows(w, rows);
    w.click("cmdSetParametri_4");
    QVERIFY(w.shown(1));
    QTRY_VERIFY(barsHidden(w));
    const qsizetype before = w.journal().size();

    w.click("cmdCancellaPLU");
    QCOMPARE(grid(w)->rowCount(), 0);
    typeRows(w, rows.mid(0, gridRows));
    w.click("cmdSetParametri_4");
    QVERIFY(!w.find<QProgressBar>("pbPLU_0")->isHidden());
    QVERIFY(w.shown(2));
    QCOMPARE(w.dialogs.shown[1], QStringLiteral("Kelm Drev: PLU scaricate"));
    QCOMPARE(grid(w)->item(0, 4)->text(), QStringLiteral("1")); // "1,50" as sent
    QTRY_VERIFY(barsHidden(w));

    const QStringList sent = w.journal().mid(before);
    QStringList deletions;
    for (int n : deleted)
        deletions << QStringLiteral("P/%1////0/0/0/0/00000000/").arg(n);
    QCOMPARE(sent.filter(QStringLiteral("////0/0/0/0/00000000/")), deletions);
    QVERIFY(sent.contains(QStringLiteral("p/%1/").arg(lastProbed)));
    QVERIFY(!sent.contains(QStringLiteral("p/%1/").arg(lastProbed + 1)));

    w.click("cmdCancellaPLU");
    w.click("cmdReadPLU");
    QTRY_VERIFY(barsHidden(w));
    QStringList expected;
    for (int n = 1; n <= gridRows; ++n)
        expected << QStringLiteral("CODE%1/ITEM %1/1/0/1/0/5/00000000/0/0/").arg(n);
    QCOMPARE(gridLines(w), expected);
}

void PluPageTest::stopEndsTheDownloadBetweenRecords()
{
    EcrWindow w;
    QStringList rows;
    for (int n = 1; n <= 500; ++n)
        rows << item(n);
    typeRows(w, rows);
    w.click("cmdSetParametri_4");
    QTRY_VERIFY(w.find<QProgressBar>("pbPLU_0")->value() >= 3);
    w.click("cmdStopPLU");
    QVERIFY(w.shown(1));
    QTRY_VERIFY(barsHidden(w));
    const QStringList sent = w.journal().filter(QRegularExpression(QStringLiteral("^P/")));
    QVERIFY(sent.size() >= 3 && sent.size() < 500);
    QCOMPARE(w.dialogs.shown[0], QStringLiteral("Kelm Drev: Scarico PLU interrotto: %1 di 500 righe scaricate")
                                     .arg(sent.size()));
    QCOMPARE(sent.last(), QStringLiteral("P/%1/CODE%1/ITEM %1/1/0/1/0/5/00000000/").arg(sent.size()));
    QVERIFY(w.journal().filter(QStringLiteral("p/")).isEmpty()); // no search beyond the grid
}

void PluPageTest::downloadThatWouldDeleteOrFail_data()
{
    QTest::addColumn<QStringList>("rows");
    QTest::addColumn<Buttons>("answers");
    QTest::addColumn<QStringList>("asked");
    QTest::addColumn<QStringList>("shown");
    const QString failure = QStringLiteral("Attenzione: Errore in scarico PLU BAD\r\nErrore : 08\r\nIl reparto non esiste");
    const QStringList bad(3, QStringLiteral("BAD/X/99/0/1/0/0/00000000/"));
    QTest::newRow("empty grid, Cancel preselected: nothing deleted")
        << QStringList{} << Buttons{}
        << QStringList{"ATTENZIONE: La griglia PLU è vuota: lo scarico cancella tutte le PLU dell'ECR.\r\n"
                       "Confermare Operazione?"}
        << QStringList{};
    QTest::newRow("a failing row: OK goes on") << bad << Buttons{} << QStringList(3, failure)
                                               << QStringList{"Kelm Drev: PLU scaricate"};
    QTest::newRow("a failing row: Cancel stops") << bad << Buttons{Button::Cancel} << QStringList{failure}
                                                 << QStringList{"Kelm Drev: Scarico PLU interrotto: 1 di 3 righe scaricate"};
}

void PluPageTest::downloadThatWouldDeleteOrFail()
{
    QFETCH(QStringList, rows);
    QFETCH(Buttons, answers);
    QFETCH(QStringList, asked);
    QFETCH(QStringList, shown);
    EcrWindow w;
    typeRows(w, rows);
    w.dialogs.answers = answers;
    w.click("cmdSetParametri_4");
    QTRY_VERIFY(barsHidden(w));
    QVERIFY(w.settle());
    QCOMPARE(w.dialogs.asked, asked);
    QCOMPARE(w.dialogs.shown, shown);
    if (rows.isEmpty())
        QVERIFY(w.journal().filter(QStringLiteral("p/")).isEmpty()); // nothing read, nothing deleted
}

void PluPageTest::rowsAddedAndRemovedCommaTyped()
{
    EcrWindow w;
    typeRows(w, {item(1), item(2)});
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
    grid(w)->setCurrentCell(0, 1);
    w.click("cmdPLUEliminaRiga");
    QCOMPARE(gridLines(w).first(), QStringLiteral("CODE2/ITEM 2/1/0/1,50/0/5/00000000///"));
    QCOMPARE(grid(w)->rowCount(), 2);
}

void PluPageTest::loadFile_data()
{
    QTest::addColumn<QByteArray>("file"); // empty: no such file; "-": no name given
    QTest::addColumn<QStringList>("shown");
    QTest::addColumn<QStringList>("grid"); // after one row already there
    const QString kept = QStringLiteral("1/OLD/1/0/1/0/0/00000000/3/3/");
    QTest::newRow("rows appended, counters not loaded, short line skipped")
        << QByteArray("8001234567890/ACQUA 1L/1/0/0.5/0/100/00000000/12/6/\r\n"
                      "123456789/12345\r\n"
                      "22/PANE\xc8/2/0/1.2/0/0/00000000\n")
        << QStringList{}
        << QStringList{kept, "8001234567890/ACQUA 1L/1/0/0.5/0/100/00000000///",
                       "22/PANE\u00c8/2/0/1.2/0/0/00000000///"};
    QTest::newRow("odd lines are loaded and listed")
        << QByteArray("1/A/1/0/1/0/0/00000000/1/1/1/\r\n8001234567890/ACQUA/\r\n")
        << QStringList{"Attenzione: Righe del file PLU con meno di 8 o più di 10 campi, caricate comunque: 1, 2"}
        << QStringList{kept, "1/A/1/0/1/0/0/00000000///", "8001234567890/ACQUA/////////"};
    QTest::newRow("no such file") << QByteArray() << QStringList{"Attenzione: File Inesistente"}
                                  << QStringList{kept};
    QTest::newRow("empty name") << QByteArray("-") << QStringList{"Attenzione: File Inesistente"}
                                << QStringList{kept};
}

void PluPageTest::loadFile()
{
    QFETCH(QByteArray, file);
    QFETCH(QStringList, shown);
    QFETCH(QStringList, grid);
    EcrWindow w;
    typeRows(w, {grid[0]});
    const QString path = w.dir.filePath("items.txt");
    if (!file.isEmpty()) {
        QFile f(path);
        QVERIFY(f.open(QIODevice::WriteOnly));
        f.write(file);
    }
    w.dialogs.typed = {file == "-" ? QString() : path};
    w.click("cmdPLULeggiFile");
    QCOMPARE(w.dialogs.asked, QStringList{"Attenzione: Indicare il nome del file PLU"});
    QCOMPARE(w.dialogs.proposals, QStringList{w.dir.path() + "/plu.txt"});
    QCOMPARE(w.dialogs.shown, shown);
    QCOMPARE(gridLines(w), grid);
}

void PluPageTest::saveFile_data()
{
    QTest::addColumn<bool>("exists");
    QTest::newRow("new file") << false;
    QTest::newRow("existing file is left alone") << true;
}

void PluPageTest::saveFile()
{
    QFETCH(bool, exists);
    EcrWindow w;
    const QStringList rows = {"8001234567890/ACQUA 1L/1/0/0.5/0/100/00000000/12/6/",
                              "22/PANE/2/0/1.2/0/0/00000000///"};
    typeRows(w, rows);
    const QString path = w.dir.filePath("plu.txt");
    if (exists) {
        QFile f(path);
        QVERIFY(f.open(QIODevice::WriteOnly));
        f.write("before\r\n");
    }
    w.click("cmdPLUSalvaFile"); // the proposal is taken
    QFile f(path);
    QVERIFY(f.open(QIODevice::ReadOnly));
    if (exists) {
        QCOMPARE(w.dialogs.shown, QStringList{"Attenzione: File già esistente"});
        QCOMPARE(f.readAll(), QByteArray("before\r\n"));
        return;
    }
    QVERIFY(w.dialogs.shown.isEmpty());
    QCOMPARE(f.readAll(), (rows.join("\r\n") + "\r\n").toLatin1());

    w.click("cmdCancellaPLU");
    w.click("cmdPLULeggiFile");
    QCOMPARE(gridLines(w), QStringList({"8001234567890/ACQUA 1L/1/0/0.5/0/100/00000000///", rows[1]}));
}

QTEST_MAIN(PluPageTest)
#include "tst_ui_plu.moc"
