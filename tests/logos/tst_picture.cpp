#include "logos/LogoBitmap.h"
#include "logos/LogoFit.h"
#include "logos/LogoTexts.h"
#include "logos/LogoThreshold.h"

#include <QBuffer>
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
    const auto put = [&bmp](int at, qint32 value) {
        for (int i = 0; i < 4; ++i)
            bmp[at + i] = static_cast<char>((value >> (8 * i)) & 0xFF);
    };
    put(18, width);
    put(22, height);
    return bmp;
}

} // namespace

class TestLogoPicture : public QObject {
    Q_OBJECT

private slots:
    void read_data();
    void read();
    void readMissing();
    void threshold_data();
    void threshold();
    void thresholdSquare();
    void fit_data();
    void fit();
    void resize_data();
    void resize();
};

void TestLogoPicture::read_data()
{
    QTest::addColumn<QByteArray>("content");
    QTest::addColumn<QString>("error");
    QTest::addColumn<QSize>("size");
    QTest::addColumn<QColor>("corner");

    const QByteArray bmp = encoded(filled({70, 200}, Qt::red), "BMP");
    const QByteArray mono =
        encoded(filled({64, 64}, Qt::white).convertToFormat(QImage::Format_Mono), "BMP");
    const QSize none(0, 0);

    QTest::newRow("bmp") << bmp << QString() << QSize(70, 200) << QColor(Qt::red);
    QTest::newRow("one bit a pixel") << mono << QString() << QSize(64, 64) << QColor(Qt::white);
    QTest::newRow("empty") << QByteArray() << kFileEmpty << none << QColor();
    QTest::newRow("png") << encoded(filled({8, 8}, Qt::red), "PNG") << kNotBmp << none << QColor();
    QTest::newRow("text") << QByteArray("$/1/64/64/1/\r\n") << kNotBmp << none << QColor();
    QTest::newRow("zero bytes") << QByteArray(512, '\0') << kNotBmp << none << QColor();
    QTest::newRow("header cut short") << bmp.left(20) << kDamagedBmp << none << QColor();
    QTest::newRow("pixels cut short") << bmp.left(bmp.size() / 2) << kDamagedBmp << none << QColor();
    QTest::newRow("zero width") << withHeaderSize(bmp, 0, 200) << kDamagedBmp << none << QColor();
    QTest::newRow("absurd size") << withHeaderSize(bmp, 1 << 30, 1 << 30) << kDamagedBmp << none
                                 << QColor();
}

void TestLogoPicture::read()
{
    QFETCH(QByteArray, content);
    QFETCH(QString, error);
    QTemporaryDir dir;
    QFile file(dir.filePath(QStringLiteral("logo.bmp")));
    QVERIFY(file.open(QIODevice::WriteOnly));
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

void TestLogoPicture::readMissing()
{
    QTemporaryDir dir;
    QCOMPARE(readBmpFile(dir.filePath(QStringLiteral("missing.bmp"))).error, kFileUnreadable);
    QCOMPARE(readBmpFile(dir.path()).error, kFileUnreadable);
}

void TestLogoPicture::threshold_data()
{
    QTest::addColumn<QColor>("colour");
    QTest::addColumn<bool>("white");

    QTest::newRow("all limits met") << QColor(151, 101, 161) << true;
    QTest::newRow("red short") << QColor(150, 255, 255) << false;
    QTest::newRow("green short") << QColor(255, 100, 255) << false;
    QTest::newRow("blue short") << QColor(255, 255, 160) << false;
    QTest::newRow("red and blue limits swapped") << QColor(161, 101, 151) << false;
}

void TestLogoPicture::threshold()
{
    QFETCH(QColor, colour);
    QFETCH(bool, white);
    const QImage result = thresholdToBlackAndWhite(filled({70, 300}, colour));
    QCOMPARE(result.size(), QSize(70, 300));
    const QColor expected = white ? Qt::white : Qt::black;
    QCOMPARE(result.pixelColor(0, 0), expected);
    QCOMPARE(result.pixelColor(69, 255), expected);
}

void TestLogoPicture::thresholdSquare()
{
    const QColor grey(200, 200, 200);
    const QImage result = thresholdToBlackAndWhite(filled({300, 300}, grey));
    QCOMPARE(result.pixelColor(255, 255), QColor(Qt::white));
    QCOMPARE(result.pixelColor(256, 0), grey);
    QCOMPARE(result.pixelColor(0, 256), grey);
}

void TestLogoPicture::fit_data()
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

void TestLogoPicture::fit()
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

void TestLogoPicture::resize_data()
{
    QTest::addColumn<QString>("width");
    QTest::addColumn<QString>("height");
    QTest::addColumn<QSize>("size");
    QTest::addColumn<QString>("error");

    QTest::newRow("list values") << "128" << "256" << QSize(128, 256) << QString();
    QTest::newRow("leading number") << " 64 px" << "64" << QSize(64, 64) << QString();
    QTest::newRow("zero width") << "0" << "64" << QSize(0, 0) << kWrongResizeValue;
    QTest::newRow("empty height") << "64" << "" << QSize(0, 0) << kWrongResizeValue;
    QTest::newRow("not a number") << "largo" << "64" << QSize(0, 0) << kWrongResizeValue;
    QTest::newRow("not a logo side") << "100" << "64" << QSize(0, 0) << kWrongResizeValue;
}

void TestLogoPicture::resize()
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

QTEST_GUILESS_MAIN(TestLogoPicture)
#include "tst_picture.moc"
