// Holds many sessions in one run, then one of very many responses, and reports their costs:
// try_endurance SESSIONS RESPONSES.
// SPDX-License-Identifier: GPL-3.0-or-later
#include "reliability/LongSession.h"
#include "reliability/ProcessResources.h"
#include "subject/SubjectWindow.h"
#include "support/LogLines.h"
#include "support/WavBytes.h"

#include <QTextStream>

#include <algorithm>
#include <cstdlib>
#include <functional>

namespace {

constexpr int fewResponses = 10;
constexpr int usualResponses = 100;
constexpr double kibibytesInMebibyte = 1024;

/// Other memory that a session may keep (MiB): widgets of its listener's window, and objects that
/// Qt creates once, such as dialogs.
constexpr double otherGrowthMiB = 1;

QString mebibytes(double number) {
    return QString::number(number, 'f', 1);
}

/// Prints the resources held after sessions; returns whether their growth is within its limits.
bool reportSessions(QTextStream& out, const QVector<ProcessResources>& held) {
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
    // Objects that the first sessions create once are not growth.
    constexpr int firstSession = 5;
    constexpr int minimumSessions = 20;
    bool isMemoryKept = true;
    if (held.size() >= minimumSessions) {
        const double growth = growthOfMemory(held, firstSession);
        // The widgets of its listener's window, without its backing store, which takes 4.4 MiB.
        constexpr double maximumGrowthMiB = 0.3;
        isMemoryKept = growth <= maximumGrowthMiB;
        out << "\nEach session from the sixth on left " << QString::number(growth, 'f', 2)
            << " MiB behind.\n";
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

/// The costs of the last 50 responses, or of the last 10 of few responses.
class LastResponses {
public:
    explicit LastResponses(const QVector<ResponseCost>& all) {
        constexpr int maximumResponses = 50;
        costs = all.mid(all.size() -
                        (all.size() <= maximumResponses ? fewResponses : maximumResponses));
    }

    template <typename Cost> MedianAndMaximum share(Cost cost) const {
        QVector<double> values;
        for (const ResponseCost& response : costs)
            values.append(std::invoke(cost, response));
        return medianAndMaximum(values);
    }

private:
    QVector<ResponseCost> costs;
};

void reportResponses(QTextStream& out, const LastResponses& last, int number,
                     const ProcessResources& held) {
    out << "| " << number << " | " << last.share(&ResponseCost::own).text() << " | "
        << last.share(&ResponseCost::journal).text() << " | "
        << last.share(&ResponseCost::ownAndJournal).text() << " | "
        << last.share(&ResponseCost::qt).text() << " | " << last.share(&ResponseCost::click).text()
        << " | " << last.share(&ResponseCost::longest).text() << " | "
        << mebibytes(held.residentMiB) << " | " << held.descriptors << " | " << held.threads
        << " |\n"
        << Qt::flush;
}

/// Sessions of a target and three sinusoids of 5 ms, by the widgets that a person clicks.
class ShortSessions {
public:
    ShortSessions() { window.show(); }

    /// Holds one session and saves its results; returns whether nothing went wrong.
    bool hold() {
        const QString target = folder.filePath("target.wav");
        constexpr double pauseMs = 10;
        if (!testsupport::writeSteadyTarget(target) || !session.begin(target, pauseMs) ||
            !session.playTarget())
            return false;
        for (const int frequency : {100, 101, 102})
            if (!session.playSinusoid(frequency))
                return false;
        session.finish(folder.filePath("results.txt"));
        return session.dialogs.takeComplaints().isEmpty();
    }

    /// How many listener's windows there are, hidden ones included.
    int listeners() const { return window.findChildren<SubjectWindow*>().size(); }

private:
    QTemporaryDir folder;
    MainWindow window;
    testsupport::SessionDriver session{window};
};

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
    return reportSessions(out, held);
}

/// A session of very many responses and the one after it.
class ManyResponses {
public:
    ManyResponses(QTextStream& stream, TimedApplication& application, int responses)
        : out(stream), session(application), count(responses) {}

    /// Holds both and reports them; returns whether all stayed within its limits.
    bool hold() {
        if (!session.begin())
            return isWrong("the long session did not begin");
        out << "\n| responses | own time (ms) | journal (ms) | own + journal (ms) | Qt (ms) "
            << "| click (ms) | longest event (ms) | memory (MiB) | open files | threads |\n"
            << "|---|---|---|---|---|---|---|---|---|---|\n";
        for (int number = 1; number <= count; ++number) {
            if (!session.respond())
                return isWrong("a response went wrong");
            if (number == fewResponses || number == usualResponses || number % 500 == 0 ||
                number == count)
                report(number);
        }
        const ProcessResources last = resourcesAtRest();
        if (!session.finish())
            return isWrong("the results are not what was asked for");
        const ProcessResources finished = resourcesAtRest();
        // The trend's axis keeps its labels until at least two responses need ticks.
        if (!session.beginNext() || !session.respond() || !session.respond())
            return isWrong("the next session went wrong");
        const ProcessResources next = resourcesAtRest();
        reportMemory({{QStringLiteral("%1 responses").arg(fewResponses), first},
                      {QStringLiteral("%1 responses").arg(count), last},
                      {"the session's end", finished},
                      {"two responses of the next session", next}});
        checkMemory(last, next);
        return session.finish() && areCostsKept && isMemoryKept;
    }

private:
    struct Moment {
        QString name; ///< Of the step before.
        ProcessResources held;
    };

    bool isWrong(const char* what) {
        out << '\n' << what << '\n';
        return false;
    }

    void report(int number) {
        const ProcessResources held = resourcesAtRest();
        if (number == fewResponses)
            first = held;
        reportResponses(out, LastResponses(session.costs), number, held);
        const double limitMs = number == fewResponses ? 2 : 20;
        // Every response counts. The journal has no limit: it waits for a disk.
        const bool isQuick = std::all_of(
            session.costs.cbegin(), session.costs.cend(),
            [limitMs](const ResponseCost& response) { return response.own <= limitMs; });
        areCostsKept = areCostsKept && isQuick && held.descriptors <= first.descriptors &&
                       held.threads <= first.threads;
    }

    void reportMemory(const QVector<Moment>& moments) {
        out << "\n| after | memory (MiB) | of these private (MiB) | allocated (MiB) |\n"
            << "|---|---|---|---|\n";
        for (const Moment& moment : moments)
            out << "| " << moment.name << " | " << mebibytes(moment.held.residentMiB) << " | "
                << mebibytes(moment.held.privateMiB) << " | " << mebibytes(moment.held.allocatedMiB)
                << " |\n";
        if (!areCostsKept)
            out << "\nThe own time is too long, or open files or threads grew.\n";
    }

    /// Allocated memory shows growth more exactly than resident memory.
    void checkMemory(const ProcessResources& last, const ProcessResources& next) {
        constexpr double maximumGrowthKibibytes = 24; // A label of the trend's axis takes 19.
        constexpr double maximumKeptKibibytes = 1;    // Qt's lists keep their room.
        const double kibiResponses = (count - fewResponses) / kibibytesInMebibyte;
        const double grown = last.allocatedMiB - first.allocatedMiB;
        const double kept = next.allocatedMiB - first.allocatedMiB;
        isMemoryKept = grown <= kibiResponses * maximumGrowthKibibytes + otherGrowthMiB &&
                       kept <= kibiResponses * maximumKeptKibibytes + otherGrowthMiB;
        if (!isMemoryKept)
            out << "\nA session keeps more memory than it should.\n";
    }

    QTextStream& out;
    LongSession session;
    int count;
    ProcessResources first;
    bool areCostsKept = true;
    bool isMemoryKept = true;
};

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
    const bool doResponsesPass = ManyResponses(out, application, responses).hold();
    const QStringList warnings = log.warnings();
    for (const QString& warning : warnings)
        out << "warning: " << warning << '\n';
    return doSessionsPass && doResponsesPass && warnings.isEmpty() ? EXIT_SUCCESS : EXIT_FAILURE;
}
