#include "server/ReceiptLines.h"

#include <QTest>

class TestReceiptLines : public QObject {
    Q_OBJECT

private slots:
    void split_data();
    void split();
    void normalize_data();
    void normalize();
};

void TestReceiptLines::split_data()
{
    QTest::addColumn<QByteArray>("bytes");
    QTest::addColumn<QStringList>("lines");

    QTest::newRow("CR LF") << QByteArray("U/\r\n5/1/\r\n") << QStringList{"U/", "5/1/"};
    QTest::newRow("LF") << QByteArray("U/\n5/1/\n") << QStringList{"U/", "5/1/"};
    QTest::newRow("no final line end") << QByteArray("U/\r\n5/1/") << QStringList{"U/", "5/1/"};
    QTest::newRow("lone CR") << QByteArray("U/\r5/1/\r") << QStringList{"U/", "5/1/"};
    QTest::newRow("mixed") << QByteArray("U/\n3/S/A/\r\n5/1/") << QStringList{"U/", "3/S/A/", "5/1/"};
    QTest::newRow("empty lines kept") << QByteArray("U/\r\n\r\n\n5/1/") << QStringList{"U/", "", "", "5/1/"};
    QTest::newRow("only a line end") << QByteArray("\r\n") << QStringList{""};
    QTest::newRow("empty file") << QByteArray() << QStringList{};
    QTest::newRow("DOS end-of-file mark") << QByteArray("U/\r\n5/1/\r\n\x1A") << QStringList{"U/", "5/1/"};
    QTest::newRow("text after the mark") << QByteArray("U/\x1A" "5/1/\r\n") << QStringList{"U/"};
    QTest::newRow("Windows-1252") << QByteArray("3/S/Caff\xE8 \x80 1/\r\n")
                                  << QStringList{QStringLiteral("3/S/Caffè € 1/")};
    QTest::newRow("blanks kept") << QByteArray(" 3/S/A/ \r\n") << QStringList{" 3/S/A/ "};
}

void TestReceiptLines::split()
{
    QFETCH(QByteArray, bytes);
    QTEST(kelm::server::splitReceiptLines(bytes), "lines");
}

void TestReceiptLines::normalize_data()
{
    QTest::addColumn<QString>("line");
    QTest::addColumn<bool>("skipped");
    QTest::addColumn<QString>("expected");

    QTest::newRow("final slash added") << QStringLiteral("x/7/0/0") << false << QStringLiteral("x/7/0/0/");
    QTest::newRow("complete line") << QStringLiteral("x/7/0/0/") << false << QStringLiteral("x/7/0/0/");
    QTest::newRow("code alone") << QStringLiteral("U") << false << QStringLiteral("U/");
    QTest::newRow("trailing blank is not a slash") << QStringLiteral("5/1/ ") << false << QStringLiteral("5/1/ /");
    QTest::newRow("leading blank kept") << QStringLiteral(" U/") << false << QStringLiteral(" U/");
    QTest::newRow("blanks") << QStringLiteral("    ") << true << QString();
    QTest::newRow("empty") << QString() << true << QString();
}

void TestReceiptLines::normalize()
{
    QFETCH(QString, line);
    QFETCH(bool, skipped);

    const std::optional<QString> normalized = kelm::server::normalizeQueueLine(line);

    QCOMPARE(!normalized.has_value(), skipped);
    if (normalized)
        QTEST(*normalized, "expected");
}

QTEST_GUILESS_MAIN(TestReceiptLines)
#include "tst_receiptlines.moc"
