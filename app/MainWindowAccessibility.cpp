// The main window: names for screen readers, tab order.
// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/MainWindow.h"

#include "window/Widgets.h"

#include <QAccessibleWidget>
#include <QCheckBox>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QSpinBox>
#include <QtCharts/QChart>
#include <QtCharts/QChartView>

namespace {

/// A chart as one accessible object. By default Qt gives it unnamed children and the role Filler,
/// which screen readers skip.
class ChartAccess : public QAccessibleWidget {
public:
    explicit ChartAccess(QWidget* chartView) : QAccessibleWidget(chartView, QAccessible::Chart) {}
    int childCount() const override { return 0; }
    QAccessibleInterface* child(int /*index*/) const override { return nullptr; }
};

QAccessibleInterface* chartAccess(const QString& /*className*/, QObject* object) {
    auto* chartView = qobject_cast<QtCharts::QChartView*>(object);
    return chartView != nullptr ? new ChartAccess(chartView) : nullptr;
}

} // namespace

void MainWindow::setUpAccessibility() {
    QAccessible::installFactory(chartAccess);
    nameFields();
    nameButtons();
    nameCharts();
    ::setTabOrder({lineEditWavFilePath, lineEditWavFileName, lineEditSamplingRate,
                   lineEditSoundDuration, lineEditSilentInterval, pushButtonPractice,
                   pushButtonExperiment, pushButtonGo, pushButtonQuit, lineEditSubCode,
                   checkBoxSaveData, spinBoxFileNumber, lineEditOutputFilePath,
                   lineEditOutputFileName, lineEditFrequencyMatched, chartViewWav, chartViewFFT,
                   chartViewTrend});
}

void MainWindow::nameFields() {
    const auto name = [](QLabel* label, QWidget* field, const QString& description) {
        label->setBuddy(field);
        describe(field, label->text(), description);
    };
    name(labelWavFilePath, lineEditWavFilePath, QStringLiteral("Folder of the target"));
    name(labelWavFileName, lineEditWavFileName, QStringLiteral("File of the target"));
    name(labelSamplingRate, lineEditSamplingRate,
         QStringLiteral("Samples per second at which everything is played"));
    name(labelSoundDuration, lineEditSoundDuration, QStringLiteral("Duration of the target"));
    name(labelSilentInterval, lineEditSilentInterval,
         QStringLiteral("Silence before each sound, in addition to the duration of one sound"));
    name(labelSubjectCode, lineEditSubCode,
         QStringLiteral("Names the listener in the name of the results file"));
    name(labelFileNumber, spinBoxFileNumber,
         QStringLiteral("Number of the session in the name of the results file"));
    name(labelOutputFilePath, lineEditOutputFilePath,
         QStringLiteral("Folder proposed for the results file"));
    name(labelOutputFileName, lineEditOutputFileName,
         QStringLiteral("Name proposed for the results file"));
    name(labelFrequencyMatched, lineEditFrequencyMatched,
         QStringLiteral("Frequency of the sinusoid that the listener has heard last"));
}

void MainWindow::nameButtons() {
    describe(pushButtonPractice, pushButtonPractice->text(),
             QStringLiteral("Chooses a target and prepares a practice session"));
    describe(pushButtonExperiment, pushButtonExperiment->text(),
             QStringLiteral("Chooses a target and prepares an experiment session"));
    describe(pushButtonGo, pushButtonGo->text(),
             QStringLiteral("Opens the listener's window and locks this one"));
    describe(pushButtonQuit, pushButtonQuit->text(), QStringLiteral("Ends the program"));
    describe(checkBoxSaveData, checkBoxSaveData->text(),
             QStringLiteral("Whether the responses are written to a file after the session"));
}

void MainWindow::nameCharts() {
    describe(chartViewWav, chartWav->title(),
             QStringLiteral("Chart of the target's first stretch: amplitude over milliseconds"));
    describe(chartViewFFT, chartFFT->title(),
             QStringLiteral("Chart of the target's spectrum: amplitude over hertz"));
    describe(chartViewTrend, chartTrend->title(),
             QStringLiteral("Chart of the session's requests: frequency over their count"));
}
