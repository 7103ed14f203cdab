// Settings that the main window reads from its controls, and those that the controls store.
// SPDX-License-Identifier: GPL-3.0-or-later
#include "test_session.h"

#include <QCheckBox>
#include <QComboBox>
#include <QLineEdit>
#include <QSignalBlocker>
#include <QSpinBox>
#include <QTest>

#include <functional>
#include <limits>

namespace {

using Setting = std::function<QVariant(const Data&)>;

template <typename Type> Setting setting(Type Data::*member) {
    return [member](const Data& data) { return QVariant(data.*member); };
}

} // namespace

Q_DECLARE_METATYPE(Setting)

void TestSessionSettings::selectionsAreRead() {
    testsupport::InspectedMainWindow& window = fixture->window();
    Data& data = window.data;
    const std::pair<QComboBox*, int*> selections[] = {
        {window.comboBoxSesType.get(), &data.sessionTypeIndex},
        {window.comboBoxSoundType.get(), &data.soundTypeIndex},
        {window.comboBoxMainParameter.get(), &data.mainParameterIndex}};
    for (const auto& [box, index] : selections)
        for (const int selected : {1, 0}) {
            const QSignalBlocker noSlot(box);
            box->setCurrentIndex(selected);
            QCOMPARE(*index, 1 - selected);
            window.getParameters();
            QCOMPARE(*index, selected);
        }
}

void TestSessionSettings::textsAreRead_data() {
    QTest::addColumn<QByteArray>("field");
    QTest::addColumn<QString>("text");
    QTest::addColumn<Setting>("setting");
    QTest::addColumn<QVariant>("value");
    const auto row = [](const char* name, const char* field, const char* text, const Setting& read,
                        const QVariant& value) {
        QTest::newRow(name) << QByteArray(field) << QString::fromUtf8(text) << read << value;
    };
    row("rate", "lineEditSamplingRate", "44100.5", setting(&Data::samplingRate), 44100.5);
    row("rate with exponent", "lineEditSamplingRate", "8e3", setting(&Data::samplingRate), 8000.0);
    row("rate empty", "lineEditSamplingRate", "", setting(&Data::samplingRate), 0.0);
    row("rate in words", "lineEditSamplingRate", "fast", setting(&Data::samplingRate), 0.0);
    row("rate with unit", "lineEditSamplingRate", "40000 Hz", setting(&Data::samplingRate), 0.0);
    row("rate with comma", "lineEditSamplingRate", "40000,0", setting(&Data::samplingRate), 0.0);
    row("duration", "lineEditSoundDuration", "123.45", setting(&Data::soundDuration),
        123.45 / 1000);
    row("duration in words", "lineEditSoundDuration", "short", setting(&Data::soundDuration), 0.0);
    row("duration with comma", "lineEditSoundDuration", "12,5", setting(&Data::soundDuration), 0.0);
    row("silence", "lineEditSilentInterval", "0.75", setting(&Data::silentInterval), 0.75 / 1000);
    row("silence in words", "lineEditSilentInterval", "none", setting(&Data::silentInterval), 0.0);
    row("silence with comma", "lineEditSilentInterval", "12,5", setting(&Data::silentInterval),
        0.0);
    row("target folder", "lineEditWavFilePath", "/tmp/聴覚 Jäger", setting(&Data::wavFilePath),
        QStringLiteral("/tmp/聴覚 Jäger"));
    row("target name", "lineEditWavFileName", "a b.wav", setting(&Data::wavFileName),
        QStringLiteral("a b.wav"));
    row("subject code", "lineEditSubCode", "S7", setting(&Data::subjectCode), QStringLiteral("S7"));
    row("results folder", "lineEditOutputFilePath", "/results", setting(&Data::outputFilePath),
        QStringLiteral("/results"));
    row("results name", "lineEditOutputFileName", "mine.txt", setting(&Data::outputFileName),
        QStringLiteral("mine.txt"));
}

void TestSessionSettings::textsAreRead() {
    QFETCH(QByteArray, field);
    QFETCH(QString, text);
    QFETCH(Setting, setting);
    QFETCH(QVariant, value);
    auto* lineEdit = testsupport::find<QLineEdit>(fixture->window(), field.constData());
    const QSignalBlocker noSlot(lineEdit);
    lineEdit->setText(text);
    QVERIFY(setting(fixture->window().data) != value);
    fixture->window().getParameters();
    QCOMPARE(setting(fixture->window().data), value);
}

void TestSessionSettings::fileNumberAndSavingAreRead() {
    auto* number = fixture->window().spinBoxFileNumber;
    const QSignalBlocker noSlot(number);
    number->setValue(42);
    auto* saving = fixture->window().checkBoxSaveData;
    saving->setChecked(false);
    QCOMPARE(fixture->window().data.fileNumber, 1);
    QVERIFY(fixture->window().data.saveDataToFile);
    fixture->window().getParameters();
    QCOMPARE(fixture->window().data.fileNumber, 42);
    QVERIFY(!fixture->window().data.saveDataToFile);
    saving->setChecked(true);
    fixture->window().getParameters();
    QVERIFY(fixture->window().data.saveDataToFile);
}

void TestSessionSettings::countsFollowFromDurationAndRate_data() {
    QTest::addColumn<QString>("rate");
    QTest::addColumn<QString>("milliseconds");
    QTest::addColumn<double>("plotDuration");
    QTest::addColumn<int>("nSamples");
    QTest::addColumn<int>("nPointsToPlot");
    QTest::addColumn<double>("plotDurationAfterwards");
    // A vector's bytes and its header of 24 bytes fit an int.
    constexpr int maximum = (std::numeric_limits<int>::max() - 24) / 8;
    QTest::newRow("as at the start") << "40000"
                                     << "250.00" << 0.25 << 10000 << 10000 << 0.25;
    QTest::newRow("longer than the plot") << "40000"
                                          << "500.00" << 0.25 << 20000 << 10000 << 0.25;
    QTest::newRow("shorter than the plot") << "40000"
                                           << "100.00" << 0.25 << 4000 << 4000 << 0.1;
    // 0.043 x 40000 is slightly below 1720 in doubles.
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
                                     << "1e12" << 0.25 << maximum << 10000 << 0.25;
    QTest::newRow("infinite") << "40000"
                              << "inf" << 0.25 << maximum << 10000 << 0.25;
}

void TestSessionSettings::countsFollowFromDurationAndRate() {
    QFETCH(QString, rate);
    QFETCH(QString, milliseconds);
    QFETCH(double, plotDuration);
    Data& data = fixture->window().data;
    fixture->window().lineEditSamplingRate->setText(rate);
    fixture->window().lineEditSoundDuration->setText(milliseconds);
    data.plotDuration = plotDuration;
    data.nSamples = data.nPointsToPlot = -1;
    fixture->window().getParameters();
    QTEST(data.nSamples, "nSamples");
    QTEST(data.nPointsToPlot, "nPointsToPlot");
    QFETCH(double, plotDurationAfterwards);
    QVERIFY(data.plotDuration == plotDurationAfterwards);
}
