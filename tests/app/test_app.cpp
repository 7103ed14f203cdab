// The settings and the records.
// SPDX-License-Identifier: GPL-3.0-or-later
#include "test_app.h"

#include "app/Data.h"
#include "app/Record.h"
#include "support/FileBytes.h"
#include "support/TestMain.h"

#include <QApplication>
#include <QTemporaryDir>

#include <algorithm>
#include <functional>
#include <type_traits>

namespace {

static_assert(!std::is_polymorphic_v<Data> && !std::is_polymorphic_v<Record>);
static_assert(std::is_same_v<decltype(Data::reserved), qint64>);
static_assert(std::is_same_v<decltype(Data::records), QVector<Record>>);

QString expectedDesktop() {
    return qEnvironmentVariable("HOME") + QStringLiteral("/Desktop");
}

bool isAscending(const std::vector<const void*>& addresses) {
    return std::adjacent_find(addresses.cbegin(), addresses.cend(), std::greater_equal<>()) ==
           addresses.cend();
}

} // namespace

void addRow(const char* field, const QVariant& actual, const QVariant& expected) {
    QTest::newRow(field) << actual << expected;
}

void compareValueAndType() {
    QFETCH(QVariant, actual);
    QFETCH(QVariant, expected);
    QCOMPARE(actual.userType(), expected.userType());
    QCOMPARE(actual, expected);
}

void TestSettings::everySettingHasItsDefault_data() {
    QTest::addColumn<QVariant>("actual");
    QTest::addColumn<QVariant>("expected");
    const Data data;
    const QString desktop = expectedDesktop();
    addRow("samplingRate", data.samplingRate, 40000.0);
    addRow("soundDuration", data.soundDuration, 0.25);
    addRow("nSamples", data.nSamples, 10000);
    addRow("plotDuration", data.plotDuration, 0.25);
    addRow("nPointsToPlot", data.nPointsToPlot, 10000);
    addRow("fftMaxFrequency", data.fftMaxFrequency, 2000.0);
    addRow("nFFTPointsToPlot", data.nFFTPointsToPlot, 500);
    addRow("wavFolder", data.wavFolder, desktop);
    addRow("outputFilePath", data.outputFilePath, desktop);
    addRow("wavFilePath", data.wavFilePath, desktop);
    addRow("subjectCode", data.subjectCode, "SUB001");
    addRow("outputFileName", data.outputFileName, "SUB001.txt");
    addRow("sessionTypes", data.sessionTypes, QStringList{"practice", "experiment"});
    addRow("sessionTypeIndex", data.sessionTypeIndex, 0);
    addRow("soundTypes", data.soundTypes, QStringList{".wav files", "reserved"});
    addRow("soundTypeIndex", data.soundTypeIndex, 0);
    addRow("mainParameters", data.mainParameters, QStringList{"sound files", "reserved"});
    addRow("mainParameterIndex", data.mainParameterIndex, 0);
    addRow("fileNumber", data.fileNumber, 1);
    addRow("silentInterval", data.silentInterval, 0.5);
    addRow("wavFileName", data.wavFileName, "File001.wav");
    addRow("records", data.records.size(), 0);
    addRow("frequencyMin", data.frequencyMin, 10);
    addRow("frequencyMax", data.frequencyMax, 1000);
    addRow("frequencyStart", data.frequencyStart, 500);
    addRow("frequencyCurrent", data.frequencyCurrent, 500);
    addRow("frequencyStepSize", data.frequencyStepSize, 1);
    addRow("nResponses", data.nResponses, 0);
    addRow("reserved", data.reserved, qint64(0));
    addRow("saveDataToFile", data.saveDataToFile, true);
}

void TestSettings::everySettingHasItsDefault() {
    compareValueAndType();
}

void TestSettings::everyFieldOfARecordHasItsDefault_data() {
    QTest::addColumn<QVariant>("actual");
    QTest::addColumn<QVariant>("expected");
    const Record record;
    addRow("filePath", record.filePath, expectedDesktop());
    addRow("fileName", record.fileName, "");
    addRow("frequencyMatched", record.frequencyMatched, 0.0);
    addRow("reserved1", record.reserved1, qint64(0));
    addRow("reserved2", record.reserved2, qint64(0));
}

void TestSettings::everyFieldOfARecordHasItsDefault() {
    compareValueAndType();
}

void TestSettings::settingsLieInTheirOrder() {
    const Data d;
    QVERIFY(isAscending({&d.samplingRate,     &d.soundDuration,    &d.nSamples,
                         &d.plotDuration,     &d.nPointsToPlot,    &d.fftMaxFrequency,
                         &d.nFFTPointsToPlot, &d.wavFolder,        &d.outputFilePath,
                         &d.wavFilePath,      &d.subjectCode,      &d.outputFileName,
                         &d.sessionTypes,     &d.sessionTypeIndex, &d.soundTypes,
                         &d.soundTypeIndex,   &d.mainParameters,   &d.mainParameterIndex,
                         &d.fileNumber,       &d.silentInterval,   &d.wavFileName,
                         &d.records,          &d.frequencyMin,     &d.frequencyMax,
                         &d.frequencyStart,   &d.frequencyCurrent, &d.frequencyStepSize,
                         &d.nResponses,       &d.reserved,         &d.saveDataToFile}));
}

void TestSettings::fieldsOfARecordLieInTheirOrder() {
    const Record r;
    QVERIFY(
        isAscending({&r.filePath, &r.fileName, &r.frequencyMatched, &r.reserved1, &r.reserved2}));
}

void TestSettings::foldersAreThoseThatTheUserHasSet() {
    const QTemporaryDir configuration;
    const QString folder = configuration.path() + QStringLiteral("/Schreibtisch %1 ä");
    QVERIFY(testsupport::writeBytes(configuration.filePath(QStringLiteral("user-dirs.dirs")),
                                    "XDG_DESKTOP_DIR=\"" + folder.toUtf8() + "\"\n"));
    const QByteArray earlier = qgetenv("XDG_CONFIG_HOME");
    qputenv("XDG_CONFIG_HOME", configuration.path().toUtf8());
    const Data data;
    const Record record;
    if (earlier.isNull())
        qunsetenv("XDG_CONFIG_HOME");
    else
        qputenv("XDG_CONFIG_HOME", earlier);
    QCOMPARE(data.wavFolder, folder);
    QCOMPARE(data.outputFilePath, folder);
    QCOMPARE(data.wavFilePath, folder);
    QCOMPARE(record.filePath, folder);
}

void TestSettings::sessionTypesArePracticeAndExperiment() {
    const Data data;
    QCOMPARE(data.sessionTypes.size(), 2);
    QCOMPARE(data.sessionTypes.value(data.sessionTypeIndex), QStringLiteral("practice"));
    QCOMPARE(data.sessionTypes.value(1), QStringLiteral("experiment"));
}

void TestSettings::writingToCopiedRecordsLeavesTheOriginals() {
    Data data;
    data.records.resize(2);
    Data copy = data;
    QVERIFY(copy.records.isSharedWith(data.records));
    copy.records[0].frequencyMatched = 640;
    QCOMPARE(copy.records.at(0).frequencyMatched, 640.0);
    QCOMPARE(data.records.at(0).frequencyMatched, 0.0);
}

int main(int argc, char** argv) {
    const QApplication application(argc, argv);
    return testsupport::runAll<TestSettings, TestAppFunctions, TestMainWindowStart,
                               TestMainWindowLayout, TestMainWindowMembers,
                               TestMainWindowConnections, TestMainWindowLife, TestAccess>(argc,
                                                                                          argv);
}
