// Holds one session after another until it is killed: endless_sessions FOLDER PAUSE.
// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/MainWindow.h"
#include "support/SessionDriver.h"
#include "support/WavBytes.h"

#include <QApplication>
#include <QLineEdit>

#include <cstdlib>
#include <random>

#include <unistd.h>

using testsupport::SessionDriver;

namespace {

/// Reports on standard output what happens, one event a line. A line is written before its event
/// continues, so that no end of the program loses it.
void report(const QString& event) {
    const QByteArray line = event.toUtf8() + '\n';
    if (::write(STDOUT_FILENO, line.constData(), size_t(line.size())) != line.size())
        std::_Exit(EXIT_FAILURE);
}

int randomNumber(int minimum, int maximum) {
    static std::mt19937 generator{std::random_device{}()};
    return std::uniform_int_distribution<int>(minimum, maximum)(generator);
}

/// Sessions with real windows, by the widgets that a person clicks.
class EndlessSessions {
public:
    EndlessSessions(QString folderPath, double pauseMs)
        : folder(std::move(folderPath)), pause(pauseMs) {
        QObject::connect(&window, &MainWindow::soundPlaying, [this](int index) {
            if (index == 1 && requests > 0)
                report(QStringLiteral("started %1 %2").arg(requests).arg(frequency));
        });
        window.show();
    }

    bool hold() {
        const QString target = folder + "/target.wav";
        if (!testsupport::writeSteadyTarget(target))
            return false;
        requests = 0;
        report("prepare " + text("lineEditOutputFileName"));
        if (!session.begin(target, pause))
            return false;
        report("go");
        if (!session.playTarget())
            return false;
        constexpr int maximumRequests = 8;
        for (int left = randomNumber(1, maximumRequests); left > 0; --left)
            if (!request())
                return false;
        report("done");
        session.finish(folder + u'/' + text("lineEditOutputFileName"));
        report("saved");
        return session.dialogs.takeComplaints().isEmpty();
    }

private:
    bool request() {
        ++requests;
        frequency = randomNumber(10, 1000);
        report(QStringLiteral("asked %1 %2").arg(requests).arg(frequency));
        const bool isPlayed = session.playSinusoid(frequency);
        report("ended");
        return isPlayed;
    }

    QString text(const char* lineEditName) {
        return testsupport::find<QLineEdit>(window, lineEditName)->text();
    }

    QString folder;
    double pause; ///< From a request to its sound, ms.
    MainWindow window;
    SessionDriver session{window};
    int requests = 0;  ///< Of this session.
    int frequency = 0; ///< Of the last request, Hz.
};

} // namespace

int main(int argc, char** argv) {
    const QApplication application(argc, argv);
    QApplication::setApplicationName(QStringLiteral("pellion"));
    const QStringList arguments = QApplication::arguments();
    if (arguments.size() != 3) {
        qWarning("usage: endless_sessions FOLDER PAUSE");
        return EXIT_FAILURE;
    }
    EndlessSessions sessions(arguments[1], arguments[2].toDouble());
    while (sessions.hold()) {
    }
    qWarning("a session went wrong");
    return EXIT_FAILURE;
}
