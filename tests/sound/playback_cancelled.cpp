// Sessions and windows that end before their sound.
// SPDX-License-Identifier: GPL-3.0-or-later
#include "test_playback.h"

#include "support/CloseButton.h"
#include "support/ExpectedResults.h"
#include "support/FileBytes.h"

#include <QAudioOutput>
#include <QCheckBox>
#include <QPushButton>
#include <QSpinBox>
#include <QTest>
#include <QTimer>

using testsupport::expectedResults;

namespace {

/// Reports when a pause that began before this object must be over.
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

} // namespace

/// Prepares and starts a session with a target of uneven samples.
bool TestPlaybackCancelled::startWith(int samples) {
    fixture->record();
    prepare(unevenCodes(samples));
    return fixture->start();
}

/// Closes the listener's window and saves. The file must hold these matches (Hz).
void TestPlaybackCancelled::closeListener(bool byItsButton, const QStringList& matches) {
    SubjectWindow* listener = fixture->session().listener();
    const QString results = fixture->pathOf("results.txt");
    fixture->dialogs.answerClosing(QMessageBox::Yes);
    fixture->dialogs.saveAs(results);
    if (byItsButton)
        QVERIFY(testsupport::pressCloseButton(*listener));
    else
        listener->close();
    QTRY_VERIFY(!listener->isVisible());
    QCOMPARE(testsupport::readBytes(results), expectedResults("target.wav", matches));
}

/// Verifies that only the beginning of the target was heard.
void TestPlaybackCancelled::verifyCut() {
    QVERIFY(fixture->recorder().waitForSilence());
    const QVector<float> sound = fixture->expectedTarget();
    const CutSound cut = findCutSound(fixture->recorder().samples(), sound);
    QVERIFY(cut.length > 0 && cut.length < sound.size());
    QVERIFY(!isAudible(cut.rest));
    QCOMPARE(fixture->soundSignals, SoundSignals{1});
}

/// Verifies that the session has ended and does not disturb the next one.
void TestPlaybackCancelled::verifyNextSession() {
    const auto& window = fixture->window();
    QVERIFY(window.audioOutput == nullptr);
    QVERIFY(window.audioBuffer == nullptr);
    QVERIFY(window.audioBytes == nullptr);
    QTRY_VERIFY(window.findChildren<QAudioOutput*>().isEmpty());
    QVERIFY(window.isEnabled());
    fixture->soundSignals.clear();
    prepare(unevenCodes(800, 99));
    window.checkBoxSaveData->setChecked(false);
    QVERIFY(fixture->start());
    QVERIFY(fixture->session().listener()->isEnabled());
    QVERIFY(fixture->playTarget());
    QVERIFY(fixture->playSinusoid(700));
    QCOMPARE(fixture->soundSignals, (SoundSignals{1, -1, 1, -1}));
    QCOMPARE(fixture->differenceHeard(), QString());
    fixture->finish();
}

void TestPlaybackCancelled::waysToClose() {
    QTest::addColumn<bool>("byItsButton");
    QTest::newRow("by the window manager's button") << true;
    QTest::newRow("by close()") << false;
}

void TestPlaybackCancelled::subjectWindowClosedWhileASoundIsPending_data() {
    waysToClose();
}

void TestPlaybackCancelled::subjectWindowClosedWhileASoundIsPending() {
    QFETCH(bool, byItsButton);
    fixture->window().checkBoxSaveData->setChecked(true);
    QVERIFY(startWith(400));
    QVERIFY(fixture->playTarget());
    constexpr int pauseMs = 1500;
    Data& data = fixture->window().data;
    data.silentInterval = pauseMs / 1000.0 - data.soundDuration;
    SubjectWindow& listener = *fixture->session().listener();
    testsupport::find<QSpinBox>(listener, "spinBoxFrequency")->setValue(640);
    testsupport::click(listener, "pushButtonPlaySinusoid");
    const PauseIsOver pauseIsOver(pauseMs);
    closeListener(byItsButton, {"640"});
    QVERIFY2(!pauseIsOver(), "too slow to close the window while the sound is pending");
    QTRY_VERIFY(pauseIsOver());
    QCOMPARE(fixture->soundSignals, (SoundSignals{1, -1}));
    verifyNextSession();
}

void TestPlaybackCancelled::subjectWindowClosedWhileASoundPlays_data() {
    waysToClose();
}

void TestPlaybackCancelled::subjectWindowClosedWhileASoundPlays() {
    QFETCH(bool, byItsButton);
    fixture->window().checkBoxSaveData->setChecked(true);
    QVERIFY(startWith(200000));
    testsupport::click(*fixture->session().listener(), "pushButtonPlayTarget");
    QTRY_VERIFY(isAudible(fixture->recorder().samples()));
    closeListener(byItsButton, {});
    verifyCut();
    fixture->recorder().stop();
    QVERIFY(fixture->recorder().start());
    verifyNextSession();
}

void TestPlaybackCancelled::unconfirmedClosingCancelsNothing() {
    fixture->record();
    prepare(unevenCodes(4000));
    fixture->session().setPause(300);
    QVERIFY(fixture->start());
    SubjectWindow& listener = *fixture->session().listener();
    testsupport::click(listener, "pushButtonPlayTarget");
    // The sound starts and ends while the question is open.
    int timesAnswerable = 0;
    fixture->dialogs.expectClosing([&](QWidget* widget) {
        for (const SoundSignals& sounds : {SoundSignals{1}, SoundSignals{1, -1}})
            if (QTest::qWaitFor([&] { return fixture->soundSignals == sounds; }) &&
                widget->isEnabled())
                ++timesAnswerable;
        QTest::mouseClick(qobject_cast<QMessageBox*>(widget)->button(QMessageBox::No),
                          Qt::LeftButton);
    });
    listener.close();
    QCOMPARE(timesAnswerable, 2);
    QVERIFY(listener.isVisible() && listener.isEnabled());
    QVERIFY(!fixture->window().isEnabled());
    fixture->expectSound(fixture->expectedTarget());
    QCOMPARE(fixture->differenceHeard(), QString());
    fixture->finish();
}

void TestPlaybackCancelled::mainWindowDestroyedWhileASoundIsPending() {
    fixture->record();
    prepare(unevenCodes(400));
    fixture->session().setPause(100);
    QVERIFY(fixture->start());
    testsupport::click(*fixture->session().listener(), "pushButtonPlayTarget");
    const PauseIsOver pauseIsOver(100);
    fixture->destroyWindow();
    QTRY_VERIFY(pauseIsOver());
    QCOMPARE(fixture->soundSignals, SoundSignals{});
    QCOMPARE(fixture->differenceHeard(), QString());
}

void TestPlaybackCancelled::mainWindowDestroyedWhileASoundPlays() {
    QVERIFY(startWith(80000));
    testsupport::click(*fixture->session().listener(), "pushButtonPlayTarget");
    QTRY_VERIFY(isAudible(fixture->recorder().samples()));
    fixture->destroyWindow();
    verifyCut();
}

void TestPlaybackCancelled::mainWindowDestroyedRightAfterACancelledSession() {
    QVERIFY(startWith(80000));
    testsupport::click(*fixture->session().listener(), "pushButtonPlayTarget");
    QTRY_COMPARE(fixture->soundSignals, SoundSignals{1});
    fixture->finish();
    // The output's deletion is still pending: no event has been processed since.
    fixture->destroyWindow();
    QCOMPARE(fixture->soundSignals, SoundSignals{1});
}
