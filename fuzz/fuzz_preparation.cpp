// Fuzzes the whole preparation of a session by a target of arbitrary bytes.
// SPDX-License-Identifier: GPL-3.0-or-later
//
// The code path is that of the program: "Practice" is pressed in a real main window (offscreen,
// never shown), the file dialog answers with the input, and the target is loaded, sized,
// transformed and handed to the charts' series and axes, which are in no chart that would draw
// them. Calling the plain functions instead would be faster, but a file could do harm in the code
// between them: their order, the sizes passed on, the state after a refused target. The window
// handles hundreds of small inputs a second. It is built once and reset before each input, so that
// a finding does not depend on earlier ones.
//
// Each input is prepared twice, first in a window without a target, then after a valid one.
#include "app/MainWindow.h"

#include "base/Sampling.h"
#include "fuzz/Harness.h"
#include "tests/support/PlainReading.h"

#include <QApplication>
#include <QFileDialog>
#include <QLineEdit>
#include <QPushButton>
#include <QtCharts/QChart>
#include <QtCharts/QLineSeries>
#include <QtCharts/QValueAxis>

#include <algorithm>
#include <cmath>
#include <utility>

using fuzzing::MemoryFile;
using fuzzing::require;
using testsupport::PlainReading;

namespace {

/// The file that the dialog returns next.
QString& chosenFile() {
    static QString path;
    return path;
}

/// The state that a refused target must not change.
struct Shown {
    QVector<double> target, timeAxisMs, frequencies, amplitudes, phases;
    QVector<QPointF> wavPoints, spectrumPoints;
    qreal wavBottom, wavTop, wavEnd, spectrumBottom, spectrumTop;
    QString duration, folder, name;

    bool operator==(const Shown& other) const {
        return target == other.target && timeAxisMs == other.timeAxisMs &&
               frequencies == other.frequencies && amplitudes == other.amplitudes &&
               phases == other.phases && wavPoints == other.wavPoints &&
               spectrumPoints == other.spectrumPoints && wavBottom == other.wavBottom &&
               wavTop == other.wavTop && wavEnd == other.wavEnd &&
               spectrumBottom == other.spectrumBottom && spectrumTop == other.spectrumTop &&
               duration == other.duration && folder == other.folder && name == other.name;
    }
};

class FuzzedWindow : public MainWindow {
public:
    FuzzedWindow()
        : initialData(data), initialDuration(lineEditSoundDuration->text()),
          initialTarget(targetSamples) {
        takeOffCharts();
    }

    /// Resets the window to its state without a target.
    void startAfresh() {
        chosenFile().clear();
        data = initialData;
        lineEditSoundDuration->setText(initialDuration);
        lineEditWavFilePath->setText(data.wavFilePath);
        lineEditWavFileName->setText(data.wavFileName);
        trialSequence.clear();
        currentTargetPath.clear();
        targetSamples = initialTarget;
        wav = CWav();
        targetInUse.reset();
        for (QVector<double>* values :
             {&timeAxisMs, &fftFrequencies, &fftAmplitudes, &fftPhases, &rangeWav, &rangeFFT})
            values->clear();
        pointsWav.clear();
        pointsFFT.clear();
        seriesWav->clear();
        seriesFFT->clear();
    }

    /// Whether the target is the file that was chosen last.
    bool isChosenInUse() const {
        return nFiles == 1 && currentTargetPath == chosenFile() && targetInUse.has_value() &&
               targetInUse->filePath + u'/' + targetInUse->fileName == chosenFile();
    }

    /// Prepares a practice session; returns whether it has a target.
    bool prepare(const std::string& path) {
        chosenFile() = QString::fromStdString(path);
        on_pushButtonPractice_clicked();
        require((nFiles == 1) == pushButtonGo->isEnabled(), "a session is started on a target");
        require(trialSequence.size() == nFiles, "there is a trial where there is a target");
        return nFiles == 1;
    }

    Shown shown() const {
        return {targetSamples,
                timeAxisMs,
                fftFrequencies,
                fftAmplitudes,
                fftPhases,
                seriesWav->pointsVector(),
                seriesFFT->pointsVector(),
                axisYWav->min(),
                axisYWav->max(),
                axisXWav->max(),
                axisYFFT->min(),
                axisYFFT->max(),
                lineEditSoundDuration->text(),
                lineEditWavFilePath->text(),
                lineEditWavFileName->text()};
    }

    /// Checks every accepted target.
    void checkPrepared(const PlainReading& file) {
        checkTarget(file);
        checkSpectrum();
        checkCharts();
        // As "Go" does: the duration shown must give a playable sound.
        getParameters();
        require(data.nSamples >= 1 && data.nSamples <= maximumSampleCount,
                "the sound can be played");
        require(data.nPointsToPlot <= data.nSamples, "only existing samples are drawn");
    }

private:
    /// Separates series and axes from the charts, whose layout at each change would take nearly all
    /// of the time.
    void takeOffCharts() {
        for (const auto& [chart, series] : {std::pair(chartWav, seriesWav), {chartFFT, seriesFFT}})
            chart->removeSeries(series);
        for (QtCharts::QChart* chart : {chartWav, chartFFT})
            for (QtCharts::QAbstractAxis* axis : chart->axes())
                chart->removeAxis(axis);
        // Until then the items that draw the axes are connected to them.
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    }

    void checkTarget(const PlainReading& file) const {
        require(file.channels != 0 && file.samplingRate != 0 && !file.samples.empty(),
                "only what can be played is accepted");
        const std::uint32_t declared = file.numberOfSamples / file.channels;
        require(declared == static_cast<std::uint32_t>(data.nSamples), "the samples are counted");
        require(targetSamples.size() == data.nSamples, "the target has its declared length");
        const bool isCopied = file.channels <= 2;
        for (int i = 0; i < targetSamples.size(); ++i) {
            const std::size_t index = std::size_t(i) * file.channels;
            const bool isHeld = isCopied && index < file.samples.size();
            require(targetSamples[i] == (isHeld ? file.samples[index] : 0.0),
                    "the target is the first of one or two channels");
        }
    }

    void checkSpectrum() const {
        require(fftLength >= data.nSamples && (fftLength == 1 || fftLength / 2 < data.nSamples) &&
                    (fftLength & (fftLength - 1)) == 0,
                "the transform has the smallest power of two that holds the target");
        for (const QVector<double>* bins : {&fftFrequencies, &fftAmplitudes, &fftPhases})
            require(bins->size() == fftLength / 2, "there are half as many bins");
        // For one sample the amplitude is divided by zero, half the count in integers.
        const bool isFinite =
            data.nSamples < 2 ||
            std::all_of(fftAmplitudes.cbegin(), fftAmplitudes.cend(),
                        [](double amplitude) { return std::isfinite(amplitude); });
        require(isFinite, "every bin has an amplitude");
    }

    void checkCharts() const {
        require(data.nPointsToPlot <= data.nSamples && timeAxisMs.size() >= data.nPointsToPlot,
                "every plotted sample has its time");
        require(seriesWav->count() == data.nPointsToPlot || data.nPointsToPlot < 1,
                "the plotted part is drawn");
        require(data.nFFTPointsToPlot <= fftLength / 2 &&
                    seriesFFT->count() == data.nFFTPointsToPlot,
                "the spectrum is drawn");
        for (const QtCharts::QValueAxis* axis : {axisXWav, axisYWav, axisXFFT, axisYFFT})
            require(std::isfinite(axis->min()) && std::isfinite(axis->max()) &&
                        axis->min() <= axis->max(),
                    "axes have a range");
        require(axisYWav->min() >= -1.0 && axisYWav->max() <= 1.0, "samples are of full scale");
    }

    Data initialData;
    QString initialDuration;
    QVector<double> initialTarget;
};

/// Returns whether the file can be a target.
bool prepareInAFreshWindow(FuzzedWindow& window, const MemoryFile& file,
                           const PlainReading& content) {
    window.startAfresh();
    const Shown before = window.shown();
    const bool isPrepared = window.prepare(file.path());
    require(isPrepared == window.isChosenInUse(), "there is no other target");
    require(!isPrepared || content.isLoaded, "only what is loaded is accepted");
    if (isPrepared)
        window.checkPrepared(content);
    else
        require(window.shown() == before, "a refused target changes nothing");
    return isPrepared;
}

void prepareAfterAValidTarget(FuzzedWindow& window, const MemoryFile& file,
                              const PlainReading& content, bool isUsable) {
    constexpr std::string_view fourSamples("RIFF\x28\0\0\0WAVEfmt \x10\0\0\0\1\0\1\0\x40\x9c\0\0"
                                           "\x40\x9c\0\0\1\0\x08\0data\4\0\0\0\x10\xc0\x40\xff",
                                           48);
    static const MemoryFile earlierFile(fourSamples);
    static const PlainReading earlier(fourSamples, maximumSampleCount);
    window.startAfresh();
    require(window.prepare(earlierFile.path()), "a good target is accepted");
    window.checkPrepared(earlier);
    const Shown before = window.shown();
    require(window.prepare(file.path()), "an unusable file keeps the earlier target");
    require(window.isChosenInUse() == isUsable, "the usable one of both targets is in use");
    if (isUsable)
        window.checkPrepared(content);
    else
        require(window.shown() == before, "the earlier target stays");
}

/// Qt's warnings are findings, as they are in the tests.
void endOnWarning(QtMsgType type, const QMessageLogContext& /*context*/, const QString& text) {
    require(type == QtDebugMsg || type == QtInfoMsg, qPrintable("Qt has no objection: " + text));
}

FuzzedWindow& theWindow() {
    static int argumentCount = 1;
    static char name[] = "fuzz_preparation";
    static char* arguments[] = {name, nullptr};
    // Neither is deleted: Qt warns when it is destroyed after main().
    static auto* const window = [] {
        new QApplication(argumentCount, arguments);
        return new FuzzedWindow;
    }();
    return *window;
}

} // namespace

// Replaces Qt's dialog, which would wait for a person.
QString QFileDialog::getOpenFileName(QWidget* /*parent*/, const QString& /*caption*/,
                                     const QString& /*dir*/, const QString& /*filter*/,
                                     QString* /*selectedFilter*/, Options /*options*/) {
    return chosenFile();
}

extern "C" int LLVMFuzzerInitialize(int* /*argumentCount*/, char*** /*arguments*/) {
    qputenv("QT_QPA_PLATFORM", "offscreen");
    // Prevents connecting to a sound server, or waiting for one.
    qputenv("PULSE_SERVER", "unix:/dev/null");
    fuzzing::muteStreams();
    theWindow();
    qInstallMessageHandler(endOnWarning);
    return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t size) {
    static const MemoryFile file;
    const std::string_view content = fuzzing::textOf(bytes, size);
    file.replace(content);
    const PlainReading reading(content, maximumSampleCount);
    const bool isUsable = prepareInAFreshWindow(theWindow(), file, reading);
    prepareAfterAValidTarget(theWindow(), file, reading, isUsable);
    // Memory that is still allocated would start a search for leaks after every input.
    theWindow().startAfresh();
    QCoreApplication::sendPostedEvents();
    return 0;
}
