// Logo pictures: reading a BMP, the black-and-white threshold, the fit to
// the register's sizes, the resize by hand, and the "$/" row records.
#include "logos/LogoBitmap.h"
#include "logos/LogoFit.h"
#include "logos/LogoRecords.h"
#include "logos/LogoTexts.h"
#include "logos/LogoThreshold.h"

#include <QBuffer>
#include <QDir>
#include <QFile>
#include <QTemporaryDir>
#include <QTest>

using namespace kelm::logos;

namespace {

QImage filled(QSize size, QColor colour)
{
    QImage image(size, QImage::Format_RGB32);
    image.fill(colour);
    return image;
}

QImage black(int width, int height)
{
    return filled({width, height}, Qt::black);
}

QImage withPixels(QImage image, int y, const QList<int>& xs, QColor colour = Qt::white)
{
    for (const int x : xs)
        image.setPixelColor(x, y, colour);
    return image;
}

QByteArray encoded(const QImage& image, const char* format)
{
    QByteArray bytes;
    QBuffer buffer(&bytes);
    buffer.open(QIODevice::WriteOnly);
    image.save(&buffer, format);
    return bytes;
}

// A BMP whose width and height fields (at bytes 18 and 22) say otherwise.
QByteArray withHeaderSize(QByteArray bmp, qint32 width, qint32 height)
{
    for (int i = 0; i < 4; ++i) {
        bmp[18 + i] = char((width >> (8 * i)) & 0xFF);
        bmp[22 + i] = char((height >> (8 * i)) & 0xFF);
    }
    return bmp;
}

QString zeros(int count)
{
    return QString(count, u'0');
}

} // namespace

class LogosTest : public QObject {
    Q_OBJECT

private slots:
    void read_data();
    void read();
    void threshold_data();
    void threshold();
    void fit_data();
    void fit();
    void resize_data();
    void resize();
    void rowRecord_data();
    void rowRecord();
    void refused_data();
    void refused();
};

void LogosTest::read_data()
{
    QTest::addColumn<QByteArray>("content"); // "<dir>": a folder, "<none>": no file
    QTest::addColumn<QString>("error");
    QTest::addColumn<QSize>("size");
    QTest::addColumn<QColor>("corner");
    const QByteArray bmp = encoded(filled({70, 200}, Qt::red), "BMP");
    const QByteArray mono = encoded(filled({64, 64}, Qt::white).convertToFormat(QImage::Format_Mono), "BMP");
    const QString notBmp = "Il file non è un'immagine BMP", damaged = "Il file BMP è danneggiato";
    const QSize none(0, 0);
    QTest::newRow("bmp") << bmp << QString() << QSize(70, 200) << QColor(Qt::red);
    QTest::newRow("one bit a pixel") << mono << QString() << QSize(64, 64) << QColor(Qt::white);
    QTest::newRow("empty") << QByteArray() << "Il file è vuoto" << none << QColor();
    QTest::newRow("png") << encoded(filled({8, 8}, Qt::red), "PNG") << notBmp << none << QColor();
    QTest::newRow("text") << QByteArray("$/1/64/64/1/\r\n") << notBmp << none << QColor();
    QTest::newRow("zero bytes") << QByteArray(512, '\0') << notBmp << none << QColor();
    QTest::newRow("header cut short") << bmp.left(20) << damaged << none << QColor();
    QTest::newRow("pixels cut short") << bmp.left(bmp.size() / 2) << damaged << none << QColor();
    QTest::newRow("zero width") << withHeaderSize(bmp, 0, 200) << damaged << none << QColor();
    QTest::newRow("absurd size") << withHeaderSize(bmp, 1 << 30, 1 << 30) << damaged << none << QColor();
    QTest::newRow("no file") << QByteArray("<none>") << kFileUnreadable << none << QColor();
    QTest::newRow("a folder") << QByteArray("<dir>") << kFileUnreadable << none << QColor();
}

void LogosTest::read()
{
    QFETCH(QByteArray, content);
    QFETCH(QString, error);
    QTemporaryDir dir;
    QFile file(dir.filePath("logo.bmp"));
    if (content == "<dir>")
        QDir().mkdir(file.fileName());
    else if (content != "<none>" && file.open(QIODevice::WriteOnly))
        file.write(content);
    file.close();
    const LoadedBitmap loaded = readBmpFile(file.fileName());
    QCOMPARE(loaded.error, error);
    QTEST(loaded.image.size(), "size");
    if (error.isEmpty()) {
        QCOMPARE(loaded.image.format(), kLogoFormat);
        QTEST(loaded.image.pixelColor(loaded.image.width() - 1, loaded.image.height() - 1), "corner");
    }
}

void LogosTest::threshold_data()
{
    QTest::addColumn<QColor>("colour");
    QTest::addColumn<bool>("white");

    QTest::newRow("all limits met") << QColor(151, 101, 161) << true;
    QTest::newRow("red short") << QColor(150, 255, 255) << false;
    QTest::newRow("green short") << QColor(255, 100, 255) << false;
    QTest::newRow("blue short") << QColor(255, 255, 160) << false;
    QTest::newRow("red and blue limits swapped") << QColor(161, 101, 151) << false;
}

void LogosTest::threshold()
{
    QFETCH(QColor, colour);
    QFETCH(bool, white);
    const QImage result = thresholdToBlackAndWhite(filled({70, 300}, colour));
    QCOMPARE(result.size(), QSize(70, 300));
    const QColor expected = white ? Qt::white : Qt::black;
    QCOMPARE(result.pixelColor(0, 0), expected);
    QCOMPARE(result.pixelColor(69, 255), expected);
    // Only the first 256 pixels of each side are turned.
    const QImage square = thresholdToBlackAndWhite(filled({300, 300}, colour));
    QCOMPARE(square.pixelColor(255, 255), expected);
    QCOMPARE(square.pixelColor(256, 0), colour);
    QCOMPARE(square.pixelColor(0, 256), colour);
}

void LogosTest::fit_data()
{
    QTest::addColumn<QSize>("loaded");
    QTest::addColumn<QSize>("fitted");
    QTest::addColumn<bool>("standard");

    QTest::newRow("70x200") << QSize(70, 200) << QSize(128, 256) << false;
    QTest::newRow("300x10") << QSize(300, 10) << QSize(256, 64) << false;
    QTest::newRow("64x64 kept") << QSize(64, 64) << QSize(64, 64) << true;
    QTest::newRow("one past 64") << QSize(65, 65) << QSize(128, 128) << false;
    QTest::newRow("one past 128") << QSize(129, 129) << QSize(256, 256) << false;
    QTest::newRow("two pixels") << QSize(2, 2) << QSize(64, 64) << false;
    QTest::newRow("one side standard") << QSize(128, 100) << QSize(128, 128) << false;
}

void LogosTest::fit()
{
    QFETCH(QSize, loaded);
    QImage picture = filled(loaded, QColor(40, 40, 40));
    for (int x = 0; x < loaded.width() / 2; ++x)
        picture.setPixelColor(x, 0, QColor(230, 230, 230));

    const FittedLogo logo = fitLoadedLogo(picture);
    QCOMPARE(logo.loadedSize, loaded);
    QTEST(logo.standardSize, "standard");
    QTEST(logo.image.size(), "fitted");
    QCOMPARE(logo.image.pixelColor(0, 0), QColor(Qt::white));
    QVERIFY(logo.image.pixelColor(logo.image.width() - 1, logo.image.height() - 1)
            != QColor(Qt::white));
}

void LogosTest::resize_data()
{
    QTest::addColumn<QString>("width");
    QTest::addColumn<QString>("height");
    QTest::addColumn<QSize>("size");
    QTest::addColumn<QString>("error");

    QTest::newRow("list values") << "128" << "256" << QSize(128, 256) << QString();
    QTest::newRow("leading number") << " 64 px" << "64" << QSize(64, 64) << QString();
    QTest::newRow("zero width") << "0" << "64" << QSize(0, 0) << "Valore di Larghezza o altezza errato";
    QTest::newRow("empty height") << "64" << "" << QSize(0, 0) << "Valore di Larghezza o altezza errato";
    QTest::newRow("not a number") << "largo" << "64" << QSize(0, 0) << "Valore di Larghezza o altezza errato";
    QTest::newRow("not a logo side") << "100" << "64" << QSize(0, 0) << "Valore di Larghezza o altezza errato";
}

void LogosTest::resize()
{
    QFETCH(QString, width);
    QFETCH(QString, height);
    QFETCH(QString, error);
    const QColor grey(200, 200, 200);
    const ResizedLogo resized = resizeByHand(filled({64, 64}, grey), width, height);
    QCOMPARE(resized.error, error);
    QTEST(resized.image.size(), "size");
    if (error.isEmpty())
        QCOMPARE(resized.image.pixelColor(0, 0), grey);
}

void LogosTest::rowRecord_data()
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

void LogosTest::rowRecord()
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

void LogosTest::refused_data()
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

void LogosTest::refused()
{
    QFETCH(QImage, picture);
    QFETCH(int, page);
    const LogoDownload download = logoDownload({picture, picture}, page);
    QCOMPARE(download.refusal, QStringLiteral("Logo non impostato"));
    QVERIFY(download.records.isEmpty());
}

QTEST_GUILESS_MAIN(LogosTest)
#include "tst_logos.moc"
