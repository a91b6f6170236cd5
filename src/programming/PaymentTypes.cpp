#include "programming/PaymentTypes.h"

#include "programming/RecordFields.h"

#include <QStringList>

namespace kelm::programming {

namespace {

constexpr qsizetype kDescriptionWidth = 8;
constexpr qsizetype kShortWidth = 4;
constexpr qsizetype kAnswerFields = 9;

QString checkState(bool ticked)
{
    return ticked ? QStringLiteral("1") : QStringLiteral("0");
}

} // namespace

QString paymentTypeRecord(int number, const PaymentType& payment)
{
    QString flags;
    for (const bool flag : payment.flags)
        flags += checkState(flag);
    const QStringList fields = {
        QStringLiteral("Y"),
        QString::number(number),
        fieldText(payment.description, kDescriptionWidth),
        fieldText(payment.shortDescription, kShortWidth),
        flags,
        fieldText(payment.exchangeRate, kShortWidth),
        fieldText(payment.markUp, kShortWidth),
        QString(),
        checkState(payment.active),
        checkState(payment.credit),
    };
    return fields.join(u'/') + u'/';
}

QString paymentTypeReadRecord(int number)
{
    return QStringLiteral("y/") + QString::number(number) + u'/';
}

PaymentTypeRead parsePaymentType(const QString& answer)
{
    const QStringList f = answerFields(answer, kAnswerFields);
    PaymentTypeRead read;
    read.description = f[0];
    read.shortDescription = f[1];
    for (qsizetype k = 0; k < kPaymentFlags; ++k)
        read.flags[static_cast<size_t>(k)] = k < f[2].size() && f[2][k] == u'1';
    read.exchangeRate = f[3];
    read.change = f[7];
    read.markUp = f[8];
    return read;
}

} // namespace kelm::programming
