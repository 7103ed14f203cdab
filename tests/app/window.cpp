// The main window's controls as it opens.
// SPDX-License-Identifier: GPL-3.0-or-later
#include "test_app.h"

#include <QCheckBox>
#include <QComboBox>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QSpinBox>
#include <QTest>

namespace {

/// Returns a sorted line for each named child of a window.
template <typename Widget, typename Describe>
QStringList described(const QWidget& window, Describe&& describe) {
    QStringList lines;
    for (const Widget* widget : window.findChildren<Widget*>())
        if (!widget->objectName().isEmpty() &&
            !widget->objectName().startsWith(QLatin1String("qt_")))
            lines.append(widget->objectName() + ": " + describe(*widget));
    lines.sort();
    return lines;
}

} // namespace

void TestMainWindowStart::setUp() {
    fixture->session();
    window = &fixture->window();
}

void TestMainWindowStart::everyWidgetHasTheNameOfItsMember() {
    const QStringList widgets = described<QWidget>(*window, [](const QWidget& widget) {
        return widget.metaObject()->className() + QString(widget.isVisible() ? "" : ", hidden");
    });
    QStringList expected;
    const auto add = [&expected](const char* className, const char* names) {
        for (const QString& name : QString(names).split(u' '))
            expected.append(name + ": " + className);
    };
    add("QLabel", "labelSoundFileInformation labelSamplingRate labelSoundDuration "
                  "labelSilentInterval labelSubjectCode labelFileNumber labelWavFilePath "
                  "labelWavFileName labelOutputFilePath labelOutputFileName labelFrequencyMatched");
    add("QLineEdit", "lineEditSamplingRate lineEditSoundDuration lineEditSilentInterval "
                     "lineEditSubCode lineEditWavFilePath lineEditWavFileName "
                     "lineEditOutputFilePath lineEditOutputFileName lineEditFrequencyMatched");
    add("QSpinBox", "spinBoxFileNumber");
    add("QPushButton", "pushButtonPractice pushButtonExperiment pushButtonGo pushButtonQuit");
    add("QCheckBox", "checkBoxSaveData");
    add("QtCharts::QChartView", "chartViewWav chartViewFFT chartViewTrend");
    add("QWidget", "widgetCentral");
    expected.sort();
    QCOMPARE(widgets, expected);
}

void TestMainWindowStart::labelsHaveTheirTexts() {
    QCOMPARE(
        described<QLabel>(*window, [](const QLabel& label) { return label.text(); }),
        QStringList(
            {"labelFileNumber: File number", "labelFrequencyMatched: Frequency matched (Hz)",
             "labelOutputFileName: Output filename", "labelOutputFilePath: Output filepath",
             "labelSamplingRate: Sampling rate", "labelSilentInterval: Silent interval (ms)",
             "labelSoundDuration: Sound duration (ms)",
             "labelSoundFileInformation: Sound File Information", "labelSubjectCode: Subject code",
             "labelWavFileName: WAV filename", "labelWavFilePath: WAV filepath"}));
}

void TestMainWindowStart::fieldsShowTheSettings() {
    const QString desktop = qEnvironmentVariable("HOME") + QStringLiteral("/Desktop");
    const auto describe = [](const QLineEdit& field) {
        return field.text() + (field.isEnabled() ? ", enabled" : "") +
               (field.isReadOnly() ? ", read only" : "");
    };
    QCOMPARE(described<QLineEdit>(*window, describe),
             QStringList({"lineEditFrequencyMatched: not started yet",
                          "lineEditOutputFileName: SUB001_practice001.txt",
                          "lineEditOutputFilePath: " + desktop, "lineEditSamplingRate: 40000",
                          "lineEditSilentInterval: 500.00", "lineEditSoundDuration: 250.00",
                          "lineEditSubCode: SUB001, enabled", "lineEditWavFileName: File001.wav",
                          "lineEditWavFilePath: " + desktop}));
}

void TestMainWindowStart::buttonsHaveTheirTextsAndStates() {
    const auto describe = [](const QPushButton& button) {
        return QStringLiteral("%1, %2%3")
            .arg(button.text())
            .arg(button.minimumHeight())
            .arg(button.isEnabled() ? ", enabled" : "");
    };
    QCOMPARE(described<QPushButton>(*window, describe),
             QStringList({"pushButtonExperiment: Experiment, 60", "pushButtonGo: Go, 60",
                          "pushButtonPractice: Practice, 60, enabled",
                          "pushButtonQuit: Quit, 60, enabled"}));
    for (const auto* button : window->findChildren<QPushButton*>())
        QVERIFY(button->height() >= 60);
}

void TestMainWindowStart::saveDataBoxIsCheckedAndEnabled() {
    QCOMPARE(window->checkBoxSaveData->text(), QStringLiteral("Save data to file"));
    QVERIFY(window->checkBoxSaveData->isChecked());
    QVERIFY(window->checkBoxSaveData->isEnabled());
}

void TestMainWindowStart::hiddenSelectionsAreFilledAndOutOfTheWindow() {
    QStringList selections;
    for (const QComboBox* selection :
         {window->comboBoxSesType.get(), window->comboBoxSoundType.get(),
          window->comboBoxMainParameter.get()}) {
        QStringList words{selection->objectName()};
        for (int i = 0; i < selection->count(); ++i)
            words.append(selection->itemText(i));
        selections.append(words.join(", "));
        QCOMPARE(selection->currentIndex(), 0);
        QVERIFY(!selection->parent() && !selection->isVisible());
    }
    QCOMPARE(selections, QStringList({"comboBoxSesType, practice, experiment",
                                      "comboBoxSoundType, .wav files, reserved",
                                      "comboBoxMainParameter, sound files, reserved"}));
    QVERIFY(window->findChildren<QComboBox*>().isEmpty());
}

void TestMainWindowStart::hiddenLabelsAreOutOfTheWindow() {
    QStringList labels;
    for (const QLabel* label : {window->labelSessionType.get(), window->labelSoundType.get(),
                                window->labelMainParameter.get()}) {
        labels.append(label->objectName() + ": " + label->text());
        QVERIFY(!label->parent() && !label->isVisible());
    }
    QCOMPARE(labels, QStringList({"labelSessionType: Session type", "labelSoundType: Sound type",
                                  "labelMainParameter: Main parameter"}));
}

void TestMainWindowStart::fileNumberRangesFromOneToMaximumIntMinusOne() {
    const auto* fileNumber = window->spinBoxFileNumber;
    QCOMPARE(fileNumber->value(), 1);
    QCOMPARE(fileNumber->minimum(), 1);
    QCOMPARE(fileNumber->maximum(), 2147483646);
    QCOMPARE(fileNumber->singleStep(), 1);
    QVERIFY(fileNumber->isEnabled());
}
