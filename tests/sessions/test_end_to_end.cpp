// Whole sessions by the widgets that people use, heard at the sound device and read from the disk.
// SPDX-License-Identifier: GPL-3.0-or-later
#include "test_end_to_end.h"

#include "subject/SubjectWindow.h"
#include "support/FileBytes.h"
#include "support/TestMain.h"

#include <QApplication>
#include <QDir>
#include <QPushButton>
#include <QScreen>
#include <QtCharts/QChart>
#include <QtCharts/QChartView>
#include <QtCharts/QLineSeries>

#include <clocale>

using testsupport::find;
using testsupport::wavWithSamples;

namespace {

constexpr auto practice = SessionRoom::Session::Practice;
constexpr auto experiment = SessionRoom::Session::Experiment;

struct PlannedSession {
    SessionRoom::Session kind;
    Target target;
    QVector<int> requests; ///< Hz
    QString resultsName;
    QString durationMs;
    int samplesPlayed;
    int pointsPlotted;
};

QVector<QPointF> pointsOf(MainWindow& window, const char* chartViewName) {
    const auto* view = find<QtCharts::QChartView>(window, chartViewName);
    return qobject_cast<QtCharts::QLineSeries*>(view->chart()->series().first())->pointsVector();
}

/// A triangle over the whole range of 24 bits, its two ends included.
QByteArray triangleOf24Bits(int sampleCount) {
    QVector<int> samples(sampleCount);
    for (int i = 0; i < sampleCount; ++i)
        samples[i] = -8388608 + 80000 * (i % 200);
    samples[1] = 8388607;
    return wavWithSamples({40000, 1, 24}, samples);
}

/// Targets each of which is unlike the one before: in length, channels, depth, rate.
QVector<PlannedSession> plannedSessions(const SessionRoom& room) {
    const Target mono = room.tone(QStringLiteral("mono.wav"), 100);
    const Target stereo = room.targetByFfmpeg(
        QStringLiteral("longer stereo.wav"), {40000, 2, 16},
        QStringLiteral("-loglevel error -f lavfi -i "
                       "aevalsrc=0.5*sin(2*PI*600*t)|0.25*cos(2*PI*900*t):s=40000:d=0.2 "
                       "-c:a pcm_s16le -bitexact -fflags +bitexact"));
    const Target fine = room.targetOfBytes(QStringLiteral("short fine.wav"), {40000, 1, 24},
                                           triangleOf24Bits(2000));
    const Target coarse =
        room.targetBySox(QStringLiteral("coarse.wav"), {8000, 1, 8},
                         QStringLiteral("-D -n -r 8000 -b 8 -c 1 synth 0.04 sine 500 vol 0.7"));
    const Target compactDisc = room.targetBySox(
        QStringLiteral("cd.wav"), {44100, 2, 16},
        QStringLiteral("-D -n -r 44100 -b 16 -c 2 synth 0.05 sine 441 sine 882 vol 0.4"));
    const Target three = room.targetOfBytes(QStringLiteral("three.wav"), {40000, 3, 16},
                                            wavWithSamples({40000, 3, 16}, QVector<int>(3000, 99)));
    // The plotted stretch never grows again.
    return {
        {practice, mono, {300, 1000, 640}, "SUB001_practice001.txt", "100.00", 4000, 4000},
        {experiment, stereo, {10, 611}, "SUB001_experiment002.txt", "200.00", 8000, 4000},
        {practice, fine, {440}, "SUB001_practice003.txt", "50.00", 2000, 2000},
        {experiment, coarse, {500, 500}, "SUB001_experiment004.txt", "40.00", 1600, 320},
        {experiment, compactDisc, {882}, "SUB001_experiment005.txt", "50.00", 2000, 320},
        {practice, three, {123}, "SUB001_practice006.txt", "25.00", 1000, 320},
    };
}

/// Holds one session and checks all that it leaves on the screen and on the disk.
void hold(SessionRoom& room, const PlannedSession& planned) {
    room.prepare(planned.kind, planned.target);
    const QString targetName = QFileInfo(planned.target.path).fileName();
    QCOMPARE(room.textOf("lineEditWavFileName"), targetName);
    QCOMPARE(room.textOf("lineEditSoundDuration"), planned.durationMs);
    QCOMPARE(room.textOf("lineEditFrequencyMatched"), QStringLiteral("not started yet"));
    QCOMPARE(room.textOf("lineEditOutputFileName"), planned.resultsName);
    QCOMPARE(pointsOf(room.window, "chartViewWav").size(), planned.pointsPlotted);
    QVERIFY(pointsOf(room.window, "chartViewTrend").isEmpty());
    QCOMPARE(planned.target.played.size(), planned.samplesPlayed);

    QVERIFY(room.start());
    QVERIFY(!room.window.isEnabled());
    QVERIFY(room.playTarget());
    QVector<QPointF> trend;
    for (const int request : planned.requests) {
        QVERIFY(room.playSinusoid(request));
        QCOMPARE(room.textOf("lineEditFrequencyMatched"), QString::number(request));
        trend.append(QPointF(trend.size(), request));
        QCOMPARE(pointsOf(room.window, "chartViewTrend"), trend);
    }
    QVERIFY(room.playTarget());

    const int number = room.fileNumber();
    const QString results = room.finish();
    QCOMPARE(QFileInfo(results).fileName(), planned.resultsName);
    QCOMPARE(testsupport::readBytes(results), resultsOf(targetName, planned.requests));
    QCOMPARE(room.fileNumber(), number + 1);
    QVERIFY(room.window.isEnabled());
    QVERIFY(room.isEnabled("pushButtonPractice") && room.isEnabled("pushButtonExperiment"));
    QVERIFY(!room.isEnabled("pushButtonGo"));
}

} // namespace

void TestWholeSessions::theDeskIsTheOneAskedFor() {
    // These tests also run on smaller screens and in other languages: see that they do.
    if (qEnvironmentVariableIsSet("DESK_SCREEN")) {
        const QSize size = QGuiApplication::primaryScreen()->size();
        QVERIFY(qEnvironmentVariable("DESK_SCREEN")
                    .startsWith(QStringLiteral("%1x%2x").arg(size.width()).arg(size.height())));
    }
    if (qEnvironmentVariable("DESK_LOCALE").startsWith(QLatin1String("de_DE"))) {
        QCOMPARE(QLocale::system().decimalPoint(), QChar(u','));
        QCOMPARE(std::localeconv()->decimal_point, ",");
    }
}

void TestWholeSessions::bothWindowsFitTheScreen() {
    room->prepare(practice, room->tone(QStringLiteral("tone.wav")));
    QVERIFY(room->start());
    const QRect screen = QGuiApplication::primaryScreen()->availableGeometry();
    QVERIFY(screen.contains(room->window.geometry()));
    QCOMPARE(room->window.size(), QSize(int(screen.width() * 0.8), int(screen.height() * 0.9)));
    QVERIFY(screen.contains(room->driver.listener()->geometry()));
    QCOMPARE(room->driver.listener()->size(),
             QSize(int(screen.width() * 0.7), int(screen.height() * 0.8)));
}

void TestWholeSessions::manySessionsInOneRun() {
    for (const PlannedSession& planned : plannedSessions(*room)) {
        hold(*room, planned);
        if (QTest::currentTestFailed())
            return;
    }
    QCOMPARE(room->differenceHeard(), QString());
}

void TestWholeSessions::preparationsAreReplacedBeforeGo() {
    const Target first = room->tone(QStringLiteral("first.wav"), 100, 300);
    const Target second = room->tone(QStringLiteral("second.wav"), 50, 700);
    room->prepare(practice, first);
    room->prepare(practice, second);
    QVERIFY(room->start());
    QVERIFY(room->playTarget());
    QVERIFY(room->playSinusoid(640));
    QCOMPARE(testsupport::readBytes(room->finish()), resultsOf("second.wav", {640}));

    room->prepare(experiment, second);
    QCOMPARE(room->textOf("lineEditOutputFileName"), QStringLiteral("SUB001_experiment002.txt"));
    room->prepare(practice, first);
    QCOMPARE(room->textOf("lineEditOutputFileName"), QStringLiteral("SUB001_practice002.txt"));
    QVERIFY(!room->isEnabled("pushButtonExperiment"));
    QVERIFY(room->start());
    QVERIFY(room->playTarget());
    QVERIFY(room->playSinusoid(523));
    QCOMPARE(testsupport::readBytes(room->finish()), resultsOf("first.wav", {523}));
    QCOMPARE(room->differenceHeard(), QString());
}

void TestWholeSessions::aSessionWithoutAnyResponseSavesTheHeaderOnly() {
    room->prepare(practice, room->tone(QStringLiteral("tone.wav")));
    SubjectWindow* listener = room->driver.go();
    QVERIFY(listener != nullptr);
    room->driver.dialogs.click(QStringLiteral("Confirmation MessageBox"), QMessageBox::Yes,
                               QStringLiteral("Do you want to close this window?\n"));
    room->driver.dialogs.saveAsProposed();
    QVERIFY(listener->close());
    QCOMPARE(testsupport::readBytes(room->pathOf(QStringLiteral("SUB001_practice001.txt"))),
             resultsOf("tone.wav", {}));
    QCOMPARE(room->textOf("lineEditFrequencyMatched"), QStringLiteral("not started yet"));
    QCOMPARE(room->differenceHeard(), QString());
}

void TestWholeSessions::aSessionWithTheTargetAloneSavesTheHeaderOnly() {
    room->prepare(practice, room->tone(QStringLiteral("tone.wav")));
    QVERIFY(room->start());
    QVERIFY(room->playTarget());
    QVERIFY(!find<QPushButton>(*room->driver.listener(), "pushButtonDone")->isVisible());
    room->driver.dialogs.click(QStringLiteral("Confirmation MessageBox"), QMessageBox::Yes);
    room->driver.dialogs.saveAsProposed();
    QVERIFY(room->driver.listener()->close());
    QCOMPARE(testsupport::readBytes(room->pathOf(QStringLiteral("SUB001_practice001.txt"))),
             resultsOf("tone.wav", {}));
    QCOMPARE(room->differenceHeard(), QString());
}

void TestWholeSessions::namesWithSpacesUmlautsCjkAndEmoji() {
    const QString folderName = QStringLiteral("Jäger & Söhne 聴覚 実験 🦻");
    QVERIFY(QDir(room->folder.path()).mkdir(folderName));
    const QString targetName = QStringLiteral("Größe 音 №1 🎵.wav");
    const Target target = room->tone(folderName + u'/' + targetName);
    room->prepare(practice, target);
    QCOMPARE(room->textOf("lineEditWavFilePath"), room->pathOf(folderName));
    QCOMPARE(room->textOf("lineEditWavFileName"), targetName);
    QVERIFY(room->start());
    QVERIFY(room->playTarget());
    QVERIFY(room->playSinusoid(640));
    const QString results =
        room->pathOf(folderName + QStringLiteral("/Ergebnis für Müller 結果 🎧.txt"));
    room->driver.finish(results);
    QCOMPARE(testsupport::readBytes(results), resultsOf(targetName, {640}));
    QCOMPARE(room->differenceHeard(), QString());
}

int main(int argc, char** argv) {
    QApplication application(argc, argv);
    QApplication::setApplicationName(QStringLiteral("pellion"));
    // Main windows come and go here; none of them ends the program.
    QApplication::setQuitOnLastWindowClosed(false);
    return testsupport::runAll<TestWholeSessions, TestSessionDialogs>(argc, argv);
}
