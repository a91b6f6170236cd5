// Starts the window on the built-in virtual ECR in a scratch folder, lets a
// test receipt go through, and saves a picture of every tab. With a second
// argument (a name suffix such as "1024"), the window takes the screen as a
// shop PC leaves it (less a title bar and a taskbar) and the pictures are
// named tab-N-suffix.png: run it under Xvfb at that screen size.
#include "technician/TechnicianLogin.h"
#include "ui/Dialogs.h"
#include "ui/MainForm.h"

#include <QApplication>
#include <QDir>
#include <QFile>
#include <QLabel>
#include <QPushButton>
#include <QScreen>
#include <QScrollArea>
#include <QScrollBar>
#include <QTabWidget>
#include <QTemporaryDir>
#include <QTimer>

#include <cstdio>

namespace {

class NoPasswords final : public kelm::technician::PasswordStore {
public:
    QString read(const QString&) const override { return {}; }
    void write(const QString&, const QString&) override {}
};

class SilentDialogs final : public kelm::ui::Dialogs {
public:
    void showMessage(const QString&, const QString&, Icon) override {}
    Button ask(const QString&, const QString&, Icon, const QList<Button>&, Button d) override { return d; }
    QString chooseDirectory(const QString&, const QString&) override { return {}; }
    QString inputText(const QString&, const QString&, const QString&) override { return {}; }
    QString chooseFile(const QString&, const QString&) override { return {}; }
};

void waitUntil(const std::function<bool()>& done, int ms)
{
    QElapsedTimer t;
    t.start();
    while (!done() && t.elapsed() < ms)
        QCoreApplication::processEvents(QEventLoop::AllEvents, 50);
}

} // namespace

int main(int argc, char** argv)
{
    QApplication app(argc, argv);
    const QString out = argc > 1 ? QString::fromLocal8Bit(argv[1]) : QStringLiteral("docs/screenshots");
    QDir().mkpath(out);
    QTemporaryDir home;
    QDir().mkpath(home.filePath("spool"));
    QFile ini(home.filePath("KelmDrev.ini"));
    ini.open(QIODevice::WriteOnly);
    ini.write("[Parametri]\r\nModello=Kelm Brio\r\nVelocita=115200\r\nDispositivo=virtual\r\nServerStato=On\r\n"
              "ServerFile=scontrino.txt\r\nServerDir=" + home.filePath("spool").toLocal8Bit() + "\r\n");
    ini.close();

    SilentDialogs dialogs;
    NoPasswords passwords;
    kelm::ui::MainForm form({home.path(), false}, &dialogs, &passwords);
    if (!form.start())
        return 1;
    form.findChild<QWidget*>(QStringLiteral("chkRunTimeLog"))->setProperty("checked", true);
    auto* status = form.findChild<QLabel*>(QStringLiteral("sbMain_3"));
    waitUntil([&] { return !status->text().isEmpty(); }, 10000);

    QFile receipt(home.filePath("spool/scontrino.tmp"));
    receipt.open(QIODevice::WriteOnly);
    receipt.write("3/S/Coca Cola 1,70/second , descr/1/25.88/1/4/\r\n3/S/REPARTO2//1/25.88/2/10/\r\n"
                  "3/S/REPARTO3//1/7.33/3/20/\r\n4/10.00///0/0/0//\r\n5/1/0.00/////\r\n");
    receipt.close();
    QFile::rename(home.filePath("spool/scontrino.tmp"), home.filePath("spool/scontrino.txt"));
    waitUntil([&] { return !QFile::exists(home.filePath("spool/scontrino.txt")); }, 10000);
    waitUntil([] { return false; }, 1500); // the paper roll and display catch up

    // A sale keyed on the virtual keyboard, left open, so that the display
    // shows an amount: 2, 5, 0, REP-02.
    for (int key : {19, 17, 21, 38})
        if (auto* button = form.findChild<QPushButton*>(QStringLiteral("cmdECR_%1").arg(key)))
            button->click();
    waitUntil([] { return false; }, 1500);

    const QString suffix = argc > 2 ? u'-' + QString::fromLocal8Bit(argv[2]) : QString();
    if (!suffix.isEmpty()) {
        constexpr int kTitleBarAndTaskbar = 70;
        const QRect screen = form.screen()->availableGeometry();
        form.setGeometry(screen.adjusted(0, 0, 0, -kTitleBarAndTaskbar));
        if (form.minimumSizeHint().height() > form.height() || form.minimumSizeHint().width() > form.width())
            std::printf("the window does not fit: it needs %dx%d\n", form.minimumSizeHint().width(),
                        form.minimumSizeHint().height());
    }

    auto* tabs = form.findChild<QTabWidget*>(QStringLiteral("SSTabPrimaria"));
    for (int i = 0; i < tabs->count(); ++i) {
        tabs->setCurrentIndex(i);
        waitUntil([] { return false; }, 600); // the technician page reads the display
        if (auto* area = qobject_cast<QScrollArea*>(tabs->currentWidget()); area && area->horizontalScrollBar()->isVisible())
            std::printf("tab %d scrolls sideways: it needs %d pixels, the screen leaves %d\n", i,
                        area->widget()->minimumSizeHint().width(), area->viewport()->width());
        const QString path = QStringLiteral("%1/tab-%2%3.png").arg(out).arg(i).arg(suffix);
        if (!form.grab().save(path))
            return 2;
        std::printf("%s\n", qPrintable(path));
    }
    form.mnuPopEsci_Click();
    return 0;
}
