#include "server/LogNameHelp.h"

#include <QStringList>

namespace kelm::server {

QString logNameHelpText()
{
    return QStringList{
        QStringLiteral("Il file di log si trova nella stessa directory degli scontrini del server. "),
        QStringLiteral("Il suo nome dipende dalla regola di identificazione del file :"),
        QStringLiteral("  1) se il file e' unico si chiama come il file di attesa, con postfisso = giorno.log."),
        QStringLiteral("  2) se si usa una mascheratura del tipo *nomefile allora si chiama come la parte di"),
        QStringLiteral("     mascheratura dei files, con postfisso = giorno.log."),
        QStringLiteral("  3) se si e' usata una mascheratura globale '*' allora si chiamerà DREV "),
        QStringLiteral("     sempre con postfisso = giorno.log."),
    }.join(u'\r');
}

} // namespace kelm::server
