// The PLU page against the built-in virtual register: the download with its
// deletion of the register's PLUs beyond the grid, the read-back, and the
// PLU file through its buttons. Which numbers are deleted, and how a PLU
// file reads, are the programming tests' tables; here, that the page does it.
#include "EcrWindow.h"
#include "Table.h"

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
    return QTest::qWaitFor([&] { return w.find<QProgressBar>("pbPLU_0")->isHidden() && w.find<QProgressBar>("pbPLU_1")->isHidden(); })
        && w.settle();
}

} // namespace

class PluPageTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
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
        const QStringList sent = w.journal().mid(before);
        QStringList deletions;
        for (int n = 4; n <= 12; ++n)
            deletions << QStringLiteral("P/%1////0/0/0/0/00000000/").arg(n);
        QCOMPARE(sent.filter(QStringLiteral("////0/0/0/0/00000000/")), deletions);
        QVERIFY(sent.contains(QStringLiteral("p/22/")) && !sent.contains(QStringLiteral("p/23/")));
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
            QStringList{"ATTENZIONE: La griglia PLU è vuota: lo scarico cancella tutte le PLU dell'ECR.\r\nConfermare Operazione?"},
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
        grid(w)->setCurrentCell(0, 1);
        w.click("cmdPLUEliminaRiga");
        QCOMPARE(gridLines(w).first(), items(2, 2)[0] + "//");
        QCOMPARE(grid(w)->rowCount(), 2);
    }

    void loadFile_data()
    {
        // The file (empty: no such file; "-": no name given), what is shown, the rows added after the one there.
        columns<QByteArray, QStringList, QStringList>("file", "shown", "added");
        row("odd lines are loaded and listed", QByteArray("1/A/1/0/1/0/0/00000000/1/1/1/\r\n8001234567890/ACQUA/\r\n"),
            QStringList{"Attenzione: Righe del file PLU con meno di 8 o più di 10 campi, caricate comunque: 1, 2"},
            QStringList{"1/A/1/0/1/0/0/00000000///", "8001234567890/ACQUA/////////"});
        row("no such file", QByteArray(), QStringList{"Attenzione: File Inesistente"}, QStringList{});
        row("empty name", QByteArray("-"), QStringList{"Attenzione: File Inesistente"}, QStringList{});
    }
    void loadFile()
    {
        EcrWindow w;
        const QString kept = QStringLiteral("1/OLD/1/0/1/0/0/00000000/3/3/");
        typeRows(w, {kept});
        const QByteArray file = fetch<QByteArray>("file");
        if (!file.isEmpty())
            writeFile(w.dir.filePath("items.txt"), file);
        w.dialogs.typed = {file == "-" ? QString() : w.dir.filePath("items.txt")};
        w.click("cmdPLULeggiFile");
        QCOMPARE(w.dialogs.asked, QStringList{"Attenzione: Indicare il nome del file PLU"});
        QCOMPARE(w.dialogs.proposals, QStringList{w.dir.path() + "/plu.txt"});
        QCOMPARE(w.dialogs.shown, fetch<QStringList>("shown"));
        QCOMPARE(gridLines(w), QStringList(kept) + fetch<QStringList>("added"));
    }

    void saveFile_data()
    {
        columns<QByteArray, QStringList, QByteArray>("before", "shown", "after");
        row("new file", QByteArray(), QStringList{},
            QByteArray("8001234567890/ACQUA 1L/1/0/0.5/0/100/00000000/12/6/\r\n22/PANE/2/0/1.2/0/0/00000000///\r\n"));
        row("existing file is left alone", QByteArray("before\r\n"), QStringList{"Attenzione: File già esistente"},
            QByteArray("before\r\n"));
    }
    void saveFile()
    {
        EcrWindow w;
        const QString path = w.dir.filePath("plu.txt");
        const QByteArray before = fetch<QByteArray>("before");
        if (!before.isEmpty())
            writeFile(path, before);
        typeRows(w, {"8001234567890/ACQUA 1L/1/0/0.5/0/100/00000000/12/6/", "22/PANE/2/0/1.2/0/0/00000000///"});
        w.click("cmdPLUSalvaFile"); // the proposal is taken
        QCOMPARE(w.dialogs.shown, fetch<QStringList>("shown"));
        QCOMPARE(readFile(path), fetch<QByteArray>("after"));
    }
};

QTEST_MAIN(PluPageTest)
#include "tst_ui_plu.moc"
