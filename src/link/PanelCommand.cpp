#include "PanelCommand.h"

#include "EcrErrors.h"

namespace kelm {

qint16 PanelCommand::operator()(const QString& record)
{
    LastResult = 0;
    LastAnswer.clear();
    if (link_.port().handle() == PortHandle::Closed) {
        // Never opened: no transaction is tried and the bar is not cleared.
        LastResult = link::PortNotOpen;
        LastErrorText = QStringLiteral("Err. 9999 : Comunicazione Impossibile");
    } else {
        LastResult = link_.EcrTransaction(record, LastAnswer);
        LastErrorText.clear();
        status_.setPanel(1, QString());
        status_.setPanel(2, QString());
        if (LastResult != link::Ok) {
            LastErrorText = QStringLiteral("Err. %1 : Comunicazione Impossibile").arg(LastResult);
        } else if (!LastAnswer.startsWith(QStringLiteral("00"))) {
            const QChar first = LastAnswer.size() > 0 ? LastAnswer.at(0) : QChar();
            const QChar second = LastAnswer.size() > 1 ? LastAnswer.at(1) : QChar();
            LastResult = static_cast<qint16>(16 * HexDigitValue(first) + HexDigitValue(second));
            LastErrorText = QStringLiteral("Err. %1 : Comunicazione errata").arg(LastResult);
        }
    }
    if (!LastErrorText.isEmpty()) {
        status_.setPanel(1, QStringLiteral("Attenzione!"));
        status_.setPanel(2, LastErrorText);
    }
    return LastResult;
}

} // namespace kelm
