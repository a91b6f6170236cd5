#include "Printer.h"

#include "Money.h"

#include "link/CodePage.h"

namespace kelm::sim {

void Printer::line(const QByteArray& ansiText)
{
    roll_.append(kelm::ansi::decode(ansiText.left(kWidth)).toUtf8());
}

void Printer::cut()
{
    roll_.append(QByteArray());
}

QByteArray Printer::amountText(const QByteArray& label, qint64 cents)
{
    const QByteArray value = formatCents(cents);
    const qsizetype room = kWidth - value.size() - 1;
    return label.left(room).leftJustified(room) + ' ' + value;
}

QByteArray Printer::centredText(const QByteArray& ansiText)
{
    const QByteArray text = ansiText.trimmed().left(kWidth);
    return QByteArray((kWidth - text.size()) / 2, ' ') + text;
}

} // namespace kelm::sim
