#pragma once

// The register's error numbers, as it reports them in the first two
// characters of an answer (in hexadecimal). Only the ones this register
// model can give are named.
namespace kelm::sim::err {

constexpr int None = 0;
constexpr int FieldsMissing = 1;     // "Campi del comando insufficienti"
constexpr int FieldsExtra = 2;       // "Presente campo/i comando in eccesso"
constexpr int CheckFields = 4;       // "Controllare i campi del comando"
constexpr int Unsupported = 6;       // "Comando non supportato"
constexpr int NoPlu = 7;             // "Il PLU non esiste"
constexpr int NoDepartment = 8;      // "Il reparto non esiste"
constexpr int BadVat = 9;            // "Aliquota IVA errata"
constexpr int NoPayment = 12;        // "Pagamento inesistente"
constexpr int NoFiscalRecord = 13;   // "The requested Fiscal record doesn't exist"
constexpr int ReceiptIsOpen = 20;    // "Scontrino fiscale aperto"
constexpr int PaymentInvalid = 21;   // "Pagamento non valido"
constexpr int BadPrice = 24;         // "Errore prezzo"
constexpr int Busy = 26;             // "Busy, reinvia il comando"
constexpr int InvalidSale = 27;      // "Operazione di vendita non valida"
constexpr int HeaderLimit = 29;      // "Raggiunto limite massimo Intestazioni scontrino"
constexpr int PluLimit = 34;         // "Raggiunto limite massimo PLU registrabili"
constexpr int BmpData = 35;          // "Errore nell'invio dei dati BMP"
constexpr int BmpIndex = 36;         // "The BMP index number doesn't exist"
constexpr int VatLimit = 43;         // "Raggiunto limite massimo aliquote IVA programmabili"
constexpr int PaperOut = 49;         // "Carta finita"
constexpr int CoverOpen = 50;        // "Portello rotolo aperto"
constexpr int BadKeyboard = 70;      // "Tastiera errata"
constexpr int BadQuantity = 100;     // "Quantità superiore al consentito"
constexpr int NegativeVat = 107;     // "Importo IVA negativo"
constexpr int NoReceipt = 108;       // "Nessuno scontrino aperto"
constexpr int NotAllowed = 110;      // "Action is not allowed"
constexpr int NegativeTotal = 112;   // "Totale negativo non permesso"
constexpr int ZeroSale = 124;        // "Vendita con importo zero non permessa"

} // namespace kelm::sim::err
