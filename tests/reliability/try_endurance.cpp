// Holds many sessions in one run, then one of very many responses, and tells what they cost:
// try_endurance SESSIONS RESPONSES.
// SPDX-License-Identifier: GPL-3.0-or-later
#include "reliability/LongSession.h"
#include "reliability/ProcessResources.h"
#include "support/FileBytes.h"
#include "support/LogLines.h"
#include "support/WavBytes.h"

#include <QLineEdit>
#include <QTextStream>

#include <algorithm>
#include <cstdlib>

#include <malloc.h>

using testsupport::SessionDriver;

namespace {

/// Lets everything that was put off happen.
void rest() {
    constexpr int restMs = 200;
    QTest::qWait(restMs);
}

/// Returns what is held when nothing is going on. Memory that is free for further use, of which
/// dialogs leave now more, now less, is given back first.
ProcessResources resourcesAtRest() {
    rest();
    malloc_trim(0);
    return ownResources();
}

/// Sessions of a few responses, by the widgets that a person clicks.
class ShortSessions {
public:
    ShortSessions() { window.show(); }

    bool hold() {
        constexpr int samples = 200; // 5 ms.
        const QString target = folder.filePath("target.wav");
        if (!testsupport::writeBytes(target,
                                     testsupport::wavWithSamples({}, QVector<int>(samples, 12345))))
            return false;
        session.prepare(SessionDriver::Session::Practice, target);
        testsupport::find<QLineEdit>(window, "lineEditSilentInterval")->setText("5");
        if (session.go() == nullptr)
            return false;
        session.beReady();
        constexpr int responses = 3;
        bool isPlayed = session.playTarget();
        for (int i = 0; i < responses; ++i)
            isPlayed = isPlayed && session.playSinusoid(100 + i);
        if (!isPlayed)
            return false;
        session.finish(folder.filePath("results.txt"));
        return session.dialogs.takeComplaints().isEmpty();
    }

    /// Returns the memory (MiB) of a listener's window that has been shown in all its states and
    /// is kept, hidden, with no session around it.
    double hiddenWindowMiB() {
        constexpr int count = 10;
        const double before = resourcesAtRest().residentMiB;
        for (int i = 0; i < count; ++i) {
            auto* const listener = new SubjectWindow(&window);
            listener->show();
            if (!QTest::qWaitForWindowExposed(listener))
                qFatal("a listener's window does not appear");
            // Only what has been painted is there.
            rest();
            testsupport::click(*listener, "pushButtonIAmReady");
            for (const int soundIndex : {1, -1}) {
                listener->updateSubjectWindow(soundIndex);
                rest();
            }
            listener->hide();
        }
        return (resourcesAtRest().residentMiB - before) / count;
    }

    int listeners() const { return window.findChildren<SubjectWindow*>().size(); }

private:
    QTemporaryDir folder;
    MainWindow window;
    SessionDriver session{window};
};

/// By how much the memory (MiB) grew with each session: the slope of the line that fits best.
double growthPerSession(const QVector<ProcessResources>& held, int firstSession) {
    double products = 0;
    double squares = 0;
    const double middle = (firstSession + held.size() - 1) / 2.0;
    for (int i = firstSession; i < held.size(); ++i) {
        products += (i - middle) * held[i].residentMiB;
        squares += (i - middle) * (i - middle);
    }
    return products / squares;
}

QString mebibytes(double number) {
    return QString::number(number, 'f', 1);
}

/// Prints what was held after sessions; returns whether it grew only as it should.
bool reportSessions(QTextStream& out, const QVector<ProcessResources>& held,
                    ShortSessions& sessions) {
    out << "| sessions held | memory (MiB) | of these private (MiB) | open files | threads |\n"
        << "|---|---|---|---|---|\n";
    for (int i = 0; i < held.size(); ++i) {
        constexpr int everyTenth = 10;
        const int number = i + 1;
        if (number <= 2 || number % everyTenth == 0 || number == held.size())
            out << "| " << number << " | " << mebibytes(held[i].residentMiB) << " | "
                << mebibytes(held[i].privateMiB) << " | " << held[i].descriptors << " | "
                << held[i].threads << " |\n";
    }
    // What is made once, with the first sessions, is not growth.
    constexpr int firstSession = 5;
    constexpr int fewestSessions = 20;
    bool isMemoryKept = true;
    if (held.size() >= fewestSessions) {
        const double growth = growthPerSession(held, firstSession);
        const double hiddenWindow = sessions.hiddenWindowMiB();
        constexpr double noiseMiB = 0.2;
        isMemoryKept = growth <= hiddenWindow + noiseMiB;
        out << "\nEach session from the sixth on left " << QString::number(growth, 'f', 2)
            << " MiB behind; a listener's window that is shown, hidden and kept, without a "
               "session, "
            << "takes " << QString::number(hiddenWindow, 'f', 2) << " MiB.\n";
    }
    const ProcessResources& second = held[1];
    const bool isRestKept =
        std::all_of(held.cbegin() + 2, held.cend(), [&second](const ProcessResources& resources) {
            return resources.descriptors <= second.descriptors &&
                   resources.threads <= second.threads;
        });
    if (!isMemoryKept || !isRestKept)
        out << "\nMemory, open files or threads grew.\n";
    return isMemoryKept && isRestKept;
}

struct MedianAndMost {
    double median;
    double most;
    QString text() const {
        return QStringLiteral("%1 / %2").arg(median, 0, 'f', 2).arg(most, 0, 'f', 2);
    }
};

/// Of that many responses up to a number.
template <typename Cost>
MedianAndMost medianAndMost(const QVector<ResponseCost>& costs, int count, int upTo, Cost cost) {
    QVector<double> values;
    for (int i = upTo - count; i < upTo; ++i)
        values.append(cost(costs[i]));
    std::sort(values.begin(), values.end());
    return {(values[(count - 1) / 2] + values[count / 2]) / 2, values.last()};
}

/// Prints a line of the table; returns the own share.
MedianAndMost reportResponses(QTextStream& out, const QVector<ResponseCost>& costs, int upTo) {
    constexpr int mostResponses = 50;
    const int count = upTo <= mostResponses ? std::min(upTo, 10) : mostResponses;
    const auto share = [&](auto cost) { return medianAndMost(costs, count, upTo, cost); };
    const MedianAndMost own = share([](const ResponseCost& cost) { return cost.own; });
    out << "| " << upTo << " | " << own.text() << " | "
        << share([](const ResponseCost& cost) { return cost.journal; }).text() << " | "
        << share([](const ResponseCost& cost) { return cost.toolkit(); }).text() << " | "
        << share([](const ResponseCost& cost) { return cost.click; }).text() << " | "
        << share([](const ResponseCost& cost) { return cost.longest; }).text() << " |";
    return own;
}

bool tryManySessions(QTextStream& out, int count) {
    ShortSessions sessions;
    QVector<ProcessResources> held;
    for (int i = 0; i < count; ++i) {
        if (!sessions.hold()) {
            out << "session " << i + 1 << " went wrong\n";
            return false;
        }
        held.append(resourcesAtRest());
    }
    if (sessions.listeners() != count) {
        out << "there are " << sessions.listeners() << " listener's windows\n";
        return false;
    }
    return reportSessions(out, held, sessions);
}

bool tryManyResponses(QTextStream& out, TimedApplication& application, int count) {
    LongSession session(application);
    if (!session.begin()) {
        out << "the long session did not begin\n";
        return false;
    }
    out << "\n| responses | own share (ms) | journal (ms) | toolkit (ms) | click (ms) "
        << "| longest event (ms) | memory (MiB) | open files | threads |\n"
        << "|---|---|---|---|---|---|---|---|---|\n";
    bool isWithinLimits = true;
    constexpr int few = 10;
    ProcessResources first;
    for (int number = 1; number <= count; ++number) {
        if (!session.respond()) {
            out << "response " << number << " went wrong\n";
            return false;
        }
        if (number != few && number % 500 != 0 && number != count)
            continue;
        const ProcessResources held = resourcesAtRest();
        if (number == few)
            first = held;
        const double limitMs = number == few ? 2 : 20;
        isWithinLimits = reportResponses(out, session.costs, number).median <= limitMs &&
                         held.descriptors <= first.descriptors && held.threads <= first.threads &&
                         isWithinLimits;
        out << ' ' << mebibytes(held.residentMiB) << " | " << held.descriptors << " | "
            << held.threads << " |\n"
            << Qt::flush;
    }
    const bool isSaved = session.finish();
    if (!isSaved)
        out << "\nthe results are not what was asked for\n";
    if (!isWithinLimits)
        out << "\nThe own share is too large, or open files or threads grew.\n";
    return isSaved && isWithinLimits;
}

} // namespace

int main(int argc, char** argv) {
    TimedApplication application(argc, argv);
    QApplication::setApplicationName(QStringLiteral("pellion"));
    QTextStream out(stdout);
    const int sessions = QApplication::arguments().value(1).toInt();
    const int responses = QApplication::arguments().value(2).toInt();
    if (sessions < 3 || responses < 10) {
        out << "usage: try_endurance SESSIONS RESPONSES, 3 or more and 10 or more\n";
        return EXIT_FAILURE;
    }
    const testsupport::LogLines log;
    const bool doSessionsPass = tryManySessions(out, sessions);
    out.flush();
    const bool doResponsesPass = tryManyResponses(out, application, responses);
    const QStringList warnings = log.warnings();
    for (const QString& warning : warnings)
        out << "warning: " << warning << '\n';
    return doSessionsPass && doResponsesPass && warnings.isEmpty() ? EXIT_SUCCESS : EXIT_FAILURE;
}
