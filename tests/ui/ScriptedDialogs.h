#pragma once

#include "technician/TechnicianLogin.h"
#include "ui/Dialogs.h"

#include <QMap>
#include <QStringList>

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
