#include "technician/VirtualKeyboard.h"

#include "technician/DocumentCompletion.h"
#include "technician/VirtualDisplay.h"

#include <algorithm>

namespace kelm::technician {

namespace {

// Keys that share a code on the register open a choice there: "1" or "4"
// picks the amount variant, OK confirms it.
constexpr int kChoiceOneCode = 22;
constexpr int kChoiceFourCode = 37;
constexpr int kOkCode = 90;

// The keys after which the register is slower to take the next one.
constexpr int kSlowKeys[] = {5, 6, 8, 9, 10, 11};

enum KeyIndex {
    kAmountDiscount = 1,  // "SC €"
    kAmountSurcharge = 3, // "Magg €"
    kDoubleZero = 23,     // "00"
    kOtherTotal4 = 36,    // "Altro (Tot4)"
};

// The clear goes first, so that a send that fails leaves no stale answer.
void appendKey(ExchangeSteps& steps, int code)
{
    steps << ExchangeStep::clearAnswer() << ExchangeStep::transaction(keyRecord(code))
          << ExchangeStep::pause(kKeyPauseMs);
}

void appendFollowingKeys(ExchangeSteps& steps, const EcrKey& key, FiscalDocuments& documents)
{
    switch (key.index) {
    case kAmountDiscount:
        appendKey(steps, kChoiceOneCode);
        appendKey(steps, kOkCode);
        return;
    case kAmountSurcharge:
    case kOtherTotal4:
        appendKey(steps, kChoiceFourCode);
        appendKey(steps, kOkCode);
        return;
    case kDoubleZero:
        appendKey(steps, key.code);
        return;
    case kCashKeyIndex:
        steps << completeDocument(documents, key.code);
        return;
    default:
        break;
    }
    if (std::find(std::begin(kSlowKeys), std::end(kSlowKeys), key.index) != std::end(kSlowKeys))
        steps << ExchangeStep::pause(kLongPauseMs);
}

} // namespace

const QList<EcrKey>& ecrKeys()
{
    static const QList<EcrKey> keys = {
        {0, QStringLiteral("SC %"), 60},
        {1, QStringLiteral("SC €"), 67},
        {2, QStringLiteral("Magg %"), 53},
        {3, QStringLiteral("Magg €"), 67},
        {4, QStringLiteral("Entrate"), 26},
        {5, QStringLiteral("PLU"), 51},
        {6, QStringLiteral("Cassetto"), 36},
        {7, QStringLiteral("Clear"), 118},
        {8, QStringLiteral("Annullo Scontrino"), 28},
        {9, QStringLiteral("Reso Merce"), 43},
        {10, QStringLiteral("Storno"), 35},
        {11, QStringLiteral("Avanzam. Carta"), 21},
        {12, QStringLiteral("x"), 34},
        {13, QStringLiteral("Fx3"), 78},
        {14, QStringLiteral("7"), 61},
        {15, QStringLiteral("8"), 62},
        {16, QStringLiteral("4"), 37},
        {17, QStringLiteral("5"), 46},
        {18, QStringLiteral("1"), 22},
        {19, QStringLiteral("2"), 30},
        {20, QStringLiteral("6"), 54},
        {21, QStringLiteral("0"), 69},
        {22, QStringLiteral("3"), 38},
        {23, QStringLiteral("00"), 69},
        {24, QStringLiteral("9"), 70},
        {25, QStringLiteral("Fx2"), 7},
        {26, QStringLiteral(","), 73},
        {27, QStringLiteral("Fx1"), 65},
        {32, QStringLiteral("REP-04"), 12},
        {33, QStringLiteral("Operatore"), 29},
        {34, QStringLiteral("Altro (Tot3)"), 9},
        {35, QStringLiteral("REP-03"), 4},
        {36, QStringLiteral("Altro (Tot4)"), 58},
        {37, QStringLiteral("Corr. non corrisp."), 1},
        {38, QStringLiteral("REP-02"), 6},
        {39, QStringLiteral("REP-06"), 11},
        {40, QStringLiteral("Sub Totale"), 102},
        {41, QStringLiteral("REP-01"), 5},
        {42, QStringLiteral("REP-05"), 3},
        {43, QStringLiteral("Contanti"), 90},
        {44, QStringLiteral("\\/"), 114},
        {45, QStringLiteral(">"), 116},
        {46, QStringLiteral("<"), 107},
        {47, QStringLiteral("KEY"), 13},
        {48, QStringLiteral("/\\"), 117},
        {49, QStringLiteral("CL"), 118},
        {50, QStringLiteral("OK"), 90},
    };
    return keys;
}

std::optional<EcrKey> ecrKey(int index)
{
    const QList<EcrKey>& keys = ecrKeys();
    const auto key = std::find_if(keys.begin(), keys.end(), [index](const EcrKey& k) { return k.index == index; });
    if (key == keys.end())
        return std::nullopt;
    return *key;
}

QString keyRecord(int code)
{
    return QStringLiteral(")/") + QString::number(code) + u'/';
}

ExchangeSteps keyPressSteps(int index, FiscalDocuments& documents)
{
    const std::optional<EcrKey> key = ecrKey(index);
    if (!key)
        return {};
    ExchangeSteps steps;
    if (index != kCashKeyIndex || cashKeySentAsKey(documents))
        appendKey(steps, key->code);
    appendFollowingKeys(steps, *key, documents);
    steps << ExchangeStep::refreshDisplay();
    return steps;
}

ExchangeSteps keypadPressSteps(int code)
{
    return {ExchangeStep::transaction(keyRecord(code)), ExchangeStep::pause(kKeyPauseMs),
            ExchangeStep::refreshDisplay()};
}

ExchangeSteps technicianTabSteps()
{
    return {ExchangeStep::panelCommand(kDisplayReadRecord)};
}

ExchangeSteps prelieviSteps()
{
    return {ExchangeStep::clearAnswer(), ExchangeStep::transaction(kPrelieviRecord),
            ExchangeStep::pause(kKeyPauseMs)};
}

} // namespace kelm::technician
