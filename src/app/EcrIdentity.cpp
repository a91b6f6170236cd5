#include "EcrIdentity.h"

namespace kelm {

namespace {

constexpr qsizetype kAnswerHeader = 9;

} // namespace

EcrIdentity parseIdentity(const QString& answer)
{
    EcrIdentity id;
    QString* targets[] = {&id.serialNumber, &id.number, &id.field, nullptr, &id.firmware};
    qsizetype pos = kAnswerHeader;
    for (QString* target : targets) {
        const qsizetype slash = answer.indexOf(u'/', pos);
        if (slash < 0)
            break;
        if (target)
            *target = answer.mid(pos, slash - pos);
        pos = slash + 1;
    }
    id.serialNumber = id.serialNumber.trimmed();
    return id;
}

void writeIdentity(const IniFile& ini, const EcrIdentity& identity, const QString& programVersion)
{
    const QString section = QStringLiteral("Current");
    ini.write(section, QStringLiteral("Campo"), identity.field);
    ini.write(section, QStringLiteral("SN"), identity.serialNumber);
    ini.write(section, QStringLiteral("Num"), identity.number);
    ini.write(section, QStringLiteral("FW"), identity.firmware);
    ini.write(section, QStringLiteral("Drev"), programVersion);
}

} // namespace kelm
