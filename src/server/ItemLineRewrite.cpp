#include "server/ItemLineRewrite.h"

#include "app/Configuration.h"

#include <QStringList>

#include <optional>

namespace kelm::server {

namespace {

enum ItemField : qsizetype {
    Description = 2,
    SecondDescription = 3,
    Department = 6,
    VatCode = 7,
};

int effectiveWidth(int width)
{
    return width > 0 ? width : kDefaultDescriptionWidth;
}

// Only fields closed by a "/" count: filling the text after the last "/"
// would cost the record its final "/".
bool hasField(const QStringList& fields, qsizetype index)
{
    return index < fields.size() - 1;
}

void wrapDescription(QStringList& fields, const DescriptionWidths& widths)
{
    if (!hasField(fields, SecondDescription))
        return;
    QString first = fields[Description].trimmed();
    QString second = fields[SecondDescription].trimmed();
    const int firstWidth = effectiveWidth(widths.first);
    if (first.size() > firstWidth) {
        const QString overflow = first.mid(firstWidth);
        second = second.isEmpty() ? overflow : overflow + u'-' + second;
        first.truncate(firstWidth);
        second.truncate(effectiveWidth(widths.second));
    }
    fields[Description] = first;
    fields[SecondDescription] = second;
}

// The ECR's VAT code for the department named in field 6, if it has one.
std::optional<qint32> vatCodeOfDepartment(const QString& department, const VatRateTable& rates)
{
    const qint32 number = WholeNumber(department);
    if (number < 1 || number > kVatTableSize)
        return std::nullopt;
    const qint32 code = rates[static_cast<std::size_t>(number - 1)];
    if (code == kUnknownVatRate) // never read from the register
        return std::nullopt;
    return code;
}

QString unknownDepartmentMessage(const QString& department)
{
    return u'"' + department + QStringLiteral("\" - Reparto senza aliquota IVA nota, codice IVA non modificato");
}

} // namespace

ItemLineRewrite rewriteItemLine(const QString& line, const ItemLineOptions& options)
{
    if (!line.startsWith(QStringLiteral("3/")))
        return {line, QString()};

    QStringList fields = line.split(u'/');
    if (options.wrapDescription)
        wrapDescription(fields, options.widths);

    QString logMessage;
    if (options.alIvaAuto) {
        const QString department = hasField(fields, Department) ? fields[Department].trimmed() : QString();
        const std::optional<qint32> code = hasField(fields, VatCode)
            ? vatCodeOfDepartment(department, options.vatRates)
            : std::nullopt;
        if (code)
            fields[VatCode] = QString::number(*code);
        else
            logMessage = unknownDepartmentMessage(department);
    }
    return {fields.join(u'/'), logMessage};
}

} // namespace kelm::server
