#include "ui/HeaderFooterPage.h"

#include "programming/PrintLine.h"
#include "ui/DlgPreviewIntestazione.h"
#include "ui/EditorRules.h"

#include <QComboBox>
#include <QFontDatabase>
#include <QGridLayout>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QVBoxLayout>

namespace kelm::ui {

using programming::HeaderLine;
using programming::ReceiptLines;

namespace {

QPushButton* button(const QString& text, const QString& name)
{
    auto* b = new QPushButton(text);
    b->setObjectName(name);
    return b;
}

} // namespace

HeaderFooterPage::HeaderFooterPage(QWidget* parent) : QWidget(parent)
{
    setObjectName(QStringLiteral("pageIntestazione"));
    QFont fixed = QFontDatabase::systemFont(QFontDatabase::FixedFont);
    auto addLines = [&](QList<LineEditors>& editors, int count, const QString& prefix, QGridLayout* grid) {
        for (int i = 0; i < count; ++i) {
            LineEditors e{new QLineEdit, new QComboBox, new QComboBox};
            e.text->setObjectName(QStringLiteral("txt%1Text_%2").arg(prefix).arg(i));
            e.text->setFont(fixed);
            e.text->setMinimumWidth(e.text->fontMetrics().horizontalAdvance(QString(33, u'M')));
            makeSlashSafe(e.text);
            e.size->setObjectName(QStringLiteral("cmb%1Font_%2").arg(prefix).arg(i));
            e.size->addItems(programming::printSizeItems());
            e.align->setObjectName(QStringLiteral("cmb%1Align_%2").arg(prefix).arg(i));
            e.align->addItems(programming::printAlignmentItems());
            grid->addWidget(new QLabel(QString::number(i + 1)), i, 0);
            grid->addWidget(e.text, i, 1);
            grid->addWidget(e.size, i, 2);
            grid->addWidget(e.align, i, 3);
            editors.append(e);
        }
    };

    auto* headerBox = new QGroupBox(QStringLiteral("Intestazione"));
    auto* headerGrid = new QGridLayout;
    addLines(header_, int(programming::kHeaderLines), QStringLiteral("Header"), headerGrid);
    auto* headerButtons = new QHBoxLayout;
    auto* download0 = button(QStringLiteral("Scarica intestazione"), QStringLiteral("cmdSetParametri_0"));
    auto* recHeader = button(QStringLiteral("Recupera da file ini"), QStringLiteral("cmdRecHeader"));
    auto* preview = button(QStringLiteral("Anteprima..."), QStringLiteral("cmdPreviewIntestazione"));
    headerButtons->addWidget(download0);
    headerButtons->addWidget(recHeader);
    headerButtons->addWidget(preview);
    headerButtons->addStretch();
    auto* headerLayout = new QVBoxLayout(headerBox);
    headerLayout->addLayout(headerGrid);
    headerLayout->addLayout(headerButtons);

    auto* footerBox = new QGroupBox(QStringLiteral("Piede"));
    auto* footerGrid = new QGridLayout;
    addLines(footer_, int(programming::kFooterLines), QStringLiteral("Footer"), footerGrid);
    auto* footerButtons = new QHBoxLayout;
    auto* download1 = button(QStringLiteral("Scarica piede"), QStringLiteral("cmdSetParametri_1"));
    auto* readPiede = button(QStringLiteral("Recupera da file ini"), QStringLiteral("cmdReadPiede"));
    footerButtons->addWidget(download1);
    footerButtons->addWidget(readPiede);
    footerButtons->addStretch();
    auto* footerLayout = new QVBoxLayout(footerBox);
    footerLayout->addLayout(footerGrid);
    footerLayout->addLayout(footerButtons);

    auto* layout = new QVBoxLayout(this);
    layout->addWidget(headerBox);
    layout->addWidget(footerBox);
    layout->addStretch();

    connect(download0, &QPushButton::clicked, this, [this] { Q_EMIT downloadRequested(0); });
    connect(download1, &QPushButton::clicked, this, [this] { Q_EMIT downloadRequested(1); });
    connect(recHeader, &QPushButton::clicked, this, &HeaderFooterPage::cmdRecHeader_Click);
    connect(readPiede, &QPushButton::clicked, this, &HeaderFooterPage::cmdReadPiede_Click);
    connect(preview, &QPushButton::clicked, this, [this] {
        DlgPreviewIntestazione dialog(lines(ReceiptLines::Header), this);
        dialog.exec();
    });
}

QList<HeaderLine> HeaderFooterPage::lines(ReceiptLines kind) const
{
    QList<HeaderLine> out;
    for (const LineEditors& e : kind == ReceiptLines::Header ? header_ : footer_)
        out.append({e.text->text(), e.size->currentIndex(), e.align->currentIndex()});
    return out;
}

void HeaderFooterPage::restore(ReceiptLines kind, const QList<programming::RestoredLine>& lines)
{
    const QList<LineEditors>& editors = kind == ReceiptLines::Header ? header_ : footer_;
    for (qsizetype i = 0; i < qMin(editors.size(), lines.size()); ++i) {
        const programming::RestoredLine& r = lines[i];
        if (r.fields > 0)
            editors[i].align->setCurrentIndex(r.line.align);
        if (r.fields > 1)
            editors[i].size->setCurrentIndex(r.line.size);
        if (r.fields > 2)
            editors[i].text->setText(r.line.text);
    }
}

} // namespace kelm::ui
