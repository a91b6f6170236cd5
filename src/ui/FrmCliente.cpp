#include "ui/FrmCliente.h"

#include "ui/EditorRules.h"
#include "ui/Widgets.h"

#include <QFormLayout>
#include <QHBoxLayout>
#include <QVBoxLayout>

namespace kelm::ui {

using namespace technician;

FrmCliente::FrmCliente(FiscalDocuments& documents, QWidget* parent)
    : QDialog(parent), documents_(documents), TxtPIva(named<QLineEdit>(QStringLiteral("TxtPIva")))
{
    setObjectName(QStringLiteral("FrmCliente"));
    setWindowTitle(QStringLiteral("Dati cliente"));
    auto* form = new QFormLayout;
    makeDocumentBox(TxtPIva, DocumentBox::FreeText);
    form->addRow(QStringLiteral("P.IVA"), TxtPIva);
    for (int i = 0; i < kCustomerLineCount; ++i) {
        auto* line = named<QLineEdit>(indexed(QStringLiteral("TxtRiga"), i));
        makeDocumentBox(line, DocumentBox::FreeText);
        form->addRow(QStringLiteral("Riga %1").arg(i + 1), line);
        TxtRiga.append(line);
    }
    auto* layout = new QVBoxLayout(this);
    layout->addLayout(form);
    layout->addLayout(closingButtons(kCancelCaption, kOkCaption, [this](int index) { CmdChiude_Click(index); }));
}

void FrmCliente::CmdChiude_Click(int index)
{
    CustomerEntry entry;
    entry.PIva = TxtPIva->text();
    for (int i = 0; i < kCustomerLineCount; ++i)
        entry.Righe[static_cast<size_t>(i)] = TxtRiga[i]->text();
    const std::optional<CustomerBox> missing = customerButton(documents_, index, entry);
    if (!missing) {
        index == kAcceptButton ? accept() : QDialog::reject();
        return;
    }
    // No message: the first box still to be filled gets the focus.
    QLineEdit* focus = *missing == CustomerBox::PIva ? TxtPIva
        : *missing == CustomerBox::Riga0             ? TxtRiga[0]
        : *missing == CustomerBox::Riga1             ? TxtRiga[1]
                                                     : TxtRiga[2];
    focus->setFocus();
}

} // namespace kelm::ui
