#include "programming/VatRateRecord.h"

#include "programming/RecordFields.h"

namespace kelm::programming {

QString vatRatesRecord(const std::array<QString, kVatRateCount>& rates)
{
    QString record = QStringLiteral("b/");
    for (const QString& rate : rates)
        record += fieldText(rate) + u'/';
    return record;
}

} // namespace kelm::programming
