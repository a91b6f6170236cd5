#include "ui/FrmPiCf.h"

#include "ui/EditorRules.h"
#include "ui/Widgets.h"

#include <QHBoxLayout>
#include <QVBoxLayout>

namespace kelm::ui {

using namespace technician;

FrmPiCf::FrmPiCf(FiscalDocuments& documents, Dialogs& dialogs, QWidget* parent)
    : QDialog(parent), documents_(documents), dialogs_(dialogs), TxtPiCf(named<QLineEdit>(QStringLiteral("TxtPiCf")))
{
    setObjectName(QStringLiteral("FrmPiCf"));
    setWindowTitle(kPiCfCaption);
    makeDocumentBox(TxtPiCf, DocumentBox::FreeText);
    auto* layout = new QVBoxLayout(this);
    layout->addWidget(TxtPiCf);
    layout->addLayout(closingButtons(kCancelCaption, kOkCaption, [this](int index) { CmdChiude_Click(index); }));
}

void FrmPiCf::CmdChiude_Click(int index)
{
    if (piCfButton(documents_, index, TxtPiCf->text()) == PiCfOutcome::Closes) {
        index == kAcceptButton ? accept() : QDialog::reject();
        return;
    }
    dialogs_.showMessage(kPiCfWrong, kDocumentMessageTitle, Dialogs::Icon::Critical);
    TxtPiCf->setFocus();
}

} // namespace kelm::ui
