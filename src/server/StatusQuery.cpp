#include "server/StatusQuery.h"

#include "link/EcrErrors.h"
#include "server/EcrState.h"

namespace kelm::server {

int QueryStatusByte(EcrLink& link)
{
    if (const LinkResult r = link.LinkHandshake(); r != link::Ok)
        return r;
    if (const LinkResult r = link.SendFrame(QStringLiteral("s/")); r != link::Ok)
        return r;
    link.clock().sleepMs(200); // the register needs a moment before this answer
    QString answer;
    if (const LinkResult r = link.ReceiveAnswer(answer); r != link::Ok)
        return r;
    return statusByteFromAnswer(answer);
}

int QueryErrorState(EcrLink& link, Operator& op)
{
    const QString record = QStringLiteral("?/");
    QString answer;
    if (const LinkResult r = link.EcrTransaction(record, answer); r != link::Ok)
        return r;
    if (!answer.startsWith(QStringLiteral("00"))) {
        QString message;
        EcrErrorMessage(answer.left(2), message);
        QString status = answer.left(2);
        op.showMessage(CommandErrorText(status, record) + QStringLiteral("\r\n") + message,
                       QStringLiteral("Attenzione"), Operator::Icon::Critical);
    }
    return answerStatus(answer);
}

} // namespace kelm::server
