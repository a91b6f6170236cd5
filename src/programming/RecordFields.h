#pragma once

#include <QString>
#include <QStringList>

// What every table's records and answers share: how a text becomes a field
// of a record, and how the fields of an answer are walked.
namespace kelm::programming {

// No limit on a field's width.
constexpr qsizetype kAnyWidth = -1;

// Leading and trailing blanks removed; other white space stays, as the
// register sees it as text.
QString trimBlanks(const QString& text);

// A free text as the editors keep it: every "/" becomes "\", so that no text
// can close a field of a record early. Works on one typed key as on a pasted
// text.
QString replaceSlashes(const QString& text);

// Only the digits "0".."9" of a typed or pasted text, for the numeric boxes.
QString digitsOnly(const QString& text);

// A text as it goes into a record: trimmed, "/" made "\", and of a text
// longer than `width` its last `width` characters, trimmed again (the end of
// an over-long text is what the register keeps).
QString fieldText(const QString& text, qsizetype width = kAnyWidth);

// The first `count` data fields of an answer: from character 10 on, each
// closed by "/". A field without its "/" is the rest of the answer; fields
// past the end of the answer are empty. Always `count` entries.
QStringList answerFields(const QString& answer, qsizetype count);

// A value read from the settings file, cut at its first NUL.
QString cutAtNul(const QString& value);

// The numeric value of a single character: its digit, 0 for anything else.
int digitValue(QChar c);

} // namespace kelm::programming
