#pragma once

#include "programming/PluRecord.h"

#include <QList>

// `count` PLU rows with distinct codes and names, the same shape each: what
// the download benchmarks send.
inline QList<kelm::programming::PluRow> pluTable(int count)
{
    QList<kelm::programming::PluRow> rows;
    for (int n = 1; n <= count; ++n)
        rows.append({QStringLiteral("8001234%1").arg(n, 6, 10, QLatin1Char('0')), QStringLiteral("ARTICOLO %1").arg(n),
                     QStringLiteral("1"), QStringLiteral("0"), QStringLiteral("1.50"), QStringLiteral("0"),
                     QStringLiteral("100"), QStringLiteral("00000000"), {}, {}});
    return rows;
}
