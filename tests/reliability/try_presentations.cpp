// Presents targets and sinusoids in a row and looks for each of them, sample by sample, in what the
// sound device received: try_presentations [--control] [--idle SECONDS] COUNT. With --control,
// pacat plays each sound once more. With --idle, that many seconds pass before each sound, and the
// device must have been suspended by then.
// SPDX-License-Identifier: GPL-3.0-or-later
#include "reliability/MixedSessions.h"
#include "reliability/RecordedCampaign.h"

#include <QApplication>
#include <QCommandLineParser>
#include <QTextStream>

#include <algorithm>
#include <array>
#include <chrono>
#include <cstdlib>

using testsupport::Outcome;

namespace {

constexpr int presentationsPerSession = 25;

struct Options {
    int count; ///< Presentations by the program.
    bool hasControl;
    std::chrono::seconds idle;
};

struct NamedOutcome {
    Outcome outcome;
    const char* name;
};
constexpr std::array<NamedOutcome, 7> namedOutcomes{{{Outcome::Complete, "complete"},
                                                     {Outcome::Missing, "missing"},
                                                     {Outcome::CutAtStart, "start cut off"},
                                                     {Outcome::CutAtEnd, "end cut off"},
                                                     {Outcome::CutInside, "piece missing inside"},
                                                     {Outcome::Gaps, "all there, with gaps"},
                                                     {Outcome::Different, "different otherwise"}}};

using Presentations = QVector<PresentedSound>;

/// A line of a table in Markdown.
void row(QTextStream& out, const char* name, const QString& value) {
    out << "| " << name << " | " << value << " |\n";
}

/// A line of it that counts the presentations which meet a condition: targets, sinusoids and both;
/// with a control, its sounds in a column of their own.
template <typename Condition>
void countingRow(QTextStream& out, const char* name, const Presentations& presentations,
                 Condition condition) {
    int targets = 0;
    int sinusoids = 0;
    int controls = 0;
    bool hasControl = false;
    for (const PresentedSound& presentation : presentations) {
        int& count = presentation.isControl    ? controls
                     : presentation.isSinusoid ? sinusoids
                                               : targets;
        count += int(condition(presentation));
        hasControl = hasControl || presentation.isControl;
    }
    const QString control = hasControl ? QStringLiteral(" | %1").arg(controls) : QString();
    row(out, name,
        QStringLiteral("%1 (%2 + %3)").arg(targets + sinusoids).arg(targets).arg(sinusoids) +
            control);
}

/// Counts the program's own warnings about sounds.
int warningsOfSound(const QStringList& warnings) {
    return int(std::count_if(warnings.cbegin(), warnings.cend(),
                             [](const QString& line) { return line.contains("Audio"); }));
}

/// Lists every incomplete sound and the program's warnings.
void nameFaults(QTextStream& out, const Presentations& presentations, const QStringList& warnings) {
    // Its control follows each presentation.
    const bool hasControl = presentations.size() > 1 && presentations[1].isControl;
    for (int i = 0; i < presentations.size(); ++i)
        for (const NamedOutcome& named : namedOutcomes)
            if (const PresentedSound& presentation = presentations[i];
                named.outcome == presentation.heard.outcome && named.outcome != Outcome::Complete)
                out << "presentation " << (hasControl ? i / 2 : i) + 1 << ", "
                    << (presentation.isControl    ? "control"
                        : presentation.isSinusoid ? "sinusoid"
                                                  : "target")
                    << ": " << named.name << ", " << presentation.heard.samplesMissing << " of "
                    << presentation.sound.size() << " samples missing, the first at "
                    << presentation.heard.firstWrong << '\n';
    for (const QString& warning : warnings)
        out << "warning: " << warning << '\n';
}

/// Prints a table of the sounds' outcomes.
void printOutcomes(QTextStream& out, const Presentations& presentations) {
    countingRow(out, "presentations (targets + sinusoids)", presentations,
                [](const PresentedSound&) { return true; });
    for (const NamedOutcome& named : namedOutcomes)
        countingRow(out, named.name, presentations, [&](const PresentedSound& presentation) {
            return presentation.heard.outcome == named.outcome;
        });
}

/// Prints a table, then every fault; returns whether the program has none.
bool report(QTextStream& out, const MixedSessions& sessions, const Options& options,
            int unexpectedSounds) {
    const Presentations& presentations = sessions.presentations;
    const QStringList warnings = sessions.log.warnings();
    const auto number = [&](auto condition) {
        return int(std::count_if(presentations.cbegin(), presentations.cend(), condition));
    };
    const int presented = number([](const auto& sound) { return !sound.isControl; });
    const int complete = number([](const auto& sound) {
        return !sound.isControl && sound.heard.outcome == Outcome::Complete;
    });
    const int notSuspended = number([](const auto& sound) { return !sound.wasSuspended; });
    const int wronglyShown = number([](const auto& sound) { return !sound.isShownAsMatched; });
    printOutcomes(out, presentations);
    row(out, "sessions", QString::number(sessions.sessions));
    row(out, "unexpected sounds", QString::number(unexpectedSounds));
    row(out, "warnings of the program about sounds", QString::number(warningsOfSound(warnings)));
    row(out, "results files that are wrong", QString::number(sessions.wrongResultsFiles));
    row(out, "wrong matches in the window", QString::number(wronglyShown));
    if (options.idle.count() > 0)
        row(out, "sounds whose device was not suspended before", QString::number(notSuspended));
    nameFaults(out, presentations, warnings);
    return presented == options.count && complete == presented && unexpectedSounds == 0 &&
           sessions.wrongResultsFiles == 0 && wronglyShown == 0 && warnings.isEmpty() &&
           (options.idle.count() == 0 || notSuspended == 0);
}

} // namespace

int main(int argc, char** argv) {
    const QApplication application(argc, argv);
    QApplication::setApplicationName(QStringLiteral("pellion"));
    QCommandLineParser parser;
    parser.addOptions({{"control", "Let pacat play each sound once more."},
                       {"idle", "Let nothing happen before each sound.", "seconds", "0"}});
    parser.process(application);
    const Options options{parser.positionalArguments().value(0).toInt(), parser.isSet("control"),
                          std::chrono::seconds(parser.value("idle").toInt())};
    RecordedCampaign campaign("try_presentations", options.count, 2);
    if (!campaign.hasBegun())
        return EXIT_FAILURE;
    QTextStream& out = campaign.out;
    MixedSessions sessions(campaign.recording, options.idle, options.hasControl);
    for (int left = options.count; left > 0;) {
        // Never leaves a single presentation for the last session, which needs two.
        const int size = left <= presentationsPerSession + 1 ? left : presentationsPerSession;
        if (!sessions.hold(size)) {
            out << "a session went wrong\n";
            break;
        }
        left -= size;
    }
    const bool isWhole = campaign.finishRecording();
    const int unexpectedSounds = sessions.compare();
    return report(out, sessions, options, unexpectedSounds) && isWhole ? EXIT_SUCCESS
                                                                       : EXIT_FAILURE;
}
