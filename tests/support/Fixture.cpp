// The environment of each test of the windows, which reports everything unexpected.
// SPDX-License-Identifier: GPL-3.0-or-later
#include "support/Fixture.h"

#include "session/ResponseJournal.h"
#include "support/FileBytes.h"

#include <QApplication>
#include <QLineEdit>
#include <QSpinBox>

#include <cmath>

namespace testsupport {

namespace {

QString titleOf(const QWidget& window) {
    return window.windowTitle().isEmpty() ? QLatin1String(window.metaObject()->className())
                                          : window.windowTitle();
}

} // namespace

Fixture::Fixture() {
    if (!folder.isValid())
        qFatal("no folder can be made");
    // Closing the last window must not end the test program.
    QApplication::setQuitOnLastWindowClosed(false);
    qputenv("XDG_DATA_HOME", pathOf(QStringLiteral("data")).toLocal8Bit());
}

Fixture::~Fixture() {
    destroyWindow();
    if (earlierDataHome.isNull())
        qunsetenv("XDG_DATA_HOME");
    else
        qputenv("XDG_DATA_HOME", earlierDataHome);
}

InspectedMainWindow& Fixture::window() {
    if (!mainWindow) {
        mainWindow = std::make_unique<InspectedMainWindow>();
        QObject::connect(mainWindow.get(), &MainWindow::soundPlaying,
                         [this](int index) { soundSignals.append(index); });
    }
    return *mainWindow;
}

SessionDriver& Fixture::session() {
    if (!sessionDriver) {
        window().show();
        if (!QTest::qWaitForWindowExposed(mainWindow.get()))
            qFatal("the main window does not appear");
        sessionDriver.emplace(*mainWindow, dialogs);
    }
    return *sessionDriver;
}

void Fixture::destroyWindow() {
    sessionDriver.reset();
    mainWindow.reset();
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
}

SoundRecorder& Fixture::recorder() {
    if (!soundRecorder) {
        soundRecorder.emplace();
        if (!soundRecorder->start())
            qFatal("the sound device cannot be recorded");
    }
    return *soundRecorder;
}

QString Fixture::write(const QString& name, const QByteArray& bytes) const {
    QString path = pathOf(name);
    if (!writeBytes(path, bytes))
        qFatal("cannot write %s", qPrintable(path));
    return path;
}

QString Fixture::write(const QString& name, const QVector<int>& codes,
                       const WavFormat& format) const {
    return write(name, wavWithSamples(format, codes));
}

QString Fixture::writeTone(const QString& name, int milliseconds, int frequency) const {
    constexpr int samplesPerMillisecond = 40;
    constexpr double fullTurn = 6.283185307179586;
    QVector<int> codes(milliseconds * samplesPerMillisecond);
    for (int i = 0; i < codes.size(); ++i)
        codes[i] = int(std::lround(16000 * std::sin(fullTurn * frequency * i / 40000)));
    return write(name, codes);
}

void Fixture::prepare(const QString& targetPath, Session kind) {
    constexpr double pauseMs = 10;
    target = targetPath;
    session().prepare(kind, targetPath);
    session().setPause(pauseMs);
    window().lineEditOutputFilePath->setText(folder.path());
}

bool Fixture::start() {
    if (session().go() == nullptr)
        return false;
    session().beReady();
    return true;
}

QVector<float> Fixture::expectedTarget() const {
    return heardFromFile(readBytes(target));
}

bool Fixture::playTarget() {
    // A silent target cannot be distinguished from silence.
    if (isAudible(expectedTarget()))
        expectSound(expectedTarget());
    return session().playTarget();
}

bool Fixture::playSinusoid(int frequency) {
    const QVector<float> sinusoid = heardSinusoid(frequency, expectedTarget().size());
    if (isAudible(sinusoid))
        expectSound(sinusoid);
    return session().playSinusoid(frequency);
}

HeardSounds Fixture::heard() {
    constexpr int silenceMs = 150;
    if (!recorder().waitForSilence(silenceMs))
        return {{}, QStringLiteral("the sound device does not fall silent")};
    return findSounds(recorder().samples(), expectedSounds);
}

QString Fixture::finish() {
    QString path = pathOf(window().lineEditOutputFileName->text());
    dialogs.answerClosing(QMessageBox::Yes);
    if (window().data.saveDataToFile)
        dialogs.saveAsProposed();
    session().listener()->close();
    return path;
}

void Fixture::cancelSaving() {
    dialogs.cancelSaving();
    closeWarningOfNoFile();
}

void Fixture::closeWarningOfNoFile() {
    dialogs.closeWarning(QStringLiteral("could not open file for writing \r\n"));
    log.expect(QStringLiteral("QFSFileEngine::open: No file name specified"));
}

void Fixture::finishCancelled() {
    dialogs.answerClosing(QMessageBox::Yes);
    cancelSaving();
    session().listener()->close();
}

QString Fixture::textOf(const char* lineEditName) {
    return find<QLineEdit>(window(), lineEditName)->text();
}

int Fixture::fileNumber() {
    return window().spinBoxFileNumber->value();
}

QStringList Fixture::journals() {
    return filesIn(journalFolder());
}

QStringList Fixture::takePrinted() {
    QStringList lines = QString::fromLocal8Bit(printed.takeFlushed().c_str()).split(u'\n');
    if (lines.last().isEmpty())
        lines.removeLast();
    else
        lines.last() += QStringLiteral(" (without an end of line)");
    return lines;
}

void Fixture::closeLeftoverWindows(QStringList& complaints) {
    for (QWidget* widget : QApplication::topLevelWidgets()) {
        const bool isWindow =
            widget->windowType() == Qt::Window || widget->windowType() == Qt::Dialog;
        if (!isWindow || !widget->isVisible())
            continue;
        complaints.append(QStringLiteral("still open: %1").arg(titleOf(*widget)));
        widget->hide();
    }
}

QStringList Fixture::end() {
    QStringList complaints = dialogs.takeComplaints();
    if (QWidget* dialog = QApplication::activeModalWidget()) {
        complaints.append(QStringLiteral("dialog still open: %1").arg(titleOf(*dialog)));
        dialog->hide();
    }
    for (const QString& line : takePrinted())
        complaints.append(QStringLiteral("printed: ") + line);
    destroyWindow();
    closeLeftoverWindows(complaints);
    // A session that a test leaves unfinished keeps its responses, which is expected.
    for (const QString& line : takePrinted())
        if (!line.startsWith(QLatin1String("Responses kept in: ")))
            complaints.append(QStringLiteral("printed: ") + line);
    return complaints + log.takeComplaints();
}

void FixtureTest::init() {
    // One is left if the setUp() before has failed.
    fixture.reset();
    fixture = std::make_unique<Fixture>();
    setUp();
}

void FixtureTest::cleanup() {
    const QString complaints = fixture->end().join(u'\n');
    fixture.reset();
    QCOMPARE(complaints, QString());
}

} // namespace testsupport
