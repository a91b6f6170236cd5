#pragma once

#include "app/IniFile.h"

#include <QString>

#include <array>

// The customer display's scrolling messages: ten kept in the settings file,
// section "Messaggi", the selected one sent in an "o/" record.
namespace kelm::programming {

constexpr int kScrollMessageCount = 10;

// "o/" + the message trimmed, "/" made "\", + "/"; o// when no message is
// selected (empty text).
QString scrollMessageRecord(const QString& message);

// Writes the selected message (index 0..9), as it is sent, under
// "Msg1".."Msg10"; the other keys keep what earlier downloads left. False
// when the file could not be written or the index is not a message's.
bool saveScrollMessage(const IniFile& ini, int index, const QString& message);

// The ten messages in the file, "" for a missing key.
std::array<QString, kScrollMessageCount> loadScrollMessages(const IniFile& ini);

} // namespace kelm::programming
