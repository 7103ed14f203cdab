// Kills running sessions, counts lost and recovered responses: try_kills ENDLESS_SESSIONS COUNT.
// SPDX-License-Identifier: GPL-3.0-or-later
#include "reliability/RecoveredSessions.h"

#include <QCoreApplication>
#include <QMap>
#include <QTextStream>

#include <array>
#include <atomic>
#include <cstdlib>
#include <mutex>
#include <random>
#include <thread>
#include <vector>

namespace {

/// Every fourth kill is at a session that is about to be saved, the others at random moments of the
/// first few sessions.
std::vector<Moment> randomMoments(int count, quint32 seed) {
    constexpr int everyFourth = 4;
    constexpr int sessionsMs = 4000;
    constexpr int savingMs = 150;
    std::mt19937 generator(seed);
    std::vector<Moment> moments(static_cast<std::size_t>(count));
    for (std::size_t i = 0; i < moments.size(); ++i) {
        moments[i].isWhileSaving = i % everyFourth == everyFourth - 1;
        const int maximumDelayMs = moments[i].isWhileSaving ? savingMs : sessionsMs;
        moments[i].delayMs = std::uniform_int_distribution<int>(0, maximumDelayMs)(generator);
    }
    return moments;
}

/// An event that sessions report, and its name in the summary.
struct Event {
    const char* name;
    const char* text;
};
constexpr std::array<Event, 8> events{{{"", "nothing"},
                                       {"prepare", "session prepared"},
                                       {"go", "started"},
                                       {"asked", "response given"},
                                       {"started", "presentation started"},
                                       {"ended", "presentation ended"},
                                       {"done", "\"Done\""},
                                       {"saved", "saved"}}};

/// Adds up the results of all kills.
class Summary {
public:
    void add(const KillResult& result) {
        const std::lock_guard<std::mutex> guard(mutex);
        ++kills;
        ++killsAfter[result.lastEvent];
        total.sessions += result.sessions;
        total.responses += result.responses;
        total.inResultsOnly += result.inResultsOnly;
        total.inJournalOnly += result.inJournalOnly;
        total.inBoth += result.inBoth;
        total.recovered += result.recovered;
        total.lost += result.lost;
        total.incompleteFiles += result.incompleteFiles;
        for (const QString& fault : result.faults)
            total.faults.append(QStringLiteral("kill %1: %2").arg(kills).arg(fault));
    }

    /// Whether there were responses and none was lost.
    bool isFlawless() const { return total.faults.isEmpty() && total.responses > 0; }

    /// A table in Markdown, then the faults, one a line.
    QString text() const {
        QString text;
        QTextStream stream(&text);
        stream << "| | |\n|---|---|\n| kills | " << kills << " (last event before: " << lastEvent()
               << ") |\n| sessions begun | " << total.sessions << " |\n| responses presented | "
               << total.responses << " |\n| found in a results file | "
               << total.inResultsOnly + total.inBoth << " |\n| found in a journal | "
               << total.inJournalOnly + total.inBoth << " |\n| found in both of them | "
               << total.inBoth << " |\n| in a results file after `pellion-session recover` | "
               << total.recovered << " |\n| **lost** | **" << total.lost
               << "** |\n| lines that were not whole, and other faults | "
               << total.faults.size() - total.lost
               << " |\n| unfinished files beside a results file | " << total.incompleteFiles
               << " |\n";
        for (const QString& fault : total.faults)
            stream << fault << '\n';
        return text;
    }

private:
    QString lastEvent() const {
        QStringList counts;
        for (const Event& event : events)
            if (const int count = killsAfter.value(event.name); count > 0)
                counts.append(QStringLiteral("%1 %2").arg(QLatin1String(event.text)).arg(count));
        return counts.join(QStringLiteral(", "));
    }

    std::mutex mutex;
    KillResult total;
    int kills = 0;
    QMap<QByteArray, int> killsAfter;
};

void killAll(const QString& endlessSessions, const std::vector<Moment>& moments, Summary& summary) {
    // More than the processors: sessions mostly wait.
    constexpr std::size_t parallelKills = 3;
    std::atomic<std::size_t> next{0};
    std::vector<std::thread> threads;
    for (std::size_t i = 0; i < parallelKills; ++i)
        threads.emplace_back([&] {
            for (std::size_t kill = next++; kill < moments.size(); kill = next++)
                summary.add(killSessions(endlessSessions, moments[kill], recoverSessions));
        });
    for (std::thread& thread : threads)
        thread.join();
}

} // namespace

int main(int argc, char** argv) {
    const QCoreApplication application(argc, argv);
    const QStringList arguments = QCoreApplication::arguments();
    const int count = arguments.value(2).toInt();
    QTextStream out(stdout);
    if (count < 1) {
        out << "usage: try_kills ENDLESS_SESSIONS COUNT\n";
        return EXIT_FAILURE;
    }
    const quint32 seed = std::random_device{}();
    out << "moments drawn with seed " << seed << '\n' << Qt::flush;
    Summary summary;
    killAll(arguments[1], randomMoments(count, seed), summary);
    out << summary.text();
    return summary.isFlawless() ? EXIT_SUCCESS : EXIT_FAILURE;
}
