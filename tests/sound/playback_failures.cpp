// Sessions whose sound fails, and how they must end.
// SPDX-License-Identifier: GPL-3.0-or-later
#include "playback_failures.h"

#include "session/ResponseJournal.h"
#include "support/CloseButton.h"
#include "support/ExpectedResults.h"
#include "support/FileBytes.h"
#include "support/ProcessorTime.h"

#include <QAudioOutput>
#include <QPushButton>
#include <QTest>

using testsupport::expectedResults;

testsupport::SoundServer& server() {
    static testsupport::SoundServer theServer;
    return theServer;
}

bool SoundFailureTest::prepareAndStart(int samples) {
    const QString path = fixture->pathOf("target.wav");
    if (!testsupport::writeSteadyTarget(path, samples))
        return false;
    fixture->prepare(path);
    return fixture->start();
}

void SoundFailureTest::request(int frequency) {
    fixture->soundSignals.clear();
    emit fixture->session().listener()->subjectResponded(4, frequency);
    QTRY_VERIFY(!fixture->soundSignals.isEmpty());
    QCOMPARE(fixture->soundSignals.first(), 1);
}

void SoundFailureTest::verifyJournal(const QVector<int>& frequencies) {
    QCOMPARE(testsupport::contentsOf(journalFolder()),
             QList<QByteArray>{expectedResults("target.wav", frequencies)});
}

void SoundFailureTest::endAndVerify(const QVector<int>& frequencies) {
    auto& window = fixture->window();
    const int fileNumber = fixture->fileNumber();
    const QString results = fixture->pathOf("results.txt");
    fixture->soundSignals.clear();
    fixture->dialogs.answerClosing(QMessageBox::Yes);
    fixture->dialogs.saveAs(results);
    QVERIFY(testsupport::pressCloseButton(*fixture->session().listener()));
    QTRY_VERIFY(window.isEnabled());
    QVERIFY(!fixture->session().listener()->isVisible());
    QCOMPARE(testsupport::readBytes(results), expectedResults("target.wav", frequencies));
    QCOMPARE(fixture->journals(), QStringList());
    QVERIFY(window.audioOutput == nullptr);
    QVERIFY(window.audioBuffer == nullptr);
    QVERIFY(window.audioBytes == nullptr);
    QCOMPARE(fixture->soundSignals, SoundSignals{});
    QVERIFY(window.pushButtonPractice->isEnabled());
    QVERIFY(window.pushButtonExperiment->isEnabled());
    QVERIFY(!window.pushButtonGo->isEnabled());
    QCOMPARE(fixture->fileNumber(), fileNumber + 1);
}

void SoundFailureTest::verifyAtRest() {
    constexpr int watchedMs = 500;
    constexpr double atRest = 0.25;
    const double share = testsupport::processorShareWhileWaiting(watchedMs);
    QVERIFY2(share < atRest, qPrintable(QString::number(share)));
}

bool SoundFailureTest::isListenerLocked() {
    return !fixture->session().listener()->isEnabled();
}

QAudio::State SoundFailureTest::outputState() {
    return fixture->window().audioOutput->state();
}
