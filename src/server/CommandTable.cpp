#include "server/CommandTable.h"

#include "app/RunTimeLog.h"

#include <QStringList>

#include <algorithm>
#include <iterator>

namespace kelm::server {

namespace {

enum class ReceiptEffect { Unchanged, Opens, Closes };
enum class SentWhen { Always, ReceiptOpen, ReceiptClosed };

struct CommandRule {
    QStringView key;
    ReceiptEffect effect;
    SentWhen when;
};

constexpr CommandRule kRules[] = {
    {u"U/", ReceiptEffect::Opens, SentWhen::Always},
    {u"j/", ReceiptEffect::Opens, SentWhen::Always},
    {u"2/", ReceiptEffect::Opens, SentWhen::Always},
    {u"3/", ReceiptEffect::Opens, SentWhen::Always},
    {u"4/", ReceiptEffect::Opens, SentWhen::Always},
    {u"5/", ReceiptEffect::Closes, SentWhen::Always},
    {u"-/", ReceiptEffect::Opens, SentWhen::Always},
    {u"W/", ReceiptEffect::Unchanged, SentWhen::Always},
    {u"7/", ReceiptEffect::Unchanged, SentWhen::Always},
    {u"'/", ReceiptEffect::Unchanged, SentWhen::Always},
    {u"[/", ReceiptEffect::Unchanged, SentWhen::Always},
    {u"w/", ReceiptEffect::Unchanged, SentWhen::Always},
    {u"q/", ReceiptEffect::Unchanged, SentWhen::Always},
    {u"m/", ReceiptEffect::Unchanged, SentWhen::Always},
    {u"0/", ReceiptEffect::Unchanged, SentWhen::Always},
    {u"+/", ReceiptEffect::Unchanged, SentWhen::ReceiptOpen},
    {u"6/", ReceiptEffect::Unchanged, SentWhen::ReceiptClosed},
    {u"x/", ReceiptEffect::Unchanged, SentWhen::ReceiptClosed},
    {u"B/", ReceiptEffect::Unchanged, SentWhen::ReceiptClosed},
    {u"G/", ReceiptEffect::Unchanged, SentWhen::ReceiptClosed},
};

// The ")" family is matched on the whole line: only these two are accepted.
constexpr QStringView kWholeLineRecords[] = {u")/5/", u")/120/"};

constexpr QStringView kSnapshotKey = u"t0";
constexpr QStringView kCustomerKey = u"j/";
constexpr qsizetype kCustomerFields = 9;

const CommandRule* ruleFor(QStringView key)
{
    const auto* rule = std::find_if(std::begin(kRules), std::end(kRules),
                                    [key](const CommandRule& r) { return r.key == key; });
    return rule == std::end(kRules) ? nullptr : rule;
}

bool receiptOpenAfter(ReceiptEffect effect, bool receiptOpen)
{
    switch (effect) {
    case ReceiptEffect::Opens:
        return true;
    case ReceiptEffect::Closes:
        return false;
    case ReceiptEffect::Unchanged:
        break;
    }
    return receiptOpen;
}

// The record key: the command code and the "/" after it.
QString recordKey(const QString& line)
{
    return line.left(2);
}

QString quoted(const QString& key)
{
    return u'"' + key + u'"';
}

CommandDecision sent(const QString& record, bool receiptOpen)
{
    return {CommandAction::Send, record, receiptOpen, QString(), QString()};
}

CommandDecision skipped(bool receiptOpen, const QString& listText, const QString& logMessage)
{
    return {CommandAction::Skip, QString(), receiptOpen, kEcrTag + listText, logMessage};
}

} // namespace

CommandDecision decideCommand(const QString& line, bool receiptOpen)
{
    if (std::find(std::begin(kWholeLineRecords), std::end(kWholeLineRecords), line)
        != std::end(kWholeLineRecords))
        return sent(line, receiptOpen);

    const QString key = recordKey(line);
    if (key == kSnapshotKey)
        return {CommandAction::WriteSnapshot, QString(), receiptOpen, QString(), QString()};

    const CommandRule* rule = ruleFor(key);
    if (!rule)
        return {CommandAction::StopQueue, QString(), receiptOpen,
                kEcrTag + QStringLiteral("Comando ") + key + QStringLiteral(" non gestito."),
                quoted(key) + QStringLiteral(" - Comando non gestito !")};

    if (rule->when == SentWhen::ReceiptOpen && !receiptOpen)
        return skipped(receiptOpen, QStringLiteral("Scontrino non aperto"), QString());
    if (rule->when == SentWhen::ReceiptClosed && receiptOpen)
        return skipped(receiptOpen, QStringLiteral("Comando non gestito con scontrino aperto"),
                       quoted(key) + QStringLiteral(" - Comando non gestito con scontrino aperto !"));

    const QString record = key == kCustomerKey ? NormalizeCustomerRecord(line) : line;
    return sent(record, receiptOpenAfter(rule->effect, receiptOpen));
}

QString NormalizeCustomerRecord(const QString& record)
{
    QString body = record.mid(kCustomerKey.size());
    if (body.endsWith(u'/'))
        body.chop(1);
    QStringList fields = body.split(u'/');
    fields.removeLast(); // the field that lost its "/" above
    if (fields.size() > kCustomerFields)
        fields.resize(kCustomerFields);
    while (fields.size() < kCustomerFields)
        fields.append(QString());
    return kCustomerKey.toString() + fields.join(u'/') + QStringLiteral("/0/");
}

} // namespace kelm::server
