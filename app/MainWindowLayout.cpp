// The main window: layout and placement.
// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/MainWindow.h"

#include "window/TopLevelWindow.h"
#include "window/Widgets.h"

#include <QCheckBox>
#include <QGridLayout>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QSpinBox>

namespace {
constexpr int columnsOfControls = 4;
constexpr int headingRow = 1;
} // namespace

void MainWindow::createLayouts() {
    constexpr int rowsOfSeveralControls = 11; // those that layOutRow() is called for
    for (int row = 0; row < rowsOfSeveralControls; ++row)
        rowLayouts.append(new QHBoxLayout);
    layoutControls = new QGridLayout;
    layoutCharts = new QGridLayout;
    layoutOuter = new QGridLayout;
    widgetCentral = named<QWidget>("widgetCentral");
}

void MainWindow::setupGUIMainWindow() {
    centerAndResizeMainWindow(isCentered, widthRatio, heightRatio);
    setWindowTitle(titleOfWindow(QStringLiteral("Main Window")));
    layOutControls();

    layoutOuter->addLayout(layoutControls, 0, 0);
    layoutOuter->addLayout(layoutCharts, 0, 1);
    layoutOuter->setColumnStretch(0, 1);
    layoutOuter->setColumnStretch(1, 2);
    widgetCentral->setLayout(layoutOuter);
    setCentralWidget(widgetCentral);

    constexpr int minimumHeadingWidth = 100;
    labelSoundFileInformation->setAlignment(Qt::AlignHCenter);
    labelSoundFileInformation->setSizePolicy(QSizePolicy::Preferred, QSizePolicy::Fixed);
    labelSoundFileInformation->setMinimumWidth(minimumHeadingWidth);
    constexpr int minimumButtonHeight = 60;
    for (QPushButton* button :
         {pushButtonPractice, pushButtonExperiment, pushButtonGo, pushButtonQuit})
        button->setMinimumHeight(minimumButtonHeight);
    spinBoxFileNumber->setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
}

void MainWindow::layOutControls() {
    layoutControls->addWidget(labelSoundFileInformation, headingRow, 0, 1, columnsOfControls);
    int row = 0;
    for (const auto& widgets : std::initializer_list<std::initializer_list<QWidget*>>{
             {labelWavFilePath, lineEditWavFilePath},
             {labelWavFileName, lineEditWavFileName},
             {labelSamplingRate, lineEditSamplingRate},
             {labelSoundDuration, lineEditSoundDuration},
             {labelSilentInterval, lineEditSilentInterval},
             {pushButtonPractice, pushButtonExperiment, pushButtonGo, pushButtonQuit},
             {labelSubjectCode, lineEditSubCode, checkBoxSaveData},
             {labelFileNumber, spinBoxFileNumber},
             {labelOutputFilePath, lineEditOutputFilePath},
             {labelOutputFileName, lineEditOutputFileName},
             {labelFrequencyMatched, lineEditFrequencyMatched}})
        layOutRow(row++, widgets);
}

void MainWindow::layOutRow(int row, std::initializer_list<QWidget*> widgets) {
    for (QWidget* widget : widgets)
        rowLayouts[row]->addWidget(widget);
    layoutControls->addLayout(rowLayouts[row], headingRow + 1 + row, 0, 1, columnsOfControls);
}

void MainWindow::centerAndResizeMainWindow(bool center, double widthFraction,
                                           double heightFraction) {
    placeOnPrimaryScreen(*this, center, widthFraction, heightFraction);
}
