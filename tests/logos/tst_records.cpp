#include "logos/LogoRecords.h"
#include "logos/LogoTexts.h"

#include <QTest>

using namespace kelm::logos;

namespace {

QImage black(int width, int height)
{
    QImage image(width, height, QImage::Format_RGB32);
    image.fill(Qt::black);
    return image;
}

QImage withPixels(QImage image, int y, const QList<int>& xs, QColor colour = Qt::white)
{
    for (const int x : xs)
        image.setPixelColor(x, y, colour);
    return image;
}

QString zeros(int count)
{
    return QString(count, u'0');
}

} // namespace

class TestLogoRecords : public QObject {
    Q_OBJECT

private slots:
    void rowRecord_data();
    void rowRecord();
    void refused_data();
    void refused();
};

void TestLogoRecords::rowRecord_data()
{
    QTest::addColumn<QImage>("head");
    QTest::addColumn<QImage>("end");
    QTest::addColumn<int>("page");
    QTest::addColumn<int>("row");
    QTest::addColumn<QString>("record");

    QImage white64(64, 64, QImage::Format_RGB888);
    white64.fill(Qt::white);
    const QImage b64 = black(64, 64);

    QTest::newRow("64 wide, all white")
        << white64 << b64 << 0 << 1 << QStringLiteral("$/1/64/64/1/FFFFFFFFFFFFFFFF/");
    QTest::newRow("end page, 128 wide")
        << white64 << black(128, 64) << 1 << 1 << "$/2/128/64/1/" + zeros(32) + "/";
    QTest::newRow("256 wide, last row")
        << black(256, 256) << b64 << 0 << 256 << "$/1/256/256/256/" + zeros(64) + "/";
    QTest::newRow("right edge white")
        << withPixels(b64, 0, {60, 61, 62, 63}) << b64 << 0 << 1 << "$/1/64/64/1/F" + zeros(15) + "/";
    QTest::newRow("rightmost pixel counts 8")
        << withPixels(b64, 4, {63}) << b64 << 0 << 5 << "$/1/64/64/5/8" + zeros(15) + "/";
    QTest::newRow("second nibble")
        << withPixels(b64, 0, {58, 57}) << b64 << 0 << 1 << "$/1/64/64/1/06" + zeros(14) + "/";
    QTest::newRow("left edge pixel counts 1")
        << withPixels(b64, 63, {0}) << b64 << 0 << 64 << "$/1/64/64/64/" + zeros(15) + "1/";
    QTest::newRow("nearly white is black")
        << withPixels(b64, 0, {63, 62, 61}, QColor(255, 255, 254)) << b64 << 0 << 1
        << "$/1/64/64/1/" + zeros(16) + "/";
    QTest::newRow("upper-case digits")
        << withPixels(b64, 0, {63, 62, 60}) << b64 << 0 << 1 << "$/1/64/64/1/D" + zeros(15) + "/";
    QTest::newRow("height not limited")
        << black(64, 300) << b64 << 0 << 300 << "$/1/64/300/300/" + zeros(16) + "/";
}

void TestLogoRecords::rowRecord()
{
    QFETCH(QImage, head);
    QFETCH(QImage, end);
    QFETCH(int, page);
    QFETCH(int, row);

    const LogoDownload download = logoDownload({head, end}, page);
    QVERIFY(download.refusal.isEmpty());
    const QImage shown = page == 0 ? head : end;
    QCOMPARE(download.records.size(), shown.height());
    for (qsizetype i = 0; i < download.records.size(); ++i)
        QCOMPARE(download.records[i].row, i + 1);
    QTEST(download.records[row - 1].record, "record");
}

void TestLogoRecords::refused_data()
{
    QTest::addColumn<QImage>("picture");
    QTest::addColumn<int>("page");

    QTest::newRow("no picture") << QImage() << 0;
    QTest::newRow("63 wide") << black(63, 64) << 0;
    QTest::newRow("63 high") << black(64, 63) << 0;
    QTest::newRow("257 wide") << black(257, 64) << 0;
    QTest::newRow("no such page") << black(64, 64) << 2;
    QTest::newRow("negative page") << black(64, 64) << -1;
}

void TestLogoRecords::refused()
{
    QFETCH(QImage, picture);
    QFETCH(int, page);
    const LogoDownload download = logoDownload({picture, picture}, page);
    QCOMPARE(download.refusal, kLogoNotSet);
    QVERIFY(download.records.isEmpty());
}

QTEST_GUILESS_MAIN(TestLogoRecords)
#include "tst_records.moc"
