// How the main window is laid out.
// SPDX-License-Identifier: GPL-3.0-or-later
#include "test_app.h"

#include "support/GridCell.h"

#include <QGridLayout>
#include <QGuiApplication>
#include <QHBoxLayout>
#include <QLabel>
#include <QScreen>
#include <QSpinBox>
#include <QTest>

using testsupport::cellOf;
using testsupport::find;

namespace {

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

void TestMainWindowLayout::setUp() {
    window = &fixture->window();
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

void TestMainWindowLayout::controlsAreInTheirRows() {
    const QStringList rows[] = {
        {"labelSoundFileInformation"},
        {"labelWavFilePath", "lineEditWavFilePath"},
        {"labelWavFileName", "lineEditWavFileName"},
        {"labelSamplingRate", "lineEditSamplingRate"},
        {"labelSoundDuration", "lineEditSoundDuration"},
        {"labelSilentInterval", "lineEditSilentInterval"},
        {"pushButtonPractice", "pushButtonExperiment", "pushButtonGo", "pushButtonQuit"},
        {"labelSubjectCode", "lineEditSubCode", "checkBoxSaveData"},
        {"labelFileNumber", "spinBoxFileNumber"},
        {"labelOutputFilePath", "lineEditOutputFilePath"},
        {"labelOutputFileName", "lineEditOutputFileName"},
        {"labelFrequencyMatched", "lineEditFrequencyMatched"}};
    const QGridLayout& grid = *window->layoutControls;
    QCOMPARE(grid.count(), 12);
    int row = 0;
    for (const QStringList& names : rows) {
        QLayoutItem* item = grid.itemAtPosition(++row, 0);
        QVERIFY(item);
        QCOMPARE(namesIn(item), names);
        QCOMPARE(qobject_cast<QHBoxLayout*>(item->layout()) != nullptr, names.size() > 1);
        QCOMPARE(cellOf(grid, item), QRect(0, row, 4, 1));
    }
}

void TestMainWindowLayout::controlsAndChartsAreSideBySide() {
    const QGridLayout& outer = *window->layoutOuter;
    QCOMPARE(outer.count(), 2);
    QCOMPARE(cellOf(outer, window->layoutControls), QRect(0, 0, 1, 1));
    QCOMPARE(cellOf(outer, window->layoutCharts), QRect(1, 0, 1, 1));
    QCOMPARE(outer.columnStretch(0), 1);
    QCOMPARE(outer.columnStretch(1), 2);
    QCOMPARE(window->centralWidget()->layout(), window->layoutOuter);
}

void TestMainWindowLayout::elevenRowsAndThreeGridsAreAllInUse() {
    const auto rows = window->centralWidget()->findChildren<QHBoxLayout*>();
    QCOMPARE(rows.size(), 11);
    QCOMPARE(window->rowLayouts.size(), 11);
    for (const QHBoxLayout* row : rows)
        QVERIFY(row->count() >= 2);
    const auto grids = window->centralWidget()->findChildren<QGridLayout*>();
    QCOMPARE(grids.size(), 3);
    for (QGridLayout* grid : {window->layoutControls, window->layoutCharts, window->layoutOuter})
        QVERIFY(grids.contains(grid));
}

void TestMainWindowLayout::headingIsCenteredWithFixedHeightAndMinimumWidth100() {
    const auto* heading = find<QLabel>(*window, "labelSoundFileInformation");
    QCOMPARE(heading->alignment() & Qt::AlignHorizontal_Mask, Qt::AlignHCenter);
    QCOMPARE(heading->sizePolicy().horizontalPolicy(), QSizePolicy::Preferred);
    QCOMPARE(heading->sizePolicy().verticalPolicy(), QSizePolicy::Fixed);
    QCOMPARE(heading->minimumWidth(), 100);
}

void TestMainWindowLayout::fileNumberTakesTheRemainingWidth() {
    const auto* fileNumber = window->spinBoxFileNumber;
    QCOMPARE(fileNumber->sizePolicy().horizontalPolicy(), QSizePolicy::Expanding);
    QCOMPARE(fileNumber->sizePolicy().verticalPolicy(), QSizePolicy::Fixed);
}

void TestMainWindowLayout::bothWindowsArePlacedTheSameWay_data() {
    QTest::addColumn<bool>("center");
    QTest::addColumn<QPoint>("position");
    QTest::newRow("centred") << true << QPoint(1, 2);
    QTest::newRow("not centred, too near the corner") << false << QPoint(1, 2);
    QTest::newRow("not centred") << false << QPoint(60, 80);
}

void TestMainWindowLayout::bothWindowsArePlacedTheSameWay() {
    QFETCH(bool, center);
    QFETCH(QPoint, position);
    MainWindow& mainWindow = *window;
    SubjectWindow subjectWindow;
    mainWindow.move(position);
    mainWindow.centerAndResizeMainWindow(center, 0.5, 1.25);
    subjectWindow.move(position);
    subjectWindow.centerAndResizeSubjectWindow(center, 0.5, 1.25);

    const QSize screen = QGuiApplication::primaryScreen()->availableSize();
    const QSize size(screen.width() / 2, screen.height());
    const QPoint place = center ? QPoint((screen.width() - size.width()) / 2, 0)
                                : QPoint(qMax(position.x(), 5), qMax(position.y(), 40));
    QCOMPARE(mainWindow.geometry(), QRect(place, size));
    QCOMPARE(subjectWindow.geometry(), QRect(place, size));
}
