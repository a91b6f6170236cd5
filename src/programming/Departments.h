#pragma once

#include <QString>

// The 20 departments: one "D/" record each to write, one "d/" each to read.
namespace kelm::programming {

constexpr int kDepartmentCount = 20;
constexpr int kNoVatSelection = -1;

// One department's editors: its description and the list index (0..4) of
// its VAT combo, whose items are the VAT codes "1".."5"; -1 for none.
struct Department {
    QString description;
    int vatIndex = kNoVatSelection;

    friend bool operator==(const Department&, const Department&) = default;
};

// D/number/description/VAT code////// — the code is the list index + 1, "0"
// when nothing is selected; five empty fields close the record.
QString departmentRecord(int number, const Department& department);

// "d/" number "/".
QString departmentReadRecord(int number);

// The answer to "d/": the trimmed text from character 10 up to the first
// "/" (the rest of the answer when there is none), and the VAT code in the
// one character after that "/". A code that is not "1".."5" means no
// selection.
Department parseDepartment(const QString& answer);

} // namespace kelm::programming
