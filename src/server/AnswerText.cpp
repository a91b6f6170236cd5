#include "server/AnswerText.h"

#include "link/CodePage.h"

#include <QHash>

namespace kelm::server {

namespace {

const QString kTimeFormat = QStringLiteral("yyyy-MM-dd hh:mm:ss");
const QString kLinePrefix = QStringLiteral("Riga ");

QString sourceName(LineOrigin::Source source)
{
    return source == LineOrigin::Source::Request ? QStringLiteral("richiesta") : QStringLiteral("file");
}

} // namespace

QByteArray answerText(const ReceiptOutcome& receipt)
{
    QString text;
    const auto put = [&](const QString& key, const QString& value) { text += key + u'=' + value + QStringLiteral("\r\n"); };
    const auto section = [&](const QString& name) { text += u'[' + name + QStringLiteral("]\r\n"); };
    section(QStringLiteral("Esito"));
    put(QStringLiteral("Stato"), stateName(receipt.state()));
    put(QStringLiteral("Origine"), sourceName(receipt.source));
    put(QStringLiteral("Id"), receipt.id);
    put(QStringLiteral("Preso"), receipt.taken.toString(kTimeFormat));
    put(QStringLiteral("Finito"), receipt.finished.toString(kTimeFormat));
    put(QStringLiteral("Righe"), QString::number(receipt.lines.size()));
    section(QStringLiteral("Current"));
    put(QStringLiteral("Campo"), receipt.identity.field);
    put(QStringLiteral("SN"), receipt.identity.serialNumber);
    put(QStringLiteral("Num"), receipt.identity.number);
    put(QStringLiteral("FW"), receipt.identity.firmware);
    for (const LineOutcome& line : receipt.lines) {
        section(kLinePrefix + QString::number(line.line));
        put(QStringLiteral("Record"), line.record);
        put(QStringLiteral("Esito"), fateName(line.fate));
        if (line.fate == LineFate::Refused)
            put(QStringLiteral("Errore"), line.errorNumber);
        if (line.fate == LineFate::Refused || line.fate == LineFate::Skipped)
            put(QStringLiteral("Testo"), line.text);
        if (line.fate == LineFate::NotSent)
            put(QStringLiteral("Motivo"), reasonName(line.reason));
    }
    return ansi::encode(text);
}

std::optional<ReceiptOutcome> parseAnswerText(const QByteArray& bytes)
{
    ReceiptOutcome receipt;
    bool seen = false;
    QString section;
    LineOutcome* line = nullptr;
    for (const QString& row : ansi::decode(bytes).split(QStringLiteral("\r\n"))) {
        if (row.startsWith(u'[') && row.endsWith(u']')) {
            section = row.mid(1, row.size() - 2);
            seen = seen || section == QStringLiteral("Esito");
            line = nullptr;
            if (section.startsWith(kLinePrefix)) {
                receipt.lines.append(LineOutcome::pending(section.mid(kLinePrefix.size()).toInt(), QString()));
                line = &receipt.lines.last();
            }
            continue;
        }
        const qsizetype eq = row.indexOf(u'=');
        if (eq < 0)
            continue;
        const QString key = row.left(eq);
        const QString value = row.mid(eq + 1);
        if (line) {
            if (key == QStringLiteral("Record"))
                line->record = value;
            else if (key == QStringLiteral("Esito"))
                line->fate = fateFromName(value);
            else if (key == QStringLiteral("Errore"))
                line->errorNumber = value;
            else if (key == QStringLiteral("Testo"))
                line->text = value;
            else if (key == QStringLiteral("Motivo"))
                line->reason = reasonFromName(value);
        } else if (section == QStringLiteral("Esito")) {
            if (key == QStringLiteral("Origine"))
                receipt.source = value == sourceName(LineOrigin::Source::Request) ? LineOrigin::Source::Request
                                                                                 : LineOrigin::Source::File;
            else if (key == QStringLiteral("Id"))
                receipt.id = value;
            else if (key == QStringLiteral("Preso"))
                receipt.taken = QDateTime::fromString(value, kTimeFormat);
            else if (key == QStringLiteral("Finito"))
                receipt.finished = QDateTime::fromString(value, kTimeFormat);
        } else if (section == QStringLiteral("Current")) {
            const QHash<QString, QString*> fields{{QStringLiteral("Campo"), &receipt.identity.field},
                                                 {QStringLiteral("SN"), &receipt.identity.serialNumber},
                                                 {QStringLiteral("Num"), &receipt.identity.number},
                                                 {QStringLiteral("FW"), &receipt.identity.firmware}};
            if (QString* field = fields.value(key))
                *field = value;
        }
    }
    if (!seen)
        return std::nullopt;
    return receipt;
}

} // namespace kelm::server
