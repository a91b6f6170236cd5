#pragma once

#include "app/Operator.h"

// Nobody watching a benchmark: every question takes its default answer.
class SilentOperator final : public kelm::Operator {
public:
    void setPanel(int, const QString&) override {}
    void showMessage(const QString&, const QString&, Icon) override {}
    Button ask(const QString&, const QString&, Icon, const QList<Button>&, Button d) override { return d; }
    void addRunTimeEntry(const QString&) override {}
};
