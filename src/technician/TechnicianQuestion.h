#pragma once

#include "app/Operator.h"

#include <QList>
#include <QString>

namespace kelm::technician {

// A question asked before a technician action, as the operator shows it.
struct TechnicianQuestion {
    QString text;
    QString title;
    Operator::Icon icon = Operator::Icon::Question;
    QList<Operator::Button> buttons;
    Operator::Button defaultButton = Operator::Button::Ok;
};

} // namespace kelm::technician
