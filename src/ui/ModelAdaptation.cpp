#include "ui/ModelAdaptation.h"

#include <QWidget>

namespace kelm::ui {

namespace {

void switchOffFrom(QWidget* root, const QString& name, int first, int count)
{
    for (int j = first; j < count; ++j)
        if (auto* w = root->findChild<QWidget*>(name + u'_' + QString::number(j)))
            w->setEnabled(false);
}

} // namespace

void adaptFormToModel(QWidget* root, const technician::ModelInfo& model)
{
    for (int i = 0; i < int(model.sFlagAvailable.size()); ++i)
        if (!model.sFlagAvailable[static_cast<size_t>(i)])
            switchOffFrom(root, QStringLiteral("cmbFlagS"), i, i + 1);
    constexpr int kMessageBoxes = 10;
    constexpr int kPaymentRows = 9;
    switchOffFrom(root, QStringLiteral("txtScrollMSG"), model.scrollingMessages, kMessageBoxes);
    switchOffFrom(root, QStringLiteral("txtPagDescr"), model.paymentTypes, kPaymentRows);
}

} // namespace kelm::ui
