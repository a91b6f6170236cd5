#pragma once

#include "app/IniFile.h"

#include <QString>

namespace kelm {

// Who the register says it is, from its answer to "a/".
struct EcrIdentity {
    QString serialNumber; // SN
    QString number;       // Num
    QString field;        // Campo
    QString firmware;     // FW
};

// After the 9-character header the answer holds "/"-closed fields: serial
// number (trimmed), number, field, one not used, firmware. A field without
// its "/" ends the reading; what was not read stays empty.
EcrIdentity parseIdentity(const QString& answer);

// Section "Current" of KelmDrev.ini: Campo, SN, Num, FW, and Drev = this
// program's version.
void writeIdentity(const IniFile& ini, const EcrIdentity& identity, const QString& programVersion);

} // namespace kelm
