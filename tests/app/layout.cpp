// How the main window is laid out.
// SPDX-License-Identifier: GPL-3.0-or-later
#include "test_app.h"

#include "support/SessionDriver.h"

#include <QGridLayout>
#include <QGuiApplication>
#include <QHBoxLayout>
#include <QLabel>
#include <QScreen>
#include <QSpinBox>
#include <QtTest>

using testsupport::find;
using testsupport::InspectedMainWindow;

namespace {

/// Where an item stands in a grid.
struct Cell {
    int row = -1;
    int column = -1;
    int rowSpan = -1;
    int columnSpan = -1;

    bool operator==(const Cell& other) const {
        return std::tie(row, column, rowSpan, columnSpan) ==
               std::tie(other.row, other.column, other.rowSpan, other.columnSpan);
    }
};

Cell cellOf(const QGridLayout& grid, QLayoutItem* item) {
    Cell cell;
    for (int i = 0; i < grid.count(); ++i)
        if (grid.itemAt(i) == item)
            grid.getItemPosition(i, &cell.row, &cell.column, &cell.rowSpan, &cell.columnSpan);
    return cell;
}

/// The names of the widgets of an item, left to right.
QStringList namesIn(QLayoutItem* item) {
    if (item->widget())
        return {item->widget()->objectName()};
    QStringList names;
    for (int i = 0; item->layout() && i < item->layout()->count(); ++i)
        names.append(namesIn(item->layout()->itemAt(i)));
    return names;
}

} // namespace

void TestMainWindowLayout::initTestCase() {
    window = std::make_unique<InspectedMainWindow>();
}

void TestMainWindowLayout::cleanupTestCase() {
    window.reset();
}

void TestMainWindowLayout::titleIsExact() {
    QCOMPARE(window->windowTitle(), QStringLiteral("Vantaro Lab | Pellion (v014) | Main Window"));
}

void TestMainWindowLayout::placementIsFourFifthsByNineTenthsCentered() {
    const QSize screen = QGuiApplication::primaryScreen()->availableSize();
    const QSize size(screen.width() * 4 / 5, screen.height() * 9 / 10);
    QCOMPARE(window->geometry(),
             QRect((screen.width() - size.width()) / 2, (screen.height() - size.height()) / 2,
                   size.width(), size.height()));
}

void TestMainWindowLayout::controlsLieInTheirRows_data() {
    QTest::addColumn<int>("row");
    QTest::addColumn<bool>("isBox");
    QTest::addColumn<QStringList>("names");
    const auto addRow = [](int row, bool isBox, const QStringList& names) {
        QTest::newRow(qPrintable(names.first())) << row << isBox << names;
    };
    addRow(1, false, {"labelSoundFileInformation"});
    addRow(2, true, {"labelWavFilePath", "lineEditWavFilePath"});
    addRow(3, true, {"labelWavFileName", "lineEditWavFileName"});
    addRow(4, true, {"labelSamplingRate", "lineEditSamplingRate"});
    addRow(5, true, {"labelSoundDuration", "lineEditSoundDuration"});
    addRow(6, true, {"labelSilentInterval", "lineEditSilentInterval"});
    addRow(7, true,
           {"pushButtonPractice", "pushButtonExperiment", "pushButtonGo", "pushButtonQuit"});
    addRow(8, true, {"labelSubjectCode", "lineEditSubCode", "checkBoxSaveData"});
    addRow(9, true, {"labelFileNumber", "spinBoxFileNumber"});
    addRow(10, true, {"labelOutputFilePath", "lineEditOutputFilePath"});
    addRow(11, true, {"labelOutputFileName", "lineEditOutputFileName"});
    addRow(12, true, {"labelFrequencyMatched", "lineEditFrequencyMatched"});
}

void TestMainWindowLayout::controlsLieInTheirRows() {
    QFETCH(int, row);
    QFETCH(bool, isBox);
    QLayoutItem* item = window->layoutControls->itemAtPosition(row, 0);
    QVERIFY(item);
    QCOMPARE(qobject_cast<QHBoxLayout*>(item->layout()) != nullptr, isBox);
    QTEST(namesIn(item), "names");
    QVERIFY((cellOf(*window->layoutControls, item) == Cell{row, 0, 1, 4}));
    QCOMPARE(window->layoutControls->count(), 12);
}

void TestMainWindowLayout::controlsAndChartsStandSideBySide() {
    const QGridLayout& outer = *window->layoutOuter;
    QCOMPARE(outer.count(), 2);
    QVERIFY((cellOf(outer, window->layoutControls) == Cell{0, 0, 1, 1}));
    QVERIFY((cellOf(outer, window->layoutCharts) == Cell{0, 1, 1, 1}));
    QCOMPARE(outer.columnStretch(0), 1);
    QCOMPARE(outer.columnStretch(1), 2);
    QCOMPARE(window->centralWidget()->layout(), window->layoutOuter);
}

void TestMainWindowLayout::elevenRowsAndThreeGridsAreAllInUse() {
    const auto rows = window->centralWidget()->findChildren<QHBoxLayout*>();
    QCOMPARE(rows.size(), 11);
    for (const QHBoxLayout* row : rows)
        QVERIFY(row->count() >= 2);
    const auto grids = window->centralWidget()->findChildren<QGridLayout*>();
    QCOMPARE(grids.size(), 3);
    for (QGridLayout* grid : {window->layoutControls, window->layoutCharts, window->layoutOuter})
        QVERIFY(grids.contains(grid));
}

void TestMainWindowLayout::headingIsCenteredLowAndAtLeast100Wide() {
    const auto* heading = find<QLabel>(*window, "labelSoundFileInformation");
    QCOMPARE(heading->alignment() & Qt::AlignHorizontal_Mask, Qt::AlignHCenter);
    QCOMPARE(heading->sizePolicy().horizontalPolicy(), QSizePolicy::Preferred);
    QCOMPARE(heading->sizePolicy().verticalPolicy(), QSizePolicy::Fixed);
    QCOMPARE(heading->minimumWidth(), 100);
}

void TestMainWindowLayout::fileNumberTakesTheWidthThatIsLeft() {
    const auto* fileNumber = find<QSpinBox>(*window, "spinBoxFileNumber");
    QCOMPARE(fileNumber->sizePolicy().horizontalPolicy(), QSizePolicy::Expanding);
    QCOMPARE(fileNumber->sizePolicy().verticalPolicy(), QSizePolicy::Fixed);
}
