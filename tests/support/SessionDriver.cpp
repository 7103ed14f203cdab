// Walks through a session by the widgets that a person uses.
// SPDX-License-Identifier: GPL-3.0-or-later
#include "support/SessionDriver.h"

#include "app/MainWindow.h"
#include "subject/SubjectWindow.h"

#include <QLineEdit>
#include <QPushButton>
#include <QSpinBox>

namespace testsupport {

namespace {

SubjectWindow* visibleListener(const MainWindow& window) {
    for (auto* candidate : window.findChildren<SubjectWindow*>())
        if (candidate->isVisible())
            return candidate;
    return nullptr;
}

} // namespace

void click(QWidget& window, const char* memberName) {
    QTest::mouseClick(find<QPushButton>(window, memberName), Qt::LeftButton);
}

SessionDriver::SessionDriver(MainWindow& mainWindow)
    : ownDialogs(std::make_unique<DialogDriver>()), dialogs(*ownDialogs), window(mainWindow) {}

SessionDriver::SessionDriver(MainWindow& mainWindow, DialogDriver& dialogDriver)
    : dialogs(dialogDriver), window(mainWindow) {}

void SessionDriver::prepare(Session session, const QString& targetPath) {
    dialogs.chooseTarget(targetPath);
    click(window, session == Session::Practice ? "pushButtonPractice" : "pushButtonExperiment");
}

void SessionDriver::setPause(double milliseconds) {
    const double duration = find<QLineEdit>(window, "lineEditSoundDuration")->text().toDouble();
    find<QLineEdit>(window, "lineEditSilentInterval")
        ->setText(QString::number(milliseconds - duration, 'f', 2));
}

SubjectWindow* SessionDriver::go() {
    click(window, "pushButtonGo");
    subjectWindow = visibleListener(window);
    if (subjectWindow != nullptr && !QTest::qWaitForWindowExposed(subjectWindow))
        subjectWindow = nullptr;
    return subjectWindow;
}

void SessionDriver::beReady() {
    click(*subjectWindow, "pushButtonIAmReady");
}

bool SessionDriver::begin(const QString& targetPath, double pauseMs) {
    prepare(Session::Practice, targetPath);
    setPause(pauseMs);
    if (go() == nullptr)
        return false;
    beReady();
    return true;
}

bool SessionDriver::playTarget() {
    return playAndWait("pushButtonPlayTarget");
}

bool SessionDriver::playSinusoid(int frequency) {
    auto* spinBox = find<QSpinBox>(*subjectWindow, "spinBoxFrequency");
    spinBox->setFocus();
    spinBox->selectAll();
    QTest::keyClicks(spinBox, QString::number(frequency));
    return playAndWait("pushButtonPlaySinusoid");
}

bool SessionDriver::playAndWait(const char* buttonName) {
    constexpr int timeoutMs = 20000;
    QSignalSpy sounds(&window, &MainWindow::soundPlaying);
    click(*subjectWindow, buttonName);
    return QTest::qWaitFor([&] { return sounds.count() >= 2; }, timeoutMs) &&
           sounds.at(0).at(0).toInt() == 1 && sounds.at(1).at(0).toInt() == -1;
}

void SessionDriver::finish(const QString& resultsPath) {
    dialogs.answerClosing(QMessageBox::Yes);
    if (resultsPath.isEmpty())
        dialogs.saveAsProposed();
    else
        dialogs.saveAs(resultsPath);
    pressDone();
}

void SessionDriver::pressDone() {
    if (find<QPushButton>(*subjectWindow, "pushButtonDone")->isVisible())
        click(*subjectWindow, "pushButtonDone");
    else
        subjectWindow->close();
    subjectWindow = nullptr;
}

void SessionDriver::finishWithoutSaving() {
    dialogs.answerClosing(QMessageBox::Yes);
    pressDone();
}

} // namespace testsupport
