// Opening, closing and destroying the main window, and the program itself.
// SPDX-License-Identifier: GPL-3.0-or-later
#include "test_app.h"

#include "support/CloseButton.h"
#include "support/FileBytes.h"
#include "support/ManagedWindows.h"

#include <QApplication>
#include <QAudioOutput>
#include <QComboBox>
#include <QDir>
#include <QLabel>
#include <QPointer>
#include <QProcess>
#include <QtCharts/QChart>
#include <QtCharts/QChartView>
#include <QtCharts/QLineSeries>
#include <QtCharts/QValueAxis>

#include <algorithm>

using testsupport::CloseEvents;
using testsupport::InspectedMainWindow;
using testsupport::ManagedWindow;

namespace {

/// The program in a process of its own, started under another file name, so that the name that it
/// uses comes from its code.
class RunningProgram {
public:
    explicit RunningProgram(const QProcessEnvironment& environment) {
        const QString alias = folder.filePath(QStringLiteral("alias"));
        QFile::link(QStringLiteral(PELLION_PROGRAM), alias);
        process.setProcessEnvironment(environment);
        // The window manager may still list a window of an earlier test.
        if (!QTest::qWaitFor([] { return testsupport::managedWindows().isEmpty(); }, timeoutMs))
            qWarning("a window of an earlier test is still managed");
        process.start(alias, QStringList());
    }
    ~RunningProgram() {
        if (process.state() == QProcess::NotRunning)
            return;
        process.kill();
        process.waitForFinished();
    }
    Q_DISABLE_COPY_MOVE(RunningProgram)

    /// Waits for the one window that opens; an id of 0 when none came.
    ManagedWindow waitForWindow() const {
        QVector<ManagedWindow> opened;
        (void)QTest::qWaitFor(
            [&opened] {
                opened = testsupport::managedWindows();
                return opened.size() == 1 && !opened.first().title.isEmpty();
            },
            timeoutMs);
        return opened.size() == 1 ? opened.first() : ManagedWindow();
    }

    /// Closes the window as a person would and waits for the end of the program.
    bool closeAndWait(const ManagedWindow& window) {
        return testsupport::closeManagedWindow(window.id) && process.waitForFinished();
    }

    QProcess process;

private:
    static constexpr int timeoutMs = 20000;
    QTemporaryDir folder;
};

} // namespace

void TestMainWindowLife::openingAndDestroyingWritesNothingOnTheLog() {
    fixture->session();
    fixture->destroyWindow();
    QCOMPARE(fixture->log.all(), QStringList());
}

void TestMainWindowLife::destructorDeletesEverything() {
    const QWidgetList before = QApplication::allWidgets();
    const InspectedMainWindow& window = fixture->window();
    QVector<QPointer<QObject>> parts{
        window.labelSessionType.get(),   window.labelSoundType.get(),
        window.labelMainParameter.get(), window.comboBoxSesType.get(),
        window.comboBoxSoundType.get(),  window.comboBoxMainParameter.get()};
    for (QObject* part : window.findChildren<QObject*>())
        parts.append(part);
    QVERIFY(parts.size() > 50 && !parts.contains(nullptr));
    fixture->destroyWindow();
    for (const auto& part : parts)
        QVERIFY2(part.isNull(), part ? qPrintable(part->objectName()) : "");
    for (QWidget* widget : QApplication::allWidgets())
        QVERIFY2(before.contains(widget), widget->metaObject()->className());
}

void TestMainWindowLife::destructorDeletesOutputsAndChartsInTheirOrder() {
    InspectedMainWindow& window = fixture->window();
    const QVector<QPair<const char*, QObject*>> expectedOrder = {
        {"released output", new QAudioOutput(QAudioFormat(), &window)},
        {"seriesWav", window.seriesWav},
        {"seriesFFT", window.seriesFFT},
        {"seriesTrend", window.seriesTrend},
        {"axisXWav", window.axisXWav},
        {"axisXFFT", window.axisXFFT},
        {"axisXTrend", window.axisXTrend},
        {"axisYWav", window.axisYWav},
        {"axisYFFT", window.axisYFFT},
        {"axisYTrend", window.axisYTrend},
        {"chartWav", window.chartWav},
        {"chartFFT", window.chartFFT},
        {"chartTrend", window.chartTrend},
        {"chartViewWav", window.chartViewWav},
        {"chartViewFFT", window.chartViewFFT},
        {"chartViewTrend", window.chartViewTrend}};
    QStringList expected;
    QStringList deleted;
    for (const auto& [name, object] : expectedOrder) {
        expected.append(QString::fromLatin1(name));
        connect(object, &QObject::destroyed, this,
                [&deleted, part = expected.last()] { deleted.append(part); });
    }
    fixture->destroyWindow();
    QCOMPARE(deleted, expected);
}

void TestMainWindowLife::openGlDriverIsLoadedOnlyOnRequest_data() {
    QTest::addColumn<QString>("integration");
    QTest::addColumn<bool>("isLoaded");
    QTest::newRow("default") << QString() << false;
    QTest::newRow("set by the user") << QStringLiteral("xcb_glx") << true;
}

void TestMainWindowLife::openGlDriverIsLoadedOnlyOnRequest() {
    QFETCH(QString, integration);
    QFETCH(bool, isLoaded);
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.remove(QStringLiteral("QT_XCB_GL_INTEGRATION"));
    if (!integration.isEmpty())
        environment.insert(QStringLiteral("QT_XCB_GL_INTEGRATION"), integration);
    RunningProgram program(environment);
    const ManagedWindow window = program.waitForWindow();
    QVERIFY(window.id != 0);
    QFile maps(QStringLiteral("/proc/%1/maps").arg(program.process.processId()));
    QVERIFY(maps.open(QIODevice::ReadOnly));
    const QByteArray libraries = maps.readAll();
    QVERIFY(libraries.contains("libqxcb.so"));
    QCOMPARE(libraries.contains("libqxcb-glx-integration.so"), isLoaded);
    QVERIFY(program.closeAndWait(window));
}

void TestMainWindowLife::quitClosesTheWindow() {
    fixture->session();
    testsupport::click(fixture->window(), "pushButtonQuit");
    QVERIFY(!fixture->window().isVisible());
}

void TestMainWindowLife::windowManagerClosesOnlyTheEnabledWindow() {
    fixture->session();
    MainWindow& window = fixture->window();
    const CloseEvents requests(window);
    QTRY_COMPARE(testsupport::managedWindows().size(), 1);
    window.setEnabled(false);
    QVERIFY(testsupport::pressCloseButton(window));
    QTRY_COMPARE(requests.count(), 1);
    QVERIFY(window.isVisible());
    window.setEnabled(true);
    QVERIFY(testsupport::pressCloseButton(window));
    QTRY_COMPARE(requests.count(), 2);
    QVERIFY(!window.isVisible());
}

void TestMainWindowLife::programOpensTheWindowAndEndsWithIt() {
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.insert(QStringLiteral("HOME"), fixture->folder.path());
    environment.remove(QStringLiteral("XDG_DATA_HOME"));
    RunningProgram program(environment);
    const ManagedWindow window = program.waitForWindow();
    QCOMPARE(window.title, QStringLiteral("Vantaro Lab | Pellion (v014) | Main Window"));
    QCOMPARE(window.programClass, QStringLiteral("pellion"));
    QVERIFY(program.closeAndWait(window));
    QCOMPARE(program.process.exitStatus(), QProcess::NormalExit);
    QCOMPARE(program.process.readAllStandardError(), QByteArray());
    QCOMPARE(program.process.readAllStandardOutput(), QByteArray());
    QCOMPARE(program.process.exitCode(), 0);
}

void TestMainWindowLife::programReportsAMissingSoundDevice() {
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.insert(QStringLiteral("PULSE_SERVER"), QStringLiteral("unix:/nonexistent"));
    RunningProgram program(environment);
    const ManagedWindow window = program.waitForWindow();
    QCOMPARE(window.title, QStringLiteral("Vantaro Lab | Pellion (v014) | Main Window"));
    QVERIFY(program.closeAndWait(window));
    QCOMPARE(program.process.exitCode(), 0);
    const QList<QByteArray> lines = program.process.readAllStandardError().split('\n');
    QCOMPARE(lines.count("Raw audio format not supported by backend, cannot play audio."), 1);
}

void TestMainWindowLife::programReportsLeftoverJournals() {
    const QString folder = fixture->pathOf(QStringLiteral(".local/share/pellion/journal"));
    QVERIFY(QDir().mkpath(folder));
    const QString journal = folder + QStringLiteral("/SUB001_practice001-20260309-080559.txt");
    QVERIFY(testsupport::writeBytes(journal, "responses"));
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.insert(QStringLiteral("HOME"), fixture->folder.path());
    environment.remove(QStringLiteral("XDG_DATA_HOME"));
    RunningProgram program(environment);
    QVERIFY(program.closeAndWait(program.waitForWindow()));
    QCOMPARE(program.process.readAllStandardError(),
             "Responses of an earlier session kept in: " + journal.toLocal8Bit() + '\n');
    QCOMPARE(testsupport::readBytes(journal), QByteArray("responses"));
}
