#include "IniFile.h"

#include "link/CodePage.h"

#include <QFile>
#include <QList>
#include <QSaveFile>

#include <optional>

namespace kelm {

namespace {

// One physical line: its text (Windows-1252 bytes) and its own line end.
struct RawLine {
    QByteArray text;
    QByteArray end;
};

QList<RawLine> splitLines(const QByteArray& bytes)
{
    QList<RawLine> lines;
    qsizetype pos = 0;
    while (pos < bytes.size()) {
        qsizetype nl = bytes.indexOf('\n', pos);
        if (nl < 0) {
            lines.append({bytes.mid(pos), QByteArray()});
            break;
        }
        const qsizetype textEnd = (nl > pos && bytes[nl - 1] == '\r') ? nl - 1 : nl;
        lines.append({bytes.mid(pos, textEnd - pos), bytes.mid(textEnd, nl + 1 - textEnd)});
        pos = nl + 1;
    }
    return lines;
}

QString trimBlanks(const QString& s)
{
    qsizetype b = 0;
    qsizetype e = s.size();
    auto blank = [](QChar c) { return c == u' ' || c == u'\t'; };
    while (b < e && blank(s[b]))
        ++b;
    while (e > b && blank(s[e - 1]))
        --e;
    return s.mid(b, e - b);
}

// "[name]" (blanks allowed around the name) → the name.
std::optional<QString> sectionName(const QString& line)
{
    const QString t = trimBlanks(line);
    if (!t.startsWith(u'['))
        return std::nullopt;
    const qsizetype close = t.indexOf(u']');
    if (close < 0)
        return std::nullopt;
    return trimBlanks(t.mid(1, close - 1));
}

struct KeyLine {
    QString key;
    QString value;
};

std::optional<KeyLine> keyLine(const QString& line)
{
    const qsizetype eq = line.indexOf(u'=');
    if (eq < 0 || trimBlanks(line).startsWith(u';'))
        return std::nullopt;
    return KeyLine{trimBlanks(line.left(eq)), trimBlanks(line.mid(eq + 1))};
}

bool sameName(const QString& a, const QString& b)
{
    return a.compare(b, Qt::CaseInsensitive) == 0;
}

QString lineText(const RawLine& line, bool first)
{
    QByteArray text = line.text;
    if (first && text.startsWith("\xEF\xBB\xBF")) // a BOM left by an editor
        text.remove(0, 3);
    return ansi::decode(text);
}

// Where a key sits in the file: the index of its line, or where the section
// ends (after its last non-blank line) when the key is missing.
struct Location {
    qsizetype sectionLine = -1; // -1: no such section
    qsizetype keyLine = -1;     // -1: no such key in it
    qsizetype insertAt = -1;    // where a new key goes
    QString value;
    QString storedKey;
};

Location locate(const QList<RawLine>& lines, const QString& section, const QString& key)
{
    Location loc;
    bool inSection = false;
    for (qsizetype i = 0; i < lines.size(); ++i) {
        const QString text = lineText(lines[i], i == 0);
        if (const auto name = sectionName(text)) {
            if (inSection)
                break; // the first section of that name is the one
            inSection = sameName(*name, section);
            if (inSection) {
                loc.sectionLine = i;
                loc.insertAt = i + 1;
            }
            continue;
        }
        if (!inSection)
            continue;
        if (!trimBlanks(text).isEmpty())
            loc.insertAt = i + 1;
        if (const auto kv = keyLine(text); kv && sameName(kv->key, key)) {
            loc.keyLine = i;
            loc.value = kv->value;
            loc.storedKey = kv->key;
            return loc;
        }
    }
    return loc;
}

QString stripQuotes(const QString& value)
{
    if (value.size() >= 2 && value.front() == u'"' && value.back() == u'"')
        return value.mid(1, value.size() - 2);
    return value;
}

QByteArray readAll(const QString& path, bool* exists = nullptr)
{
    QFile file(path);
    const bool ok = file.open(QIODevice::ReadOnly);
    if (exists)
        *exists = ok;
    return ok ? file.readAll() : QByteArray();
}

// The line end the file already uses; Windows' own for a new file.
QByteArray lineEndOf(const QList<RawLine>& lines)
{
    for (const RawLine& l : lines)
        if (!l.end.isEmpty())
            return l.end;
    return QByteArrayLiteral("\r\n");
}

} // namespace

QString IniFile::read(const QString& section, const QString& key, const QString& fallback,
                      int bufferSize) const
{
    const qsizetype room = qMax(0, bufferSize - 1);
    const QList<RawLine> lines = splitLines(readAll(path_));
    const Location loc = locate(lines, section, key);
    const QString value = loc.keyLine >= 0 ? stripQuotes(loc.value) : fallback;
    return value.left(room);
}

bool IniFile::write(const QString& section, const QString& key, const QString& value) const
{
    bool exists = false;
    const QByteArray original = readAll(path_, &exists);
    if (!exists && QFile::exists(path_))
        return false; // there but unreadable: never overwrite what cannot be read

    QList<RawLine> lines = splitLines(original);
    const QByteArray eol = lineEndOf(lines);
    // A value with a line break would split the file's structure.
    QString flat = value;
    flat.replace(u'\r', u' ').replace(u'\n', u' ');

    const Location loc = locate(lines, section, key);
    auto keyBytes = [&](const QString& name) { return ansi::encode(QString(name + u'=' + flat)); };
    if (loc.keyLine >= 0) {
        lines[loc.keyLine].text = keyBytes(loc.storedKey);
    } else {
        // The line before an insertion may be a last line with no end.
        if (!lines.isEmpty() && lines.back().end.isEmpty()
            && (loc.sectionLine < 0 || loc.insertAt == lines.size()))
            lines.back().end = eol;
        if (loc.sectionLine < 0) {
            lines.append({ansi::encode(QString(u'[' + section + u']')), eol});
            lines.append({keyBytes(key), eol});
        } else {
            lines.insert(loc.insertAt, {keyBytes(key), eol});
        }
    }

    QByteArray out;
    out.reserve(original.size() + 64);
    for (const RawLine& l : lines)
        out.append(l.text).append(l.end);
    QSaveFile file(path_);
    if (!file.open(QIODevice::WriteOnly))
        return false;
    file.write(out);
    return file.commit();
}

} // namespace kelm
