#include "programming/PluRecord.h"

#include "programming/Numbers.h"
#include "programming/RecordFields.h"

namespace kelm::programming {

namespace {

constexpr qsizetype kFirstNumberColumn = 2;
constexpr qsizetype kLastNumberColumn = 6;
constexpr qsizetype kAnswerFields = 14;
constexpr int kFreeNumbersToStop = 10;

enum class Cell { Text, Number };

// Where each field of a "p/" answer goes: its grid column and kind.
struct AnswerField {
    qsizetype field;
    qsizetype column;
    Cell kind;
};

constexpr AnswerField kAnswerLayout[] = {
    {0, 0, Cell::Text},   {1, 1, Cell::Text},   {2, 2, Cell::Text},   {3, 3, Cell::Text},
    {4, 7, Cell::Text},   {6, 4, Cell::Number}, {7, 5, Cell::Number}, {8, 6, Cell::Number},
    {9, 8, Cell::Number}, {10, 9, Cell::Number},
};

} // namespace

const QStringList& pluColumnHeadings()
{
    static const QStringList headings = {
        QStringLiteral("BC"),    QStringLiteral("Descrizione"), QStringLiteral("Rep"),   QStringLiteral("Bonus"),
        QStringLiteral("Price"), QStringLiteral("Max Price"),   QStringLiteral("Mag."),  QStringLiteral("FLAGS"),
        QStringLiteral("Vend."), QStringLiteral("Tot.Vend"),
    };
    return headings;
}

PluRow withNormalisedNumbers(PluRow row)
{
    for (qsizetype c = kFirstNumberColumn; c <= kLastNumberColumn; ++c)
        row[static_cast<size_t>(c)] = decimalForm(row[static_cast<size_t>(c)]);
    return row;
}

QString pluRecord(int number, const PluRow& row)
{
    const PluRow sent = withNormalisedNumbers(row);
    QString record = QStringLiteral("P/") + QString::number(number) + u'/';
    for (qsizetype c = 0; c < kPluSentColumns; ++c)
        record += replaceSlashes(sent[static_cast<size_t>(c)]) + u'/';
    return record;
}

QString pluDeletionRecord(int number)
{
    return QStringLiteral("P/") + QString::number(number) + QStringLiteral("////0/0/0/0/00000000/");
}

QString pluReadRecord(int number)
{
    return QStringLiteral("p/") + QString::number(number) + u'/';
}

PluRow parsePlu(const QString& answer)
{
    const QStringList fields = answerFields(answer, kAnswerFields);
    PluRow row;
    for (const AnswerField& f : kAnswerLayout) {
        const QString& text = fields[f.field];
        row[static_cast<size_t>(f.column)] = f.kind == Cell::Number ? decimalForm(text) : trimBlanks(text);
    }
    return row;
}

bool SurplusPluScan::finished() const
{
    return freeInARow_ >= kFreeNumbersToStop || number_ >= kPluLimit;
}

bool SurplusPluScan::probed(const QString& code)
{
    const bool holdsCode = !trimBlanks(code).isEmpty();
    freeInARow_ = holdsCode ? 0 : freeInARow_ + 1;
    ++number_;
    return holdsCode;
}

} // namespace kelm::programming
