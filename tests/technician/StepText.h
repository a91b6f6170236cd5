#pragma once

#include "technician/ExchangeStep.h"

#include <QStringList>

// Steps written out one a line, so that a failing comparison shows where two
// sequences part: "clear", "send <record>", "panel <record>", "pause <ms>",
// "display".
inline QString stepText(const kelm::technician::ExchangeStep& step)
{
    using Kind = kelm::technician::ExchangeStep::Kind;
    switch (step.kind) {
    case Kind::ClearAnswer:
        return QStringLiteral("clear");
    case Kind::Transaction:
        return QStringLiteral("send ") + step.record;
    case Kind::PanelCommand:
        return QStringLiteral("panel ") + step.record;
    case Kind::Pause:
        return QStringLiteral("pause ") + QString::number(step.pauseMs);
    case Kind::RefreshDisplay:
        return QStringLiteral("display");
    }
    return QStringLiteral("?");
}

inline QStringList stepTexts(const kelm::technician::ExchangeSteps& steps)
{
    QStringList texts;
    for (const auto& step : steps)
        texts.append(stepText(step));
    return texts;
}

// The words of a key press: the answer cleared, the key sent, a short pause.
inline QStringList keyWords(int code)
{
    return {QStringLiteral("clear"), QStringLiteral("send )/%1/").arg(code), QStringLiteral("pause 100")};
}
