#include "programming/Departments.h"

#include "programming/RecordFields.h"

namespace kelm::programming {

namespace {

constexpr int kVatCodes = 5;
constexpr qsizetype kEmptyTrailingFields = 5;

} // namespace

QString departmentRecord(int number, const Department& department)
{
    const int vatCode = department.vatIndex >= 0 && department.vatIndex < kVatCodes ? department.vatIndex + 1 : 0;
    return QStringLiteral("D/") + QString::number(number) + u'/' + fieldText(department.description) + u'/'
        + QString::number(vatCode) + u'/' + QString(kEmptyTrailingFields, u'/');
}

QString departmentReadRecord(int number)
{
    return QStringLiteral("d/%1/").arg(number);
}

Department parseDepartment(const QString& answer)
{
    const QStringList fields = answerFields(answer, 2);
    const int vatIndex = fields[1].isEmpty() ? kNoVatSelection : digitValue(fields[1][0]) - 1;
    return {trimBlanks(fields[0]), vatIndex >= 0 && vatIndex < kVatCodes ? vatIndex : kNoVatSelection};
}

} // namespace kelm::programming
