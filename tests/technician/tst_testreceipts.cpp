#include "technician/TestReceipts.h"

#include <QDir>
#include <QTest>

using namespace kelm::technician;
using kelm::Question;

class TestTestReceipts : public QObject {
    Q_OBJECT

private slots:
    void fileBytes_data();
    void fileBytes();
    void printedNoticeHasSixteenLines();
    void noFileForOtherIndices_data();
    void noFileForOtherIndices();
    void targetPath_data();
    void targetPath();
    void questionLines();
};

void TestTestReceipts::fileBytes_data()
{
    QTest::addColumn<int>("index");
    QTest::addColumn<QString>("caption");
    QTest::addColumn<QByteArray>("bytes");

    QTest::newRow("display notices") << 1 << QStringLiteral("Avviso Display")
                                     << QByteArray("7/0/1/##PROMEMORIA##/\r\n"
                                                   "7/0/0/#SVUOTA-CASSA#/\r\n");
    QTest::newRow("goods return") << 2 << QStringLiteral("Reso Merce")
                                  << QByteArray("3/S/REPARTO1//1/5.26/1/4/\r\n"
                                                "3/S/REPARTO1//1/2.18/1/4/\r\n"
                                                "U/\r\n"
                                                "3/R/REPARTO1//1/7.43/1/4/\r\n"
                                                "5/1/0.00/////\r\n");
    QByteArray notices;
    for (int i = 0; i < 5; ++i)
        notices += "7/1/1/##PROMEMORIA##/\r\n7/1/0/#SVUOTA-CASSA#/\r\nw/1/1//\r\n";
    QTest::newRow("printed notice") << 3 << QStringLiteral("Avviso Stampato") << notices + "m//\r\n";
    QTest::newRow("invoice") << 4 << QStringLiteral("Fattura")
                             << QByteArray("3/F/OPEN//1/1/1/4/\r\n"
                                           "3/S/REPARTO 1//1/80/1/4/\r\n"
                                           "3/S/REPARTO 1//1/70/1/4/\r\n"
                                           "'/1/01234567897/1111111111111111/\r\n"
                                           "j//INTESTAZIONE CLIENTE/VIA  _______ N.3/00100 CITTANOVA (XX)//////0/\r\n"
                                           "5/1/0.00/////\r\n");
    QTest::newRow("credit note") << 5 << QStringLiteral("Nota di Credito")
                                 << QByteArray("-/123-2010/\r\n"
                                               "3/N/CAMICIA ROSSA/rif.sco.123del010109/1/1/1/4/\r\n"
                                               "5/1/0.00/////\r\n");
    QTest::newRow("plain receipt") << 6 << QStringLiteral("Scontrino")
                                   << QByteArray("3/S/Coca Cola 1,70/second , descr/1/25.88/1/4/\r\n"
                                                 "3/S/REPARTO2//1/25.88/2/10/\r\n"
                                                 "3/S/REPARTO3//1/7.33/3/20/\r\n"
                                                 "4/10.00///0/0/0//\r\n"
                                                 "5/1/0.00/////\r\n");
}

void TestTestReceipts::fileBytes()
{
    QFETCH(int, index);
    QTEST(testReceiptCaption(index), "caption");
    QTEST(testReceiptFile(index), "bytes");
}

void TestTestReceipts::printedNoticeHasSixteenLines()
{
    const QByteArray file = testReceiptFile(3);
    QCOMPARE(file.count("\r\n"), 16);
    QCOMPARE(file.count('\n'), 16);
    QVERIFY(file.endsWith("m//\r\n"));
}

void TestTestReceipts::noFileForOtherIndices_data()
{
    QTest::addColumn<int>("index");
    QTest::newRow("no button 0") << 0;
    QTest::newRow("past the last") << 7;
    QTest::newRow("negative") << -1;
}

void TestTestReceipts::noFileForOtherIndices()
{
    QFETCH(int, index);
    QVERIFY(testReceiptFile(index).isEmpty());
    QVERIFY(testReceiptCaption(index).isEmpty());
}

void TestTestReceipts::targetPath_data()
{
    QTest::addColumn<QString>("dir");
    QTest::addColumn<QString>("file");
    QTest::addColumn<std::optional<QString>>("path");

    const QString sep = QDir::separator();
    QTest::newRow("separator added") << QStringLiteral("srv") << QStringLiteral("scontrino.txt")
                                     << std::optional(QStringLiteral("srv") + sep + QStringLiteral("scontrino.txt"));
    QTest::newRow("separator not doubled")
        << QStringLiteral("srv") + sep << QStringLiteral("scontrino.txt")
        << std::optional(QStringLiteral("srv") + sep + QStringLiteral("scontrino.txt"));
    QTest::newRow("two characters are enough") << QStringLiteral("d1") << QStringLiteral("s.tx")
                                               << std::optional(QStringLiteral("d1") + sep + QStringLiteral("s.tx"));
    QTest::newRow("one character: nothing") << QStringLiteral("c") << QStringLiteral("s.tx")
                                             << std::optional<QString>();
    QTest::newRow("empty: nothing") << QString() << QStringLiteral("s.tx") << std::optional<QString>();
}

void TestTestReceipts::targetPath()
{
    QFETCH(QString, dir);
    QFETCH(QString, file);
    QTEST(testReceiptPath(dir, file), "path");
}

void TestTestReceipts::questionLines()
{
    const Question question = testReceiptQuestion();
    QVERIFY(!question.text.contains(u'\n'));
    QCOMPARE(question.text.split(u'\r'), (QStringList{QStringLiteral("Consigliamo, prima di emettere "),
                                                      QStringLiteral("scontrini di prova, di "),
                                                      QStringLiteral("entrare in modalità apprendimento."),
                                                      QStringLiteral("Vuoi continuare?")}));
    QCOMPARE(kTestFileExists, QStringLiteral("File già esistente."));
}

QTEST_GUILESS_MAIN(TestTestReceipts)
#include "tst_testreceipts.moc"
