// The main window: the target's amplitude spectrum.
// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/MainWindow.h"

#include "base/HugePages.h"
#include "charts/AmplitudeSpectrum.h"
#include "charts/ChartParts.h"
#include "charts/ChartPoints.h"

#include <QGridLayout>

#include <cstddef>

using namespace QtCharts;

void MainWindow::displayEmptyFFT() {
    if (seriesFFT == nullptr)
        seriesFFT = new QLineSeries;
    if (axisXFFT == nullptr) {
        axisXFFT = new QValueAxis;
        axisXFFT->setRange(0, data.fftMaxFrequency);
        axisXFFT->setLabelFormat(QStringLiteral("%.0f"));
        titleAxis(axisXFFT, QStringLiteral("Frequency (Hz)"), fontAxisLabels, fontAxisTitles);
    }
    if (axisYFFT == nullptr) {
        axisYFFT = new QValueAxis;
        axisYFFT->setRange(0, 1);
        titleAxis(axisYFFT, QStringLiteral("Amplitude"), fontAxisLabels, fontAxisTitles);
    }
    if (chartFFT == nullptr)
        chartFFT = createChart(seriesFFT, axisXFFT, axisYFFT, QStringLiteral("Amplitude Spectrum"),
                               fontChartTitle, minimumChartWidth);
    if (chartViewFFT == nullptr) {
        chartViewFFT = createView("chartViewFFT", chartFFT);
        layoutCharts->addWidget(chartViewFFT, 1, 0, 1, 1);
    }
}

void MainWindow::sizeSpectrum() {
    const SpectrumSizing sizing =
        spectrumSizing(data.nSamples, data.samplingRate, data.fftMaxFrequency);
    fftLength = sizing.length;
    fftFrameDuration = sizing.frameDurationSeconds;
    data.nFFTPointsToPlot = sizing.pointsToPlot;
    for (QVector<double>* bins : {&fftFrequencies, &fftAmplitudes, &fftPhases}) {
        reserveOnHugePages(*bins, static_cast<std::size_t>(sizing.bins()));
        bins->resize(sizing.bins());
    }
    if (pointsFFT.size() != sizing.pointsToPlot)
        pointsFFT = QVector<QPointF>(sizing.pointsToPlot);
}

void MainWindow::genFFT() {
    applyAnalysisWindow(targetSamples, windowType, data.nSamples);
    fftFrameDuration = static_cast<double>(fftLength) / data.samplingRate;
    frequencyResolution = 1 / fftFrameDuration;
    computeAmplitudeSpectrum(targetSamples, fftLength, data.nSamples, frequencyResolution,
                             {fftFrequencies, fftAmplitudes, fftPhases});
}

void MainWindow::displayFFT() {
    pairPoints(fftFrequencies, fftAmplitudes, data.nFFTPointsToPlot, pointsFFT);
    seriesFFT->replace(pointsFFT);
    // All bins, also those above the frequencies drawn.
    if (findRange(fftAmplitudes, rangeFFT))
        axisYFFT->setRange(rangeFFT[0], rangeFFT[1]);
}
