// The logo pages against the built-in virtual register: loading through the
// file dialog, refusing bad files, and the download of the page on show.
#include "EcrWindow.h"
#include "ui/LogoPage.h"

#include <QBuffer>
#include <QComboBox>
#include <QLabel>
#include <QRegularExpression>
#include <QScrollBar>
#include <QTabWidget>

using kelm::ui::LogoPage;

namespace {

const QString kAdvice = QStringLiteral(
    "Kelm Drev: Il sistema ridimensionerà automaticamente\r\nle immagini alla risoluzione più vicina a \r\n"
    "[64,128,256] x [64,128,256].\r\nSi consiglia di caricare immagini già\r\ndimensionate opportunamente");
const QString kNonStandard = QStringLiteral("Kelm Drev: Logo non  a dimensioni standard.\r\nRidimensione automatica");

// A picture of the given size, black with a white right edge four pixels
// wide, as a file of `format`.
QByteArray picture(QSize size, const char* format = "BMP")
{
    QImage image(size, QImage::Format_RGB888);
    image.fill(Qt::black);
    for (int y = 0; y < size.height(); ++y)
        for (int x = size.width() - 4; x < size.width(); ++x)
            image.setPixelColor(x, y, Qt::white);
    QByteArray bytes;
    QBuffer buffer(&bytes);
    buffer.open(QIODevice::WriteOnly);
    image.save(&buffer, format);
    return bytes;
}

// Loads `bytes` as a BMP file into logo page `page`.
void load(EcrWindow& w, int page, const QByteArray& bytes)
{
    const QString path = w.dir.filePath(QStringLiteral("logo%1.bmp").arg(w.dialogs.asked.size()));
    QFile f(path);
    f.open(QIODevice::WriteOnly);
    f.write(bytes);
    f.close();
    w.dialogs.chosenFile = path;
    w.click(QStringLiteral("cmdBMPLoad_%1").arg(page));
}

QString sizeLabels(const EcrWindow& w, int page)
{
    return w.find<QLabel>(QStringLiteral("lbmBMPWidth_%1").arg(page))->text() + u' '
        + w.find<QLabel>(QStringLiteral("lblBMPHeight_%1").arg(page))->text();
}

} // namespace

class LogoPageTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void loadFits_data();
    void loadFits();
    void badFileChangesNothing_data();
    void badFileChangesNothing();
    void downloadSendsThePageOnShow_data();
    void downloadSendsThePageOnShow();
};

void LogoPageTest::loadFits_data()
{
    QTest::addColumn<QSize>("size");
    QTest::addColumn<QStringList>("shown");
    QTest::addColumn<QString>("labels");
    QTest::addColumn<int>("widthPosition");
    QTest::addColumn<int>("heightPosition");
    QTest::newRow("standard size kept") << QSize(64, 64) << QStringList{kAdvice} << "Largh.:64 Alt.:64" << 0 << 0;
    QTest::newRow("70x200 fitted") << QSize(70, 200) << QStringList{kAdvice, kNonStandard}
                                   << "Largh.:128 Alt.:256" << 1 << 2;
}

void LogoPageTest::loadFits()
{
    QFETCH(QSize, size);
    QFETCH(QStringList, shown);
    QFETCH(QString, labels);
    QFETCH(int, widthPosition);
    QFETCH(int, heightPosition);
    EcrWindow w;
    load(w, 1, picture(size));
    QCOMPARE(w.dialogs.asked, QStringList{"Leggi BMP: BMP Files|*.bmp"});
    QCOMPARE(w.dialogs.shown, shown);
    QCOMPARE(sizeLabels(w, 1), labels);
    QCOMPARE(w.find<QComboBox>("cmbBMPLarghezza_1")->currentIndex(), widthPosition);
    QCOMPARE(w.find<QComboBox>("cmbBMPAltezza_1")->currentIndex(), heightPosition);
    QVERIFY(w.find<LogoPage>("pageLoghi")->pictures()[0].isNull());
    w.find<QScrollBar>("HScrBMPZoom_1")->setValue(300);
    const QSize fitted = w.find<LogoPage>("pageLoghi")->pictures()[1].size();
    QCOMPARE(w.find<QLabel>("picLogo_1")->pixmap().size(), fitted * 3);
}

void LogoPageTest::badFileChangesNothing_data()
{
    QTest::addColumn<QByteArray>("file");
    QTest::addColumn<QString>("message");
    QTest::newRow("not a BMP") << picture({64, 64}, "PNG") << "Il file non è un'immagine BMP";
    QTest::newRow("cut short") << picture({64, 64}).left(200) << "Il file BMP è danneggiato";
    QTest::newRow("empty") << QByteArray() << "Il file è vuoto";
}

void LogoPageTest::badFileChangesNothing()
{
    QFETCH(QByteArray, file);
    QFETCH(QString, message);
    EcrWindow w;
    load(w, 0, picture({128, 64}));
    const QImage before = w.find<LogoPage>("pageLoghi")->pictures()[0];
    w.dialogs.shown.clear();
    load(w, 0, file);
    QCOMPARE(w.dialogs.shown, QStringList({kAdvice, "Attenzione: " + message}));
    QCOMPARE(w.find<LogoPage>("pageLoghi")->pictures()[0], before);
    QCOMPARE(sizeLabels(w, 0), QStringLiteral("Largh.:128 Alt.:64"));
    QCOMPARE(w.find<QLabel>("picLogo_0")->pixmap().size(), QSize(128, 64));
}

void LogoPageTest::downloadSendsThePageOnShow_data()
{
    QTest::addColumn<QList<int>>("loaded"); // pages loaded, in order
    QTest::addColumn<QString>("shown");
    QTest::addColumn<QString>("firstRecord");
    QTest::newRow("end logo on show") << QList<int>{1, 0} << "Kelm Drev: Logo Scaricato, ricordarsi di attivarlo"
                                      << "$/2/128/64/1/F0000000000000000000000000000000/";
    QTest::newRow("no picture on show") << QList<int>{0} << "Kelm Drev: Logo non impostato" << QString();
}

void LogoPageTest::downloadSendsThePageOnShow()
{
    QFETCH(QList<int>, loaded);
    QFETCH(QString, shown);
    QFETCH(QString, firstRecord);
    EcrWindow w;
    for (int page : loaded)
        load(w, page, picture(page == 1 ? QSize(128, 64) : QSize(64, 64)));
    w.dialogs.shown.clear();
    w.find<QTabWidget>("SSTabLoghi")->setCurrentIndex(1);
    w.click("cmdSetParametri_2");
    QVERIFY(w.shown(1));
    QCOMPARE(w.dialogs.shown[0], shown);
    const QStringList records = w.journal().filter(QRegularExpression(QStringLiteral("^\\$/")));
    if (firstRecord.isEmpty()) {
        QVERIFY(records.isEmpty());
        return;
    }
    QCOMPARE(records.size(), 64);
    QCOMPARE(records[0], firstRecord);
    QCOMPARE(records.filter(QStringLiteral("$/2/128/64/")).size(), 64);
}

QTEST_MAIN(LogoPageTest)
#include "tst_ui_logos.moc"
