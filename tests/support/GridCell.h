// Where an item is in a grid, for tests.
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QGridLayout>
#include <QRect>

namespace testsupport {

/// Returns an item's column, row, columns and rows as a rectangle's x, y, width and height; an
/// empty one when it is not in the grid.
inline QRect cellOf(const QGridLayout& grid, const QLayoutItem* item) {
    for (int i = 0; i < grid.count(); ++i)
        if (grid.itemAt(i) == item) {
            int row = 0;
            int column = 0;
            int rows = 0;
            int columns = 0;
            grid.getItemPosition(i, &row, &column, &rows, &columns);
            return {column, row, columns, rows};
        }
    return {};
}

inline QRect cellOf(const QGridLayout& grid, QWidget* widget) {
    return cellOf(grid, grid.itemAt(grid.indexOf(widget)));
}

} // namespace testsupport
