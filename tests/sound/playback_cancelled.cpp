// Sessions and windows that end before their sound.
// SPDX-License-Identifier: GPL-3.0-or-later
#include "test_playback.h"

#include "subject/SubjectWindow.h"
#include "support/CloseButton.h"
#include "support/FileBytes.h"

#include <QCheckBox>
#include <QDialogButtonBox>
#include <QPushButton>
#include <QSpinBox>
#include <QTimer>
#include <QtTest>

#include <algorithm>
#include <functional>

namespace {

using Told = QVector<int>;
const char* const question = "Confirmation MessageBox";

bool isSilent(const QVector<float>& samples) {
    return std::all_of(samples.cbegin(), samples.cend(), [](float sample) { return sample == 0; });
}

/// Says when a pause that began before the timer's start must be over.
class PauseIsOver {
public:
    explicit PauseIsOver(int milliseconds) {
        timer.setSingleShot(true);
        timer.setTimerType(Qt::PreciseTimer);
        timer.start(milliseconds);
    }
    bool operator()() const { return !timer.isActive(); }

private:
    QTimer timer;
};

/// Returns what is wrong with a recording that has to hold the beginning of a sound without silent
/// samples, not all of it, and silence else.
QString wrongInCutSound(const QVector<float>& recording, const QVector<float>& sound) {
    const auto* const onset = std::find_if(recording.cbegin(), recording.cend(),
                                           [](float sample) { return sample != 0.0F; });
    const auto* const end =
        std::mismatch(onset, recording.cend(), sound.cbegin(), sound.cend()).first;
    if (end == onset)
        return "nothing of the sound was heard";
    if (end - onset == sound.size())
        return "all of the sound was heard";
    if (!isSilent(recording.mid(int(end - recording.cbegin()))))
        return "something sounds after the end";
    return {};
}

void closeListener(PlaybackBench& bench, bool byItsButton) {
    SubjectWindow* listener = bench.session.listener();
    if (byItsButton) {
        QVERIFY(testsupport::pressCloseButton(*listener));
        QTRY_VERIFY(!listener->isVisible());
    } else {
        listener->close();
    }
    QVERIFY(!listener->isVisible());
}

/// The session has ended, and its next is not disturbed by it.
void verifyNextSession(PlaybackBench& bench, const QVector<QVector<float>>& heardBefore) {
    QVERIFY(bench.window.audioOutput == nullptr);
    QVERIFY(bench.window.audioBuffer == nullptr);
    QVERIFY(bench.window.audioBytes == nullptr);
    QVERIFY(bench.window.isEnabled());
    bench.sounds.clear();
    const QVector<int> codes = unevenCodes(800, 99);
    bench.prepare(codes);
    bench.setPause(10);
    testsupport::find<QCheckBox>(bench.window, "checkBoxSaveData")->setChecked(false);
    QVERIFY(bench.go());
    QVERIFY(bench.session.listener()->isEnabled());
    QVERIFY(bench.session.playTarget());
    QVERIFY(bench.session.playSinusoid(700));
    QCOMPARE(bench.soundsTold(), (Told{1, -1, 1, -1}));
    QCOMPARE(bench.wrongInRecording(
                 heardBefore + QVector<QVector<float>>{heardFrom(codes), heardSinusoid(700, 800)}),
             QString());
    bench.finish();
    QCOMPARE(bench.complaints(), QString());
}

} // namespace

void TestPlaybackCancelled::waysToClose() {
    QTest::addColumn<bool>("byItsButton");
    QTest::newRow("by the window manager's button") << true;
    QTest::newRow("by close()") << false;
}

void TestPlaybackCancelled::listenersWindowClosedWhileASoundIsPending_data() {
    waysToClose();
}

void TestPlaybackCancelled::listenersWindowClosedWhileASoundIsPending() {
    QFETCH(bool, byItsButton);
    PlaybackBench bench;
    QVERIFY(bench.recorder.start());
    testsupport::find<QCheckBox>(bench.window, "checkBoxSaveData")->setChecked(true);
    const QVector<int> codes = unevenCodes(400);
    bench.prepare(codes);
    bench.setPause(10);
    QVERIFY(bench.go());
    QVERIFY(bench.session.playTarget());
    constexpr int pauseMs = 1500;
    bench.window.data.silentInterval = pauseMs / 1000.0 - bench.window.data.soundDuration;
    testsupport::find<QSpinBox>(*bench.session.listener(), "spinBoxFrequency")->setValue(640);
    testsupport::click(*bench.session.listener(), "pushButtonPlaySinusoid");
    const PauseIsOver pauseIsOver(pauseMs);
    const QString results = bench.folder.filePath("results.txt");
    bench.session.dialogs.click(question, QMessageBox::Yes);
    bench.session.dialogs.saveAs(results);
    closeListener(bench, byItsButton);
    QVERIFY2(!pauseIsOver(), "too slow to close the window while the sound is pending");
    QCOMPARE(testsupport::readBytes(results),
             QByteArray("filename\tnTrials\tfrequency matched (Hz)\r\ntarget.wav\t1\t640\r\n"));
    QTRY_VERIFY(pauseIsOver());
    QCOMPARE(bench.soundsTold(), (Told{1, -1}));
    verifyNextSession(bench, {heardFrom(codes)});
}

void TestPlaybackCancelled::listenersWindowClosedWhileASoundPlays_data() {
    waysToClose();
}

void TestPlaybackCancelled::listenersWindowClosedWhileASoundPlays() {
    QFETCH(bool, byItsButton);
    PlaybackBench bench;
    QVERIFY(bench.recorder.start());
    testsupport::find<QCheckBox>(bench.window, "checkBoxSaveData")->setChecked(true);
    const QVector<int> codes = unevenCodes(200000);
    bench.prepare(codes);
    bench.setPause(10);
    QVERIFY(bench.go());
    testsupport::click(*bench.session.listener(), "pushButtonPlayTarget");
    QTRY_VERIFY(!isSilent(bench.recorder.samples()));
    const QString results = bench.folder.filePath("results.txt");
    bench.session.dialogs.click(question, QMessageBox::Yes);
    bench.session.dialogs.saveAs(results);
    closeListener(bench, byItsButton);
    QCOMPARE(testsupport::readBytes(results),
             QByteArray("filename\tnTrials\tfrequency matched (Hz)\r\n"));
    QVERIFY(bench.recorder.waitForSilence());
    QCOMPARE(wrongInCutSound(bench.recorder.samples(), heardFrom(codes)), QString());
    QCOMPARE(bench.soundsTold(), Told{1});
    bench.recorder.stop();
    QVERIFY(bench.recorder.start());
    verifyNextSession(bench, {});
}

void TestPlaybackCancelled::closingThatIsNotConfirmedCancelsNothing() {
    PlaybackBench bench;
    QVERIFY(bench.recorder.start());
    const QVector<int> codes = unevenCodes(4000);
    bench.prepare(codes);
    bench.setPause(300);
    QVERIFY(bench.go());
    testsupport::click(*bench.session.listener(), "pushButtonPlayTarget");
    // The sound starts and ends under the question.
    bool isAnswerable = false;
    bench.session.dialogs.expect(question, [&](QWidget* widget) {
        isAnswerable = QTest::qWaitFor([&] { return bench.soundsTold() == Told{1}; }) &&
                       widget->isEnabled() && QTest::qWaitFor([&] {
                           return bench.soundsTold() == (Told{1, -1});
                       }) &&
                       widget->isEnabled();
        if (auto* box = qobject_cast<QMessageBox*>(widget))
            QTest::mouseClick(box->button(QMessageBox::No), Qt::LeftButton);
    });
    bench.session.listener()->close();
    QVERIFY(isAnswerable);
    QVERIFY(bench.session.listener()->isVisible());
    QVERIFY(bench.session.listener()->isEnabled());
    QVERIFY(!bench.window.isEnabled());
    QCOMPARE(bench.wrongInRecording({heardFrom(codes)}), QString());
    bench.finish();
    QCOMPARE(bench.complaints(), QString());
}

void TestPlaybackCancelled::mainWindowDestroyedWhileASoundIsPending() {
    PlaybackBench bench;
    QVERIFY(bench.recorder.start());
    bench.prepare(unevenCodes(400));
    bench.setPause(100);
    QVERIFY(bench.go());
    testsupport::click(*bench.session.listener(), "pushButtonPlayTarget");
    const PauseIsOver pauseIsOver(100);
    bench.windowOwner.reset();
    QTRY_VERIFY(pauseIsOver());
    QCOMPARE(bench.soundsTold(), Told{});
    QCOMPARE(bench.wrongInRecording({}), QString());
    QCOMPARE(bench.complaints(), QString());
}

void TestPlaybackCancelled::mainWindowDestroyedWhileASoundPlays() {
    PlaybackBench bench;
    QVERIFY(bench.recorder.start());
    const QVector<int> codes = unevenCodes(80000);
    bench.prepare(codes);
    bench.setPause(10);
    QVERIFY(bench.go());
    testsupport::click(*bench.session.listener(), "pushButtonPlayTarget");
    QTRY_VERIFY(!isSilent(bench.recorder.samples()));
    bench.windowOwner.reset();
    QVERIFY(bench.recorder.waitForSilence());
    QCOMPARE(wrongInCutSound(bench.recorder.samples(), heardFrom(codes)), QString());
    QCOMPARE(bench.soundsTold(), Told{1});
    QCOMPARE(bench.complaints(), QString());
}

void TestPlaybackCancelled::mainWindowDestroyedRightAfterACancelledSession() {
    PlaybackBench bench;
    bench.prepare(unevenCodes(80000));
    bench.setPause(10);
    QVERIFY(bench.go());
    testsupport::click(*bench.session.listener(), "pushButtonPlayTarget");
    QTRY_COMPARE(bench.soundsTold(), Told{1});
    bench.finish();
    // The output is only about to be deleted: no event has been processed since.
    bench.windowOwner.reset();
    QCOMPARE(bench.soundsTold(), Told{1});
    QCOMPARE(bench.complaints(), QString());
}
