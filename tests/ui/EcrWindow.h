#pragma once

// A main window on the built-in virtual register, in a folder of its own:
// controls are found by object name, message boxes answered by a script,
// and what reached the register is read from its journal.
#include "ScriptedDialogs.h"
#include "ui/MainForm.h"

#include <QDir>
#include <QFile>
#include <QGuiApplication>
#include <QLabel>
#include <QPushButton>
#include <QTemporaryDir>
#include <QTest>

#include <memory>

class EcrWindow {
public:
    // `settings`: more lines for section Parametri.
    explicit EcrWindow(const QByteArray& settings = {})
    {
        QDir().mkpath(spool());
        QFile ini(dir.filePath("KelmDrev.ini"));
        ini.open(QIODevice::WriteOnly);
        ini.write("[Parametri]\r\nModello=Kelm Brio\r\nVelocita=9600\r\nDispositivo=virtual\r\nServerDir="
                  + spool().toLatin1() + "\r\n" + settings);
        ini.close();
        form = std::make_unique<kelm::ui::MainForm>(kelm::ui::MainForm::Options{dir.path(), false}, &dialogs,
                                                    &passwords);
        form->start();
    }
    QString spool() const { return dir.filePath("spool"); }
    // True once the register's identity is on the status bar.
    bool ready() const
    {
        return QTest::qWaitFor([this] { return !find<QLabel>("sbMain_3")->text().isEmpty(); }, 10000);
    }
    // Waits until the line's worker has run everything posted so far.
    bool settle() const
    {
        QTest::qWait(50);
        return QTest::qWaitFor([] { return !QGuiApplication::overrideCursor(); }, 10000);
    }
    void key(int index) const { click(QStringLiteral("cmdECR_%1").arg(index)); }
    template <typename W>
    W* find(const QString& name) const { return form->findChild<W*>(name); }
    QStringList journal() const
    {
        QFile f(dir.filePath("virtual-ecr-journal.txt"));
        f.open(QIODevice::ReadOnly);
        return QString::fromLatin1(f.readAll()).split(QStringLiteral("\n"), Qt::SkipEmptyParts);
    }
    void click(const QString& name) const { QTest::mouseClick(find<QPushButton>(name), Qt::LeftButton); }
    // Waits until `count` messages have been shown.
    bool shown(qsizetype count) const
    {
        return QTest::qWaitFor([&] { return dialogs.shown.size() >= count; }, 20000)
            && dialogs.shown.size() == count;
    }

    QTemporaryDir dir;
    ScriptedDialogs dialogs;
    MemoryPasswords passwords;
    std::unique_ptr<kelm::ui::MainForm> form;
};
