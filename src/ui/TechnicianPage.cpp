#include "ui/TechnicianPage.h"

#include "technician/EndOfDay.h"
#include "technician/LastReceiptReprint.h"
#include "technician/TestReceipts.h"
#include "technician/VirtualKeyboard.h"
#include "ui/Widgets.h"

#include <QFontDatabase>
#include <QGridLayout>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QPlainTextEdit>
#include <QVBoxLayout>

namespace kelm::ui {

namespace {

// The technician's keypad: digits, department keys and the keys that close
// a sale, with the register's own key codes.
struct PadKey {
    const char* caption;
    int code;
};
constexpr PadKey kPad[] = {{"7", 61}, {"8", 62}, {"9", 70}, {"CL", 118}, {"4", 37}, {"5", 46},
                           {"6", 54}, {"x", 34}, {"1", 22}, {"2", 30}, {"3", 38}, {"Sub Totale", 102},
                           {"0", 69}, {",", 73}, {"REP-01", 5}, {"Contanti", 90}};

QGroupBox* buttonFrame(const QString& title, const QList<QPushButton*>& buttons)
{
    auto* box = new QGroupBox(title);
    auto* layout = new QVBoxLayout(box);
    for (QPushButton* b : buttons)
        layout->addWidget(b);
    layout->addStretch();
    return box;
}

} // namespace

TechnicianPage::TechnicianPage(QWidget* parent)
    : QWidget(parent), txtVirtDSP_0(named<QLineEdit>(QStringLiteral("txtVirtDSP_0"))),
      txtVirtDSP_1(named<QLineEdit>(QStringLiteral("txtVirtDSP_1"))),
      txtSingleCMD(named<QLineEdit>(QStringLiteral("txtSingleCMD"))),
      txtFileCMD(named<QLineEdit>(QStringLiteral("txtFileCMD"))),
      txtAnswerCMD(named<QPlainTextEdit>(QStringLiteral("txtAnswerCMD")))
{
    setObjectName(QStringLiteral("pageTecnico"));
    const QFont fixed = QFontDatabase::systemFont(QFontDatabase::FixedFont);
    for (QLineEdit* d : {txtVirtDSP_0, txtVirtDSP_1}) {
        d->setReadOnly(true);
        d->setFont(fixed);
    }
    // The answer whole, wrapped, however long the register's record.
    txtAnswerCMD->setReadOnly(true);
    txtAnswerCMD->setFont(fixed);
    txtAnswerCMD->setLineWrapMode(QPlainTextEdit::WidgetWidth);
    txtAnswerCMD->setWordWrapMode(QTextOption::WrapAnywhere);
    txtAnswerCMD->setFixedHeight(txtAnswerCMD->fontMetrics().lineSpacing() * 4 + 12);

    auto* keypad = new QGroupBox(QStringLiteral("Tastiera"));
    auto* keypadLayout = new QVBoxLayout(keypad);
    keypadLayout->addWidget(txtVirtDSP_0);
    keypadLayout->addWidget(txtVirtDSP_1);
    auto* keys = new QGridLayout;
    for (int i = 0; i < int(std::size(kPad)); ++i) {
        auto* b = namedButton(indexed(QStringLiteral("cmdVirtKBD"), i), QString::fromUtf8(kPad[i].caption));
        b->setProperty("Tag", kPad[i].code);
        keys->addWidget(b, i / 4, i % 4);
        connect(b, &QPushButton::clicked, this, [this, code = kPad[i].code] { Q_EMIT cmdVirtKBD_Click(code); });
    }
    keypadLayout->addLayout(keys);
    auto* prelievi = namedButton(QStringLiteral("Command1"), technician::kPrelieviCaption);
    keypadLayout->addWidget(prelievi);

    auto* console = new QGroupBox(QStringLiteral("Comandi"));
    auto* consoleLayout = new QGridLayout(console);
    auto* sendOne = namedButton(indexed(QStringLiteral("cmdSendCommand"), 0), QStringLiteral("Invia"));
    auto* chooseFile = namedButton(QStringLiteral("cmdTechFile"), QStringLiteral("..."));
    auto* sendFile = namedButton(indexed(QStringLiteral("cmdSendCommand"), 1), QStringLiteral("Esegui file"));
    auto* clearAnswer = namedButton(QStringLiteral("cmdTechCancAnswer"), QStringLiteral("Cancella"));
    consoleLayout->addWidget(new QLabel(QStringLiteral("Comando")), 0, 0);
    consoleLayout->addWidget(txtSingleCMD, 0, 1, 1, 2);
    consoleLayout->addWidget(sendOne, 0, 3);
    consoleLayout->addWidget(new QLabel(QStringLiteral("File")), 1, 0);
    consoleLayout->addWidget(txtFileCMD, 1, 1);
    consoleLayout->addWidget(chooseFile, 1, 2);
    consoleLayout->addWidget(sendFile, 1, 3);
    consoleLayout->addWidget(new QLabel(QStringLiteral("Risposta")), 2, 0);
    consoleLayout->addWidget(txtAnswerCMD, 2, 1, 1, 2);
    consoleLayout->addWidget(clearAnswer, 2, 3);

    auto* closure = namedButton(indexed(QStringLiteral("cmdChiusuraGIornaliera"), 1), technician::kDailyClosureCaption);
    auto* totals = namedButton(indexed(QStringLiteral("cmdReportVenditeOP01"), 1), technician::kSalesTotalsCaption);
    QList<QPushButton*> journal;
    for (int i = 0; i < 4; ++i) {
        journal << namedButton(indexed(QStringLiteral("cmdDGFE"), i),
                               i == 0 ? technician::kReprintCaption : QStringLiteral("TBD"));
        connect(journal.back(), &QPushButton::clicked, this, [this, i] { Q_EMIT cmdDGFE_Click(i); });
    }
    // Functions of a later version: the buttons are there and do nothing yet.
    const QList<QPushButton*> special = {
        namedButton(indexed(QStringLiteral("cmdMessaInServizio"), 0), QStringLiteral("Informazioni")),
        namedButton(indexed(QStringLiteral("cmdMessaInServizio"), 1), QStringLiteral("Imposta Data/Ora")),
        namedButton(indexed(QStringLiteral("cmdMessaInServizio"), 2), QStringLiteral("Stampa Modulo AE")),
        namedButton(QStringLiteral("cmdApprendimento"), QStringLiteral("Metti/Togli modalità apprendimento"))};
    QList<QPushButton*> demo;
    for (int i = technician::kFirstTestReceipt; i <= technician::kLastTestReceipt; ++i) {
        demo << namedButton(indexed(QStringLiteral("cmdDemoTicket"), i), technician::testReceiptCaption(i));
        connect(demo.back(), &QPushButton::clicked, this, [this, i] { Q_EMIT cmdDemoTicket_Click(i); });
    }

    auto* frames = new QHBoxLayout;
    frames->addWidget(buttonFrame(QStringLiteral("Operazioni di Chiusura"), {closure, totals}));
    frames->addWidget(buttonFrame(QStringLiteral("Controllo da Finanza"), journal));
    frames->addWidget(buttonFrame(QStringLiteral("Funzioni Speciali"), special));
    frames->addWidget(buttonFrame(QStringLiteral("Demo/Test"), demo));

    auto* top = new QHBoxLayout;
    top->addWidget(keypad);
    top->addWidget(console, 1);
    auto* layout = new QVBoxLayout(this);
    layout->addLayout(top);
    layout->addLayout(frames);
    layout->addStretch();

    connect(prelievi, &QPushButton::clicked, this, &TechnicianPage::Command1_Click);
    connect(sendOne, &QPushButton::clicked, this, [this] { Q_EMIT cmdSendCommand_Click(0); });
    connect(txtSingleCMD, &QLineEdit::returnPressed, this, [this] { Q_EMIT cmdSendCommand_Click(0); });
    connect(sendFile, &QPushButton::clicked, this, [this] { Q_EMIT cmdSendCommand_Click(1); });
    connect(chooseFile, &QPushButton::clicked, this, &TechnicianPage::cmdTechFile_Click);
    connect(clearAnswer, &QPushButton::clicked, txtAnswerCMD, &QPlainTextEdit::clear);
    connect(closure, &QPushButton::clicked, this, &TechnicianPage::cmdChiusuraGIornaliera_Click);
    connect(totals, &QPushButton::clicked, this, &TechnicianPage::cmdReportVenditeOP01_Click);
}

void TechnicianPage::setDisplay(const QString& line1, const QString& line2)
{
    txtVirtDSP_0->setText(line1);
    txtVirtDSP_1->setText(line2);
}

QString TechnicianPage::singleCommand() const
{
    return txtSingleCMD->text();
}

QString TechnicianPage::commandFile() const
{
    return txtFileCMD->text();
}

void TechnicianPage::setCommandFile(const QString& path)
{
    txtFileCMD->setText(path);
}

void TechnicianPage::setAnswer(const QString& text)
{
    txtAnswerCMD->setPlainText(text);
}

void TechnicianPage::focusConsole()
{
    txtSingleCMD->setFocus();
}

} // namespace kelm::ui
