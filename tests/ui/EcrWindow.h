#pragma once

// A main window on a register (the built-in virtual one unless a device is
// given), in a folder of its own: controls are found by object name, message
// boxes answered by a script, and what reached the register is read from its
// journal. Tests fill their tables with Table.h.
#include "Table.h"
#include "app/IniFile.h"
#include "technician/TechnicianLogin.h"
#include "ui/Dialogs.h"
#include "ui/MainForm.h"

#include <QAbstractButton>
#include <QComboBox>
#include <QDir>
#include <QFile>
#include <QGuiApplication>
#include <QLabel>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <QMap>
#include <QPushButton>
#include <QRegularExpression>
#include <QTabWidget>
#include <QTableWidget>
#include <QTemporaryDir>
#include <QTest>

#include <algorithm>
#include <memory>

// Message boxes answered from a script; everything shown is remembered.
class ScriptedDialogs final : public kelm::ui::Dialogs {
public:
    void showMessage(const QString& text, const QString& title, Icon) override
    {
        shown.append(title + QStringLiteral(": ") + text);
    }
    Button ask(const QString& text, const QString& title, Icon, const QList<Button>&, Button defaultButton) override
    {
        asked.append(title + QStringLiteral(": ") + text);
        return answers.isEmpty() ? defaultButton : answers.takeFirst();
    }
    QString chooseDirectory(const QString& title, const QString&) override
    {
        asked.append(title);
        return chosenDirectory;
    }
    QString inputText(const QString& title, const QString& prompt, const QString& proposed) override
    {
        asked.append(title + QStringLiteral(": ") + prompt);
        proposals.append(proposed);
        return typed.isEmpty() ? proposed : typed.takeFirst();
    }
    QString chooseFile(const QString& title, const QString& filter) override
    {
        asked.append(title + QStringLiteral(": ") + filter);
        return chosenFile;
    }

    QStringList shown;
    QStringList asked;
    QList<Button> answers;
    QString chosenDirectory;
    QStringList typed;     // answers to the input boxes; none left: the proposal is taken
    QStringList proposals; // what each input box proposed
    QString chosenFile;
};

// Passwords in memory, by application name.
class MemoryPasswords final : public kelm::technician::PasswordStore {
public:
    QString read(const QString& application) const override { return values.value(application); }
    void write(const QString& application, const QString& password) override { values[application] = password; }
    QMap<QString, QString> values;
};

inline QByteArray readFile(const QString& path)
{
    QFile f(path);
    return f.open(QIODevice::ReadOnly) ? f.readAll() : QByteArray();
}

inline void writeFile(const QString& path, const QByteArray& bytes)
{
    QFile f(path);
    if (f.open(QIODevice::WriteOnly))
        f.write(bytes);
}

class EcrWindow {
public:
    // `settings`: more lines for section Parametri. Not `started`: open() starts it.
    explicit EcrWindow(const QByteArray& settings = {}, const QByteArray& device = "virtual", bool started = true)
    {
        QDir().mkpath(spool());
        writeIni("Modello=Kelm Brio\r\nVelocita=9600\r\nDispositivo=" + device + "\r\n" + settings);
        if (started)
            open();
    }
    // Section Parametri as `lines`, and the spool folder.
    void writeIni(const QByteArray& lines) const
    {
        writeFile(ini(), "[Parametri]\r\n" + lines + "ServerDir=" + spool().toLatin1() + "\r\n");
    }
    bool open()
    {
        form = std::make_unique<kelm::ui::MainForm>(kelm::ui::MainForm::Options{dir.path(), false}, &dialogs, &passwords);
        return form->start();
    }
    QString ini() const { return dir.filePath("KelmDrev.ini"); }
    QString spool() const { return dir.filePath("spool"); }
    QTableWidget* grid() const { return find<QTableWidget>(QStringLiteral("fgPLU")); } // the PLU page's
    QString panel(int n) const { return find<QLabel>(QStringLiteral("sbMain_%1").arg(n))->text(); }
    // True once the register's identity is on the status bar.
    bool ready() const
    {
        return QTest::qWaitFor([this] { return panel(3) == QStringLiteral("KD-99KDV000001"); }, 15000);
    }
    // Waits until the line's worker has run everything posted so far.
    bool settle() const
    {
        QTest::qWait(50);
        return QTest::qWaitFor([] { return !QGuiApplication::overrideCursor(); }, 10000);
    }
    // A receipt file for the server, put in place at once.
    void drop(const QByteArray& lines) const
    {
        writeFile(spool() + "/scontrino.tmp", lines);
        QFile::rename(spool() + "/scontrino.tmp", spool() + "/scontrino.txt");
    }
    template <typename W>
    W* find(const QString& name) const { return form->findChild<W*>(name); }
    QStringList journal() const
    {
        return QString::fromLatin1(readFile(dir.filePath("virtual-ecr-journal.txt"))).split(u'\n', Qt::SkipEmptyParts);
    }
    void click(const QString& name) const { QTest::mouseClick(find<QPushButton>(name), Qt::LeftButton); }
    // Fills a box as a user does: a line is typed, a list's item chosen by its text, a tick box or option set by 1 or 0.
    void fill(const QString& name, const QString& value) const
    {
        QWidget* box = find<QWidget>(name);
        if (auto* line = qobject_cast<QLineEdit*>(box)) {
            line->clear();
            QTest::keyClicks(line, value);
        } else if (auto* list = qobject_cast<QComboBox*>(box)) {
            list->setCurrentText(value);
        } else {
            qobject_cast<QAbstractButton*>(box)->setChecked(value == u'1');
        }
    }
    // What a box shows, as fill takes it; a push button its caption, or "off"; a tab page its tabs' captions;
    // "<none>" when there is no such box; "tray" the tray's tip; "*pattern" the register's records that match;
    // "Section/Key" is read from the settings, "@name" the file of that name in the folder.
    QString value(const QString& name) const
    {
        if (name == u"tray")
            return form->trayTip();
        if (name.startsWith(u'*'))
            return journal().filter(QRegularExpression(name.mid(1))).join(u'|');
        if (name.startsWith(u'@'))
            return QString::fromLatin1(readFile(dir.filePath(name.mid(1))));
        if (name.contains(u'/'))
            return kelm::IniFile(ini()).read(name.section(u'/', 0, 0), name.section(u'/', 1), QStringLiteral("<none>"), 256);
        QWidget* box = find<QWidget>(name);
        if (!box)
            return QStringLiteral("<none>");
        if (auto* line = qobject_cast<QLineEdit*>(box))
            return line->text();
        if (auto* list = qobject_cast<QComboBox*>(box))
            return list->currentText();
        if (auto* label = qobject_cast<QLabel*>(box))
            return label->text();
        if (auto* text = qobject_cast<QPlainTextEdit*>(box))
            return text->toPlainText();
        if (auto* button = qobject_cast<QPushButton*>(box))
            return button->isEnabled() ? button->text() : QStringLiteral("off");
        if (auto* tabs = qobject_cast<QTabWidget*>(box)) {
            QStringList captions;
            for (int i = 0; i < tabs->count(); ++i)
                captions << tabs->tabText(i);
            return captions.join(u'|');
        }
        return qobject_cast<QAbstractButton*>(box)->isChecked() ? QStringLiteral("1") : QStringLiteral("0");
    }
    // Steps a user takes: "box=value" fills a box; "box?value" waits until it shows the value, "box~pattern" until
    // what it shows matches; ">lines" drops a receipt file; "<record" until the register got a record that starts
    // so, "!record" none yet ("!": nothing at all); "#text" a message was shown; any other presses that button.
    // False at the first step that fails, which is shown with what was there instead.
    bool run(const QStringList& steps) const
    {
        for (const QString& step : steps) {
            const QString rest = step.mid(1);
            const auto sent = [&] {
                const QStringList j = journal();
                return std::any_of(j.begin(), j.end(), [&](const QString& record) { return record.startsWith(rest); });
            };
            bool ok = true;
            QString seen;
            if (step.startsWith(u'>')) {
                drop(rest.toLatin1());
            } else if (step.startsWith(u'<')) {
                ok = QTest::qWaitFor(sent, 5000);
            } else if (step.startsWith(u'!')) {
                ok = settle() && !sent();
            } else if (step.startsWith(u'#')) {
                ok = dialogs.shown.contains(rest);
            } else if (const qsizetype at = step.indexOf(u'?'); at > 0) {
                ok = QTest::qWaitFor([&] { return (seen = value(step.left(at))) == step.mid(at + 1); }, 5000);
            } else if (const qsizetype in = step.indexOf(u'~'); in > 0) {
                const QRegularExpression pattern(step.mid(in + 1));
                ok = QTest::qWaitFor([&] { return pattern.match(seen = value(step.left(in))).hasMatch(); }, 5000);
            } else if (const qsizetype eq = step.indexOf(u'='); eq > 0) {
                fill(step.left(eq), step.mid(eq + 1));
            } else {
                ok = find<QPushButton>(step);
                if (ok)
                    click(step);
                ok = ok && settle();
            }
            if (!ok) {
                qWarning("Step %s failed (%s)", qPrintable(step), qPrintable(seen));
                return false;
            }
        }
        return true;
    }
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
