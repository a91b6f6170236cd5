#include "ui/FrmNCred.h"

#include "ui/EditorRules.h"
#include "ui/Widgets.h"

#include <QFormLayout>
#include <QHBoxLayout>
#include <QVBoxLayout>

namespace kelm::ui {

using namespace technician;

FrmNCred::FrmNCred(FiscalDocuments& documents, QWidget* parent)
    : QDialog(parent), documents_(documents), TxtPratica(named<QLineEdit>(QStringLiteral("TxtPratica"))),
      TxtRifer(named<QLineEdit>(QStringLiteral("TxtRifer")))
{
    setObjectName(QStringLiteral("FrmNCred"));
    setWindowTitle(kCreditNoteCaption);
    makeDocumentBox(TxtPratica, DocumentBox::Pratica);
    makeDocumentBox(TxtRifer, DocumentBox::Riferimento);
    auto* form = new QFormLayout;
    form->addRow(kPraticaLabel, TxtPratica);
    form->addRow(kRiferimentoLabel, TxtRifer);
    auto* cancel = namedButton(indexed(QStringLiteral("CmdChiude"), 0), kCancelCaption);
    auto* ok = namedButton(indexed(QStringLiteral("CmdChiude"), 1), kOkCaption);
    ok->setDefault(true);
    auto* buttons = new QHBoxLayout;
    buttons->addStretch();
    buttons->addWidget(cancel);
    buttons->addWidget(ok);
    auto* layout = new QVBoxLayout(this);
    layout->addLayout(form);
    layout->addLayout(buttons);
    connect(cancel, &QPushButton::clicked, this, [this] { CmdChiude_Click(0); });
    connect(ok, &QPushButton::clicked, this, [this] { CmdChiude_Click(kAcceptButton); });
}

void FrmNCred::CmdChiude_Click(int index)
{
    creditNoteButton(documents_, index, TxtPratica->text(), TxtRifer->text());
    index == kAcceptButton ? accept() : reject();
}

} // namespace kelm::ui
