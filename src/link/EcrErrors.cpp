#include "EcrErrors.h"

#include <algorithm>

namespace kelm {

namespace {

struct ErrorEntry {
    int number;
    qint16 errorClass;
    const char16_t* message;
};

// The register's own texts, word for word: the mixture of Italian and
// English, the typographic apostrophes and the near-duplicates are the
// register's and users recognise them.
constexpr ErrorEntry kErrors[] = {
    {1, 2, u"Campi del comando insufficienti"},
    {2, 2, u"Presente campo/i comando in eccesso"},
    {3, 2, u"Un campo del comando e' troppo corto"},
    {4, 2, u"Controllare i campi del comando"},
    {5, 2, u"Controllare i campi del comando"},
    {6, 2, u"Comando non supportato"},
    {7, 2, u"Il PLU non esiste"},
    {8, 2, u"Il reparto non esiste"},
    {9, 2, u"Aliquota IVA errata"},
    {10, 2, u"Numero operatore inesistente"},
    {11, 2, u"Password operatore errata"},
    {12, 2, u"Pagamento inesistente"},
    {13, 2, u"The requested Fiscal record doesn’t exist"},
    {14, 2, u"The requested Fiscal record type doesn’t exist"},
    {15, 2, u"Printing type error"},
    {16, 2, u"Giornata aperta, effettuare azzeramento Z1"},
    {17, 2, u"Disconnect Jumpers first"},
    {18, 2, u"Data-Ora errata"},
    {19, 2, u"CAN NOT PERFORM SALES"},
    {20, 2, u"Scontrino fiscale aperto"},
    {21, 2, u"Pagamento non valido"},
    {22, 2, u"Entrate - Prelievi in corso"},
    {23, 2, u"Aliquota IVA errata, controllare corrispondenza IVA-Reparto"},
    {24, 2, u"Errore prezzo"},
    {25, 2, u"Protocollo ONLINE attivo"},
    {26, 1, u"Busy, reinvia il comando"},
    {27, 2, u"Operazione di vendita non valida"},
    {28, 2, u"Sconto - Aumento non valido"},
    {29, 9, u"Raggiunto limite massimo Intestazioni scontrino"},
    {30, 2, u"A user’s report is open"},
    {31, 2, u"A user’s report is open"},
    {32, 2, u"The Fiscal Memory has no transactions"},
    {33, 2, u"Numero Sconto - Aumento non valido"},
    {34, 2, u"Raggiunto limite massimo PLU registrabili"},
    {35, 2, u"Errore nell'invio dei dati BMP"},
    {36, 2, u"The BMP index number doesn’t exist"},
    {37, 2, u"Numero categoria inesistente"},
    {38, 2, u"Printer ID index error"},
    {39, 2, u"Error printing type"},
    {40, 2, u"Unit ID index error"},
    {41, 2, u"Impossibile effettuare ulteriori vendite"},
    {42, 9, u"Errore tastiera - Tastiera scollegata"},
    {43, 9, u"Raggiunto limite massimo aliquote IVA programmabili"},
    {44, 9, u"Errore Giornale elettronico"},
    {45, 9, u"giornale elettronico scollegato"},
    {46, 9, u"Giornale elettronico non formattato"},
    {47, 9, u"Compact Flash Serial Number mismatch error"},
    {48, 9, u"Compact Flash Index Number mismatch error"},
    {49, 4, u"Carta finita"},
    {50, 4, u"Portello rotolo aperto"},
    {51, 2, u"There is a printer’s timeout"},
    {52, 9, u"Stampante scollegata"},
    {53, 9, u"Errore taglierina"},
    {54, 9, u"Memoria fiscale scollegata"},
    {55, 9, u"Fatal error"},
    {56, 2, u"Posizionare la chiave in EMISSIONE RICEVUTA"},
    {57, 9, u"Problema batteria tampone"},
    {58, 9, u"Jumpers ancora inseriti. Rimuovere jumpers"},
    {59, 9, u"Errore giornale elettronico"},
    {60, 9, u"Giornale elettronico pieno"},
    {61, 9, u"Data - ora errate"},
    {62, 2, u"Barcode errato"},
    {63, 2, u"Bonus index error (>20)"},
    {64, 2, u"Client can not have credit and balance amount"},
    {65, 2, u"Invalid add/delete parameter"},
    {66, 2, u"Cliente non trovato"},
    {67, 2, u"Database clienti pieno"},
    {68, 2, u"Errore database clienti"},
    {69, 2, u"Cliente rimosso"},
    {70, 2, u"Tastiera errata"},
    {71, 9, u"Stampante surriscaldata"},
    {80, 2, u"Parola (TOTALE) non ammessa"},
    {100, 2, u"Quantità superiore al consentito"},
    {101, 2, u"Importo superiore al consentito"},
    {102, 2, u"PLU inesistente"},
    {103, 2, u"Reparto inesistente"},
    {104, 2, u"Scontrino aperto"},
    {105, 2, u"Entrata di cassa in corso"},
    {106, 2, u"Prelievo di cassa in corso"},
    {107, 2, u"Importo IVA negativo"},
    {108, 2, u"Nessuno scontrino aperto"},
    {109, 2, u"No transactions in the receipt ."},
    {110, 2, u"Action is not allowed"},
    {111, 2, u"The total payment amount must be inserted first"},
    {112, 2, u"Totale negativo non permesso"},
    {113, 2, u"Richiesto SUBTOTALE prima"},
    {114, 2, u"Modifica non consentita"},
    {115, 2, u"Scontrino aperto"},
    {116, 2, u"There is an open CASH IN/OUT."},
    {117, 2, u"There is not an open CASH IN."},
    {118, 2, u"There is not an open CASH OUT."},
    {119, 2, u"Codice pagamento errato"},
    {120, 2, u"Codice reparto errato"},
    {121, 2, u"Ticket’s decimal quantity is not allowed."},
    {122, 2, u"Sconto - aumento a zero non consentito"},
    {123, 2, u"Raggiunto limite sconto - aumento"},
    {124, 2, u"Vendita con importo zero non permessa"},
    {125, 2, u"Reparto - PLU non attivi"},
    {126, 2, u"Raggiunto l'importo massimo per totale scontrino"},
    {127, 2, u"Raggiunto l'importo massimo"},
    {128, 2, u"Coupon discount in subtotal is not allowed."},
};

const ErrorEntry* findError(int number)
{
    const auto* end = std::end(kErrors);
    const auto* it = std::lower_bound(std::begin(kErrors), end, number,
                                      [](const ErrorEntry& e, int n) { return e.number < n; });
    return it != end && it->number == number ? it : nullptr;
}

} // namespace

qint16 HexDigitValue(QChar digit)
{
    const char16_t c = digit.unicode();
    if (c >= u'0' && c <= u'9')
        return static_cast<qint16>(c - u'0');
    if (c >= u'A' && c <= u'F')
        return static_cast<qint16>(c - 55);
    return 0;
}

qint16 EcrErrorMessage(const QString& status, QString& message)
{
    message.clear();
    bool ok = false;
    const int number = (status.isEmpty() ? QStringLiteral("0") : status).toInt(&ok, 16);
    if (!ok || number < 1 || number > 128)
        return 0;
    const ErrorEntry* entry = findError(number);
    if (!entry)
        return 0;
    message = QString::fromUtf16(entry->message);
    return entry->errorClass;
}

QString CommandErrorText(QString& status, const QString& command)
{
    const QChar first = status.isEmpty() ? QChar() : status.front();
    const QChar last = status.isEmpty() ? QChar() : status.back();
    const int number = 16 * HexDigitValue(first) + HexDigitValue(last);
    status = QString::number(number);
    return QStringLiteral("Comando '") + command + QStringLiteral("' - Errore N. ") + status;
}

} // namespace kelm
