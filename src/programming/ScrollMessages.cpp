#include "programming/ScrollMessages.h"

#include "programming/RecordFields.h"

namespace kelm::programming {

namespace {

const QString kSection = QStringLiteral("Messaggi");
constexpr int kReadBuffer = 96;

QString messageKey(qsizetype index)
{
    return QStringLiteral("Msg") + QString::number(index + 1);
}

QString scrollMessageText(const QString& message)
{
    return fieldText(message);
}

} // namespace

QString scrollMessageRecord(const QString& message)
{
    return QStringLiteral("o/") + scrollMessageText(message) + u'/';
}

bool saveScrollMessage(const IniFile& ini, int index, const QString& message)
{
    if (index < 0 || index >= kScrollMessageCount)
        return false;
    return ini.write(kSection, messageKey(index), scrollMessageText(message));
}

std::array<QString, kScrollMessageCount> loadScrollMessages(const IniFile& ini)
{
    std::array<QString, kScrollMessageCount> messages;
    for (qsizetype i = 0; i < kScrollMessageCount; ++i)
        messages[static_cast<size_t>(i)] = cutAtNul(ini.read(kSection, messageKey(i), QString(), kReadBuffer));
    return messages;
}

} // namespace kelm::programming
