#include "server/TotalsFile.h"

#include "link/CodePage.h"

#include <QFile>

namespace kelm::server {

namespace {

constexpr qsizetype kAnswerHeader = 9;
constexpr int kVatTotals = 5;

QString labelOf(int valueNumber)
{
    if (valueNumber <= kVatTotals)
        return QStringLiteral("IVA %1").arg(valueNumber);
    switch (valueNumber) {
    case 6:
        return QStringLiteral("TOTALE VENDITE");
    case 7:
        return QStringLiteral("SCONTRINI");
    case 8:
        return QStringLiteral("NON FISCALI");
    case 9:
        return QStringLiteral("TOTALE STORNI");
    case 10:
        return QStringLiteral("TOTALE RESI");
    default:
        return QStringLiteral("TOTALE ANNULLI");
    }
}

} // namespace

QString totalsText(const QString& answer)
{
    constexpr int kLastLabelled = 11;
    const QString values = answer.mid(kAnswerHeader);
    QString text;
    QString line;
    int valueNumber = 0;
    for (qsizetype start = 0, slash; (slash = values.indexOf(u'/', start)) >= 0; start = slash + 1) {
        ++valueNumber;
        if (valueNumber <= kLastLabelled)
            line = labelOf(valueNumber) + QStringLiteral(" = ") + values.mid(start, slash - start);
        text += line + QStringLiteral("\r\n");
    }
    return text;
}

bool WriteTotals(const QString& serverDir, const QString& answer)
{
    QFile file(serverDir + QStringLiteral("Totali.txt"));
    if (!file.open(QIODevice::WriteOnly | QIODevice::Truncate))
        return false;
    const QByteArray bytes = ansi::encode(totalsText(answer));
    return file.write(bytes) == bytes.size();
}

} // namespace kelm::server
