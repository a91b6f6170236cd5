// The register's error table: every number with its exact text and class,
// and the two ways the status digits are read.
#include "link/EcrErrors.h"

#include <QSet>
#include <QTest>

using namespace kelm;

namespace {

struct Expected {
    const char* status;
    int errorClass;
    const char16_t* message;
};

// Status digits as the register sends them, with the text users must see.
const Expected kTable[] = {
    {"01", 2, u"Campi del comando insufficienti"},
    {"02", 2, u"Presente campo/i comando in eccesso"},
    {"03", 2, u"Un campo del comando e' troppo corto"},
    {"04", 2, u"Controllare i campi del comando"},
    {"05", 2, u"Controllare i campi del comando"},
    {"06", 2, u"Comando non supportato"},
    {"07", 2, u"Il PLU non esiste"},
    {"08", 2, u"Il reparto non esiste"},
    {"09", 2, u"Aliquota IVA errata"},
    {"0A", 2, u"Numero operatore inesistente"},
    {"0B", 2, u"Password operatore errata"},
    {"0C", 2, u"Pagamento inesistente"},
    {"0D", 2, u"The requested Fiscal record doesn’t exist"},
    {"0E", 2, u"The requested Fiscal record type doesn’t exist"},
    {"0F", 2, u"Printing type error"},
    {"10", 2, u"Giornata aperta, effettuare azzeramento Z1"},
    {"11", 2, u"Disconnect Jumpers first"},
    {"12", 2, u"Data-Ora errata"},
    {"13", 2, u"CAN NOT PERFORM SALES"},
    {"14", 2, u"Scontrino fiscale aperto"},
    {"15", 2, u"Pagamento non valido"},
    {"16", 2, u"Entrate - Prelievi in corso"},
    {"17", 2, u"Aliquota IVA errata, controllare corrispondenza IVA-Reparto"},
    {"18", 2, u"Errore prezzo"},
    {"19", 2, u"Protocollo ONLINE attivo"},
    {"1A", 1, u"Busy, reinvia il comando"},
    {"1B", 2, u"Operazione di vendita non valida"},
    {"1C", 2, u"Sconto - Aumento non valido"},
    {"1D", 9, u"Raggiunto limite massimo Intestazioni scontrino"},
    {"1E", 2, u"A user’s report is open"},
    {"1F", 2, u"A user’s report is open"},
    {"20", 2, u"The Fiscal Memory has no transactions"},
    {"21", 2, u"Numero Sconto - Aumento non valido"},
    {"22", 2, u"Raggiunto limite massimo PLU registrabili"},
    {"23", 2, u"Errore nell'invio dei dati BMP"},
    {"24", 2, u"The BMP index number doesn’t exist"},
    {"25", 2, u"Numero categoria inesistente"},
    {"26", 2, u"Printer ID index error"},
    {"27", 2, u"Error printing type"},
    {"28", 2, u"Unit ID index error"},
    {"29", 2, u"Impossibile effettuare ulteriori vendite"},
    {"2A", 9, u"Errore tastiera - Tastiera scollegata"},
    {"2B", 9, u"Raggiunto limite massimo aliquote IVA programmabili"},
    {"2C", 9, u"Errore Giornale elettronico"},
    {"2D", 9, u"giornale elettronico scollegato"},
    {"2E", 9, u"Giornale elettronico non formattato"},
    {"2F", 9, u"Compact Flash Serial Number mismatch error"},
    {"30", 9, u"Compact Flash Index Number mismatch error"},
    {"31", 4, u"Carta finita"},
    {"32", 4, u"Portello rotolo aperto"},
    {"33", 2, u"There is a printer’s timeout"},
    {"34", 9, u"Stampante scollegata"},
    {"35", 9, u"Errore taglierina"},
    {"36", 9, u"Memoria fiscale scollegata"},
    {"37", 9, u"Fatal error"},
    {"38", 2, u"Posizionare la chiave in EMISSIONE RICEVUTA"},
    {"39", 9, u"Problema batteria tampone"},
    {"3A", 9, u"Jumpers ancora inseriti. Rimuovere jumpers"},
    {"3B", 9, u"Errore giornale elettronico"},
    {"3C", 9, u"Giornale elettronico pieno"},
    {"3D", 9, u"Data - ora errate"},
    {"3E", 2, u"Barcode errato"},
    {"3F", 2, u"Bonus index error (>20)"},
    {"40", 2, u"Client can not have credit and balance amount"},
    {"41", 2, u"Invalid add/delete parameter"},
    {"42", 2, u"Cliente non trovato"},
    {"43", 2, u"Database clienti pieno"},
    {"44", 2, u"Errore database clienti"},
    {"45", 2, u"Cliente rimosso"},
    {"46", 2, u"Tastiera errata"},
    {"47", 9, u"Stampante surriscaldata"},
    {"50", 2, u"Parola (TOTALE) non ammessa"},
    {"64", 2, u"Quantità superiore al consentito"},
    {"65", 2, u"Importo superiore al consentito"},
    {"66", 2, u"PLU inesistente"},
    {"67", 2, u"Reparto inesistente"},
    {"68", 2, u"Scontrino aperto"},
    {"69", 2, u"Entrata di cassa in corso"},
    {"6A", 2, u"Prelievo di cassa in corso"},
    {"6B", 2, u"Importo IVA negativo"},
    {"6C", 2, u"Nessuno scontrino aperto"},
    {"6D", 2, u"No transactions in the receipt ."},
    {"6E", 2, u"Action is not allowed"},
    {"6F", 2, u"The total payment amount must be inserted first"},
    {"70", 2, u"Totale negativo non permesso"},
    {"71", 2, u"Richiesto SUBTOTALE prima"},
    {"72", 2, u"Modifica non consentita"},
    {"73", 2, u"Scontrino aperto"},
    {"74", 2, u"There is an open CASH IN/OUT."},
    {"75", 2, u"There is not an open CASH IN."},
    {"76", 2, u"There is not an open CASH OUT."},
    {"77", 2, u"Codice pagamento errato"},
    {"78", 2, u"Codice reparto errato"},
    {"79", 2, u"Ticket’s decimal quantity is not allowed."},
    {"7A", 2, u"Sconto - aumento a zero non consentito"},
    {"7B", 2, u"Raggiunto limite sconto - aumento"},
    {"7C", 2, u"Vendita con importo zero non permessa"},
    {"7D", 2, u"Reparto - PLU non attivi"},
    {"7E", 2, u"Raggiunto l'importo massimo per totale scontrino"},
    {"7F", 2, u"Raggiunto l'importo massimo"},
    {"80", 2, u"Coupon discount in subtotal is not allowed."},
};

} // namespace

class EcrErrorsTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void everyNumberOfTheTable_data();
    void everyNumberOfTheTable();
    void outsideTheTable_data();
    void outsideTheTable();
    void exactlyTheTableIsKnown();
    void commandErrorText_data();
    void commandErrorText();
    void hexDigitValue_data();
    void hexDigitValue();
};

void EcrErrorsTest::everyNumberOfTheTable_data()
{
    QTest::addColumn<QString>("status");
    QTest::addColumn<int>("errorClass");
    QTest::addColumn<QString>("message");
    for (const Expected& e : kTable)
        QTest::newRow(e.status) << QString::fromLatin1(e.status) << e.errorClass
                                << QString::fromUtf16(e.message);
}

void EcrErrorsTest::everyNumberOfTheTable()
{
    QFETCH(QString, status);
    QFETCH(int, errorClass);
    QFETCH(QString, message);
    QString text = QStringLiteral("stale");
    QCOMPARE(int(EcrErrorMessage(status, text)), errorClass);
    QCOMPARE(text, message);
    // Lower-case hexadecimal reads the same here.
    QCOMPARE(int(EcrErrorMessage(status.toLower(), text)), errorClass);
    QCOMPARE(text, message);
}

void EcrErrorsTest::outsideTheTable_data()
{
    QTest::addColumn<QString>("status");
    QTest::newRow("success") << "00";
    QTest::newRow("empty status") << "";
    QTest::newRow("72, in the gap after 71") << "48";
    QTest::newRow("79, last of the gap") << "4F";
    QTest::newRow("81, after 80") << "51";
    QTest::newRow("99, before 100") << "63";
    QTest::newRow("129, past the end") << "81";
    QTest::newRow("255") << "FF";
    QTest::newRow("not hexadecimal") << "ZZ";
}

void EcrErrorsTest::outsideTheTable()
{
    QFETCH(QString, status);
    QString text = QStringLiteral("stale");
    QCOMPARE(int(EcrErrorMessage(status, text)), 0);
    QCOMPARE(text, QString());
}

void EcrErrorsTest::exactlyTheTableIsKnown()
{
    QSet<int> known;
    for (int n = 0; n < 256; ++n) {
        QString text;
        if (EcrErrorMessage(QString::number(n, 16), text) != 0 || !text.isEmpty())
            known.insert(n);
    }
    QCOMPARE(known.size(), 101);
}

void EcrErrorsTest::commandErrorText_data()
{
    QTest::addColumn<QString>("status");
    QTest::addColumn<QString>("command");
    QTest::addColumn<QString>("number");
    QTest::addColumn<QString>("text");
    QTest::newRow("busy on the closure") << "1A" << "x/7/0/0/" << "26"
                                         << "Comando 'x/7/0/0/' - Errore N. 26";
    QTest::newRow("lower-case letter counts as 0") << "1a" << "x/7/0/0/" << "16"
                                                   << "Comando 'x/7/0/0/' - Errore N. 16";
    QTest::newRow("no padding") << "08" << "3/S/A//1/1/1/1/" << "8"
                                << "Comando '3/S/A//1/1/1/1/' - Errore N. 8";
    QTest::newRow("paper out") << "31" << "5/1/" << "49" << "Comando '5/1/' - Errore N. 49";
    QTest::newRow("128") << "80" << "a/" << "128" << "Comando 'a/' - Errore N. 128";
}

void EcrErrorsTest::commandErrorText()
{
    QFETCH(QString, status);
    QFETCH(QString, command);
    QFETCH(QString, number);
    QFETCH(QString, text);
    QCOMPARE(CommandErrorText(status, command), text);
    QCOMPARE(status, number);
}

void EcrErrorsTest::hexDigitValue_data()
{
    QTest::addColumn<QChar>("digit");
    QTest::addColumn<int>("value");
    QTest::newRow("0") << QChar(u'0') << 0;
    QTest::newRow("9") << QChar(u'9') << 9;
    QTest::newRow("A") << QChar(u'A') << 10;
    QTest::newRow("F") << QChar(u'F') << 15;
    QTest::newRow("a") << QChar(u'a') << 0;
    QTest::newRow("G") << QChar(u'G') << 0;
    QTest::newRow("/") << QChar(u'/') << 0;
}

void EcrErrorsTest::hexDigitValue()
{
    QFETCH(QChar, digit);
    QFETCH(int, value);
    QCOMPARE(int(HexDigitValue(digit)), value);
}

QTEST_APPLESS_MAIN(EcrErrorsTest)
#include "tst_link_errors.moc"
