// The settings and the records.
// SPDX-License-Identifier: GPL-3.0-or-later
#include "test_app.h"

#include "app/Data.h"
#include "app/Record.h"
#include "support/FileBytes.h"
#include "support/TestMain.h"

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

void compare(const char* field, const QVariant& actual, const QVariant& expected) {
    const bool isEqual = actual.userType() == expected.userType() && actual == expected;
    QVERIFY2(isEqual, qPrintable(field + QStringLiteral(": ") + actual.toString()));
}

void TestSettings::everySettingHasItsDefault() {
    const Data data;
    const QString desktop = expectedDesktop();
    compare("samplingRate", data.samplingRate, 40000.0);
    compare("soundDuration", data.soundDuration, 0.25);
    compare("nSamples", data.nSamples, 10000);
    compare("plotDuration", data.plotDuration, 0.25);
    compare("nPointsToPlot", data.nPointsToPlot, 10000);
    compare("fftMaxFrequency", data.fftMaxFrequency, 2000.0);
    compare("nFFTPointsToPlot", data.nFFTPointsToPlot, 500);
    compare("wavFolder", data.wavFolder, desktop);
    compare("outputFilePath", data.outputFilePath, desktop);
    compare("wavFilePath", data.wavFilePath, desktop);
    compare("subjectCode", data.subjectCode, "SUB001");
    compare("outputFileName", data.outputFileName, "SUB001.txt");
    compare("sessionTypes", data.sessionTypes, QStringList{"practice", "experiment"});
    compare("sessionTypeIndex", data.sessionTypeIndex, 0);
    compare("soundTypes", data.soundTypes, QStringList{".wav files", "reserved"});
    compare("soundTypeIndex", data.soundTypeIndex, 0);
    compare("mainParameters", data.mainParameters, QStringList{"sound files", "reserved"});
    compare("mainParameterIndex", data.mainParameterIndex, 0);
    compare("fileNumber", data.fileNumber, 1);
    compare("silentInterval", data.silentInterval, 0.5);
    compare("wavFileName", data.wavFileName, "File001.wav");
    compare("records", data.records.size(), 0);
    compare("frequencyMin", data.frequencyMin, 10);
    compare("frequencyMax", data.frequencyMax, 1000);
    compare("frequencyStart", data.frequencyStart, 500);
    compare("frequencyCurrent", data.frequencyCurrent, 500);
    compare("frequencyStepSize", data.frequencyStepSize, 1);
    compare("nResponses", data.nResponses, 0);
    compare("reserved", data.reserved, qint64(0));
    compare("saveDataToFile", data.saveDataToFile, true);
}

void TestSettings::everyFieldOfARecordHasItsDefault() {
    const Record record;
    compare("filePath", record.filePath, expectedDesktop());
    compare("fileName", record.fileName, "");
    compare("frequencyMatched", record.frequencyMatched, 0.0);
    compare("reserved1", record.reserved1, qint64(0));
    compare("reserved2", record.reserved2, qint64(0));
}

void TestSettings::settingsKeepTheirOrder() {
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

void TestSettings::fieldsOfARecordKeepTheirOrder() {
    const Record r;
    QVERIFY(
        isAscending({&r.filePath, &r.fileName, &r.frequencyMatched, &r.reserved1, &r.reserved2}));
}

void TestSettings::foldersFollowTheUserConfiguration() {
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
    return testsupport::runWithWindows<TestSettings, TestAppFunctions, TestMainWindowStart,
                                       TestMainWindowLayout, TestMainWindowMembers,
                                       TestMainWindowConnections, TestMainWindowLife, TestAccess>(
        argc, argv);
}
