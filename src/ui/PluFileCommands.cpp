#include "ui/PluFileCommands.h"

#include "programming/PluFile.h"
#include "ui/Dialogs.h"

#include <QFile>

namespace kelm::ui {

using programming::PluFileLine;
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

QString badLineText(const PluFileLine& bad)
{
    const QString what = bad.problem == PluFileLine::Problem::TooFewFields
        ? QStringLiteral("meno di %1 campi").arg(programming::kPluSentColumns)
        : QStringLiteral("più di %1 campi").arg(programming::kPluColumns);
    return QStringLiteral("Riga %1 del file PLU: %2.").arg(bad.lineNumber).arg(what) + kCrLf
        + QStringLiteral("Nessuna PLU caricata");
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

std::optional<QList<PluRow>> loadPluRows(Dialogs& dialogs, const QString& programFolder)
{
    const QString name = askFileName(dialogs, programFolder);
    if (name.isEmpty())
        return std::nullopt;
    QFile file(name);
    if (!file.exists()) {
        refuse(dialogs, QStringLiteral("File Inesistente"));
        return std::nullopt;
    }
    if (!file.open(QIODevice::ReadOnly)) {
        refuse(dialogs, QStringLiteral("Impossibile leggere il file PLU") + kCrLf + file.errorString());
        return std::nullopt;
    }
    const programming::PluFileLoad load = programming::loadPluFile(file.readAll());
    if (load.error.problem != PluFileLine::Problem::None) {
        refuse(dialogs, badLineText(load.error));
        return std::nullopt;
    }
    return load.rows;
}

} // namespace kelm::ui
