#pragma once

#include <QTest>

// QTest tables in fewer words: columns<QString, int>("text", "count") in a
// _data function, row("name", text, 3) for each case, and fetch<int>("count")
// for a column's value in the test function.
template <typename... T, typename... Names>
void columns(Names... names)
{
    (QTest::addColumn<T>(names), ...);
}

template <typename... V>
void row(const char* name, const V&... values)
{
    (QTest::newRow(name) << ... << values);
}

template <typename T>
const T& fetch(const char* column)
{
    return *static_cast<const T*>(QTest::qData(column, qMetaTypeId<T>()));
}

// Several inputs in one cell, each of which must give the row's expected
// value: the cells {"a", kOr, "b", "c"} are the inputs {"a"} and {"b", "c"}.
inline const QString kOr = QStringLiteral("<or>");

inline QList<QStringList> eachInput(const QStringList& cells)
{
    QList<QStringList> inputs{{}};
    for (const QString& cell : cells)
        cell == kOr ? inputs.append(QStringList()) : inputs.last().append(cell);
    return inputs;
}

// Several texts in one QString cell, split again with split(kOr).
inline QString anyOf(const QStringList& texts)
{
    return texts.join(kOr);
}
