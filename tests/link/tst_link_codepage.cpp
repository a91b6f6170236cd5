// Windows-1252 on the line and in files: one character, one byte.
#include "link/CodePage.h"

#include <QTest>

using namespace kelm;

class CodePageTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void encode_data();
    void encode();
    void everyByteSurvivesARoundTrip();
};

void CodePageTest::encode_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<QByteArray>("bytes");
    QTest::newRow("ascii record") << QStringLiteral("3/S/REPARTO1//1/5.26/1/4/")
                                  << QByteArray("3/S/REPARTO1//1/5.26/1/4/");
    QTest::newRow("euro sign") << QStringLiteral("SC \u20AC") << QByteArray("SC \x80");
    QTest::newRow("accented letters") << QStringLiteral("Velocit\u00E0 perch\u00E9")
                                      << QByteArray("Velocit\xE0 perch\xE9");
    QTest::newRow("typographic apostrophe") << QStringLiteral("doesn\u2019t") << QByteArray("doesn\x92t");
    QTest::newRow("CJK becomes ?") << QStringLiteral("a\u4E00b") << QByteArray("a?b");
    QTest::newRow("outside the BMP is one ?") << QString::fromUtf8("a\xF0\x9F\x98\x80z") << QByteArray("a?z");
    QTest::newRow("a real SUB stays") << QStringLiteral("a\u001Ab") << QByteArray("a\x1A" "b");
    QTest::newRow("SUB and a missing character") << QStringLiteral("\u001A\u4E00") << QByteArray("\x1A?");
    QTest::newRow("empty") << QString() << QByteArray();
}

void CodePageTest::encode()
{
    QFETCH(QString, text);
    QFETCH(QByteArray, bytes);
    QCOMPARE(ansi::encode(text), bytes);
}

void CodePageTest::everyByteSurvivesARoundTrip()
{
    QByteArray all;
    for (int b = 0; b < 256; ++b)
        all.append(static_cast<char>(b));
    const QString text = ansi::decode(all);
    QCOMPARE(text.size(), 256);
    QCOMPARE(ansi::encode(text), all);
}

QTEST_APPLESS_MAIN(CodePageTest)
#include "tst_link_codepage.moc"
