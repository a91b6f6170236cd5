#include "programming/HeaderFooter.h"

#include "programming/PrintLine.h"
#include "programming/RecordFields.h"

namespace kelm::programming {

namespace {

const QString kSection = QStringLiteral("Intestazioni");
constexpr int kReadBuffer = 256;

// "Head" or "Foot" and the line's number counted from 1.
QString lineKey(ReceiptLines kind, qsizetype index)
{
    const QString prefix = kind == ReceiptLines::Header ? QStringLiteral("Head") : QStringLiteral("Foot");
    return prefix + QString::number(index + 1);
}

qsizetype lineCount(ReceiptLines kind)
{
    return kind == ReceiptLines::Header ? kHeaderLines : kFooterLines;
}

// A combo without a selection is kept as the first item, so that the value
// still reads back as two digits and a text.
QString savedIndex(int index, const QStringList& items)
{
    return QString::number(index >= 0 && index < items.size() ? index : 0);
}

QString linesRecord(const QString& code, const QList<HeaderLine>& lines, bool blankAsEmpty)
{
    QString record = code;
    for (const HeaderLine& line : lines) {
        const QString padded = paddedLine(fieldText(line.text), line.size, line.align);
        const bool blank = trimBlanks(padded).isEmpty();
        record += printSizeCode(line.size) + u'/' + (blank && blankAsEmpty ? QString() : padded) + u'/';
    }
    return record;
}

} // namespace

QString headerRecord(const QList<HeaderLine>& lines)
{
    return linesRecord(QStringLiteral("H/"), lines, true);
}

QString footerRecord(const QList<HeaderLine>& lines)
{
    return linesRecord(QStringLiteral("F/"), lines, false);
}

QString savedLineValue(const HeaderLine& line)
{
    return savedIndex(line.align, printAlignmentItems()) + savedIndex(line.size, printSizeItems()) + fieldText(line.text);
}

RestoredLine restoredLine(const QString& value)
{
    if (value.size() < 3)
        return {};
    const HeaderLine line{value.mid(2), digitValue(value[1]), digitValue(value[0])};
    if (line.align >= printAlignmentItems().size())
        return {line, 0};
    if (line.size >= printSizeItems().size())
        return {line, 1};
    return {line, 3};
}

bool saveReceiptLines(const IniFile& ini, ReceiptLines kind, const QList<HeaderLine>& lines)
{
    bool written = true;
    for (qsizetype i = 0; i < lines.size(); ++i)
        written = ini.write(kSection, lineKey(kind, i), savedLineValue(lines[i])) && written;
    return written;
}

QList<RestoredLine> loadReceiptLines(const IniFile& ini, ReceiptLines kind)
{
    QList<RestoredLine> lines;
    for (qsizetype i = 0; i < lineCount(kind); ++i)
        lines.append(restoredLine(cutAtNul(ini.read(kSection, lineKey(kind, i), QString(), kReadBuffer))));
    return lines;
}

} // namespace kelm::programming
