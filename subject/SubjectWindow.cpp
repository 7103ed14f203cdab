// The listener's window.
// SPDX-License-Identifier: GPL-3.0-or-later
#include "subject/SubjectWindow.h"

#include "subject/ResponseCode.h"
#include "window/TopLevelWindow.h"
#include "window/Widgets.h"

#include <QCloseEvent>
#include <QGridLayout>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QMessageBox>
#include <QPushButton>
#include <QSlider>
#include <QSpinBox>
#include <QVBoxLayout>

namespace {

// Range and value, equal to the members' defaults, until the main window sends its own.
constexpr int minimumFrequency = 10;
constexpr int maximumFrequency = 1000;
constexpr int startFrequency = 500;

QString hoverStyle() {
    return QStringLiteral(
        "QPushButton:hover {background-color: rgb(0, 255, 255); border: 1px solid blue;}");
}

QString greyStyle() {
    return QStringLiteral("QPushButton {background-color: rgb(190, 190, 190); border: none;} ");
}

/// Large arrows, which can be clicked without looking.
QString spinBoxStyle() {
    return QStringLiteral(
        "QSpinBox::up-arrow { border-left: 17px solid none; border-right: 17px solid none; "
        "border-bottom: 17px solid black; width: 0px; height: 0px; }"
        "QSpinBox::up-arrow:hover { border-left: 17px solid none; border-right: 17px solid none; "
        "border-bottom: 17px solid black; width: 0px; height: 0px; }"
        "QSpinBox::up-button { width: 60px; height: 100px; background-color: rgb(190, 190, 190); }"
        "QSpinBox::up-button:hover { width: 60px; height: 100px; "
        "background-color: rgb(0, 255, 255); }"
        "QSpinBox::down-arrow { border-left: 17px solid none; border-right: 17px solid none; "
        "border-top: 17px solid black; width: 0px; height: 0px; }"
        "QSpinBox::down-arrow:hover { border-left: 17px solid none; border-right: 17px solid none; "
        "border-top: 17px solid black; width: 0px; height: 0px; }"
        "QSpinBox::down-button { width: 60px; height: 100px; "
        "background-color: rgb(190, 190, 190); }"
        "QSpinBox::down-button:hover { width: 60px; height: 100px; "
        "background-color: rgb(0, 255, 255); }");
}

/// Sets range, value and step of a spin box or slider, in Hz.
template <typename Control>
void setFrequencies(Control* control, int minimum, int maximum, int current, int step) {
    control->setRange(minimum, maximum);
    control->setValue(current);
    control->setSingleStep(step);
}

} // namespace

SubjectWindow::SubjectWindow(QWidget* parent) : QMainWindow(parent) {
    setObjectName(QStringLiteral("SubjectWindow"));
    createWidgets();
    setFrequencies(spinBoxFrequency, minimumFrequency, maximumFrequency, frequencyCurrent,
                   frequencyStepSize);
    setFrequencies(sliderFrequency, frequencyMin, frequencyMax, frequencyCurrent,
                   frequencyStepSize);
    connectWidgets();
    setupGUISubjectWindow();
    setUpAccessibility();
}

SubjectWindow::~SubjectWindow() {
    restorePlatformWindow(*this);
    deleteAndForget(pushButtonPlayTarget);
    deleteAndForget(labelCurrentValue);
    deleteAndForget(spinBoxFrequency);
    deleteAndForget(pushButtonPlaySinusoid);
    deleteAndForget(sliderFrequency);
    deleteAndForget(pushButtonIAmReady);
    deleteAndForget(pushButtonDone);
    deleteAndForget(layoutFrequency);
    deleteAndForget(layoutUnused);
    deleteAndForget(layoutWindow);
    deleteAndForget(widgetCentral);
}

void SubjectWindow::createWidgets() {
    pushButtonPlayTarget =
        named<QPushButton>("pushButtonPlayTarget", QStringLiteral("Play target"));
    labelCurrentValue = named<QLabel>("labelCurrentValue", QStringLiteral("Current Value"));
    spinBoxFrequency = named<QSpinBox>("spinBoxFrequency");
    pushButtonPlaySinusoid =
        named<QPushButton>("pushButtonPlaySinusoid", QStringLiteral("Play sinusoid"));
    sliderFrequency = named<QSlider>("sliderFrequency", Qt::Vertical);
    pushButtonIAmReady = named<QPushButton>("pushButtonIAmReady", QStringLiteral("I am ready"));
    pushButtonDone = named<QPushButton>("pushButtonDone", QStringLiteral("Done"));
    layoutFrequency = new QHBoxLayout;
    layoutUnused = new QVBoxLayout;
    layoutWindow = new QGridLayout;
    widgetCentral = named<QWidget>("widgetCentral");
}

void SubjectWindow::connectWidgets() {
    connect(pushButtonIAmReady, SIGNAL(clicked(bool)), this, SLOT(on_pushButtonIAmReady_clicked()));
    connect(pushButtonDone, SIGNAL(clicked(bool)), this, SLOT(close()));
    connect(pushButtonPlayTarget, SIGNAL(clicked(bool)), this,
            SLOT(on_pushButtonPlayTarget_clicked()));
    connect(pushButtonPlaySinusoid, SIGNAL(clicked(bool)), this,
            SLOT(on_pushButtonPlaySinusoid_clicked()));
    connect(spinBoxFrequency, SIGNAL(valueChanged(qint32)), sliderFrequency,
            SLOT(setValue(qint32)));
    connect(sliderFrequency, SIGNAL(valueChanged(qint32)), spinBoxFrequency,
            SLOT(setValue(qint32)));
}

void SubjectWindow::setupGUISubjectWindow() {
    centerAndResizeSubjectWindow(isCentered, widthRatio, heightRatio);
    setWindowTitle(titleOfWindow(QStringLiteral("Subject Window")));
    placeWidgets();
    sizeWidgets();
    spinBoxFrequency->setRange(minimumFrequency, maximumFrequency);
    spinBoxFrequency->setValue(startFrequency);
    sliderFrequency->setRange(minimumFrequency, maximumFrequency);
    sliderFrequency->setValue(startFrequency);
    pushButtonPlayTarget->hide();
    labelCurrentValue->hide();
    spinBoxFrequency->hide();
    pushButtonPlaySinusoid->hide();
    sliderFrequency->hide();
    pushButtonDone->hide();
}

void SubjectWindow::placeWidgets() {
    layoutFrequency->addWidget(labelCurrentValue);
    layoutFrequency->addWidget(spinBoxFrequency);
    layoutWindow->addWidget(pushButtonPlayTarget, 0, 0, 2, 1);
    layoutWindow->addLayout(layoutFrequency, 0, 1, 1, 1);
    layoutWindow->addWidget(pushButtonPlaySinusoid, 1, 1, 1, 1);
    layoutWindow->addWidget(sliderFrequency, 0, 2, 2, 1);
    // Shares its cell with the spin box: the two are never visible together.
    layoutWindow->addWidget(pushButtonIAmReady, 0, 1, 1, 2);
    layoutWindow->addWidget(pushButtonDone, 2, 0, 1, 4);
    widgetCentral->setLayout(layoutWindow);
    setCentralWidget(widgetCentral);
}

void SubjectWindow::sizeWidgets() {
    constexpr int minimumSpinBoxHeight = 200;
    constexpr int minimumSliderWidth = 100;
    constexpr int minimumDoneHeight = 100;
    for (QPushButton* button : {pushButtonPlayTarget, pushButtonPlaySinusoid, pushButtonIAmReady})
        button->setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Expanding);
    spinBoxFrequency->setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
    spinBoxFrequency->setMinimumHeight(minimumSpinBoxHeight);
    spinBoxFrequency->setStyleSheet(spinBoxStyle());
    sliderFrequency->setMinimumWidth(minimumSliderWidth);
    sliderFrequency->setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Expanding);
    pushButtonDone->setMinimumHeight(minimumDoneHeight);
    pushButtonDone->setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
    labelCurrentValue->setAlignment(Qt::AlignRight | Qt::AlignVCenter);
}

void SubjectWindow::setUpAccessibility() {
    labelCurrentValue->setBuddy(spinBoxFrequency);
    describe(pushButtonIAmReady, pushButtonIAmReady->text(),
             QStringLiteral("Shows the controls of the session"));
    describe(pushButtonPlayTarget, pushButtonPlayTarget->text(),
             QStringLiteral("Plays the sound whose pitch is to be matched"));
    describe(spinBoxFrequency, labelCurrentValue->text(),
             QStringLiteral("Frequency of the sinusoid in hertz"));
    describe(pushButtonPlaySinusoid, pushButtonPlaySinusoid->text(),
             QStringLiteral("Plays a sinusoid at the frequency that is set"));
    describe(sliderFrequency, QStringLiteral("Frequency"),
             QStringLiteral("Frequency of the sinusoid in hertz; always that of Current Value"));
    describe(pushButtonDone, pushButtonDone->text(),
             QStringLiteral("Ends the session once both sounds match"));
    ::setTabOrder({pushButtonIAmReady, pushButtonPlayTarget, spinBoxFrequency,
                   pushButtonPlaySinusoid, sliderFrequency, pushButtonDone});
}

void SubjectWindow::centerAndResizeSubjectWindow(bool center, double widthFraction,
                                                 double heightFraction) {
    placeOnPrimaryScreen(*this, center, widthFraction, heightFraction);
}

void SubjectWindow::setSliderParameters() {
    setFrequencies(spinBoxFrequency, frequencyMin, frequencyMax, frequencyCurrent,
                   frequencyStepSize);
    setFrequencies(sliderFrequency, frequencyMin, frequencyMax, frequencyCurrent,
                   frequencyStepSize);
}

void SubjectWindow::receiveParameters(int minimum, int maximum, int current, int step) {
    frequencyMin = minimum;
    frequencyMax = maximum;
    frequencyCurrent = current;
    frequencyStepSize = step;
    setSliderParameters();
}

void SubjectWindow::enableAllChoiceButtons() {
    pushButtonPlayTarget->setEnabled(true);
    pushButtonPlaySinusoid->setEnabled(true);
}

void SubjectWindow::disableAllChoiceButtons() {
    pushButtonPlayTarget->setEnabled(false);
    pushButtonPlaySinusoid->setEnabled(false);
}

void SubjectWindow::lock() {
    QWidget* const focusInQuestion =
        closeQuestion.isNull() ? nullptr : closeQuestion->focusWidget();
    // A window already locked has lost its focus.
    if (isEnabled()) {
        const auto* frequencyText = spinBoxFrequency->findChild<QLineEdit*>();
        lockedFocus = focusWidget();
        wasWholeFrequencySelected = frequencyText->selectedText() == frequencyText->text();
    }
    setEnabled(false);
    // Disabling a window disables its dialogs too, but the listener must still be able to answer.
    if (!closeQuestion.isNull())
        closeQuestion->setEnabled(true);
    if (focusInQuestion != nullptr)
        focusInQuestion->setFocus();
}

void SubjectWindow::unlock() {
    setEnabled(true);
    if (lockedFocus.isNull() || !lockedFocus->isVisibleTo(this))
        return;
    lockedFocus->setFocus(); // Has no effect on a control that is disabled by now.
    if (lockedFocus == spinBoxFrequency && wasWholeFrequencySelected)
        spinBoxFrequency->selectAll();
}

void SubjectWindow::on_pushButtonIAmReady_clicked() {
    lock();
    pushButtonPlayTarget->setEnabled(true);
    // The target must be heard before a frequency can be set. The label stays disabled.
    labelCurrentValue->setEnabled(false);
    spinBoxFrequency->setEnabled(false);
    pushButtonPlaySinusoid->setEnabled(false);
    sliderFrequency->setEnabled(false);
    pushButtonPlayTarget->show();
    labelCurrentValue->show();
    spinBoxFrequency->show();
    pushButtonPlaySinusoid->show();
    sliderFrequency->show();
    pushButtonIAmReady->hide();
    pushButtonDone->hide();
    pushButtonPlayTarget->setStyleSheet(hoverStyle());
    unlock();
    // The button that had the focus is hidden, and only this one can be used.
    pushButtonPlayTarget->setFocus();
}

void SubjectWindow::on_pushButtonPlayTarget_clicked() {
    lock();
    emit subjectResponded(PlayTarget, 0);
}

void SubjectWindow::on_pushButtonPlaySinusoid_clicked() {
    lock();
    pushButtonDone->setEnabled(true);
    pushButtonDone->show();
    pushButtonDone->setStyleSheet(hoverStyle());
    frequencyCurrent = spinBoxFrequency->value();
    emit subjectResponded(PlaySinusoid, frequencyCurrent);
}

void SubjectWindow::updateSubjectWindow(int index) {
    lock();
    disableAllChoiceButtons();
    if (index != soundsEnded)
        return;
    // Grey only until the line after next: deliberate.
    pushButtonPlaySinusoid->setStyleSheet(greyStyle());
    pushButtonPlayTarget->setStyleSheet(hoverStyle());
    pushButtonPlaySinusoid->setStyleSheet(hoverStyle());
    pushButtonPlayTarget->setEnabled(true);
    spinBoxFrequency->setEnabled(true);
    pushButtonPlaySinusoid->setEnabled(true);
    sliderFrequency->setEnabled(true);
    unlock();
}

void SubjectWindow::closeEvent(QCloseEvent* event) {
    const QPointer<SubjectWindow> thisWindow(this);
    closeQuestion =
        new QMessageBox(QMessageBox::Question, QStringLiteral("Confirmation MessageBox"),
                        tr("Do you want to close this window?\n"),
                        QMessageBox::Yes | QMessageBox::No | QMessageBox::Cancel, this);
    closeQuestion->setDefaultButton(QMessageBox::Yes);
    const bool isConfirmed = closeQuestion->exec() == QMessageBox::Yes;
    // The program may have ended while the question was open, and deleted both.
    if (thisWindow.isNull())
        return;
    delete closeQuestion;
    if (isConfirmed)
        emit subjectWindowClosed();
    else
        activateWindow(); // the window manager may prefer the experimenter's window, which is
                          // locked
    event->setAccepted(isConfirmed);
}

void SubjectWindow::hideEvent(QHideEvent* event) {
    QMainWindow::hideEvent(event);
    // Queued: the close event, or the mouse event of "Done", still needs the window.
    QMetaObject::invokeMethod(this, &SubjectWindow::releaseHiddenWindow, Qt::QueuedConnection);
}

void SubjectWindow::releaseHiddenWindow() {
    // The window may only be minimised, or may have been shown again.
    if (!isHidden())
        return;
    restorePlatformWindow(*this);
    destroy();
}
