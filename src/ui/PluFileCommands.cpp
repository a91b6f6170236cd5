#include "ui/PluFileCommands.h"

#include "programming/PluFile.h"
#include "ui/Dialogs.h"

#include <QFile>

namespace kelm::ui {

using programming::PluRow;

namespace {

const QString kTitle = QStringLiteral("Attenzione");
const QString kCrLf = QStringLiteral("\r\n");

QString askFileName(Dialogs& dialogs, const QString& programFolder)
{
    return dialogs.inputText(kTitle, QStringLiteral("Indicare il nome del file PLU"),
                             programFolder + QStringLiteral("/plu.txt"));
}

void refuse(Dialogs& dialogs, const QString& text)
{
    dialogs.showMessage(text, kTitle, Dialogs::Icon::Critical);
}

QString oddLinesText(const QList<int>& lines)
{
    constexpr qsizetype kListed = 20;
    QStringList numbers;
    for (qsizetype i = 0; i < lines.size() && i < kListed; ++i)
        numbers << QString::number(lines[i]);
    if (lines.size() > kListed)
        numbers << QStringLiteral("…");
    return QStringLiteral("Righe del file PLU con meno di %1 o più di %2 campi, caricate comunque: ")
               .arg(programming::kPluSentColumns)
               .arg(programming::kPluColumns)
        + numbers.join(QStringLiteral(", "));
}

} // namespace

void savePluRows(Dialogs& dialogs, const QString& programFolder, const QList<PluRow>& rows)
{
    const QString name = askFileName(dialogs, programFolder);
    if (name.isEmpty())
        return;
    QFile file(name);
    if (file.exists()) {
        refuse(dialogs, QStringLiteral("File già esistente"));
        return;
    }
    if (!file.open(QIODevice::WriteOnly | QIODevice::NewOnly) || file.write(programming::pluFileBytes(rows)) < 0)
        refuse(dialogs, QStringLiteral("Impossibile scrivere il file PLU") + kCrLf + file.errorString());
}

void loadPluRows(Dialogs& dialogs, const QString& programFolder,
                 const std::function<void(const QList<PluRow>&)>& append)
{
    QFile file(askFileName(dialogs, programFolder));
    if (file.fileName().isEmpty() || !file.exists()) {
        refuse(dialogs, QStringLiteral("File Inesistente"));
        return;
    }
    if (!file.open(QIODevice::ReadOnly)) {
        refuse(dialogs, QStringLiteral("Impossibile leggere il file PLU") + kCrLf + file.errorString());
        return;
    }
    const programming::PluFileLoad load = programming::loadPluFile(file.readAll());
    append(load.rows);
    if (!load.oddLines.isEmpty())
        dialogs.showMessage(oddLinesText(load.oddLines), kTitle, Dialogs::Icon::Information);
}

} // namespace kelm::ui
