// What the tests of session control share, and their main function.
// SPDX-License-Identifier: GPL-3.0-or-later
#include "test_session.h"

#include "support/TestMain.h"

#include <QLineEdit>
#include <QPushButton>
#include <QtCharts/QLineSeries>
#include <QtCharts/QValueAxis>

#include <numeric>

using testsupport::InspectedMainWindow;

void SessionTest::preparePractice() {
    QVector<int> samples(800);
    std::iota(samples.begin(), samples.end(), 1);
    fixture->window().lineEditSilentInterval->setText(QStringLiteral("20.00"));
    fixture->window().lineEditOutputFilePath->setText(fixture->folder.path());
    fixture->dialogs.chooseTarget(fixture->write(QStringLiteral("target.wav"), samples));
    fixture->window().on_pushButtonPractice_clicked();
}

SubjectWindow* SessionTest::go() {
    fixture->window().on_pushButtonGo_clicked();
    return fixture->window().subjectWindow;
}

QStringList SessionTest::state() {
    InspectedMainWindow& window = fixture->window();
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

int main(int argc, char** argv) {
    return testsupport::runWithWindows<TestTrialSequence, TestSessionSettings,
                                       TestSessionPreparation, TestSessionStart,
                                       TestSessionResponses, TestSessionEnd>(argc, argv);
}
