// Files that cannot be loaded, and files that can be but cannot be a target.
// SPDX-License-Identifier: GPL-3.0-or-later
#include "test_target.h"

#include "subject/SubjectWindow.h"
#include "support/AddressSpaceLimit.h"
#include "support/FileBytes.h"

#include <QFile>
#include <QLineEdit>
#include <QtTest>

using testsupport::setUnsigned16;
using testsupport::setUnsigned32;
using testsupport::wavHeader;
using testsupport::wavWithData;
using testsupport::wavWithSamples;
using Session = TargetBench::Session;
namespace wavoffset = testsupport::wavoffset;

namespace {

constexpr int earlierSamples = 400;

QByteArray goodFile() {
    return wavWithSamples({}, unevenCodes(earlierSamples, 33));
}

QByteArray withUnsigned16(int offset, quint16 value) {
    QByteArray bytes = goodFile();
    setUnsigned16(bytes, offset, value);
    return bytes;
}

/// Shows a match in its field and in the trend.
void answerOnce(TargetBench& bench) {
    bench.window.data.nResponses = 1;
    bench.window.data.records[0].frequencyMatched = 612;
    bench.window.updateTrend();
    bench.window.updateFrequencyMatched();
}

/// A target that has been prepared, and answered once.
QString prepareEarlierTarget(TargetBench& bench) {
    QString path = bench.write("earlier.wav", unevenCodes(earlierSamples));
    bench.prepare(path);
    answerOnce(bench);
    return path;
}

/// Writes bytes to a file, which is then grown, where it is to be longer, by a hole of zeros.
QString writeTarget(TargetBench& bench, const QByteArray& bytes, qint64 size) {
    QString path = bench.write("chosen.wav", bytes);
    if (size > bytes.size() && !QFile::resize(path, size))
        qFatal("cannot resize %s", qPrintable(path));
    return path;
}

/// The same once more; `prepared` is the state between the second preparation and its answer.
QString prepareEarlierTargetAgain(TargetBench& bench, QStringList& prepared) {
    QString path = prepareEarlierTarget(bench);
    bench.prepare(path);
    prepared = bench.preparedState();
    answerOnce(bench);
    return path;
}

/// What stands after the earlier target has been kept: a session on it can be started.
void verifyEarlierKept(TargetBench& bench, const QStringList& before) {
    const QString folder = bench.folder.path();
    QCOMPARE(bench.preparedState(), before);
    QCOMPARE(bench.window.data.wavFilePath, folder);
    QCOMPARE(bench.window.data.wavFileName, QString("earlier.wav"));
    QCOMPARE(bench.window.data.records.size(), 1);
    QCOMPARE(bench.window.data.records[0].filePath, folder);
    QCOMPARE(bench.window.data.records[0].fileName, QString("earlier.wav"));
    QVERIFY(bench.window.data.records[0].frequencyMatched == 0.0);
    QCOMPARE(bench.window.currentTargetPath, folder + "/earlier.wav");
    QCOMPARE(bench.text("lineEditWavFileName"), QString("earlier.wav"));
    QCOMPARE(bench.text("lineEditFrequencyMatched"), QString("not started yet"));
    QCOMPARE(bench.window.nFiles, 1);
    QCOMPARE(bench.window.trialSequence, QVector<int>{0});
    QVERIFY(bench.isEnabled("pushButtonGo"));
    QCOMPARE(bench.complaints(), QString());
}

/// What stands after a refused preparation, whatever was there before.
void verifyRefused(TargetBench& bench, const QStringList& before) {
    QCOMPARE(bench.preparedState(), before);
    QCOMPARE(bench.window.nFiles, 0);
    QCOMPARE(bench.window.trialSequence, QVector<int>());
    QCOMPARE(bench.window.currentFileIndex, 0);
    QCOMPARE(bench.window.currentTargetPath, QString());
    QCOMPARE(bench.window.data.records.size(), 1);
    QCOMPARE(bench.window.data.records[0].filePath, bench.folder.path());
    QCOMPARE(bench.window.data.records[0].fileName, QString("chosen.wav"));
    QVERIFY(bench.isEnabled("pushButtonPractice"));
    QVERIFY(!bench.isEnabled("pushButtonExperiment"));
    QVERIFY(!bench.isEnabled("pushButtonGo"));
    QVERIFY(bench.window.isEnabled());
    QCOMPARE(bench.complaints(), QString());
}

} // namespace

void TestTargetRefusals::failingFiles() {
    QTest::addColumn<QByteArray>("bytes");
    QTest::addColumn<QString>("prefix");
    QByteArray notWave = goodFile();
    notWave.replace(wavoffset::format, 4, "AVI ");
    QTest::newRow("empty") << QByteArray() << QString("Header size is zero. ");
    QTest::newRow("other format") << notWave << QString("Not a WAV file: ");
    QTest::newRow("floats") << withUnsigned16(wavoffset::audioFormat, 3)
                            << QString("Not a PCM (linear quantitation) WAV file: ");
    QTest::newRow("32 bits") << withUnsigned16(wavoffset::bitsPerSample, 32)
                             << QString("Not a 8-bit, 16-bit, or 24-bit WAV file: ");
    QTest::newRow("text") << QByteArray("This is no sound.") << QString("Not a WAV file: ");
}

void TestTargetRefusals::failedLoadWithoutAnEarlierTargetIsRefused_data() {
    failingFiles();
}

void TestTargetRefusals::failedLoadWithoutAnEarlierTargetIsRefused() {
    QFETCH(QByteArray, bytes);
    QFETCH(QString, prefix);
    TargetBench bench;
    const QStringList before = bench.preparedState();
    const QString path = bench.write("chosen.wav", bytes);
    QCOMPARE(bench.prepare(path),
             (prefix + path + "\nUnusable WAV file: " + path + "\n").toStdString());
    verifyRefused(bench, before);
}

void TestTargetRefusals::failedLoadGoesOnWithTheEarlierTarget_data() {
    failingFiles();
}

void TestTargetRefusals::failedLoadGoesOnWithTheEarlierTarget() {
    QFETCH(QByteArray, bytes);
    QFETCH(QString, prefix);
    TargetBench bench;
    QStringList before;
    const QString earlier = prepareEarlierTargetAgain(bench, before);
    const QString path = bench.write("chosen.wav", bytes);
    QCOMPARE(bench.prepare(path),
             (prefix + path + "\nKeeping the earlier target: " + earlier + "\n").toStdString());
    verifyEarlierKept(bench, before);
}

void TestTargetRefusals::fileThatHasVanishedIsAFailedLoad() {
    TargetBench bench;
    Record vanished;
    vanished.filePath = bench.folder.path();
    vanished.fileName = "vanished.wav";
    const std::string path = bench.folder.filePath("vanished.wav").toStdString();
    bench.window.data.records = {vanished};
    QCOMPARE(errorsOf([&] { bench.window.genWav(); }),
             "Unable to open WAV file: " + path + "\nUnusable WAV file: " + path + "\n");
    const QVector<int> codes = unevenCodes(40);
    const QString earlier = bench.write("earlier.wav", codes);
    QCOMPARE(bench.prepare(earlier), std::string());
    bench.window.data.records = {vanished};
    QCOMPARE(errorsOf([&] { bench.window.genWav(); }),
             "Unable to open WAV file: " + path +
                 "\nKeeping the earlier target: " + earlier.toStdString() + "\n");
    QCOMPARE(bench.window.data.records[0].fileName, QString("earlier.wav"));
    QCOMPARE(bench.window.nFiles, 1);
    QVERIFY(bench.window.targetSamples == scaledFrom16Bits(codes));
    QCOMPARE(bench.complaints(), QString());
}

void TestTargetRefusals::failedLoadAfterRefusedAndCancelledOnesGoesOnWithTheLastAccepted() {
    TargetBench bench;
    bench.prepare(bench.write("first.wav", unevenCodes(40)));
    const QVector<int> codes = unevenCodes(60, 9);
    const QString accepted = bench.write("second.wav", codes);
    QCOMPARE(bench.prepare(accepted), std::string());
    testsupport::find<QLineEdit>(bench.window, "lineEditSamplingRate")->setText("0");
    const QString refused = bench.write("refused.wav", unevenCodes(80));
    bench.prepare(refused);
    QVERIFY(!bench.isEnabled("pushButtonGo"));
    testsupport::find<QLineEdit>(bench.window, "lineEditSamplingRate")->setText("40000");
    bench.prepareCancelled();
    const QString text = bench.write("text.wav", QByteArray("This is no sound."));
    QCOMPARE(bench.prepare(text), "Not a WAV file: " + text.toStdString() +
                                      "\nKeeping the earlier target: " + accepted.toStdString() +
                                      "\n");
    QVERIFY(bench.window.targetSamples == scaledFrom16Bits(codes));
    QCOMPARE(bench.window.data.nSamples, 60);
    QCOMPARE(bench.text("lineEditWavFileName"), QString("second.wav"));
    QVERIFY(bench.isEnabled("pushButtonGo"));
    QCOMPARE(bench.complaints(), QString());
}

void TestTargetRefusals::resultsNameTheTargetThatWasPlayed() {
    TargetBench bench;
    QCOMPARE(bench.prepare(bench.write("earlier.wav", unevenCodes(400))), std::string());
    bench.prepare(bench.write("chosen.wav", QByteArray("This is no sound.")));
    testsupport::find<QLineEdit>(bench.window, "lineEditSilentInterval")->setText("20.00");
    QVERIFY(bench.session.go() != nullptr);
    bench.session.beReady();
    QVERIFY(bench.session.playTarget());
    QVERIFY(bench.session.playSinusoid(321));
    bench.session.finish(bench.folder.filePath("results.txt"));
    QCOMPARE(testsupport::readBytes(bench.folder.filePath("results.txt")),
             QByteArray("filename\tnTrials\tfrequency matched (Hz)\r\nearlier.wav\t1\t321\r\n"));
    QCOMPARE(bench.complaints(), QString());
}

void TestTargetRefusals::unusableTargets() {
    QTest::addColumn<QByteArray>("bytes");
    QTest::addColumn<qint64>("size"); // of the file, grown by a hole of zeros
    const qint64 asWritten = 0;
    QTest::newRow("no channel") << withUnsigned16(wavoffset::channelCount, 0) << asWritten;
    QByteArray noRate = goodFile();
    setUnsigned32(noRate, wavoffset::samplingRate, 0);
    QTest::newRow("no sampling rate") << noRate << asWritten;
    QTest::newRow("no data") << wavHeader({}, 0) << asWritten;
    QTest::newRow("a header of 36 bytes") << goodFile().left(36) << asWritten;
    QTest::newRow("the last byte is missing") << goodFile().chopped(1) << asWritten;
    QTest::newRow("nothing behind the header") << wavHeader({}, 800) << asWritten;
    QTest::newRow("4 GiB declared")
        << wavHeader({}, 0xFFFFFFFF) + QByteArray(100, 'x') << asWritten;
    QTest::newRow("half a sample") << wavWithData({}, "x") << asWritten;
    QTest::newRow("half a stereo sample") << wavWithSamples({40000, 2, 16}, {1}) << asWritten;
    QTest::newRow("two channels of three") << wavWithSamples({40000, 3, 24}, {1, 2}) << asWritten;
    // 0.0227 ms read 0.02, which is 0.8 of a sample.
    QTest::newRow("one sample at 44.1 kHz") << wavWithSamples({44100, 1, 16}, {99}) << asWritten;
    QTest::newRow("a duration of 0.00")
        << wavWithSamples({4294967295, 1, 16}, unevenCodes(40)) << asWritten;
    // At 1 Hz each sample of the file is a second, 40000 samples played.
    QTest::newRow("played: beyond an int")
        << wavWithData({1, 1, 8}, QByteArray(60000, 'x')) << asWritten;
    QTest::newRow("played: beyond a vector")
        << wavWithData({1, 1, 8}, QByteArray(6711, 'x')) << asWritten;
    QTest::newRow("played: beyond a vector, two hours at 1000 Hz")
        << wavHeader({1000, 1, 8}, 7200000) << qint64(7200044);
}

void TestTargetRefusals::unusableTargetChangesNothing_data() {
    unusableTargets();
}

void TestTargetRefusals::unusableTargetChangesNothing() {
    QFETCH(QByteArray, bytes);
    QFETCH(qint64, size);
    TargetBench bench;
    const QStringList before = bench.preparedState();
    const QString path = writeTarget(bench, bytes, size);
    QCOMPARE(bench.prepare(path), "Unusable WAV file: " + path.toStdString() + "\n");
    verifyRefused(bench, before);
}

void TestTargetRefusals::unusableTargetGoesOnWithTheEarlierTarget_data() {
    unusableTargets();
}

void TestTargetRefusals::unusableTargetGoesOnWithTheEarlierTarget() {
    QFETCH(QByteArray, bytes);
    QFETCH(qint64, size);
    TargetBench bench;
    QStringList before;
    const QString earlier = prepareEarlierTargetAgain(bench, before);
    const QString path = writeTarget(bench, bytes, size);
    QCOMPARE(bench.prepare(path),
             ("Unusable WAV file: " + path + "\nKeeping the earlier target: " + earlier + "\n")
                 .toStdString());
    verifyEarlierKept(bench, before);
}

void TestTargetRefusals::rateOfTheSettingsThatGivesNoCountRefuses_data() {
    QTest::addColumn<QString>("rate");
    QTest::newRow("no number") << "fast";
    QTest::newRow("0") << "0";
    QTest::newRow("nothing") << "";
    QTest::newRow("infinite") << "inf";
    QTest::newRow("nan") << "nan";
    QTest::newRow("huge") << "1e300";
    QTest::newRow("tiny") << "1e-300";
}

void TestTargetRefusals::rateOfTheSettingsThatGivesNoCountRefuses() {
    QFETCH(QString, rate);
    TargetBench bench;
    testsupport::find<QLineEdit>(bench.window, "lineEditSamplingRate")->setText(rate);
    const QString path = bench.write("chosen.wav", unevenCodes(400));
    QCOMPARE(bench.prepare(path), "Unusable WAV file: " + path.toStdString() + "\n");
    QCOMPARE(bench.window.nFiles, 0);
    QVERIFY(!bench.isEnabled("pushButtonGo"));
    QCOMPARE(bench.complaints(), QString());
}

void TestTargetRefusals::earlierTargetIsJudgedAgainBeforeItIsKept_data() {
    QTest::addColumn<QByteArray>("bytes");
    QTest::addColumn<QString>("prefix");
    QTest::newRow("failed load") << QByteArray(100, 'x') << "Not a WAV file: ";
    QTest::newRow("unusable") << goodFile() << "Unusable WAV file: ";
}

void TestTargetRefusals::earlierTargetIsJudgedAgainBeforeItIsKept() {
    QFETCH(QByteArray, bytes);
    QFETCH(QString, prefix);
    TargetBench bench;
    const QString earlier = prepareEarlierTarget(bench);
    testsupport::find<QLineEdit>(bench.window, "lineEditSamplingRate")->setText("0");
    bench.window.getParameters();
    const QStringList before = bench.preparedState();
    const QString path = bench.write("chosen.wav", bytes);
    QCOMPARE(bench.prepare(path),
             (prefix + path + "\nUnusable WAV file: " + earlier + "\n").toStdString());
    verifyRefused(bench, before);
}

void TestTargetRefusals::memoryThatCannotBeHadKeepsTheEarlierTarget() {
    if (!testsupport::AddressSpaceLimit::isPossible())
        QSKIP("a limit of the address space leaves the sanitizer none");
    TargetBench bench;
    QStringList before;
    const QString earlier = prepareEarlierTargetAgain(bench, before);
    // Loaded, it is 40 MB of samples; the transform takes another 384 MiB, the sounds 100 MB.
    const QString path = writeTarget(bench, wavHeader({40000, 1, 8}, 5000000), 5000044);
    std::string errors;
    {
        const testsupport::AddressSpaceLimit limit(300);
        errors = bench.prepare(path);
    }
    QCOMPARE(errors,
             ("Unusable WAV file: " + path + "\nKeeping the earlier target: " + earlier + "\n")
                 .toStdString());
    verifyEarlierKept(bench, before);
}

void TestTargetRefusals::earlierTargetMayTakeTheMemoryOfTheUnusableOne() {
    if (!testsupport::AddressSpaceLimit::isPossible())
        QSKIP("a limit of the address space leaves the sanitizer none");
    TargetBench bench;
    // To prepare it takes 80 MB; the chosen file holds another 108 MB while it is judged.
    const QString earlier = bench.write("earlier.wav", unevenCodes(1000000));
    QCOMPARE(bench.prepare(earlier), std::string());
    const QString path = writeTarget(bench, wavHeader({40000, 1, 8}, 12000000), 12000044);
    {
        const testsupport::AddressSpaceLimit limit(150);
        bench.prepare(path);
    }
    QCOMPARE(bench.text("lineEditWavFileName"), QString("earlier.wav"));
    QVERIFY(bench.isEnabled("pushButtonGo"));
}
