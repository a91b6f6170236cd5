#include "server/StatusQuery.h"

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

} // namespace kelm::server
