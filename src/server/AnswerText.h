#pragma once

#include "server/ReceiptOutcome.h"

#include <QByteArray>

#include <optional>

namespace kelm::server {

// A receipt's outcome as the point-of-sale program reads it: sections of
// key=value lines like the program's other files, Windows-1252, CR LF.
//
//   [Esito]    Stato, Origine (file / richiesta), Id, Preso, Finito, Righe
//   [Current]  Campo, SN, Num, FW of the register
//   [Riga N]   Record, Esito, and Errore + Testo (refused), Testo (skipped),
//              Motivo (not sent); N is the line's number in the file
//
// Times are local, "yyyy-MM-dd hh:mm:ss"; Finito stays empty while the
// receipt is in progress.
QByteArray answerText(const ReceiptOutcome& receipt);
// Reads it back; nullopt when the text has no [Esito] section.
std::optional<ReceiptOutcome> parseAnswerText(const QByteArray& text);

} // namespace kelm::server
