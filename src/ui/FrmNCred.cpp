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
    auto* layout = new QVBoxLayout(this);
    layout->addLayout(form);
    layout->addLayout(closingButtons(kCancelCaption, kOkCaption, [this](int index) { CmdChiude_Click(index); }));
}

void FrmNCred::CmdChiude_Click(int index)
{
    creditNoteButton(documents_, index, TxtPratica->text(), TxtRifer->text());
    index == kAcceptButton ? accept() : QDialog::reject();
}

} // namespace kelm::ui
