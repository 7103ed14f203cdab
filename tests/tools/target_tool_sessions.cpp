// Sessions with targets made by pellion-target: what is heard is what the files hold.
// SPDX-License-Identifier: GPL-3.0-or-later
#include "sessions/end_to_end_room.h"
#include "support/FileBytes.h"

#include <QProcess>
#include <QtTest>

#include <algorithm>

using testsupport::readBytes;

namespace {

/// The samples of the first channel behind a canonical header, as floats.
QVector<float> samplesIn(const QByteArray& file, int bits, int channels) {
    const auto* const data =
        reinterpret_cast<const uchar*>(file.constData()) + testsupport::wavoffset::data;
    const int bytesPerSample = bits / 8;
    const int bytesPerFrame = bytesPerSample * channels;
    QVector<float> samples((file.size() - testsupport::wavoffset::data) / bytesPerFrame);
    for (int i = 0; i < samples.size(); ++i) {
        const uchar* const bytes = data + qptrdiff(i) * bytesPerFrame;
        int code = bits == 8 ? bytes[0] - 128 : 0;
        for (int byte = 0; bits != 8 && byte < bytesPerSample; ++byte)
            code |= bytes[byte] << (8 * byte);
        if (bits != 8 && code >= 1 << (bits - 1))
            code -= 1 << bits;
        samples[i] = float(double(code) / (1 << (bits - 1)));
    }
    return samples;
}

} // namespace

class TestTargetSessions : public RoomTest {
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
    const QString path = room->pathOf("target.wav");
    QStringList arguments = QStringList{"make"} + options.split(u' ');
    arguments.insert(2, path);
    arguments << "--duration"
              << "50"
              << "--bits" << QString::number(bits) << "--channels" << QString::number(channels);
    QCOMPARE(QProcess::execute(PELLION_TARGET, arguments), 0);
    const QVector<float> samples = samplesIn(readBytes(path), bits, channels);
    QCOMPARE(samples.size(), 2000);
    QVERIFY(*std::max_element(samples.cbegin(), samples.cend()) > 0.05F);
    room->prepare(SessionRoom::Session::Practice, {path, samples});
    QVERIFY(room->start());
    QVERIFY(room->playTarget());
    QVERIFY(room->playSinusoid(440));
    const QString results = room->finish();
    QCOMPARE(room->differenceHeard(), QString());
    QCOMPARE(readBytes(results), resultsOf("target.wav", {440}));
}

void TestTargetSessions::lengthPredictedIsTheLengthHeard() {
    // 30.025 ms, of which the duration shown, 30.02 ms, holds the first 1200 samples.
    const QString path = room->pathOf("target.wav");
    QProcess tool;
    tool.start(PELLION_TARGET, {"make", "tone", path, "--duration", "30.025", "--ramp", "none"});
    QVERIFY(tool.waitForFinished());
    QCOMPARE(tool.readAllStandardError(),
             QByteArray("pellion-target: note: Its 1201 samples are 30.025 ms long, which the "
                        "program shows as 30.02 ms. The program plays as many samples as the "
                        "duration shown holds, 1200, and leaves out the last 1.\n"));
    const QVector<float> samples = samplesIn(readBytes(path), 16, 1);
    QCOMPARE(samples.size(), 1201);
    room->prepare(SessionRoom::Session::Practice, {path, samples.mid(0, 1200)});
    QVERIFY(room->start());
    QVERIFY(room->playTarget());
    room->finish();
    QCOMPARE(room->differenceHeard(), QString());
}

QTEST_MAIN(TestTargetSessions)
#include "target_tool_sessions.moc"
