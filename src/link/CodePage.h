#pragma once

#include <QByteArray>
#include <QByteArrayView>
#include <QString>
#include <QStringView>

// Text on the line and in the program's files is Windows-1252 ("ANSI") on
// every platform: one character, one byte.
namespace kelm::ansi {

// A character that Windows-1252 cannot hold becomes "?".
QByteArray encode(QStringView text);
QString decode(QByteArrayView bytes);

} // namespace kelm::ansi
