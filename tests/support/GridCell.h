// Where something stands in a grid.
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QGridLayout>
#include <QVector>

namespace testsupport {

/// Returns row, column and the numbers of rows and columns that a widget or layout takes in a grid;
/// nothing when it is not there.
inline QVector<int> cellOf(const QGridLayout& grid, const QObject* content) {
    for (int i = 0; i < grid.count(); ++i) {
        QLayoutItem* const item = grid.itemAt(i);
        if (item->widget() != content && item->layout() != content)
            continue;
        QVector<int> cell(4);
        grid.getItemPosition(i, &cell[0], &cell[1], &cell[2], &cell[3]);
        return cell;
    }
    return {};
}

} // namespace testsupport
