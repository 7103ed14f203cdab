// Presents targets and sinusoids in a row and looks for each of them, sample by sample, in what
// the sound device received: try_presentations COUNT.
// SPDX-License-Identifier: GPL-3.0-or-later
#include "reliability/MixedSessions.h"
#include "reliability/RecordedCampaign.h"
#include "reliability/ToneFrequency.h"

#include <QApplication>
#include <QTextStream>

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdlib>
#include <limits>

namespace {

constexpr int presentationsPerSession = 25;

struct NamedFate {
    Fate fate;
    const char* name;
};
constexpr std::array<NamedFate, 7> namedFates{{{Fate::Complete, "complete"},
                                               {Fate::Missing, "missing"},
                                               {Fate::CutAtStart, "start cut off"},
                                               {Fate::CutAtEnd, "end cut off"},
                                               {Fate::CutInside, "piece missing inside"},
                                               {Fate::Gaps, "all there, with gaps"},
                                               {Fate::Different, "different otherwise"}}};

/// A line of a table in Markdown.
void row(QTextStream& out, const char* name, const QString& value) {
    out << "| " << name << " | " << value << " |\n";
}

/// Targets, sinusoids and both that meet a condition.
template <typename Condition>
QString counts(const QVector<PresentedSound>& presentations, Condition condition) {
    int targets = 0;
    int sinusoids = 0;
    for (const PresentedSound& presentation : presentations)
        if (condition(presentation))
            ++(presentation.isSinusoid ? sinusoids : targets);
    return QStringLiteral("%1 (%2 + %3)").arg(targets + sinusoids).arg(targets).arg(sinusoids);
}

/// The largest distance (cents) of a complete tone's frequency, as the device received it, from
/// the one in the results file. Not a number when no tone is complete, or one has no frequency.
double largestErrorCents(const QVector<PresentedSound>& presentations) {
    double largest = std::numeric_limits<double>::quiet_NaN();
    for (const PresentedSound& presentation : presentations) {
        if (presentation.frequencyHeard == 0 || presentation.frequencyWritten == 0)
            continue;
        const double error =
            std::abs(centsAbove(presentation.frequencyHeard, presentation.frequencyWritten));
        if (std::isnan(error))
            return error;
        largest = std::fmax(largest, error);
    }
    return largest;
}

/// What the program itself had to say of sounds.
int warningsOfSound(const QStringList& warnings) {
    return int(std::count_if(warnings.cbegin(), warnings.cend(),
                             [](const QString& line) { return line.contains("Audio"); }));
}

/// Names every sound that is incomplete, and what the program said.
void nameFaults(QTextStream& out, const QVector<PresentedSound>& presentations,
                const QStringList& warnings) {
    for (int i = 0; i < presentations.size(); ++i)
        for (const NamedFate& named : namedFates)
            if (named.fate == presentations[i].heard.fate && named.fate != Fate::Complete)
                out << "presentation " << i + 1 << ", "
                    << (presentations[i].isSinusoid ? "sinusoid" : "target") << ": " << named.name
                    << ", " << presentations[i].heard.samplesMissing << " of "
                    << presentations[i].sound.size() << " samples missing\n";
    for (const QString& warning : warnings)
        out << "warning: " << warning << '\n';
}

/// Prints a table, then every fault; returns whether there was none.
bool report(QTextStream& out, const MixedSessions& sessions, int asked, int strangers) {
    const QVector<PresentedSound>& presentations = sessions.presentations;
    const QStringList warnings = sessions.log.warnings();
    const double cents = largestErrorCents(presentations);
    qint64 samples = 0;
    int incomplete = 0;
    int wronglyShown = 0;
    for (const PresentedSound& presentation : presentations) {
        samples += presentation.sound.size();
        incomplete += int(presentation.heard.fate != Fate::Complete);
        wronglyShown += int(!presentation.isShownAsMatched);
    }
    row(out, "presentations (targets + sinusoids)",
        counts(presentations, [](const PresentedSound&) { return true; }));
    row(out, "sessions", QString::number(sessions.sessions));
    row(out, "samples compared", QString::number(samples));
    for (const NamedFate& named : namedFates)
        row(out, named.name, counts(presentations, [&](const PresentedSound& presentation) {
                return presentation.heard.fate == named.fate;
            }));
    row(out, "sounds that nobody asked for", QString::number(strangers));
    row(out, "warnings of the program about sounds", QString::number(warningsOfSound(warnings)));
    row(out, "lines of the results files that are wrong",
        QString::number(sessions.wrongResultsLines));
    row(out, "wrong matches in the window", QString::number(wronglyShown));
    row(out, "largest error of a tone's frequency (cents)", QString::number(cents, 'g', 2));
    nameFaults(out, presentations, warnings);
    // Far below what can be heard, far above what rounding leaves.
    constexpr double mostCents = 1e-3;
    return presentations.size() == asked && incomplete == 0 && strangers == 0 &&
           cents < mostCents && sessions.wrongResultsLines == 0 && wronglyShown == 0 &&
           warnings.isEmpty();
}

} // namespace

int main(int argc, char** argv) {
    const QApplication application(argc, argv);
    QApplication::setApplicationName(QStringLiteral("pellion"));
    RecordedCampaign campaign("try_presentations", 2);
    if (!campaign.hasBegun())
        return EXIT_FAILURE;
    const int count = campaign.count;
    QTextStream& out = campaign.out;
    MixedSessions sessions;
    while (sessions.presentations.size() < count) {
        const int left = count - sessions.presentations.size();
        // Never one that would leave a single presentation, which no session is made of.
        const bool isLast = left <= presentationsPerSession + 1;
        if (!sessions.hold(isLast ? left : presentationsPerSession)) {
            out << "a session went wrong\n";
            break;
        }
    }
    const bool isWhole = campaign.finishRecording();
    const int strangers = sessions.compare(campaign.recording);
    return report(out, sessions, count, strangers) && isWhole ? EXIT_SUCCESS : EXIT_FAILURE;
}
