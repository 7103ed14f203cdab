// The experimenter's main window.
// SPDX-License-Identifier: GPL-3.0-or-later
//
// One class, implemented in several folders, one subject per file. What can be computed without a
// window is in plain functions and types beside it:
//
//      MainWindow...                             plain
//   1  Construction, app/MainWindow.cpp
//      closing
//   2  Widgets       app/...Widgets, ...Layout,   window/Widgets.h, TopLevelWindow
//                    ...Accessibility
//   3  Settings      app/...Settings              app/Data.h, base/NumberTexts
//   4  Session       session/...Session           session/TrialSequence
//   5  Responses     session/...Responses         session/ResponseJournal, app/Record.h
//   6  Results file  session/...Results           session/ResultsFile, FileReplacement
//   7  Target        sound/...Target              sound/CWav, TargetSamples
//   8  Playback      sound/...Playback            sound/PlayedSound, PresentationPause, Sinusoid
//   9  Charts        charts/...ChartFonts,        charts/ChartPoints, AmplitudeSpectrum
//                    ...Waveform, ...Spectrum,
//                    ...Trend
//
// The course of a session: "Practice" or "Experiment" prepares it (getReadyToGo: read the controls,
// choose a target, load it, draw it); "Go" opens the listener's window. Each of the listener's
// requests arrives in updateMainwindow, which synthesises what is needed and, after a pause, lets
// playOneSound play it. handleStateChanged notices the sound's end and unlocks the listener's
// window. When that window is closed, refreshMainWindow saves the results and enables the main
// window for the next session.
#pragma once

#include "app/Data.h"
#include "session/ResponseJournal.h"
#include "sound/CWav.h"

#include <QAudio>
#include <QAudioFormat>
#include <QElapsedTimer>
#include <QFont>
#include <QMainWindow>
#include <QPointF>
#include <QVector>

#include <initializer_list>
#include <memory>
#include <optional>

#include <QtCharts/QChartGlobal>

class QAudioOutput;
class QBuffer;
class QCheckBox;
class QComboBox;
class QFileInfo;
class QGridLayout;
class QHBoxLayout;
class QLabel;
class QLineEdit;
class QPushButton;
class QSpinBox;
class StaleClicks;
class SubjectWindow;

QT_CHARTS_BEGIN_NAMESPACE
class QChart;
class QChartView;
class QLineSeries;
class QValueAxis;
QT_CHARTS_END_NAMESPACE

/// The experimenter's window: prepares sessions, shows the target and the trend of the matches,
/// plays what the listener asks for, and writes the results.
///
/// Each widget has its member's name as its object name, for tests and for programs that drive the
/// window. connectSlotsByName must therefore never be called: every slot would be connected twice.
class MainWindow : public QMainWindow {
    Q_OBJECT

public:
    // 1 Construction and closing: app/MainWindow.cpp

    explicit MainWindow(QWidget* parent = nullptr);
    ~MainWindow() override;
    MainWindow(const MainWindow&) = delete;
    MainWindow(MainWindow&&) = delete;
    MainWindow& operator=(const MainWindow&) = delete;
    MainWindow& operator=(MainWindow&&) = delete;

    // 2 Widgets: app/MainWindowWidgets.cpp, ...Layout.cpp, ...Accessibility.cpp

    /// Places and titles the window and lays out its widgets.
    void setupGUIMainWindow();

    /// Covers the given fractions (limited to 0..1) of the primary screen's available size.
    void centerAndResizeMainWindow(bool center, double widthFraction, double heightFraction);

    // 3 Settings: app/MainWindowSettings.cpp

    /// Copies the settings into the widgets, enables those that can be used, sizes the vectors,
    /// and sets fonts, audio format and sounds per presentation. Called once.
    void initParameters();

    /// Copies the widgets back into the settings and recomputes the sample counts. A text that is
    /// not a number counts as 0.
    void getParameters();

    // 4 Session: session/MainWindowSession.cpp

    /// Prepares a session: reads the controls, lets the experimenter choose a target, loads and
    /// draws it and empties the trend. Without a usable target, charts, trend and texts stay as
    /// they are and nFiles is 0.
    void getReadyToGo();

    /// Draws a new random order of the targets: nRepetitions x nFiles entries.
    void genRandomSequence();

    /// Saves the results, if wanted, and advances the file number, without enabling the window.
    void finishIt();

    /// Disables the whole window.
    void disableAllComponents();

    // 5 Responses: session/MainWindowResponses.cpp

    /// Shows the match of the first record in its field.
    void updateFrequencyMatched();

    // 6 Results file: session/MainWindowResults.cpp

    /// Proposes a name for the results file from subject code, session type and file number.
    void updateOutputFileName();

    /// Asks where to save and writes the results there. data.outputFilePath and
    /// data.outputFileName become path and name of the chosen file, empty when the dialog was
    /// cancelled. A file that cannot be opened or written is reported in a warning box, and the
    /// session's journal is kept.
    void writeDataToTxt();

    // 7 Target: sound/MainWindowTarget.cpp

    /// Lets the experimenter choose a target file, which becomes the only record.
    void selectWavFile();

    /// Loads the target of the current trial, copies its first channel and sizes the charts'
    /// buffers. A file that fails to load or cannot be a target leaves the earlier target in use,
    /// and the record then names that one. If there is no earlier target, or it does not suit the
    /// settings, the file is refused. The empty name of a cancelled dialog is always refused. A
    /// refusal sets nFiles to 0, empties trialSequence and changes nothing else.
    void genWav();

    /// Shows the folder and file name of the current target.
    void updateWavTextFields();

    // 8 Playback: sound/MainWindowPlayback.cpp

    /// Synthesises the comparison sinusoid at frequencyCurrent.
    void genSinusoid();

    /// Schedules playOneSound as a request does, if a trial is left. Then advances
    /// sequencePosition, and returns it.
    int playWav();

    // 9 Charts: charts/MainWindowChartFonts.cpp, ...Waveform.cpp, ...Spectrum.cpp, ...Trend.cpp

    void displayEmptyWav();   ///< Creates the empty waveform chart, once.
    void displayEmptyFFT();   ///< Creates the empty spectrum chart, once.
    void displayEmptyTrend(); ///< Creates the empty trend chart, once.

    /// Draws the beginning of the target, one point per sample; the y axis spans the whole sound.
    void displayWav();

    /// Recomputes the number of waveform samples to draw, at most those of the sound.
    void updateNPointsToPlot();

    /// Computes the target's amplitude spectrum. An analysis window is applied to the target in
    /// place.
    void genFFT();

    /// Draws the spectrum up to fftMaxFrequency; the y axis spans all of its bins.
    void displayFFT();

    /// Adds the match of the first record to the trend, whose frequencies go into the journal and
    /// the results file.
    void updateTrend();

    /// Empties the trend. Its x axis keeps its range until the next response.
    void resetTrend();

    // The order of signals and slots is the order of their meta-object indices: additions go to
    // the end.
signals:
    /// Sends a new subject window the frequencies that the listener can set, in Hz.
    void transferParameters(int frequencyMin, int frequencyMax, int frequencyCurrent,
                            int frequencyStepSize);

    /// A sound has started; `index` counts the sounds of this request. -1: the last one has ended.
    void soundPlaying(int index);

    /// Never emitted; declared so that code outside can connect to it.
    void stateChanged(QAudio::State audioState);

public slots:
    // 4 Session: session/MainWindowSession.cpp
    void on_pushButtonPractice_clicked();
    void on_pushButtonExperiment_clicked();
    void on_pushButtonGo_clicked();

    // 5 Responses: session/MainWindowResponses.cpp

    /// Answers a request of the listener: 2 plays the target, 4 a sinusoid at `frequency` (Hz),
    /// 0 only logs the start, anything else is reported in a warning box.
    void updateMainwindow(int response, int frequency);

    // 8 Playback: sound/MainWindowPlayback.cpp

    /// Plays the sound that was requested, the sinusoid or the target, and emits soundPlaying(). A
    /// sinusoid is shown as the match and counted as a response.
    void playOneSound();

    // 4 Session: session/MainWindowSession.cpp

    /// Does nothing; keeps the indices of the later slots.
    void doNothing();

    // 8 Playback: sound/MainWindowPlayback.cpp

    /// Releases the audio output when it has drained and emits soundPlaying(-1), which unlocks the
    /// listener's window; logs an output that failed or ended early.
    void handleStateChanged(QAudio::State audioState);

    // 4 Session: session/MainWindowSession.cpp
    void on_comboBoxSesType_currentIndexChanged(int index);
    void on_comboBoxSoundType_currentIndexChanged(int index);
    void on_comboBoxMainParameter_currentIndexChanged(int index);
    void on_lineEditSubCode_textChanged(const QString& arg1);
    void on_spinBoxFileNumber_valueChanged(int newFileNumber);

    /// Ends a session: cancels what is still pending or playing, saves the results if wanted,
    /// advances the file number and enables the main window.
    void refreshMainWindow();

    // Protected rather than private: tests, benchmarks and the fuzzer derive from the window.
protected:
    // 1 Construction and closing: app/MainWindow.cpp

    /// Ignores the event while the window is disabled for a session: a window manager's close
    /// button works on disabled windows too, and the unsaved responses would be lost.
    void closeEvent(QCloseEvent* event) override;

    void deleteCharts();

    // 2 Widgets: app/MainWindowWidgets.cpp, ...Layout.cpp, ...Accessibility.cpp
    void createWidgets();
    void connectWidgets();
    void createLayouts();
    void layOutControls();
    void layOutRow(int row, std::initializer_list<QWidget*> widgets);
    void setUpAccessibility();
    void nameFields();
    void nameButtons();
    void nameCharts();

    // 3 Settings: app/MainWindowSettings.cpp: the phases of initParameters
    void showSelections();
    void showSettings();
    void sizeBuffers();

    // 4 Session: session/MainWindowSession.cpp
    void prepareSession(int repetitions, int sessionTypeIndex);
    /// Shuffles the trials, then loads and draws the chosen target. sequencePosition and
    /// soundsPlayed must be 0. If the file is refused, charts, trend and texts stay as they are and
    /// nFiles is 0.
    void prepareTarget();
    void saveResultsAndAdvanceFileNumber();

    // 5 Responses: session/MainWindowResponses.cpp
    void showNoMatchYet();
    Record* firstRecord();
    void recordResponse(double frequencyMatched);
    void journalResponses();

    // 7 Target: sound/MainWindowTarget.cpp
    void chooseTarget(const QFileInfo& file);
    bool loadTarget(Record& record);
    bool keepEarlierTarget(Record& record);
    void refuseTarget();

    // 8 Playback: sound/MainWindowPlayback.cpp
    void setUpAudioFormat();
    void schedulePresentation();
    void cancelPresentation();
    void startAudioOutput(const QVector<double>& samples, int length);
    void releaseAudioOutput();
    void deleteReleasedOutputs();

    // 9 Charts: charts/MainWindowChartFonts.cpp, ...Waveform.cpp, ...Spectrum.cpp, ...Trend.cpp
    void setUpFonts();
    void sizeSpectrum();

    // Widgets, in the order of their creation. The labels and combo boxes held by std::unique_ptr
    // are in no layout: the experimenter never sees them, but they hold the selections.
    std::unique_ptr<QLabel> labelSessionType;
    std::unique_ptr<QLabel> labelSoundType;
    std::unique_ptr<QLabel> labelMainParameter;
    QLabel* labelSoundFileInformation = nullptr;
    QLabel* labelSamplingRate = nullptr;
    QLabel* labelSoundDuration = nullptr;
    QLabel* labelSilentInterval = nullptr;
    QLabel* labelSubjectCode = nullptr;
    QLabel* labelFileNumber = nullptr;
    QLabel* labelWavFilePath = nullptr;
    QLabel* labelWavFileName = nullptr;
    QLabel* labelOutputFilePath = nullptr;
    QLabel* labelOutputFileName = nullptr;
    QLabel* labelFrequencyMatched = nullptr;
    std::unique_ptr<QComboBox> comboBoxSesType;
    std::unique_ptr<QComboBox> comboBoxSoundType;
    std::unique_ptr<QComboBox> comboBoxMainParameter;
    QLineEdit* lineEditSamplingRate = nullptr;     ///< Hz.
    QLineEdit* lineEditSoundDuration = nullptr;    ///< Milliseconds.
    QLineEdit* lineEditSilentInterval = nullptr;   ///< Milliseconds.
    QLineEdit* lineEditSubCode = nullptr;          ///< Editable.
    QSpinBox* spinBoxFileNumber = nullptr;         ///< Editable, from 1.
    QLineEdit* lineEditWavFilePath = nullptr;      ///< Folder of the target.
    QLineEdit* lineEditWavFileName = nullptr;      ///< Name of the target without folder.
    QLineEdit* lineEditOutputFilePath = nullptr;   ///< Folder of the results file.
    QLineEdit* lineEditOutputFileName = nullptr;   ///< Proposed name of the results file.
    QLineEdit* lineEditFrequencyMatched = nullptr; ///< Hz, of the last sinusoid played.
    QPushButton* pushButtonPractice = nullptr;
    QPushButton* pushButtonExperiment = nullptr;
    QPushButton* pushButtonGo = nullptr;
    StaleClicks* staleClicksOnGo = nullptr; ///< A child of pushButtonGo.
    QPushButton* pushButtonQuit = nullptr;
    QCheckBox* checkBoxSaveData = nullptr;

    QVector<QHBoxLayout*> rowLayouts;      ///< One for each row of several controls, top to bottom.
    QGridLayout* layoutControls = nullptr; ///< Left column: the controls.
    QGridLayout* layoutCharts = nullptr;   ///< Right column: the charts.
    QGridLayout* layoutOuter = nullptr;    ///< Both columns.
    QWidget* widgetCentral = nullptr;      ///< Holds the layouts.

    // From here on the order is that of construction and no longer that of the sections: members
    // are destroyed in reverse. "By" names the functions that write a member.

    // Settings, by initParameters, getParameters, the slots of the input controls, and the
    // functions of sections 4 to 9 for the fields of their subjects
    Data data;

    // Samples, spectrum and points of the charts
    QVector<double> targetSamples;   ///< The target, full scale -1 to +1; by genWav, genFFT.
    QVector<double> sinusoidSamples; ///< The comparison sinusoid, -1 to +1; by genSinusoid.
    QVector<double> timeAxisMs;      ///< Milliseconds of each plotted sample; by genWav.
    QVector<double> fftFrequencies;  ///< Hz, of each bin; by genFFT.
    QVector<double> fftAmplitudes;   ///< Of each bin, on the scale of the samples; by genFFT.
    QVector<double> fftPhases;       ///< Radians, of each bin; by genFFT.
    QVector<QPointF> pointsWav;      ///< Waveform: milliseconds, sample value; by displayWav.
    QVector<QPointF> pointsFFT;      ///< Spectrum: Hz, amplitude; by displayFFT.
    QVector<double> trendTrials;     ///< Sinusoids played before each request of one.
    /// Hz, of each request of a sinusoid in the session, as in the journal and the results file.
    /// Written by recordResponse and resetTrend, as trendTrials is.
    QVector<double> trendFrequencies;
    QVector<double> rangeWav;      ///< Minimum and maximum sample of the target; by displayWav.
    QVector<double> rangeFFT;      ///< Minimum and maximum amplitude; by displayFFT.
    QVector<double> rangeTrend;    ///< Hz, ends of the trend's y range; by updateTrend, resetTrend.
    int windowType = 0;            ///< Analysis window: 0 none, 1 Hann. Nothing changes it.
    qint64 fftLength = 1024;       ///< Values transformed, a power of two; by sizeSpectrum.
    double fftFrameDuration = 0.6; ///< Seconds: fftLength / samplingRate; by sizeSpectrum, genFFT.
    double frequencyResolution = 1.6666666666666667; ///< Hz per bin; by genFFT.

    // Session, by getReadyToGo unless another is named
    SubjectWindow* subjectWindow = nullptr; ///< A child; by on_pushButtonGo_clicked.
    QVector<int> trialSequence; ///< Indices into the records in the order of presentation; also by
                                ///< genRandomSequence, refuseTarget.
    QString currentTargetPath;  ///< Folder and name of the prepared target; also by genWav.
    int sequencePosition = 0;   ///< Index in trialSequence; also by playWav, and by
                                ///< updateMainwindow, which sets it back to 0.
    int currentFileIndex = 0;   ///< Index of the prepared target's record; also by genWav.
    int nRepetitions = 0;       ///< Of each target in this session; by prepareSession.
    int nRepetitionsPractice = 1;   ///< Of each target in a practice session. Nothing changes it.
    int nRepetitionsExperiment = 1; ///< Of each target in an experiment. Nothing changes it.
    int nFiles = 0;                 ///< Targets chosen, 0 if none is usable; also by chooseTarget,
                                    ///< refuseTarget.
    bool playSinusoidNext = false;  ///< True if a sinusoid was requested, false if the target; by
                                    ///< updateMainwindow.
    int soundsPerPresentation = 0;  ///< Sounds played for one request; by initParameters.
    int soundsPlayed = 0; ///< Sounds started since the last request; also by updateMainwindow,
                          ///< playOneSound.

    ResponseJournal journal{journalFolder()}; ///< The responses, until they are saved.

    // Fonts of the charts, by setUpFonts()
    QFont fontAxisLabels;
    QFont fontAxisTitles;
    QFont fontChartTitle;

    // Target file
    CWav wav;                          ///< The accepted target, as loaded; by loadTarget.
    std::optional<Record> targetInUse; ///< Names the file that `wav` holds; by loadTarget.

    // Playback. Output, buffer and bytes exist from startAudioOutput to releaseAudioOutput.
    std::unique_ptr<QByteArray> audioBytes; ///< What the output plays.
    std::unique_ptr<QBuffer> audioBuffer;   ///< The device from which the output pulls the bytes.
    QAudioOutput* audioOutput = nullptr;    ///< A child of this window; null between sounds.
    QElapsedTimer audioClock;               ///< Since the output was last started.
    QAudioFormat audioFormat;               ///< Of every sound, by setUpAudioFormat().
    /// Context of the timers that wait for a presentation; replacing it cancels them.
    std::unique_ptr<QObject> pendingPresentations;

    // Placement, for centerAndResizeMainWindow (app/MainWindowLayout.cpp)
    bool isCentered = true;
    double widthRatio = 0.8;  ///< Of the available screen.
    double heightRatio = 0.9; ///< Of the available screen.

    // Charts, deleted by deleteCharts() in a fixed order
    QtCharts::QLineSeries* seriesWav = nullptr;
    QtCharts::QLineSeries* seriesFFT = nullptr;
    QtCharts::QLineSeries* seriesTrend = nullptr;
    QtCharts::QValueAxis* axisXWav = nullptr;
    QtCharts::QValueAxis* axisXFFT = nullptr;
    QtCharts::QValueAxis* axisXTrend = nullptr;
    QtCharts::QValueAxis* axisYWav = nullptr;
    QtCharts::QValueAxis* axisYFFT = nullptr;
    QtCharts::QValueAxis* axisYTrend = nullptr;
    QtCharts::QChart* chartWav = nullptr;
    QtCharts::QChart* chartFFT = nullptr;
    QtCharts::QChart* chartTrend = nullptr;
    QtCharts::QChartView* chartViewWav = nullptr;
    QtCharts::QChartView* chartViewFFT = nullptr;
    QtCharts::QChartView* chartViewTrend = nullptr;
};
