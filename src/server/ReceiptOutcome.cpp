#include "server/ReceiptOutcome.h"

#include <algorithm>
#include <array>

namespace kelm::server {

namespace {

const std::array kStateNames{QStringLiteral("in_corso"), QStringLiteral("stampato"),
                             QStringLiteral("stampato_con_rifiuti"), QStringLiteral("incerto"),
                             QStringLiteral("non_stampato")};
const std::array kFateNames{QStringLiteral("in_attesa"), QStringLiteral("accettata"),
                            QStringLiteral("rifiutata"), QStringLiteral("saltata"),
                            QStringLiteral("non_inviata"), QStringLiteral("incerta")};
const std::array kReasonNames{QStringLiteral("linea_persa"), QStringLiteral("coda_fermata"),
                              QStringLiteral("errore_grave")};

template <typename Enum, std::size_t N>
Enum fromName(const std::array<QString, N>& names, const QString& name)
{
    const auto found = std::find(names.begin(), names.end(), name.trimmed());
    return Enum(found == names.end() ? 0 : found - names.begin());
}

} // namespace

ReceiptState receiptState(const QList<LineOutcome>& lines)
{
    const auto any = [&](LineFate fate) {
        return std::any_of(lines.begin(), lines.end(), [fate](const LineOutcome& l) { return l.fate == fate; });
    };
    if (any(LineFate::Pending))
        return ReceiptState::InProgress;
    if (any(LineFate::Uncertain))
        return ReceiptState::Uncertain;
    if (!any(LineFate::Accepted))
        return ReceiptState::NotPrinted;
    const bool all = std::all_of(lines.begin(), lines.end(),
                                 [](const LineOutcome& l) { return l.fate == LineFate::Accepted; });
    return all ? ReceiptState::Printed : ReceiptState::PrintedWithRefusals;
}

QString stateName(ReceiptState state) { return kStateNames.at(std::size_t(state)); }
QString fateName(LineFate fate) { return kFateNames.at(std::size_t(fate)); }
QString reasonName(NotSentReason reason) { return kReasonNames.at(std::size_t(reason)); }
LineFate fateFromName(const QString& name) { return fromName<LineFate>(kFateNames, name); }
NotSentReason reasonFromName(const QString& name) { return fromName<NotSentReason>(kReasonNames, name); }

LineOutcome* ReceiptOutcome::line(int number)
{
    const auto found = std::find_if(lines.begin(), lines.end(), [number](const LineOutcome& l) { return l.line == number; });
    return found == lines.end() ? nullptr : &*found;
}

} // namespace kelm::server
