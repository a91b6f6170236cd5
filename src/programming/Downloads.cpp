#include "programming/Downloads.h"

#include "link/EcrErrors.h"

#include <algorithm>
#include <iterator>

namespace kelm::programming {

namespace {

const QString kCrLf = QStringLiteral("\r\n");
const QString kFailureTitle = QStringLiteral("Attenzione");
const QString kSuccessTitle = QStringLiteral("Kelm Drev");

struct BranchRow {
    qint16 index;
    DownloadTable table;
    bool recordByRecord;
    const char16_t* failure;
    const char16_t* success;
    const char16_t* changeLimitWarning; // null: no confirmation
};

constexpr BranchRow kBranches[] = {
    {0, DownloadTable::Header, false, u"Errore in scarico intestazione", u"Intestazione Scaricata",
     u"L'intestazione degli scontrini si può cambiare un massimo di 60 volte. Confermare Operazione?"},
    {1, DownloadTable::Footer, false, u"Errore in scarico intestazione Piede", u"Piede di scontrino scaricato",
     nullptr},
    {2, DownloadTable::Logo, false, u"Errore in scarico logo", u"Logo Scaricato, ricordarsi di attivarlo", nullptr},
    {3, DownloadTable::Departments, true, u"Errore in scarico Reparti", u"Reparti scaricati", nullptr},
    {4, DownloadTable::Plu, true, u"Errore in scarico PLU ", u"PLU scaricate", nullptr},
    {5, DownloadTable::Nothing, false, u"", u"", nullptr},
    {6, DownloadTable::PaymentTypes, true, u"Errore in scarico pagamento ", u"Tabella pagamenti scaricate", nullptr},
    {7, DownloadTable::ScrollMessage, false, u"Errore in scarico messaggio scorrevole",
     u"Messaggio Scorrevole scaricato\rRicordarsi di attivarlo", nullptr},
    {8, DownloadTable::Nothing, false, u"", u"", nullptr},
    {9, DownloadTable::SParameters, false, u"Errore in scarico parametri S", u"Parametri S scaricati", nullptr},
    {10, DownloadTable::VatRates, false, u"Errore in scarico aliquote IVA", u"Aliquote IVA scaricate",
     u"Le aliquote IVA si possono cambiare un massimo di 20 volte. Confermare Operazione?"},
};

Question changeLimitWarning(const char16_t* text)
{
    return {QString::fromUtf16(text), QStringLiteral("ATTENZIONE"), Operator::Icon::Question,
            {Operator::Button::Ok, Operator::Button::Cancel}, Operator::Button::Cancel, Operator::Button::Ok};
}

} // namespace

DownloadBranch downloadBranch(qint16 index)
{
    const auto* row = std::find_if(std::begin(kBranches), std::end(kBranches),
                                   [index](const BranchRow& r) { return r.index == index; });
    if (row == std::end(kBranches))
        return {};
    DownloadBranch branch{row->table, std::nullopt, row->recordByRecord, QString::fromUtf16(row->failure),
                          QString::fromUtf16(row->success)};
    if (row->changeLimitWarning)
        branch.confirmation = changeLimitWarning(row->changeLimitWarning);
    return branch;
}

Notice downloadFailure(const DownloadBranch& branch, const QString& lastAnswer, const QString& identification)
{
    const QString code = lastAnswer.left(2);
    QString errorText;
    EcrErrorMessage(code, errorText);
    return {branch.failurePhrase + identification + kCrLf + QStringLiteral("Errore : ") + code + kCrLf + errorText,
            kFailureTitle, Operator::Icon::Critical};
}

Notice downloadSuccess(const DownloadBranch& branch)
{
    return {branch.successText, kSuccessTitle, Operator::Icon::Information};
}

Question emptyPluGridQuestion()
{
    return {QStringLiteral("La griglia PLU è vuota: lo scarico cancella tutte le PLU dell'ECR.") + kCrLf
                + QStringLiteral("Confermare Operazione?"),
            QStringLiteral("ATTENZIONE"), Operator::Icon::Warning,
            {Operator::Button::Ok, Operator::Button::Cancel}, Operator::Button::Cancel, Operator::Button::Ok};
}

Notice pluDownloadStopped(int sent, int total)
{
    return {QStringLiteral("Scarico PLU interrotto: %1 di %2 righe scaricate").arg(sent).arg(total), kSuccessTitle,
            Operator::Icon::Information};
}

Notice unknownDownloadIndex()
{
    return {QStringLiteral("Errore 90 : Avvisare produttore"), kFailureTitle, Operator::Icon::Critical};
}

Notice settingsReadBackNotice()
{
    return {QStringLiteral("Questa operazione non recupera i valori ") + kCrLf
                + QStringLiteral("dal Misuratore Fiscale ma dal file di ini"),
            kFailureTitle, Operator::Icon::Information};
}

} // namespace kelm::programming
