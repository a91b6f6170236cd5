#include "InputItems.h"

#include "link/CodePage.h"

namespace kelm {

namespace {

bool isBlank(QChar c) { return c == u' ' || c == u'\t'; }
bool isLineEnd(QChar c) { return c == u'\r' || c == u'\n'; }

} // namespace

QStringList readInputItems(const QByteArray& bytes)
{
    const QString text = ansi::decode(bytes);
    QStringList items;
    qsizetype i = 0;
    const qsizetype n = text.size();
    while (i < n) {
        while (i < n && isBlank(text[i]))
            ++i;
        QString item;
        if (i < n && text[i] == u'"') {
            const qsizetype close = text.indexOf(u'"', i + 1);
            const qsizetype stop = close < 0 ? n : close;
            item = text.mid(i + 1, stop - i - 1);
            i = close < 0 ? n : close + 1;
            while (i < n && text[i] != u',' && !isLineEnd(text[i]))
                ++i; // whatever follows the closing quote belongs to no item
        } else {
            const qsizetype start = i;
            while (i < n && text[i] != u',' && !isLineEnd(text[i]))
                ++i;
            item = text.mid(start, i - start);
            while (!item.isEmpty() && isBlank(item.back()))
                item.chop(1);
        }
        items.append(item);
        // One separator ends the item: a comma, or a line end (CR LF as one).
        if (i < n && text[i] == u',') {
            ++i;
        } else if (i < n && text[i] == u'\r') {
            ++i;
            if (i < n && text[i] == u'\n')
                ++i;
        } else if (i < n && text[i] == u'\n') {
            ++i;
        }
    }
    return items;
}

} // namespace kelm
