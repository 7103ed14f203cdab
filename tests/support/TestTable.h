// Tables of test data, a row a line.
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QByteArray>
#include <QTest>

namespace testsupport {

/// Adds columns of these types and names to a test's data. Returns a function that adds a row: of
/// the row's name and a value for each column.
template <typename... Values, typename... Names> auto columns(Names... names) {
    static_assert(sizeof...(Values) == sizeof...(Names), "each column has a type and a name");
    (QTest::addColumn<Values>(names), ...);
    return [](const QByteArray& rowName, const Values&... values) {
        (QTest::newRow(rowName.constData()) << ... << values);
    };
}

} // namespace testsupport
