#include "programming/SParameters.h"

#include "programming/Numbers.h"
#include "programming/RecordFields.h"

#include <QStringList>

namespace kelm::programming {

namespace {

constexpr qsizetype kAnswerFields = 1 + kSMaximums + 2 + 2 * kBarcodeSettings + 2;
constexpr qsizetype kNumberWidth = 3;
constexpr qsizetype kNameWidth = 8;
constexpr qsizetype kBarcodeWidth = 2;
constexpr qsizetype kIntensityWidth = 3;
constexpr qsizetype kPayRateWidth = 2;

QString flagDigit(int listIndex)
{
    return listIndex < 0 ? QStringLiteral("0") : QString::number(listIndex).right(1);
}

} // namespace

QString sParametersRecord(const SParameters& p)
{
    QString flags;
    for (qsizetype i = 0; i < kSFlagsSent; ++i)
        flags += flagDigit(p.flags[static_cast<size_t>(i)]);
    QStringList fields = {QStringLiteral("S"), flags};
    for (const QString& maximum : p.maximums)
        fields << fieldText(maximum);
    fields << fieldText(p.registerNumber, kNumberWidth) << fieldText(p.registerName, kNameWidth);
    for (const QString& weight : p.barcodeWeight)
        fields << fieldText(weight, kBarcodeWidth);
    for (const QString& lead : p.barcodePriceLead)
        fields << fieldText(lead, kBarcodeWidth);
    fields << fieldText(p.printerIntensity, kIntensityWidth) << fieldText(p.payRateCode, kPayRateWidth);
    return fields.join(u'/') + u'/';
}

QString sParametersReadRecord()
{
    return QStringLiteral("s/");
}

SParameters parseSParameters(const QString& answer)
{
    const QStringList fields = answerFields(answer, kAnswerFields);
    qsizetype field = 0;
    const auto next = [&fields, &field] { return fields[field++]; };
    SParameters p;
    const QString flags = next();
    for (qsizetype i = 0; i < kSFlagCount; ++i)
        p.flags[static_cast<size_t>(i)] = i < flags.size() ? digitValue(flags[i]) : 0;
    for (QString& maximum : p.maximums)
        maximum = wholeNumberForm(next());
    p.registerNumber = next();
    p.registerName = next();
    for (QString& weight : p.barcodeWeight)
        weight = next();
    for (QString& lead : p.barcodePriceLead)
        lead = next();
    p.printerIntensity = next();
    p.payRateCode = next();
    return p;
}

const QString& defaultSParametersAnswer()
{
    static const QString answer = QStringLiteral(
        "00/00/01/00001100001000000001000000/999999.99/999999.999/1000000.00/99999999.99/0.00/0.00/0.00/1/"
        "CASSA -1/27/27/27/27/27/27/27/27/27/29/29/29/29/29/29/29/29/29/8/0/76");
    return answer;
}

Question resetSParametersQuestion()
{
    return {QStringLiteral("Ripristino tutti i valori a default "), QStringLiteral("Kelm Drev"),
            Operator::Icon::Question, {Operator::Button::Yes, Operator::Button::No}, Operator::Button::No,
            Operator::Button::Yes};
}

Notice sParametersResetNotice()
{
    return {QStringLiteral("Parametri S ripristinati a default ma non salvati."), QStringLiteral("Kelm Drev"),
            Operator::Icon::Information};
}

} // namespace kelm::programming
