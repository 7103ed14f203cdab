// Whole sessions by the widgets that people use, heard at the sound device and read from the disk.
// SPDX-License-Identifier: GPL-3.0-or-later
#include "support/ExpectedResults.h"
#include "support/FileBytes.h"
#include "support/Fixture.h"
#include "support/ProgramRun.h"
#include "support/TestMain.h"

#include <QDir>
#include <QFileInfo>
#include <QLineEdit>
#include <QLocale>
#include <QPushButton>
#include <QScreen>
#include <QTest>
#include <QtCharts/QLineSeries>

#include <clocale>

using testsupport::expectedResults;
using testsupport::Fixture;
using testsupport::readBytes;

namespace {

constexpr auto practice = Fixture::Session::Practice;
constexpr auto experiment = Fixture::Session::Experiment;

struct PlannedSession {
    Fixture::Session kind;
    QString target;
    QVector<int> requests; ///< Hz
    QString resultsName;
    QString durationMs;
    int samplesPlayed;
    int pointsPlotted;
};

/// A triangle over the whole range of 24 bits, its two ends included.
QVector<int> triangleOf24Bits(int sampleCount) {
    QVector<int> samples(sampleCount);
    for (int i = 0; i < sampleCount; ++i)
        samples[i] = -8388608 + 80000 * (i % 200);
    samples[1] = 8388607;
    return samples;
}

/// Makes a target by a command line in which "FILE" stands for the file's path; returns the path.
QString targetBy(const Fixture& fixture, const QString& name, const QString& commandLine) {
    QString path = fixture.pathOf(name);
    QStringList words = commandLine.split(u' ');
    words.replaceInStrings(QStringLiteral("FILE"), path);
    const QString program = words.takeFirst();
    if (testsupport::runProgram(program, words).status != 0)
        qFatal("%s failed", qPrintable(program));
    return path;
}

/// Each target differs from the one before: in length, channels, bit depth, rate.
QVector<PlannedSession> plannedSessions(const Fixture& fixture) {
    const QString mono = targetBy(fixture, "mono.wav",
                                  "sox -D -n -r 40000 -b 16 -c 1 FILE synth 0.1 sine 440 vol 0.5");
    const QString stereo =
        targetBy(fixture, "longer stereo.wav",
                 "ffmpeg -loglevel error -f lavfi -i "
                 "aevalsrc=0.5*sin(2*PI*600*t)|0.25*cos(2*PI*900*t):s=40000:d=0.2 "
                 "-c:a pcm_s16le -bitexact -fflags +bitexact FILE");
    const QString fine = fixture.write("short fine.wav", triangleOf24Bits(2000), {40000, 1, 24});
    const QString coarse = targetBy(fixture, "coarse.wav",
                                    "sox -D -n -r 8000 -b 8 -c 1 FILE synth 0.04 sine 500 vol 0.7");
    const QString compactDisc =
        targetBy(fixture, "cd.wav",
                 "sox -D -n -r 44100 -b 16 -c 2 FILE synth 0.05 sine 441 sine 882 vol 0.4");
    const QString three = fixture.write("three.wav", QVector<int>(3000, 99), {40000, 3, 16});
    // The plotted stretch stays shortened.
    return {
        {practice, mono, {300, 1000, 640}, "SUB001_practice001.txt", "100.00", 4000, 4000},
        {experiment, stereo, {10, 611}, "SUB001_experiment002.txt", "200.00", 8000, 4000},
        {practice, fine, {440}, "SUB001_practice003.txt", "50.00", 2000, 2000},
        {experiment, coarse, {500, 500}, "SUB001_experiment004.txt", "40.00", 1600, 320},
        {experiment, compactDisc, {882}, "SUB001_experiment005.txt", "50.00", 2000, 320},
        {practice, three, {123}, "SUB001_practice006.txt", "25.00", 1000, 320},
    };
}

/// Holds one session and checks its results on the screen and on the disk.
void hold(Fixture& fixture, const PlannedSession& planned) {
    const auto& window = fixture.window();
    fixture.prepare(planned.target, planned.kind);
    const QString targetName = QFileInfo(planned.target).fileName();
    QCOMPARE(window.lineEditWavFileName->text(), targetName);
    QCOMPARE(window.lineEditSoundDuration->text(), planned.durationMs);
    QCOMPARE(window.lineEditFrequencyMatched->text(), QStringLiteral("not started yet"));
    QCOMPARE(window.lineEditOutputFileName->text(), planned.resultsName);
    QCOMPARE(window.seriesWav->count(), planned.pointsPlotted);
    QCOMPARE(window.seriesTrend->count(), 0);
    QCOMPARE(fixture.expectedTarget().size(), planned.samplesPlayed);

    QVERIFY(fixture.start());
    QVERIFY(!window.isEnabled());
    QVERIFY(fixture.playTarget());
    QVector<QPointF> trend;
    for (const int request : planned.requests) {
        QVERIFY(fixture.playSinusoid(request));
        QCOMPARE(window.lineEditFrequencyMatched->text(), QString::number(request));
        trend.append(QPointF(trend.size(), request));
        QCOMPARE(window.seriesTrend->pointsVector(), trend);
    }
    QVERIFY(fixture.playTarget());

    const int number = fixture.fileNumber();
    fixture.session().finish();
    QCOMPARE(readBytes(fixture.pathOf(planned.resultsName)),
             expectedResults(targetName, planned.requests));
    QCOMPARE(fixture.fileNumber(), number + 1);
    QVERIFY(window.isEnabled());
    QVERIFY(window.pushButtonPractice->isEnabled() && window.pushButtonExperiment->isEnabled());
    QVERIFY(!window.pushButtonGo->isEnabled());
}

} // namespace

/// Regular sessions.
class TestWholeSessions : public testsupport::FixtureTest {
    Q_OBJECT

private slots:
    void deskMatchesItsSettings();
    void bothWindowsFitTheScreen();
    void manySessionsInOneRun();
    void preparationsAreReplacedBeforeGo();
    void namesWithSpacesUmlautsCjkAndEmoji();
};

void TestWholeSessions::deskMatchesItsSettings() {
    // These tests also run on smaller screens and in other locales: verify the settings.
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
    fixture->prepare(fixture->writeTone());
    QVERIFY(fixture->start());
    const QRect screen = QGuiApplication::primaryScreen()->availableGeometry();
    QVERIFY(screen.contains(fixture->window().geometry()));
    QCOMPARE(fixture->window().size(),
             QSize(int(screen.width() * 0.8), int(screen.height() * 0.9)));
    const SubjectWindow& listener = *fixture->session().listener();
    QVERIFY(screen.contains(listener.geometry()));
    QCOMPARE(listener.size(), QSize(int(screen.width() * 0.7), int(screen.height() * 0.8)));
}

void TestWholeSessions::manySessionsInOneRun() {
    fixture->record();
    for (const PlannedSession& planned : plannedSessions(*fixture)) {
        hold(*fixture, planned);
        if (QTest::currentTestFailed())
            return;
    }
    QCOMPARE(fixture->differenceHeard(), QString());
}

void TestWholeSessions::preparationsAreReplacedBeforeGo() {
    const QString first = fixture->writeTone(QStringLiteral("first.wav"), 100, 300);
    const QString second = fixture->writeTone(QStringLiteral("second.wav"), 50, 700);
    fixture->record();
    fixture->prepare(first, practice);
    fixture->prepare(second, practice);
    QVERIFY(fixture->start());
    QVERIFY(fixture->playTarget());
    QVERIFY(fixture->playSinusoid(640));
    QCOMPARE(readBytes(fixture->finish()), expectedResults("second.wav", {640}));

    fixture->prepare(second, experiment);
    QCOMPARE(fixture->textOf("lineEditOutputFileName"), QStringLiteral("SUB001_experiment002.txt"));
    fixture->prepare(first, practice);
    QCOMPARE(fixture->textOf("lineEditOutputFileName"), QStringLiteral("SUB001_practice002.txt"));
    QVERIFY(!fixture->window().pushButtonExperiment->isEnabled());
    QVERIFY(fixture->start());
    QVERIFY(fixture->playTarget());
    QVERIFY(fixture->playSinusoid(523));
    QCOMPARE(readBytes(fixture->finish()), expectedResults("first.wav", {523}));
    QCOMPARE(fixture->differenceHeard(), QString());
}

void TestWholeSessions::namesWithSpacesUmlautsCjkAndEmoji() {
    const QString folderName = QStringLiteral("Jäger & Söhne 聴覚 実験 🦻");
    QVERIFY(QDir(fixture->folder.path()).mkdir(folderName));
    const QString targetName = QStringLiteral("Größe 音 №1 🎵.wav");
    fixture->record();
    fixture->prepare(fixture->writeTone(folderName + u'/' + targetName));
    QCOMPARE(fixture->textOf("lineEditWavFilePath"), fixture->pathOf(folderName));
    QCOMPARE(fixture->textOf("lineEditWavFileName"), targetName);
    QVERIFY(fixture->start());
    QVERIFY(fixture->playTarget());
    QVERIFY(fixture->playSinusoid(640));
    const QString results =
        fixture->pathOf(folderName + QStringLiteral("/Ergebnis für Müller 結果 🎧.txt"));
    fixture->session().finish(results);
    QCOMPARE(readBytes(results), expectedResults(targetName, {640}));
    QCOMPARE(fixture->differenceHeard(), QString());
}

int main(int argc, char** argv) {
    return testsupport::runWithWindows<TestWholeSessions>(argc, argv);
}

#include "test_end_to_end.moc"
