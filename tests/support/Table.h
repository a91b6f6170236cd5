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
