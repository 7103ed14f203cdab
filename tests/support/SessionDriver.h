// Walks through a session by the widgets that a person uses.
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "support/DialogDriver.h"

#include <QSignalSpy>
#include <QString>
#include <QTest>

#include <memory>

class MainWindow;
class SubjectWindow;

namespace testsupport {

/// Finds a widget of a window by its member's name. A name that is not there ends the test.
template <typename Widget> Widget* find(QWidget& window, const char* memberName) {
    auto* widget = window.findChild<Widget*>(QLatin1String(memberName));
    if (widget == nullptr)
        qFatal("no widget is called %s", memberName);
    return widget;
}

/// Clicks a button of a window as a person would. A disabled or hidden button takes no click.
void click(QWidget& window, const char* memberName);

/// The experimenter and the listener of one main window.
class SessionDriver {
    std::unique_ptr<DialogDriver> ownDialogs;

public:
    /// With its own dialog driver, or with a given one.
    explicit SessionDriver(MainWindow& mainWindow);
    SessionDriver(MainWindow& mainWindow, DialogDriver& dialogDriver);

    enum class Session { Practice, Experiment };

    /// Clicks "Practice" or "Experiment" and chooses the target in the dialog that opens.
    void prepare(Session session, const QString& targetPath);

    /// Sets the silent interval so that a sound comes this long after its request, once a target
    /// is prepared. The field cannot be typed into by a person.
    void setPause(double milliseconds);

    /// Clicks "Go" and waits until the listener's window is on the screen. Returns it, or null
    /// when none came.
    SubjectWindow* go();

    /// "I am ready".
    void beReady();

    /// All of these, for a practice session; returns whether the listener's window came.
    bool begin(const QString& targetPath, double pauseMs);

    /// "Play target"; returns whether the sound has started and ended.
    bool playTarget();

    /// Types a frequency (Hz) into the spin box and presses "Play sinusoid"; returns whether the
    /// sound has started and ended.
    bool playSinusoid(int frequency);

    /// "Done" (the frame's button before there is one), confirmed, the results saved under the
    /// given path; an empty path accepts the one that is proposed.
    void finish(const QString& resultsPath = QString());

    /// "Done", confirmed, with nothing to save.
    void finishWithoutSaving();

    /// The listener's window that is open; null when there is none.
    SubjectWindow* listener() const { return subjectWindow; }

    DialogDriver& dialogs;

private:
    bool playAndWait(const char* buttonName);
    void pressDone();

    MainWindow& window;
    SubjectWindow* subjectWindow = nullptr;
};

} // namespace testsupport
