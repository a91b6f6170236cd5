#pragma once

#include "technician/ModelTable.h"

class QWidget;

namespace kelm::ui {

// Switches off, below `root`, the controls that the model lacks: the
// S-parameter combos "cmbFlagS_<i>" it does not offer, the scrolling-message
// boxes "txtScrollMSG_<j>" and payment rows "txtPagDescr_<j>" at or above its
// counts. Tabs that are built later call it again over themselves.
void adaptFormToModel(QWidget* root, const technician::ModelInfo& model);

} // namespace kelm::ui
