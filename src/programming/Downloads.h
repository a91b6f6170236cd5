#pragma once

#include "programming/Messages.h"

#include <QString>

#include <optional>

// The download buttons of the programming tab are one array; its index
// names the table. What each index does, asks and reports, as data for the
// job that runs the download and the window that shows it.
namespace kelm::programming {

enum class DownloadTable {
    Header,        // 0
    Footer,        // 1
    Logo,          // 2
    Departments,   // 3
    Plu,           // 4
    PaymentTypes,  // 6
    ScrollMessage, // 7
    SParameters,   // 9
    VatRates,      // 10
    Nothing,       // 5 and 8: empty slots of the array, nothing is sent or shown
    Unknown,       // any other index: show unknownDownloadIndex()
};

struct DownloadBranch {
    DownloadTable table = DownloadTable::Unknown;
    // Asked before anything is saved or sent; any answer but `proceed` ends
    // the click with nothing done. The header and the VAT rates have one:
    // the register allows only so many changes of them.
    std::optional<Question> confirmation;
    // Tables of many records report each failing record and go on, and show
    // the success text at the end whatever failed.
    bool recordByRecord = false;
    QString failurePhrase; // PLU and payment types: the record's identification follows
    QString successText;
};

DownloadBranch downloadBranch(qint16 index);

// The failure box of one record: the phrase and the identification, CR LF,
// "Errore : " and the first two characters of the register's answer, CR LF,
// the register's text for that code.
Notice downloadFailure(const DownloadBranch& branch, const QString& lastAnswer,
                       const QString& identification = QString());

Notice downloadSuccess(const DownloadBranch& branch);

// Asked before a PLU download with an empty grid: it deletes every PLU of
// the register. Cancel is the default.
Question emptyPluGridQuestion();

// A PLU download stopped by the user: what was sent stays sent.
Notice pluDownloadStopped(int sent, int total);

// "Errore 90 : Avvisare produttore".
Notice unknownDownloadIndex();

// Shown before the header or footer is put back from the settings file: the
// register is not asked.
Notice settingsReadBackNotice();

} // namespace kelm::programming
