// Both windows used by the keyboard alone or with a screen reader.
// SPDX-License-Identifier: GPL-3.0-or-later
#include "test_app.h"

#include <QAbstractButton>
#include <QAbstractSlider>
#include <QAbstractSpinBox>
#include <QAccessible>
#include <QApplication>
#include <QLabel>
#include <QLineEdit>
#include <QTest>
#include <QtCharts/QChartView>

namespace {

/// Returns the widgets that a person uses or reads, without their internal child widgets.
QList<QWidget*> controlsOf(QWidget& window) {
    QList<QWidget*> controls;
    for (QWidget* widget : window.findChildren<QWidget*>()) {
        const bool isControl = qobject_cast<QAbstractButton*>(widget) != nullptr ||
                               qobject_cast<QAbstractSlider*>(widget) != nullptr ||
                               qobject_cast<QAbstractSpinBox*>(widget) != nullptr ||
                               qobject_cast<QLineEdit*>(widget) != nullptr ||
                               qobject_cast<QtCharts::QChartView*>(widget) != nullptr;
        if (isControl && !widget->objectName().isEmpty() &&
            !widget->objectName().startsWith(QLatin1String("qt_")))
            controls.append(widget);
    }
    return controls;
}

QString textOf(QWidget* widget, QAccessible::Text kind) {
    return QAccessible::queryAccessibleInterface(widget)->text(kind);
}

/// Presses the tab key for one full cycle; returns the object names of the widgets reached.
QStringList tabbedThrough(QWidget& window, QWidget* first) {
    for (QWidget* control : controlsOf(window)) {
        control->setEnabled(true);
        control->show();
    }
    first->setFocus();
    QStringList names;
    for (int presses = 0; presses < 50; ++presses) {
        QWidget* focused = window.focusWidget();
        if (focused == nullptr || names.contains(focused->objectName()))
            break;
        names.append(focused->objectName());
        QTest::keyClick(focused, Qt::Key_Tab);
    }
    return names;
}

/// Returns the labels and buttons of a window on a screen of 1366 x 768 that are smaller than their
/// text, and those that are partly outside of the window.
QStringList cutOffTexts(QWidget& window) {
    window.show();
    window.resize(1092, 691); // the part of the screen that both windows take
    QStringList cutOff;
    for (QWidget* widget : window.findChildren<QWidget*>()) {
        const bool hasText = qobject_cast<QAbstractButton*>(widget) != nullptr ||
                             qobject_cast<QLabel*>(widget) != nullptr;
        if (!hasText || widget->objectName().startsWith(QLatin1String("qt_")))
            continue;
        widget->show();
        QApplication::processEvents();
        const QSize minimum = widget->minimumSizeHint();
        const QRect place(widget->mapTo(&window, QPoint()), widget->size());
        if (widget->width() < minimum.width() || widget->height() < minimum.height() ||
            !window.rect().contains(place))
            cutOff.append(widget->objectName());
    }
    return cutOff;
}

void compareNames(QWidget& window, const QMap<QString, QString>& expected) {
    QMap<QString, QString> names;
    for (QWidget* control : controlsOf(window)) {
        names.insert(control->objectName(), textOf(control, QAccessible::Name));
        QVERIFY2(textOf(control, QAccessible::Description).size() > 10,
                 qPrintable(control->objectName()));
    }
    QCOMPARE(names, expected);
}

/// Label and field of each pair.
void compareBuddies(QWidget& window, const QMap<QString, QString>& expected) {
    QMap<QString, QString> buddies;
    for (const QLabel* label : window.findChildren<QLabel*>())
        if (label->buddy() != nullptr)
            buddies.insert(label->text(), label->buddy()->objectName());
    QCOMPARE(buddies, expected);
}

} // namespace

void TestAccess::controlsOfTheMainWindowHaveNamesAndDescriptions() {
    MainWindow& window = fixture->window();
    compareNames(window, {{"chartViewFFT", "Amplitude Spectrum"},
                          {"chartViewTrend", "Response Trend"},
                          {"chartViewWav", "Time Waveform"},
                          {"checkBoxSaveData", "Save data to file"},
                          {"lineEditFrequencyMatched", "Frequency matched (Hz)"},
                          {"lineEditOutputFileName", "Output filename"},
                          {"lineEditOutputFilePath", "Output filepath"},
                          {"lineEditSamplingRate", "Sampling rate"},
                          {"lineEditSilentInterval", "Silent interval (ms)"},
                          {"lineEditSoundDuration", "Sound duration (ms)"},
                          {"lineEditSubCode", "Subject code"},
                          {"lineEditWavFileName", "WAV filename"},
                          {"lineEditWavFilePath", "WAV filepath"},
                          {"pushButtonExperiment", "Experiment"},
                          {"pushButtonGo", "Go"},
                          {"pushButtonPractice", "Practice"},
                          {"pushButtonQuit", "Quit"},
                          {"spinBoxFileNumber", "File number"}});
}

void TestAccess::labelsOfTheMainWindowNameTheirFields() {
    MainWindow& window = fixture->window();
    compareBuddies(window, {{"WAV filepath", "lineEditWavFilePath"},
                            {"WAV filename", "lineEditWavFileName"},
                            {"Sampling rate", "lineEditSamplingRate"},
                            {"Sound duration (ms)", "lineEditSoundDuration"},
                            {"Silent interval (ms)", "lineEditSilentInterval"},
                            {"Subject code", "lineEditSubCode"},
                            {"File number", "spinBoxFileNumber"},
                            {"Output filepath", "lineEditOutputFilePath"},
                            {"Output filename", "lineEditOutputFileName"},
                            {"Frequency matched (Hz)", "lineEditFrequencyMatched"}});
}

void TestAccess::tabOrderOfTheMainWindowFollowsTheLayout() {
    fixture->session();
    MainWindow& window = fixture->window();
    QVERIFY(QTest::qWaitForWindowActive(&window));
    auto* first = testsupport::find<QLineEdit>(window, "lineEditWavFilePath");
    QCOMPARE(
        tabbedThrough(window, first),
        QStringList({"lineEditWavFilePath", "lineEditWavFileName", "lineEditSamplingRate",
                     "lineEditSoundDuration", "lineEditSilentInterval", "pushButtonPractice",
                     "pushButtonExperiment", "pushButtonGo", "pushButtonQuit", "lineEditSubCode",
                     "checkBoxSaveData", "spinBoxFileNumber", "lineEditOutputFilePath",
                     "lineEditOutputFileName", "lineEditFrequencyMatched", "chartViewWav",
                     "chartViewFFT", "chartViewTrend"}));
}

void TestAccess::controlsOfTheSubjectWindowHaveNamesAndDescriptions() {
    SubjectWindow window;
    compareNames(window, {{"pushButtonDone", "Done"},
                          {"pushButtonIAmReady", "I am ready"},
                          {"pushButtonPlaySinusoid", "Play sinusoid"},
                          {"pushButtonPlayTarget", "Play target"},
                          {"sliderFrequency", "Frequency"},
                          {"spinBoxFrequency", "Current Value"}});
    compareBuddies(window, {{"Current Value", "spinBoxFrequency"}});
}

void TestAccess::tabOrderOfTheSubjectWindowFollowsTheLayout() {
    SubjectWindow window;
    window.show();
    QVERIFY(QTest::qWaitForWindowActive(&window));
    auto* first = testsupport::find<QAbstractButton>(window, "pushButtonIAmReady");
    QCOMPARE(tabbedThrough(window, first),
             QStringList({"pushButtonIAmReady", "pushButtonPlayTarget", "spinBoxFrequency",
                          "pushButtonPlaySinusoid", "sliderFrequency", "pushButtonDone"}));
}

void TestAccess::textsFitAtEveryTextSize_data() {
    QTest::addColumn<int>("percent");
    for (const int percent : {100, 150, 200})
        QTest::newRow(QByteArray::number(percent) + " %") << percent;
}

void TestAccess::textsFitAtEveryTextSize() {
    QFETCH(int, percent);
    const QFont usual = QApplication::font();
    QFont scaled = usual;
    scaled.setPointSizeF(usual.pointSizeF() * percent / 100);
    QApplication::setFont(scaled);
    auto& mainWindow = fixture->window();
    const QStringList cutOffInMain = cutOffTexts(mainWindow);
    SubjectWindow subjectWindow(nullptr);
    const QStringList cutOffInSubject = cutOffTexts(subjectWindow);
    const int textHeight = mainWindow.labelSoundType->fontMetrics().height();
    QApplication::setFont(usual);
    QCOMPARE(cutOffInMain, QStringList());
    QCOMPARE(cutOffInSubject, QStringList());
    // The text size was really changed.
    const int usualHeight = QFontMetrics(usual).height();
    QVERIFY(std::abs(textHeight - usualHeight * percent / 100) <= 2);
}
