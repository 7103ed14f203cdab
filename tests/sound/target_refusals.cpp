// Files that cannot be loaded, and loadable files that cannot be a target.
// SPDX-License-Identifier: GPL-3.0-or-later
#include "test_target.h"

#include "support/AddressSpaceLimit.h"
#include "support/ExpectedResults.h"
#include "support/FileBytes.h"

#include <QFile>
#include <QLineEdit>
#include <QPushButton>
#include <QTest>

using testsupport::setUnsigned16;
using testsupport::wavHeader;
using testsupport::wavWithData;
using testsupport::wavWithSamples;
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

} // namespace

/// Prepares a target and answers it, twice; returns the state after the second preparation.
QStringList TestTargetRefusals::prepareEarlierTarget() {
    const QString path = fixture->write("earlier.wav", unevenCodes(earlierSamples));
    fixture->prepare(path);
    answerOnce();
    fixture->prepare(path);
    QStringList prepared = preparedState();
    answerOnce();
    return prepared;
}

/// Writes bytes to a file; a larger `size` appends a hole of zeros.
QString TestTargetRefusals::writeTarget(const QByteArray& bytes, qint64 size) const {
    QString path = fixture->write("chosen.wav", bytes);
    if (size > bytes.size() && !QFile::resize(path, size))
        qFatal("cannot resize %s", qPrintable(path));
    return path;
}

/// Verifies that the earlier target is kept and a session on it can be started.
void TestTargetRefusals::verifyEarlierKept(const QStringList& before) {
    const auto& window = fixture->window();
    const QString folder = fixture->folder.path();
    QCOMPARE(preparedState(), before);
    QCOMPARE(window.data.wavFilePath, folder);
    QCOMPARE(window.data.wavFileName, QString("earlier.wav"));
    QCOMPARE(window.data.records.size(), 1);
    QCOMPARE(window.data.records[0].filePath, folder);
    QCOMPARE(window.data.records[0].fileName, QString("earlier.wav"));
    QVERIFY(window.data.records[0].frequencyMatched == 0.0);
    QCOMPARE(window.currentTargetPath, folder + "/earlier.wav");
    QCOMPARE(window.lineEditWavFileName->text(), QString("earlier.wav"));
    QCOMPARE(window.lineEditFrequencyMatched->text(), QString("not started yet"));
    QCOMPARE(window.nFiles, 1);
    QCOMPARE(window.trialSequence, QVector<int>{0});
    QVERIFY(window.pushButtonGo->isEnabled());
}

/// Verifies the state after a refused preparation.
void TestTargetRefusals::verifyRefused(const QStringList& before) {
    const auto& window = fixture->window();
    QCOMPARE(preparedState(), before);
    QCOMPARE(window.nFiles, 0);
    QCOMPARE(window.trialSequence, QVector<int>());
    QCOMPARE(window.currentFileIndex, 0);
    QCOMPARE(window.currentTargetPath, QString());
    QCOMPARE(window.data.records.size(), 1);
    QCOMPARE(window.data.records[0].filePath, fixture->folder.path());
    QCOMPARE(window.data.records[0].fileName, QString("chosen.wav"));
    QVERIFY(window.pushButtonPractice->isEnabled());
    QVERIFY(!window.pushButtonExperiment->isEnabled());
    QVERIFY(!window.pushButtonGo->isEnabled());
    QVERIFY(window.isEnabled());
}

void TestTargetRefusals::refusedFiles() {
    QTest::addColumn<QByteArray>("bytes");
    QTest::addColumn<qint64>("size"); // of the file, grown by a hole of zeros
    QTest::addColumn<QString>("failure");
    const auto row = [](const char* name, const QByteArray& bytes, qint64 size = 0) {
        QTest::newRow(name) << bytes << size << QString();
    };
    const auto failingRow = [](const char* name, const QByteArray& bytes, const char* failure) {
        QTest::newRow(name) << bytes << qint64(0) << QString(failure);
    };
    failingRow("empty", QByteArray(), "Header size is zero. ");
    failingRow("text", QByteArray("This is no sound."), "Not a WAV file: ");
    failingRow("floats", withUnsigned16(wavoffset::audioFormat, 3),
               "Not a PCM (linear quantitation) WAV file: ");
    row("no channel", withUnsigned16(wavoffset::channelCount, 0));
    row("no data", wavHeader({}, 0));
    row("a header of 36 bytes", goodFile().left(36));
    row("the last byte is missing", goodFile().chopped(1));
    row("4 GiB declared", wavHeader({}, 0xFFFFFFFF) + QByteArray(100, 'x'));
    row("half a stereo sample", wavWithSamples({40000, 2, 16}, {1}));
    // At 1 Hz each sample of the file lasts a second, which is 40000 samples when played.
    row("played: beyond an int", wavWithData({1, 1, 8}, QByteArray(60000, 'x')));
    row("played: beyond a vector, two hours at 1000 Hz", wavHeader({1000, 1, 8}, 7200000), 7200044);
}

void TestTargetRefusals::refusedFileWithoutAnEarlierTargetChangesNothing_data() {
    refusedFiles();
}

void TestTargetRefusals::refusedFileWithoutAnEarlierTargetChangesNothing() {
    QFETCH(QByteArray, bytes);
    QFETCH(qint64, size);
    QFETCH(QString, failure);
    const QStringList before = preparedState();
    const QString path = writeTarget(bytes, size);
    fixture->prepare(path);
    QStringList expected{"Unusable WAV file: " + path};
    if (!failure.isEmpty())
        expected.prepend(failure + path);
    QCOMPARE(fixture->takePrinted(), expected);
    verifyRefused(before);
}

void TestTargetRefusals::refusedFileKeepsTheEarlierTarget_data() {
    refusedFiles();
}

void TestTargetRefusals::refusedFileKeepsTheEarlierTarget() {
    QFETCH(QByteArray, bytes);
    QFETCH(qint64, size);
    QFETCH(QString, failure);
    const QStringList before = prepareEarlierTarget();
    const QString path = writeTarget(bytes, size);
    fixture->prepare(path);
    const QString refusal = failure.isEmpty() ? "Unusable WAV file: " : failure;
    QCOMPARE(fixture->takePrinted(),
             QStringList({refusal + path,
                          "Keeping the earlier target: " + fixture->pathOf("earlier.wav")}));
    verifyEarlierKept(before);
}

void TestTargetRefusals::missingFileIsAFailedLoad() {
    auto& window = fixture->window();
    Record vanished;
    vanished.filePath = fixture->folder.path();
    vanished.fileName = "vanished.wav";
    const QString path = fixture->pathOf("vanished.wav");
    window.data.records = {vanished};
    window.genWav();
    QCOMPARE(fixture->takePrinted(),
             QStringList({"Unable to open WAV file: " + path, "Unusable WAV file: " + path}));
    const QVector<int> codes = unevenCodes(40);
    const QString earlier = fixture->write("earlier.wav", codes);
    fixture->prepare(earlier);
    window.data.records = {vanished};
    window.genWav();
    QCOMPARE(fixture->takePrinted(), QStringList({"Unable to open WAV file: " + path,
                                                  "Keeping the earlier target: " + earlier}));
    QCOMPARE(window.data.records[0].fileName, QString("earlier.wav"));
    QCOMPARE(window.nFiles, 1);
    QVERIFY(window.targetSamples == scaledFrom16Bits(codes));
}

void TestTargetRefusals::failedLoadKeepsTheLastAcceptedTarget() {
    auto& window = fixture->window();
    fixture->prepare(fixture->write("first.wav", unevenCodes(40)));
    const QVector<int> codes = unevenCodes(60, 9);
    const QString accepted = fixture->write("second.wav", codes);
    fixture->prepare(accepted);
    window.lineEditSamplingRate->setText("0");
    fixture->prepare(fixture->write("refused.wav", unevenCodes(80)));
    QVERIFY(!window.pushButtonGo->isEnabled());
    window.lineEditSamplingRate->setText("40000");
    prepareCancelled();
    const QString text = fixture->write("text.wav", QByteArray("This is no sound."));
    fixture->prepare(text);
    QCOMPARE(fixture->takePrinted(),
             QStringList({"Not a WAV file: " + text, "Keeping the earlier target: " + accepted}));
    QVERIFY(window.targetSamples == scaledFrom16Bits(codes));
    QCOMPARE(window.data.nSamples, 60);
    QCOMPARE(window.lineEditWavFileName->text(), QString("second.wav"));
    QVERIFY(window.pushButtonGo->isEnabled());
}

void TestTargetRefusals::resultsNameTheTargetThatWasPlayed() {
    fixture->prepare(fixture->write("earlier.wav", unevenCodes(400)));
    fixture->prepare(fixture->write("chosen.wav", QByteArray("This is no sound.")));
    QCOMPARE(fixture->takePrinted().size(), 2);
    QVERIFY(fixture->start());
    QVERIFY(fixture->session().playTarget());
    QVERIFY(fixture->session().playSinusoid(321));
    QCOMPARE(testsupport::readBytes(fixture->finish()),
             testsupport::expectedResults("earlier.wav", {321}));
}

void TestTargetRefusals::samplingRateWithoutAValidCountRefuses_data() {
    QTest::addColumn<QString>("rate");
    QTest::newRow("no number") << "fast";
    QTest::newRow("0") << "0";
    QTest::newRow("nothing") << "";
    QTest::newRow("infinite") << "inf";
    QTest::newRow("nan") << "nan";
    QTest::newRow("huge") << "1e300";
    QTest::newRow("tiny") << "1e-300";
}

void TestTargetRefusals::samplingRateWithoutAValidCountRefuses() {
    QFETCH(QString, rate);
    fixture->window().lineEditSamplingRate->setText(rate);
    const QString path = fixture->write("chosen.wav", unevenCodes(400));
    fixture->prepare(path);
    QCOMPARE(fixture->takePrinted(), QStringList("Unusable WAV file: " + path));
    QCOMPARE(fixture->window().nFiles, 0);
    QVERIFY(!fixture->window().pushButtonGo->isEnabled());
}

void TestTargetRefusals::earlierTargetIsCheckedAgainBeforeItIsKept_data() {
    QTest::addColumn<QByteArray>("bytes");
    QTest::addColumn<QString>("refusal");
    QTest::newRow("failed load") << QByteArray(100, 'x') << "Not a WAV file: ";
    QTest::newRow("unusable") << goodFile() << "Unusable WAV file: ";
}

void TestTargetRefusals::earlierTargetIsCheckedAgainBeforeItIsKept() {
    QFETCH(QByteArray, bytes);
    QFETCH(QString, refusal);
    prepareEarlierTarget();
    fixture->window().lineEditSamplingRate->setText("0");
    fixture->window().getParameters();
    const QStringList before = preparedState();
    const QString path = fixture->write("chosen.wav", bytes);
    fixture->prepare(path);
    QCOMPARE(fixture->takePrinted(),
             QStringList({refusal + path, "Unusable WAV file: " + fixture->pathOf("earlier.wav")}));
    verifyRefused(before);
}

void TestTargetRefusals::lackOfMemoryKeepsTheEarlierTarget() {
    if (!testsupport::AddressSpaceLimit::isPossible())
        QSKIP("a limit of the address space leaves the sanitizer none");
    const QStringList before = prepareEarlierTarget();
    // Loaded, it is 40 MB of samples; the transform takes another 384 MiB, the sounds 100 MB.
    const QString path = writeTarget(wavHeader({40000, 1, 8}, 5000000), 5000044);
    {
        const testsupport::AddressSpaceLimit limit(300);
        fixture->prepare(path);
    }
    QCOMPARE(fixture->takePrinted(),
             QStringList({"Unusable WAV file: " + path,
                          "Keeping the earlier target: " + fixture->pathOf("earlier.wav")}));
    verifyEarlierKept(before);
}

void TestTargetRefusals::earlierTargetMayUseTheMemoryOfTheUnusableOne() {
    if (!testsupport::AddressSpaceLimit::isPossible())
        QSKIP("a limit of the address space leaves the sanitizer none");
    // To prepare it takes 80 MB; the chosen file holds another 108 MB while it is judged.
    fixture->prepare(fixture->write("earlier.wav", unevenCodes(1000000)));
    const QString path = writeTarget(wavHeader({40000, 1, 8}, 12000000), 12000044);
    {
        const testsupport::AddressSpaceLimit limit(150);
        fixture->prepare(path);
    }
    QCOMPARE(fixture->takePrinted().size(), 2);
    QCOMPARE(fixture->textOf("lineEditWavFileName"), QString("earlier.wav"));
    QVERIFY(fixture->window().pushButtonGo->isEnabled());
}
