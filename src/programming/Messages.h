#pragma once

#include "app/Operator.h"

#include <QList>
#include <QString>

// The message boxes of the programming tables, as data: the job that runs a
// download shows them through its Operator, tests compare them.
namespace kelm::programming {

struct Notice {
    QString text;
    QString title;
    Operator::Icon icon = Operator::Icon::Information;

    friend bool operator==(const Notice&, const Notice&) = default;
};


} // namespace kelm::programming
