#include "technician/TestReceipts.h"

#include "app/ServerDirectory.h"
#include "link/CodePage.h"

#include <QStringList>

namespace kelm::technician {

namespace {

struct TestReceipt {
    QString caption;
    QStringList records;
};

// The printed notice: the same three records five times, then "m//".
constexpr int kPrintedNoticeRepeats = 5;

QStringList printedNoticeRecords()
{
    QStringList records;
    for (int i = 0; i < kPrintedNoticeRepeats; ++i)
        records << QStringLiteral("7/1/1/##PROMEMORIA##/") << QStringLiteral("7/1/0/#SVUOTA-CASSA#/")
                << QStringLiteral("w/1/1//");
    return records << QStringLiteral("m//");
}

// Fixed sample data, blanks and all.
std::optional<TestReceipt> testReceipt(int index)
{
    switch (index) {
    case 1:
        return TestReceipt{QStringLiteral("Avviso Display"),
                           {QStringLiteral("7/0/1/##PROMEMORIA##/"), QStringLiteral("7/0/0/#SVUOTA-CASSA#/")}};
    case 2:
        return TestReceipt{QStringLiteral("Reso Merce"),
                           {QStringLiteral("3/S/REPARTO1//1/5.26/1/4/"), QStringLiteral("3/S/REPARTO1//1/2.18/1/4/"),
                            QStringLiteral("U/"), QStringLiteral("3/R/REPARTO1//1/7.43/1/4/"),
                            QStringLiteral("5/1/0.00/////")}};
    case 3:
        return TestReceipt{QStringLiteral("Avviso Stampato"), printedNoticeRecords()};
    case 4:
        return TestReceipt{
            QStringLiteral("Fattura"),
            {QStringLiteral("3/F/OPEN//1/1/1/4/"), QStringLiteral("3/S/REPARTO 1//1/80/1/4/"),
             QStringLiteral("3/S/REPARTO 1//1/70/1/4/"), QStringLiteral("'/1/01234567897/1111111111111111/"),
             QStringLiteral("j//INTESTAZIONE CLIENTE/VIA  _______ N.3/00100 CITTANOVA (XX)//////0/"),
             QStringLiteral("5/1/0.00/////")}};
    case 5:
        return TestReceipt{QStringLiteral("Nota di Credito"),
                           {QStringLiteral("-/123-2010/"),
                            QStringLiteral("3/N/CAMICIA ROSSA/rif.sco.123del010109/1/1/1/4/"),
                            QStringLiteral("5/1/0.00/////")}};
    case 6:
        return TestReceipt{QStringLiteral("Scontrino"),
                           {QStringLiteral("3/S/Coca Cola 1,70/second , descr/1/25.88/1/4/"),
                            QStringLiteral("3/S/REPARTO2//1/25.88/2/10/"), QStringLiteral("3/S/REPARTO3//1/7.33/3/20/"),
                            QStringLiteral("4/10.00///0/0/0//"), QStringLiteral("5/1/0.00/////")}};
    default:
        return std::nullopt;
    }
}

} // namespace

QString testReceiptCaption(int index)
{
    const std::optional<TestReceipt> receipt = testReceipt(index);
    return receipt ? receipt->caption : QString();
}

QByteArray testReceiptFile(int index)
{
    const std::optional<TestReceipt> receipt = testReceipt(index);
    if (!receipt)
        return {};
    QByteArray file;
    for (const QString& record : receipt->records)
        file += ansi::encode(record) + "\r\n";
    return file;
}

Question testReceiptQuestion()
{
    return {QStringLiteral("Consigliamo, prima di emettere \r"
                           "scontrini di prova, di \r"
                           "entrare in modalità apprendimento.\r"
                           "Vuoi continuare?"),
            QStringLiteral("Attenzione"), Operator::Icon::Question, {Operator::Button::Yes, Operator::Button::No},
            Operator::Button::Yes, Operator::Button::Yes};
}

std::optional<QString> testReceiptPath(const QString& serverDir, const QString& serverFile)
{
    if (serverDir.size() < 2)
        return std::nullopt;
    // Long enough, so the prefix never falls back to another directory.
    return serverDirectoryPrefix(serverDir, QString()) + serverFile;
}

} // namespace kelm::technician
