#include "service/ReceiptAlert.h"

#include "link/EcrErrors.h"

namespace kelm::service {

using server::LineFate;

namespace {

// The refused line's number is kept in decimal; the error table reads it
// back as the register sent it, in hexadecimal.
bool isFatal(const QString& errorNumber)
{
    QString message;
    return EcrErrorMessage(QStringLiteral("%1").arg(errorNumber.toInt(), 2, 16, QChar(u'0')).toUpper(), message)
        == errclass::Fatal;
}

} // namespace

ReceiptAlert receiptAlert(const server::ReceiptOutcome& receipt, const QDateTime& since)
{
    if (receipt.taken < since)
        return {};
    const server::LineOutcome* refused = nullptr;
    bool fatal = false;
    for (const server::LineOutcome& line : receipt.lines) {
        if (line.fate == LineFate::Refused)
            refused = &line;
        fatal = fatal || (line.fate == LineFate::NotSent && line.reason == server::NotSentReason::FatalError);
    }
    fatal = fatal || (refused && isFatal(refused->errorNumber));
    if (refused) {
        const QString text = QStringLiteral("Comando '") + refused->record + QStringLiteral("' - Errore N. ")
            + refused->errorNumber + QStringLiteral(" - ") + refused->text;
        return {ReceiptAlert::Kind::Show, fatal ? QStringLiteral("Errore grave: ") + text : text};
    }
    if (receipt.state() == server::ReceiptState::Printed)
        return {ReceiptAlert::Kind::Clear, {}};
    return {};
}

} // namespace kelm::service
