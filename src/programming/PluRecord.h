#pragma once

#include <QString>
#include <QStringList>

#include <array>

// The PLU table: one grid row per PLU, the PLU number being the row number.
// Rows go out as "P/" records and come back with "p/"; a PLU with an empty
// code is a free number.
namespace kelm::programming {

constexpr qsizetype kPluColumns = 10;     // the grid's columns
constexpr qsizetype kPluSentColumns = 8;  // columns 0..7 go into "P/" and the PLU file's loader
constexpr int kPluLimit = 9000;

// The cells of one grid row, in column order: code, description, department,
// bonus, price, maximum price, stock, flags (8 × "0"/"1"), quantity sold,
// amount sold.
using PluRow = std::array<QString, kPluColumns>;

// "BC", "Descrizione", "Rep", "Bonus", "Price", "Max Price", "Mag.", "FLAGS",
// "Vend.", "Tot.Vend".
const QStringList& pluColumnHeadings();

// The row with its numeric columns 2..6 in decimalForm ("2,50" → "2"): the
// grid shows what was sent.
PluRow withNormalisedNumbers(PluRow row);

// P/number/ and columns 0..7 of the normalised row, each closed by "/";
// a "/" inside a cell is sent as "\".
QString pluRecord(int number, const PluRow& row);

// The record that frees a PLU number: empty code, description and
// department, zero bonus, prices and stock, all flags 0.
QString pluDeletionRecord(int number);

// "p/" number "/".
QString pluReadRecord(int number);

// The answer to "p/" as a grid row. The answer's order is not the record's:
// code, description, department, bonus, flags, (ignored), price, maximum
// price, stock, quantity sold, amount sold, then three ignored fields. Texts
// are trimmed, numbers in decimalForm. An empty code means the number is free.
PluRow parsePlu(const QString& answer);

// Deleting the register's PLUs beyond the grid. Starting after the grid's
// last row, each number is probed; one that holds a code must be deleted.
// The scan ends after 10 free numbers in a row, or when it reaches 9000.
// The caller also ends it at the first failed deletion.
class SurplusPluScan {
public:
    explicit SurplusPluScan(int gridRows) : number_(gridRows + 1) {}

    bool finished() const;
    // The PLU number to probe now.
    int number() const { return number_; }
    // Takes the code that the probe of number() found (empty for a free
    // number or a failed probe) and moves to the next number. True when the
    // PLU just probed must be deleted.
    bool probed(const QString& code);

private:
    int number_;
    int freeInARow_ = 0;
};

} // namespace kelm::programming
