// What the main window reads from its controls, and what its controls store by themselves.
// SPDX-License-Identifier: GPL-3.0-or-later
#include "support/SessionDriver.h"
#include "test_session.h"

#include <QCheckBox>
#include <QComboBox>
#include <QLineEdit>
#include <QSignalBlocker>
#include <QSpinBox>
#include <QtTest>

#include <limits>

using testsupport::find;

namespace {
using Setting = QVariant (*)(const Data&);
using Selection = QComboBox* (*)(ObservedMainWindow&);

QComboBox* sessionType(ObservedMainWindow& window) {
    return window.comboBoxSesType.get();
}
QComboBox* soundType(ObservedMainWindow& window) {
    return window.comboBoxSoundType.get();
}
QComboBox* mainParameter(ObservedMainWindow& window) {
    return window.comboBoxMainParameter.get();
}

QVariant sessionTypeIndex(const Data& data) {
    return data.sessionTypeIndex;
}
QVariant soundTypeIndex(const Data& data) {
    return data.soundTypeIndex;
}
QVariant mainParameterIndex(const Data& data) {
    return data.mainParameterIndex;
}
QVariant samplingRate(const Data& data) {
    return data.samplingRate;
}
QVariant soundDuration(const Data& data) {
    return data.soundDuration;
}
QVariant silentInterval(const Data& data) {
    return data.silentInterval;
}
QVariant wavFilePath(const Data& data) {
    return data.wavFilePath;
}
QVariant wavFileName(const Data& data) {
    return data.wavFileName;
}
QVariant subjectCode(const Data& data) {
    return data.subjectCode;
}
QVariant outputFilePath(const Data& data) {
    return data.outputFilePath;
}
QVariant outputFileName(const Data& data) {
    return data.outputFileName;
}
} // namespace

Q_DECLARE_METATYPE(Setting)
Q_DECLARE_METATYPE(Selection)

void TestSessionSettings::selectionsAreRead_data() {
    QTest::addColumn<Selection>("selection");
    QTest::addColumn<Setting>("setting");
    QTest::newRow("session type") << Selection(sessionType) << Setting(sessionTypeIndex);
    QTest::newRow("sound type") << Selection(soundType) << Setting(soundTypeIndex);
    QTest::newRow("main parameter") << Selection(mainParameter) << Setting(mainParameterIndex);
}

void TestSessionSettings::selectionsAreRead() {
    QFETCH(Selection, selection);
    QFETCH(Setting, setting);
    QComboBox* box = selection(bench->window);
    for (const int index : {1, 0}) {
        const QSignalBlocker noSlot(box);
        box->setCurrentIndex(index);
        QCOMPARE(setting(bench->window.data).toInt(), 1 - index);
        bench->window.getParameters();
        QCOMPARE(setting(bench->window.data).toInt(), index);
    }
}

void TestSessionSettings::textsAreRead_data() {
    QTest::addColumn<QByteArray>("field");
    QTest::addColumn<QString>("text");
    QTest::addColumn<Setting>("setting");
    QTest::addColumn<QVariant>("value");
    const auto row = [](const char* name, const char* field, const char* text, Setting setting,
                        const QVariant& value) {
        QTest::newRow(name) << QByteArray(field) << QString::fromUtf8(text) << setting << value;
    };
    row("rate", "lineEditSamplingRate", "44100.5", samplingRate, 44100.5);
    row("rate with exponent", "lineEditSamplingRate", "8e3", samplingRate, 8000.0);
    row("rate empty", "lineEditSamplingRate", "", samplingRate, 0.0);
    row("rate in words", "lineEditSamplingRate", "fast", samplingRate, 0.0);
    row("rate with unit", "lineEditSamplingRate", "40000 Hz", samplingRate, 0.0);
    row("rate with comma", "lineEditSamplingRate", "40000,0", samplingRate, 0.0);
    row("duration", "lineEditSoundDuration", "123.45", soundDuration, 123.45 / 1000);
    row("duration in words", "lineEditSoundDuration", "short", soundDuration, 0.0);
    row("duration with comma", "lineEditSoundDuration", "12,5", soundDuration, 0.0);
    row("silence", "lineEditSilentInterval", "0.75", silentInterval, 0.75 / 1000);
    row("silence in words", "lineEditSilentInterval", "none", silentInterval, 0.0);
    row("silence with comma", "lineEditSilentInterval", "12,5", silentInterval, 0.0);
    row("target folder", "lineEditWavFilePath", "/tmp/聴覚 Jäger", wavFilePath,
        QStringLiteral("/tmp/聴覚 Jäger"));
    row("target name", "lineEditWavFileName", "a b.wav", wavFileName, QStringLiteral("a b.wav"));
    row("subject code", "lineEditSubCode", "S7", subjectCode, QStringLiteral("S7"));
    row("results folder", "lineEditOutputFilePath", "/results", outputFilePath,
        QStringLiteral("/results"));
    row("results name", "lineEditOutputFileName", "mine.txt", outputFileName,
        QStringLiteral("mine.txt"));
}

void TestSessionSettings::textsAreRead() {
    QFETCH(QByteArray, field);
    QFETCH(QString, text);
    QFETCH(Setting, setting);
    QFETCH(QVariant, value);
    auto* lineEdit = find<QLineEdit>(bench->window, field.constData());
    const QSignalBlocker noSlot(lineEdit);
    lineEdit->setText(text);
    QVERIFY(setting(bench->window.data) != value);
    bench->window.getParameters();
    QCOMPARE(setting(bench->window.data), value);
}

void TestSessionSettings::fileNumberAndSavingAreRead() {
    auto* number = find<QSpinBox>(bench->window, "spinBoxFileNumber");
    const QSignalBlocker noSlot(number);
    number->setValue(42);
    auto* saving = find<QCheckBox>(bench->window, "checkBoxSaveData");
    saving->setChecked(false);
    QCOMPARE(bench->window.data.fileNumber, 1);
    QVERIFY(bench->window.data.saveDataToFile);
    bench->window.getParameters();
    QCOMPARE(bench->window.data.fileNumber, 42);
    QVERIFY(!bench->window.data.saveDataToFile);
    saving->setChecked(true);
    bench->window.getParameters();
    QVERIFY(bench->window.data.saveDataToFile);
}

void TestSessionSettings::countsFollowFromDurationAndRate_data() {
    QTest::addColumn<QString>("rate");
    QTest::addColumn<QString>("milliseconds");
    QTest::addColumn<double>("plotDuration");
    QTest::addColumn<int>("nSamples");
    QTest::addColumn<int>("nPointsToPlot");
    QTest::addColumn<double>("plotDurationAfterwards");
    // A vector's bytes and its header of 24 bytes fit an int.
    constexpr int most = (std::numeric_limits<int>::max() - 24) / 8;
    QTest::newRow("as at the start") << "40000"
                                     << "250.00" << 0.25 << 10000 << 10000 << 0.25;
    QTest::newRow("longer than the plot") << "40000"
                                          << "500.00" << 0.25 << 20000 << 10000 << 0.25;
    QTest::newRow("shorter than the plot") << "40000"
                                           << "100.00" << 0.25 << 4000 << 4000 << 0.1;
    // 0.043 x 40000 is a trifle below 1720 in doubles.
    QTest::newRow("a last sample lost") << "40000"
                                        << "43.00" << 0.25 << 1719 << 1719 << 1719 / 40000.0;
    QTest::newRow("fraction of a sample") << "40000"
                                          << "0.06" << 0.25 << 2 << 2 << 2 / 40000.0;
    QTest::newRow("fraction to plot") << "1000"
                                      << "250.00" << 0.0105 << 250 << 10 << 0.0105;
    QTest::newRow("other rate") << "44100"
                                << "250.00" << 0.25 << 11025 << 11025 << 0.25;
    QTest::newRow("no rate") << ""
                             << "250.00" << 0.25 << 0 << 0 << 0.25;
    QTest::newRow("no duration") << "40000"
                                 << "" << 0.25 << 0 << 0 << 0.0;
    QTest::newRow("beyond a vector") << "40000"
                                     << "1e12" << 0.25 << most << 10000 << 0.25;
    QTest::newRow("infinite") << "40000"
                              << "inf" << 0.25 << most << 10000 << 0.25;
}

void TestSessionSettings::countsFollowFromDurationAndRate() {
    QFETCH(QString, rate);
    QFETCH(QString, milliseconds);
    QFETCH(double, plotDuration);
    Data& data = bench->window.data;
    find<QLineEdit>(bench->window, "lineEditSamplingRate")->setText(rate);
    find<QLineEdit>(bench->window, "lineEditSoundDuration")->setText(milliseconds);
    data.plotDuration = plotDuration;
    data.nSamples = data.nPointsToPlot = -1;
    bench->window.getParameters();
    QTEST(data.nSamples, "nSamples");
    QTEST(data.nPointsToPlot, "nPointsToPlot");
    QFETCH(double, plotDurationAfterwards);
    QVERIFY(data.plotDuration == plotDurationAfterwards);
}

void TestSessionSettings::inputsAreStoredAndRenameTheFile_data() {
    QTest::addColumn<Selection>("selection");
    QTest::addColumn<Setting>("setting");
    QTest::addColumn<QString>("fileName");
    const QString unchanged = QStringLiteral("SUB001_practice001.txt");
    QTest::newRow("session type") << Selection(sessionType) << Setting(sessionTypeIndex)
                                  << QStringLiteral("SUB001_experiment001.txt");
    QTest::newRow("sound type") << Selection(soundType) << Setting(soundTypeIndex) << unchanged;
    QTest::newRow("main parameter")
        << Selection(mainParameter) << Setting(mainParameterIndex) << unchanged;
}

void TestSessionSettings::inputsAreStoredAndRenameTheFile() {
    QFETCH(Selection, selection);
    QFETCH(Setting, setting);
    QFETCH(QString, fileName);
    auto* shown = find<QLineEdit>(bench->window, "lineEditOutputFileName");
    shown->setText(QStringLiteral("stale"));
    selection(bench->window)->setCurrentIndex(1);
    QCOMPARE(setting(bench->window.data).toInt(), 1);
    QCOMPARE(bench->window.data.outputFileName, fileName);
    QCOMPARE(shown->text(), fileName);
}

void TestSessionSettings::theSubjectCodeNamesTheFile() {
    auto* field = find<QLineEdit>(bench->window, "lineEditSubCode");
    field->clear();
    QTest::keyClicks(field, QStringLiteral("S7"));
    QCOMPARE(bench->window.data.subjectCode, QStringLiteral("S7"));
    QCOMPARE(bench->window.data.outputFileName, QStringLiteral("S7_practice001.txt"));
    QCOMPARE(find<QLineEdit>(bench->window, "lineEditOutputFileName")->text(),
             QStringLiteral("S7_practice001.txt"));
}

void TestSessionSettings::theFileNumberNamesTheFile_data() {
    QTest::addColumn<int>("number");
    QTest::addColumn<QString>("fileName");
    QTest::newRow("two digits") << 12 << "SUB001_practice012.txt";
    QTest::newRow("three digits") << 100 << "SUB001_practice100.txt";
    QTest::newRow("four digits") << 1234 << "SUB001_practice1234.txt";
    QTest::newRow("largest") << 2147483646 << "SUB001_practice2147483646.txt";
}

void TestSessionSettings::theFileNumberNamesTheFile() {
    QFETCH(int, number);
    QFETCH(QString, fileName);
    find<QSpinBox>(bench->window, "spinBoxFileNumber")->setValue(number);
    QCOMPARE(bench->window.data.fileNumber, number);
    QCOMPARE(bench->window.data.outputFileName, fileName);
    QCOMPARE(find<QLineEdit>(bench->window, "lineEditOutputFileName")->text(), fileName);
}
