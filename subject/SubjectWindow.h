// The listener's window.
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QMainWindow>
#include <QPointer>

#include <array>

class QGridLayout;
class QHBoxLayout;
class QLabel;
class QMessageBox;
class QPushButton;
class QSlider;
class QSpinBox;
class QVBoxLayout;

/// The window in which the listener asks for the target and for sinusoids until both match in
/// pitch. It plays nothing itself: each request goes out as subjectResponded() and leaves the
/// window disabled until updateSubjectWindow(-1) says that the sound has ended.
///
/// Each widget has its member's name as its object name.
class SubjectWindow : public QMainWindow {
    Q_OBJECT

public:
    explicit SubjectWindow(QWidget* parent = nullptr);
    ~SubjectWindow() override;
    SubjectWindow(const SubjectWindow&) = delete;
    SubjectWindow(SubjectWindow&&) = delete;
    SubjectWindow& operator=(const SubjectWindow&) = delete;
    SubjectWindow& operator=(SubjectWindow&&) = delete;

    /// Places and titles the window, lays out its widgets, and shows "I am ready" alone.
    void setupGUISubjectWindow();

    /// Sets range, value and step of the spin box, then of the slider, from the members.
    void setSliderParameters();

    /// Disables both buttons that ask for a sound.
    void disableAllChoiceButtons();

    /// Covers the given fractions (limited to 0..1) of the primary screen's available size.
    void centerAndResizeSubjectWindow(bool center, double widthFraction, double heightFraction);

    // The order of signals and slots is the order of their meta-object indices: additions go to
    // the end.
signals:
    /// The listener asks for the target (response 2, frequency 0) or for a sinusoid (response 4,
    /// frequency in Hz).
    void subjectResponded(int response, int frequency);

    /// The listener has confirmed that the session is over.
    void subjectWindowClosed();

public slots:
    void on_pushButtonIAmReady_clicked();

    /// Enables both buttons that ask for a sound.
    void enableAllChoiceButtons();

    /// Takes over the frequencies that can be set, in Hz. They are not checked; the spin box and
    /// the slider limit them. (The meta-object contains these parameter names; in the definition
    /// they would hide the members.)
    // NOLINTNEXTLINE(readability-inconsistent-declaration-parameter-name)
    void receiveParameters(int frequencyMin, int frequencyMax, int frequencyCurrent,
                           int frequencyStepSize);

    /// Locks the window while sounds play: `index` is the count of sounds started for this request,
    /// or -1 when the last one has ended, which unlocks it.
    void updateSubjectWindow(int index);

    void on_pushButtonPlayTarget_clicked();
    void on_pushButtonPlaySinusoid_clicked();

protected:
    /// Asks for confirmation; only Yes closes the window.
    void closeEvent(QCloseEvent* event) override;

    /// Queues a call of releaseHiddenWindow().
    void hideEvent(QHideEvent* event) override;

    void createWidgets();
    void connectWidgets();
    void placeWidgets();
    void sizeWidgets();
    void setUpAccessibility();

    /// Disables the window, but not the question whether to close it.
    void lock();

    /// Enables the window and gives the focus back to the control that had it when lock() was
    /// called, if that is visible and enabled.
    void unlock();

    /// Destroys the platform window and the backing store (4.4 MiB) of a hidden window: one window
    /// stays for each session until the program ends. Showing it creates both again. Must not be
    /// called from within an event of the window system.
    void releaseHiddenWindow();

    QPushButton* pushButtonPlayTarget = nullptr;
    QLabel* labelCurrentValue = nullptr;
    QSpinBox* spinBoxFrequency = nullptr; ///< Hz.
    QPushButton* pushButtonPlaySinusoid = nullptr;
    QSlider* sliderFrequency = nullptr; ///< Hz; always equal to the spin box.
    QPushButton* pushButtonIAmReady = nullptr;
    QPushButton* pushButtonDone = nullptr;
    QHBoxLayout* layoutFrequency = nullptr; ///< Label and spin box.
    QVBoxLayout* layoutUnused = nullptr;    ///< Empty, in no layout and without a parent.
    QGridLayout* layoutWindow = nullptr;
    QWidget* widgetCentral = nullptr;
    int reserved = 0; ///< Read by nothing.

    int frequencyMin = 10;      ///< Hz.
    int frequencyMax = 1000;    ///< Hz.
    int frequencyCurrent = 500; ///< Hz: the start, then the last one requested.
    int frequencyStepSize = 1;  ///< Hz.

    // Colours, read by nothing: the style sheets name their own.
    std::array<int, 3> colourGrey = {240, 240, 240};
    std::array<int, 3> colourWhite = {255, 255, 255};
    int colourMinimum = 0;
    int colourMaximum = 255;

    bool isCentered = true;
    double widthRatio = 0.7;  ///< Of the available screen.
    double heightRatio = 0.8; ///< Of the available screen.

    QPointer<QMessageBox> closeQuestion; ///< While the listener is asked; null otherwise.

    // The focus when the window was locked: disabling a window removes it.
    QPointer<QWidget> lockedFocus;          ///< Null if no control of the window had the focus.
    bool wasWholeFrequencySelected = false; ///< Whether typing would have replaced the frequency.
};
