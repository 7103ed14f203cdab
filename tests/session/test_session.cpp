// The window that the tests of session control work on, and their main function.
// SPDX-License-Identifier: GPL-3.0-or-later
#include "test_session.h"

#include "support/FileBytes.h"
#include "support/SessionDriver.h"
#include "support/TestMain.h"
#include "support/WavBytes.h"

#include <QApplication>
#include <QLineEdit>
#include <QMetaMethod>
#include <QPushButton>
#include <QSpinBox>
#include <QtCharts/QLineSeries>
#include <QtCharts/QValueAxis>

#include <numeric>

using testsupport::find;

void ObservedMainWindow::connectNotify(const QMetaMethod& signal) {
    connectedSignals.append(QString::fromLatin1(signal.methodSignature()));
}

QString SessionBench::target(const QString& fileName, int sampleCount, quint32 samplingRate) const {
    QVector<int> samples(sampleCount);
    std::iota(samples.begin(), samples.end(), 1);
    QString path = folder.filePath(fileName);
    if (!testsupport::writeBytes(path, testsupport::wavWithSamples({samplingRate, 1, 16}, samples)))
        qFatal("cannot write %s", qPrintable(path));
    return path;
}

void SessionBench::preparePractice() {
    find<QLineEdit>(window, "lineEditSilentInterval")->setText(QStringLiteral("20.00"));
    dialogs.chooseTarget(target(QStringLiteral("target.wav")));
    window.on_pushButtonPractice_clicked();
}

SubjectWindow* SessionBench::go() {
    window.on_pushButtonGo_clicked();
    return window.subjectWindow;
}

QStringList SessionBench::state() {
    const Data& data = window.data;
    QStringList lines;
    const auto add = [&lines](const char* name, const QVariant& value) {
        lines.append(QStringLiteral("%1: %2").arg(QLatin1String(name), value.toString()));
    };
    add("session type", data.sessionTypeIndex);
    add("rate", data.samplingRate);
    add("sound duration", data.soundDuration);
    add("samples", data.nSamples);
    add("plot duration", data.plotDuration);
    add("points", data.nPointsToPlot);
    add("subject code", data.subjectCode);
    add("file number", data.fileNumber);
    add("frequency", data.frequencyCurrent);
    add("responses", data.nResponses);
    for (const Record& record : data.records)
        add("match", record.frequencyMatched);
    for (const int trial : std::as_const(window.trialSequence))
        add("trial", trial);
    add("position", window.sequencePosition);
    add("file index", window.currentFileIndex);
    add("files", window.nFiles);
    add("repetitions", window.nRepetitions);
    add("sinusoid next", window.playSinusoidNext);
    add("target samples", window.targetSamples.size());
    add("sinusoid samples", window.sinusoidSamples.size());
    add("plays", window.audioOutput != nullptr);
    for (const double frequency : std::as_const(window.trendFrequencies))
        add("trend", frequency);
    add("waveform points", window.seriesWav->count());
    add("waveform end", window.axisXWav->max());
    add("waveform top", window.axisYWav->max());
    add("spectrum points", window.seriesFFT->count());
    add("spectrum top", window.axisYFFT->max());
    add("trend points", window.seriesTrend->count());
    add("trend end", window.axisXTrend->max());
    add("trend top", window.axisYTrend->max());
    for (const auto* field : window.findChildren<QLineEdit*>())
        add(qPrintable(field->objectName()), field->text());
    for (const auto* button : window.findChildren<QPushButton*>())
        add(qPrintable(button->objectName()), button->isEnabled());
    add("window", window.isEnabled());
    return lines;
}

QStringList SessionBench::logged() const {
    return log.all();
}

QStringList SessionBench::complaints() {
    return dialogs.takeComplaints() + log.warnings().filter(QStringLiteral("QObject::"));
}

void SessionTest::init() {
    bench = std::make_unique<SessionBench>();
    QVERIFY(bench->folder.isValid());
}

void SessionTest::cleanup() {
    const QStringList complaints = bench->complaints();
    bench.reset();
    QCOMPARE(complaints.join(u'\n'), QString());
}

int main(int argc, char** argv) {
    QApplication application(argc, argv);
    // Windows come and go here; none of them ends the program.
    QApplication::setQuitOnLastWindowClosed(false);
    return testsupport::runAll<TestTrialSequence, TestSessionSettings, TestSessionPreparation,
                               TestSessionStart, TestSessionResponses, TestSessionEnd>(argc, argv);
}
