#include "ui/UsoEcrPage.h"

#include "technician/EndOfDay.h"
#include "technician/VirtualKeyboard.h"
#include "ui/Widgets.h"

#include <QFontDatabase>
#include <QHash>
#include <QShortcut>
#include <QGridLayout>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QVBoxLayout>

namespace kelm::ui {

namespace {

QLabel* displayLine(const QString& name)
{
    auto* label = named<QLabel>(name);
    QFont font = QFontDatabase::systemFont(QFontDatabase::FixedFont);
    font.setPointSize(16);
    font.setBold(true);
    label->setFont(font);
    label->setStyleSheet(QStringLiteral("background: #102010; color: #7CFC00; padding: 2px 8px;"));
    label->setText(QString(16, u' '));
    return label;
}

// The keys laid out as on a register: the numeric block, the department
// keys together, the payment keys apart, the function keys around them.
// Each block is a grid of key indices, -1 leaving a place empty, in one of
// two rows: the departments and payments under the function keys and the
// numeric block, so that the keyboard fits a 1024-pixel screen beside the
// virtual ECR without scrolling sideways.
struct KeyBlock {
    const char* title;
    int row;
    int columns;
    std::initializer_list<int> keys;
};
const KeyBlock kBlocks[] = {
    {"Funzioni", 0, 4, {0, 1, 2, 3, 4, 5, 6, 33, 8, 9, 10, 11, 37, 27, 25, 13, 47, -1, 48, 50, -1, 46, 44, 45}},
    {"Tastierino", 0, 4, {14, 15, 24, 7, 16, 17, 20, 12, 18, 19, 22, 49, 21, 23, 26, -1}},
    {"Reparti", 1, 3, {41, 38, 35, 32, 42, 39}},
    {"Pagamenti", 1, 2, {40, 34, 36, 43}},
};

// The PC's keys that press a key of the register on this page.
struct PcKey {
    int key;
    int index;
};
constexpr PcKey kPcKeys[] = {
    {Qt::Key_0, 21}, {Qt::Key_1, 18}, {Qt::Key_2, 19}, {Qt::Key_3, 22}, {Qt::Key_4, 16},
    {Qt::Key_5, 17}, {Qt::Key_6, 20}, {Qt::Key_7, 14}, {Qt::Key_8, 15}, {Qt::Key_9, 24},
    {Qt::Key_Comma, 26}, {Qt::Key_Period, 26}, {Qt::Key_Return, 50}, {Qt::Key_Enter, 50}, {Qt::Key_Backspace, 49},
};

} // namespace

UsoEcrPage::UsoEcrPage(QWidget* parent)
    : QWidget(parent), LblDisp1_0(displayLine(QStringLiteral("LblDisp1_0"))),
      LblDisp1_1(displayLine(QStringLiteral("LblDisp1_1")))
{
    setObjectName(QStringLiteral("pageUsoEcr"));
    auto* display = new QVBoxLayout;
    display->setSpacing(0);
    display->addWidget(LblDisp1_0);
    display->addWidget(LblDisp1_1);

    QHBoxLayout* keyRows[] = {new QHBoxLayout, new QHBoxLayout};
    QHash<int, QPushButton*> buttons;
    for (const technician::EcrKey& key : technician::ecrKeys()) {
        auto* button = namedButton(indexed(QStringLiteral("cmdECR"), key.index), key.caption);
        // As wide as the caption, not the style's wider floor for buttons:
        // a digit key needs no more room than a digit.
        button->setMinimumSize(button->fontMetrics().horizontalAdvance(key.caption) + 16, 36);
        button->setProperty("Tag", key.code);
        buttons.insert(key.index, button);
        connect(button, &QPushButton::clicked, this, [this, index = key.index] { Q_EMIT cmdECR_Click(index); });
    }
    for (const KeyBlock& block : kBlocks) {
        auto* box = new QGroupBox(QString::fromUtf8(block.title));
        auto* grid = new QGridLayout(box);
        int slot = 0;
        for (int index : block.keys) {
            if (QPushButton* button = buttons.value(index))
                grid->addWidget(button, slot / block.columns, slot % block.columns);
            ++slot;
        }
        grid->setRowStretch(grid->rowCount(), 1);
        keyRows[block.row]->addWidget(box, block.columns);
    }
    // Keypad keys count as well: digits typed on either part of the keyboard.
    for (const PcKey& pc : kPcKeys)
        for (const int modifier : {0, int(Qt::KeypadModifier)}) {
            auto* shortcut = new QShortcut(QKeySequence(pc.key | modifier), this);
            connect(shortcut, &QShortcut::activated, buttons.value(pc.index), &QPushButton::click);
        }

    auto* documents = new QGroupBox(QStringLiteral("Documenti"));
    auto* documentButtons = new QHBoxLayout(documents);
    auto* fat = namedButton(QStringLiteral("CmdFat"), QStringLiteral("FATTURA"));
    auto* credit = namedButton(QStringLiteral("CmdNotaCredito"), QStringLiteral("Nota Cred."));
    auto* piCf = namedButton(QStringLiteral("CmdCfPi"), QStringLiteral("Scontrino Parlante"));
    for (QPushButton* b : {fat, credit, piCf})
        documentButtons->addWidget(b);

    auto* closing = new QGroupBox(QStringLiteral("Operazioni di Chiusura"));
    auto* closingButtons = new QHBoxLayout(closing);
    auto* closure = namedButton(indexed(QStringLiteral("cmdChiusuraGIornaliera"), 0), technician::kDailyClosureCaption);
    auto* totals = namedButton(indexed(QStringLiteral("cmdReportVenditeOP01"), 0), technician::kSalesTotalsCaption);
    closingButtons->addWidget(closure);
    closingButtons->addWidget(totals);

    auto* side = new QHBoxLayout;
    side->addWidget(documents);
    side->addWidget(closing);

    auto* layout = new QVBoxLayout(this);
    layout->addLayout(display);
    for (QHBoxLayout* row : keyRows)
        layout->addLayout(row);
    layout->addLayout(side);
    layout->addStretch();

    connect(fat, &QPushButton::clicked, this, &UsoEcrPage::CmdFat_Click);
    connect(credit, &QPushButton::clicked, this, &UsoEcrPage::CmdNotaCredito_Click);
    connect(piCf, &QPushButton::clicked, this, &UsoEcrPage::CmdCfPi_Click);
    connect(closure, &QPushButton::clicked, this, &UsoEcrPage::cmdChiusuraGIornaliera_Click);
    connect(totals, &QPushButton::clicked, this, &UsoEcrPage::cmdReportVenditeOP01_Click);
}

void UsoEcrPage::setDisplay(const QString& line1, const QString& line2)
{
    LblDisp1_0->setText(line1);
    LblDisp1_1->setText(line2);
}

} // namespace kelm::ui
