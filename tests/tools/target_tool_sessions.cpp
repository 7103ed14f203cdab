// Sessions with targets made by pellion-target: what is heard is what the files hold.
// SPDX-License-Identifier: GPL-3.0-or-later
#include "support/ExpectedResults.h"
#include "support/FileBytes.h"
#include "support/Fixture.h"
#include "support/ProgramRun.h"
#include "support/TestMain.h"

#include <QTest>

#include <algorithm>

class TestTargetSessions : public testsupport::FixtureTest {
    Q_OBJECT

private slots:
    void targetsMadeAreHeardBitForBit_data();
    void targetsMadeAreHeardBitForBit();
    void lengthPredictedIsTheLengthHeard();
};

void TestTargetSessions::targetsMadeAreHeardBitForBit_data() {
    QTest::addColumn<QString>("options");
    QTest::addColumn<int>("bits");
    QTest::addColumn<int>("channels");
    QTest::newRow("tone") << "tone" << 16 << 1;
    QTest::newRow("tone at full scale") << "tone --frequency 1000 --peak 0" << 24 << 2;
    QTest::newRow("complex") << "complex --frequency 200" << 24 << 1;
    QTest::newRow("complex without its fundamental")
        << "complex --frequency 200 --without-fundamental" << 8 << 2;
    QTest::newRow("SAM") << "sam --frequency 1000 --modulation 100 --rms -20" << 16 << 2;
    QTest::newRow("noise") << "noise --ramp cos2" << 24 << 1;
}

void TestTargetSessions::targetsMadeAreHeardBitForBit() {
    QFETCH(QString, options);
    QFETCH(int, bits);
    QFETCH(int, channels);
    const QString path = fixture->pathOf("target.wav");
    QStringList arguments = QStringList{"make"} + options.split(u' ');
    arguments.insert(2, path);
    arguments << "--duration"
              << "50"
              << "--bits" << QString::number(bits) << "--channels" << QString::number(channels);
    QCOMPARE(testsupport::runProgram(PELLION_TARGET, arguments).status, 0);
    fixture->record();
    fixture->prepare(path);
    const QVector<float> samples = fixture->expectedTarget();
    QCOMPARE(samples.size(), 2000);
    QVERIFY(*std::max_element(samples.cbegin(), samples.cend()) > 0.05F);
    QVERIFY(fixture->start());
    QVERIFY(fixture->playTarget());
    QVERIFY(fixture->playSinusoid(440));
    const QString results = fixture->finish();
    QCOMPARE(fixture->differenceHeard(), QString());
    QCOMPARE(testsupport::readBytes(results), testsupport::expectedResults("target.wav", {440}));
}

void TestTargetSessions::lengthPredictedIsTheLengthHeard() {
    // 30.025 ms, of which the duration shown, 30.02 ms, holds the first 1200 samples.
    const QString path = fixture->pathOf("target.wav");
    const testsupport::ProgramRun run = testsupport::runProgram(
        PELLION_TARGET, {"make", "tone", path, "--duration", "30.025", "--ramp", "none"});
    QCOMPARE(run.errors,
             QByteArray("pellion-target: note: Its 1201 samples are 30.025 ms long, which "
                        "Pellion shows as 30.02 ms. Pellion plays as many samples as the "
                        "duration shown holds, 1200, and leaves out the last 1.\n"));
    QCOMPARE(testsupport::readBytes(path).size(), testsupport::wavoffset::data + 2 * 1201);
    fixture->record();
    fixture->prepare(path);
    QCOMPARE(fixture->expectedTarget().size(), 1200);
    QVERIFY(fixture->start());
    QVERIFY(fixture->playTarget());
    fixture->finish();
    QCOMPARE(fixture->differenceHeard(), QString());
}

int main(int argc, char** argv) {
    return testsupport::runWithWindows<TestTargetSessions>(argc, argv);
}

#include "target_tool_sessions.moc"
