// What each download index does, asks and reports.
#include "programming/Downloads.h"

#include <QTest>

using kelm::Question;
using namespace kelm::programming;
using Button = kelm::Operator::Button;
using Icon = kelm::Operator::Icon;

class TestDownloads : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void branches_data();
    void branches();
    void confirmations();
    void failure_data();
    void failure();
    void unknownIndex();
};

void TestDownloads::branches_data()
{
    QTest::addColumn<int>("index");
    QTest::addColumn<DownloadTable>("table");
    QTest::addColumn<bool>("recordByRecord");
    QTest::addColumn<QString>("success");

    QTest::newRow("0") << 0 << DownloadTable::Header << false << "Intestazione Scaricata";
    QTest::newRow("1") << 1 << DownloadTable::Footer << false << "Piede di scontrino scaricato";
    QTest::newRow("2") << 2 << DownloadTable::Logo << false << "Logo Scaricato, ricordarsi di attivarlo";
    QTest::newRow("3") << 3 << DownloadTable::Departments << true << "Reparti scaricati";
    QTest::newRow("4") << 4 << DownloadTable::Plu << true << "PLU scaricate";
    QTest::newRow("5") << 5 << DownloadTable::Nothing << false << "";
    QTest::newRow("6") << 6 << DownloadTable::PaymentTypes << true << "Tabella pagamenti scaricate";
    QTest::newRow("7") << 7 << DownloadTable::ScrollMessage << false
                       << "Messaggio Scorrevole scaricato\rRicordarsi di attivarlo";
    QTest::newRow("8") << 8 << DownloadTable::Nothing << false << "";
    QTest::newRow("9") << 9 << DownloadTable::SParameters << false << "Parametri S scaricati";
    QTest::newRow("10") << 10 << DownloadTable::VatRates << false << "Aliquote IVA scaricate";
    QTest::newRow("11") << 11 << DownloadTable::Unknown << false << "";
    QTest::newRow("-1") << -1 << DownloadTable::Unknown << false << "";
}

void TestDownloads::branches()
{
    QFETCH(int, index);
    const DownloadBranch b = downloadBranch(static_cast<qint16>(index));
    QTEST(b.table, "table");
    QTEST(b.recordByRecord, "recordByRecord");
    QCOMPARE(b.confirmation.has_value(), index == 0 || index == 10);
    const Notice success = downloadSuccess(b);
    QTEST(success.text, "success");
    QCOMPARE(success.title, QStringLiteral("Kelm Drev"));
    QCOMPARE(success.icon, Icon::Information);
}

void TestDownloads::confirmations()
{
    const Question header = *downloadBranch(0).confirmation;
    QCOMPARE(header.text, QStringLiteral("L'intestazione degli scontrini si può cambiare un massimo di 60 volte. "
                                         "Confermare Operazione?"));
    const Question vat = *downloadBranch(10).confirmation;
    QCOMPARE(vat.text, QStringLiteral("Le aliquote IVA si possono cambiare un massimo di 20 volte. "
                                      "Confermare Operazione?"));
    for (const Question& q : {header, vat}) {
        QCOMPARE(q.title, QStringLiteral("ATTENZIONE"));
        QCOMPARE(q.buttons, (QList<Button>{Button::Ok, Button::Cancel}));
        QCOMPARE(q.defaultButton, Button::Cancel);
        QCOMPARE(q.proceed, Button::Ok);
    }
}

void TestDownloads::failure_data()
{
    QTest::addColumn<int>("index");
    QTest::addColumn<QString>("answer");
    QTest::addColumn<QString>("identification");
    QTest::addColumn<QString>("expected");

    QTest::newRow("header, error 12") << 0 << "12/00/01/" << ""
                                      << "Errore in scarico intestazione\r\nErrore : 12\r\nData-Ora errata";
    QTest::newRow("PLU names its code")
        << 4 << "0C" << "8001234567890"
        << "Errore in scarico PLU 8001234567890\r\nErrore : 0C\r\nPagamento inesistente";
    QTest::newRow("no answer from the link") << 9 << "" << "" << "Errore in scarico parametri S\r\nErrore : \r\n";
    QTest::newRow("unknown code") << 3 << "FFx" << "" << "Errore in scarico Reparti\r\nErrore : FF\r\n";
}

void TestDownloads::failure()
{
    QFETCH(int, index);
    QFETCH(QString, answer);
    QFETCH(QString, identification);
    const Notice n = downloadFailure(downloadBranch(static_cast<qint16>(index)), answer, identification);
    QTEST(n.text, "expected");
    QCOMPARE(n.title, QStringLiteral("Attenzione"));
    QCOMPARE(n.icon, Icon::Critical);
}

void TestDownloads::unknownIndex()
{
    QCOMPARE(unknownDownloadIndex(),
             (Notice{QStringLiteral("Errore 90 : Avvisare produttore"), QStringLiteral("Attenzione"), Icon::Critical}));
}

QTEST_APPLESS_MAIN(TestDownloads)
#include "tst_downloads.moc"
