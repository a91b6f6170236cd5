#pragma once

#include <QIcon>

namespace kelm::ui {

// The program's own icon, a register with its paper roll: the picture of
// packaging/kelmdrev.svg, drawn here so that no image plugin is needed.
QIcon programIcon();

} // namespace kelm::ui
