// The program's windows with their members open to inspection.
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "app/MainWindow.h"
#include "subject/SubjectWindow.h"

#include <QMetaMethod>

namespace testsupport {

/// Makes protected members public for tests, and records which of its own signals get connected.
class InspectedMainWindow : public MainWindow {
public:
    using MainWindow::MainWindow;

    using MainWindow::audioBuffer;
    using MainWindow::audioBytes;
    using MainWindow::audioFormat;
    using MainWindow::audioOutput;
    using MainWindow::axisXFFT;
    using MainWindow::axisXTrend;
    using MainWindow::axisXWav;
    using MainWindow::axisYFFT;
    using MainWindow::axisYTrend;
    using MainWindow::axisYWav;
    using MainWindow::chartFFT;
    using MainWindow::chartTrend;
    using MainWindow::chartViewFFT;
    using MainWindow::chartViewTrend;
    using MainWindow::chartViewWav;
    using MainWindow::chartWav;
    using MainWindow::checkBoxSaveData;
    using MainWindow::comboBoxMainParameter;
    using MainWindow::comboBoxSesType;
    using MainWindow::comboBoxSoundType;
    using MainWindow::currentFileIndex;
    using MainWindow::currentTargetPath;
    using MainWindow::data;
    using MainWindow::deleteCharts;
    using MainWindow::fftAmplitudes;
    using MainWindow::fftFrameDuration;
    using MainWindow::fftFrequencies;
    using MainWindow::fftLength;
    using MainWindow::fftPhases;
    using MainWindow::fontAxisLabels;
    using MainWindow::fontAxisTitles;
    using MainWindow::fontChartTitle;
    using MainWindow::frequencyResolution;
    using MainWindow::labelMainParameter;
    using MainWindow::labelSessionType;
    using MainWindow::labelSoundType;
    using MainWindow::layoutCharts;
    using MainWindow::layoutControls;
    using MainWindow::layoutOuter;
    using MainWindow::lineEditFrequencyMatched;
    using MainWindow::lineEditOutputFileName;
    using MainWindow::lineEditOutputFilePath;
    using MainWindow::lineEditSamplingRate;
    using MainWindow::lineEditSilentInterval;
    using MainWindow::lineEditSoundDuration;
    using MainWindow::lineEditSubCode;
    using MainWindow::lineEditWavFileName;
    using MainWindow::lineEditWavFilePath;
    using MainWindow::nFiles;
    using MainWindow::nRepetitions;
    using MainWindow::nRepetitionsExperiment;
    using MainWindow::nRepetitionsPractice;
    using MainWindow::playSinusoidNext;
    using MainWindow::pointsFFT;
    using MainWindow::pointsWav;
    using MainWindow::pushButtonExperiment;
    using MainWindow::pushButtonGo;
    using MainWindow::pushButtonPractice;
    using MainWindow::pushButtonQuit;
    using MainWindow::rangeFFT;
    using MainWindow::rangeTrend;
    using MainWindow::rangeWav;
    using MainWindow::rowLayouts;
    using MainWindow::sequencePosition;
    using MainWindow::seriesFFT;
    using MainWindow::seriesTrend;
    using MainWindow::seriesWav;
    using MainWindow::sinusoidSamples;
    using MainWindow::soundsPerPresentation;
    using MainWindow::soundsPlayed;
    using MainWindow::spinBoxFileNumber;
    using MainWindow::subjectWindow;
    using MainWindow::targetSamples;
    using MainWindow::timeAxisMs;
    using MainWindow::trendFrequencies;
    using MainWindow::trendTrials;
    using MainWindow::trialSequence;
    using MainWindow::wav;
    using MainWindow::windowType;
    using QObject::receivers;

    QStringList connectedSignals; ///< In the order of connection, since construction.

protected:
    void connectNotify(const QMetaMethod& signal) override {
        connectedSignals.append(QString::fromLatin1(signal.methodSignature()));
    }
};

/// Makes the protected members of the listener's window public.
class InspectedSubjectWindow : public SubjectWindow {
public:
    using SubjectWindow::SubjectWindow;

    using SubjectWindow::colourGrey;
    using SubjectWindow::colourMaximum;
    using SubjectWindow::colourMinimum;
    using SubjectWindow::colourWhite;
    using SubjectWindow::frequencyCurrent;
    using SubjectWindow::frequencyMax;
    using SubjectWindow::frequencyMin;
    using SubjectWindow::frequencyStepSize;
    using SubjectWindow::heightRatio;
    using SubjectWindow::isCentered;
    using SubjectWindow::labelCurrentValue;
    using SubjectWindow::layoutFrequency;
    using SubjectWindow::layoutUnused;
    using SubjectWindow::layoutWindow;
    using SubjectWindow::pushButtonDone;
    using SubjectWindow::pushButtonIAmReady;
    using SubjectWindow::pushButtonPlaySinusoid;
    using SubjectWindow::pushButtonPlayTarget;
    using SubjectWindow::reserved;
    using SubjectWindow::sliderFrequency;
    using SubjectWindow::spinBoxFrequency;
    using SubjectWindow::widgetCentral;
    using SubjectWindow::widthRatio;
};

} // namespace testsupport
