#pragma once

#include "app/IniFile.h"
#include "link/StatusPanels.h"

#include <QString>
#include <QStringList>

namespace kelm {

// The PC-side settings, section "Parametri" of KelmDrev.ini.
struct ConfigPC {
    QString model;              // Modello: a name of the model table
    QString port;               // "Com" + Porta, as the program has always named it
    qint32 speed = 0;           // Velocita, bits per second
    QString serverState;        // "On" / "Off"
    QString serverMode;         // "Normal", "Minimized", "Iconized", "VirtualECR"
    QString serverDir;          // where receipt files arrive
    QString serverFile;         // a file name or a mask with "*"
    QString serverLog;          // "On" / "Off"; written by the save, read by headless mode
    QString wrapDescription;    // "On" / "Off"
    QString alIvaAuto;          // "On" / "Off"
    QString device;             // Dispositivo: a device path, or "virtual"; wins over port
    QString httpListen;         // ServerHttp: "[ADDRESS:]PORT" of the local HTTP service, empty = off
    QString httpToken;          // TokenHttp: the bearer token the HTTP service asks for
    QString answers;            // Esiti: folder of the answer files, "Off", or empty for the default
    int answerDays = 7;         // EsitiGiorni: answer files older than this are removed
    QStringList forbiddenExtensions; // slot n of FileExt.ini at index n − 1; empty slots kept
};

// The values of the "Configuraz. PC" controls at the moment of saving.
struct ConfigForm {
    QString model;       // cmbModello
    QString comPort;     // cmbComPort, e.g. "Com7"
    QString device;      // the typed or chosen device path, empty for a ComN port
    bool clearDevice = false; // a ComN port chosen over a stored device path
    QString speed;       // cmbSpeed
    bool serverOn = false;      // chkSRV
    QString serverMode;  // cmbSRVModalita
    QString serverDir;   // txtSRVDir
    QString serverFile;  // txtSRVFile
    bool logOn = false;         // chkLog
    bool wrapDescription = false; // chkWrapDescription
    bool alIvaAuto = false;     // chkAlIvaAuto
};

inline const QString kSection = QStringLiteral("Parametri");
inline const QString kDefaultServerFile = QStringLiteral("scontrino.tx");
constexpr int kMaxForbiddenExtensions = 5000;

// Replaces NULs by blanks and trims the blanks at both ends.
QString TrimNulls(const QString& text);

// Fills `config` from the INI file and FileExt.ini in `programFolder`.
// Returns true when a model is configured; only then may the program open
// the port. Missing essentials are reported on panels 1 and 2.
bool LoadConfiguration(const IniFile& ini, const QString& programFolder, ConfigPC& config,
                       StatusPanels& status);

// Writes every key of "Parametri" from the form, in the program's fixed order,
// and updates `config`. Nothing is validated; the port is written as a bare
// number and takes effect at the next start.
void SaveConfigPC(const IniFile& ini, const ConfigForm& form, ConfigPC& config,
                  StatusPanels& status);

// The forbidden extensions of FileExt.ini ("[exe]" on a line; other items
// take a slot and stay empty).
QStringList LoadForbiddenExtensions(const QByteArray& fileExtIni);

// A whole number from the start of a text ("9600 baud" → 9600); 0 when there
// is none or it does not fit.
qint32 WholeNumber(const QString& text);

} // namespace kelm
