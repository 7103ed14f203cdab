// The command line of pellion-target.
// SPDX-License-Identifier: GPL-3.0-or-later
#include "tools/target/TargetCommandLine.h"

#include "signal/RandomGenerator.h"
#include "tools/target/HelpText.h"
#include "tools/target/OptionValues.h"
#include "tools/target/TargetSound.h"

#include <QCommandLineParser>
#include <QMap>
#include <QRandomGenerator>

namespace {

constexpr double minimumDecibels = -200;
constexpr double maximumDecibels = 100;

const QString makeCommand = QStringLiteral("make");
const QString convertCommand = QStringLiteral("convert");
const QString infoCommand = QStringLiteral("info");

/// In the order of SoundKind.
const QStringList& kindWords() {
    static const QStringList words{"tone", "complex", "sam", "noise"};
    return words;
}

/// The kinds of sound that an option belongs to; other options belong to all.
const QMap<QString, QStringList>& kindsOfOptions() {
    static const QMap<QString, QStringList> kinds{{"frequency", {"tone", "complex", "sam"}},
                                                  {"phase", {"tone", "complex", "sam"}},
                                                  {"harmonics", {"complex"}},
                                                  {"without-fundamental", {"complex"}},
                                                  {"modulation", {"sam"}},
                                                  {"depth", {"sam"}},
                                                  {"modulation-phase", {"sam"}},
                                                  {"seed", {"noise"}}};
    return kinds;
}

/// An option with a value; its default replaces %1 in the description.
QCommandLineOption valued(const QString& name, const QString& description, const QString& value,
                          const QString& byDefault) {
    return {name, QString(description).replace(QLatin1String("%1"), byDefault), value, byDefault};
}

QCommandLineOption valued(const QString& name, const QString& description, const QString& value,
                          double byDefault) {
    return valued(name, description, value, QString::number(byDefault));
}

QCommandLineOption forceOption() {
    return {"force", "Replace a file that exists."};
}

void addSoundOptions(QCommandLineParser& parser) {
    const TargetRecipe usual;
    parser.addOptions(
        {valued("frequency", "Of the tone, the fundamental or the carrier (default %1).", "Hz",
                usual.frequency),
         valued("phase", "Starting phase of tone, harmonics or carrier (default %1).", "degrees",
                usual.phaseDegrees),
         valued("harmonics", "complex: its harmonics, such as 2-10 or 1,3,5 (default %1).", "list",
                "1-10"),
         {"without-fundamental", "complex: leave out harmonic 1."},
         valued("modulation", "sam: frequency of the modulation (default %1).", "Hz",
                usual.modulationFrequency),
         valued("depth", "sam: from 0 to 1 (default %1).", "factor", usual.modulationDepth),
         valued("modulation-phase", "sam: starting phase of the modulating cosine (default %1).",
                "degrees", usual.modulationPhaseDegrees),
         {"seed", "noise: the same number gives the same noise (random by default).", "number"}});
}

void addFileOptions(QCommandLineParser& parser) {
    const TargetRecipe usual;
    parser.addOptions(
        {valued("duration", "Of the whole sound (default %1).", "ms", usual.durationMs),
         valued("peak", "Level of the highest sample re full scale (default %1).", "dB",
                usual.levelDecibels),
         valued("rms", "RMS level re full scale, in the place of --peak.", "dB", "0"),
         valued("ramp", "Onset and offset: cos, cos2, linear or none (default %1).", "kind", "cos"),
         valued("ramp-duration", "Of either ramp (default %1).", "ms", usual.rampMs),
         valued("rate", "Sampling rate (default %1, the only one that Pellion plays as intended).",
                "Hz", usual.samplingRate),
         valued("bits", "Per sample: 8, 16 or 24 (default %1).", "bits", usual.bitsPerSample),
         valued("channels", "1 or 2, with the same sound in both (default %1).", "count",
                usual.channelCount),
         forceOption()});
}

TargetRecipe recipeOf(const QCommandLineParser& parser, SoundKind kind, OptionValues& values) {
    constexpr double maximumHertz = 1e6;
    constexpr double maximumDegrees = 360;
    constexpr double maximumMilliseconds = 1e8;
    TargetRecipe recipe;
    recipe.kind = kind;
    recipe.frequency = values.number("frequency", 0.001, maximumHertz);
    recipe.phaseDegrees = values.number("phase", -maximumDegrees, maximumDegrees);
    recipe.harmonics = values.list("harmonics");
    if (parser.isSet("without-fundamental"))
        recipe.harmonics.removeAll(1);
    recipe.modulationFrequency = values.number("modulation", 0.001, maximumHertz);
    recipe.modulationDepth = values.number("depth", 0, 1);
    recipe.modulationPhaseDegrees =
        values.number("modulation-phase", -maximumDegrees, maximumDegrees);
    recipe.seed = parser.isSet("seed") ? values.integer("seed", 0, maximumRandomNumber)
                                       : QRandomGenerator::system()->bounded(maximumRandomNumber);
    recipe.durationMs = values.number("duration", 0.001, maximumMilliseconds);
    recipe.levelKind = parser.isSet("rms") ? LevelKind::Rms : LevelKind::Peak;
    recipe.levelDecibels =
        values.number(parser.isSet("rms") ? "rms" : "peak", minimumDecibels, maximumDecibels);
    constexpr RampKind ramps[] = {RampKind::None, RampKind::Cosine, RampKind::CosineSquared,
                                  RampKind::Linear};
    recipe.rampKind = ramps[values.choice("ramp", {"none", "cos", "cos2", "linear"})];
    recipe.rampMs = values.number("ramp-duration", 0, maximumMilliseconds);
    recipe.samplingRate = values.integer("rate", 1, static_cast<int>(maximumHertz));
    constexpr int bits[] = {8, 16, 24};
    recipe.bitsPerSample = bits[values.choice("bits", {"8", "16", "24"})];
    recipe.channelCount = values.integer("channels", 1, 2);
    return recipe;
}

/// Returns which options do not fit the kind of sound or each other, whatever their values are.
QString problemOfOptions(const QCommandLineParser& parser, const QString& kind) {
    for (auto option = kindsOfOptions().cbegin(); option != kindsOfOptions().cend(); ++option)
        if (parser.isSet(option.key()) && !option->contains(kind))
            return QStringLiteral("--%1 does not belong to \"make %2\"").arg(option.key(), kind);
    if (parser.isSet("peak") && parser.isSet("rms"))
        return QStringLiteral("--peak and --rms exclude each other");
    if (parser.isSet("ramp-duration") && parser.value("ramp") == "none")
        return QStringLiteral("--ramp-duration does not belong to \"--ramp none\"");
    return {};
}

ExistingFile existingFile(const QCommandLineParser& parser) {
    return parser.isSet("force") ? ExistingFile::Replace : ExistingFile::Keep;
}

Request makeRequest(const QCommandLineParser& parser) {
    const QStringList words = parser.positionalArguments();
    const int kind = kindWords().indexOf(words.value(1));
    if (kind < 0)
        return UsageError{QStringLiteral("make takes %1, not \"%2\"")
                              .arg(kindWords().join(QLatin1String(", ")), words.value(1))};
    if (words.size() != 3 || words.constLast().isEmpty())
        return UsageError{QStringLiteral("make takes the name of one file")};
    const QString problem = problemOfOptions(parser, words[1]);
    if (!problem.isEmpty())
        return UsageError{problem};
    OptionValues values(parser);
    MakeRequest request;
    request.recipe = recipeOf(parser, static_cast<SoundKind>(kind), values);
    request.fileName = words.constLast();
    request.existing = existingFile(parser);
    if (!values.problem().isEmpty())
        return UsageError{values.problem()};
    const QString recipesProblem = problemOf(request.recipe);
    if (!recipesProblem.isEmpty())
        return UsageError{recipesProblem};
    return request;
}

Request convertRequest(const QCommandLineParser& parser) {
    const QStringList words = parser.positionalArguments();
    if (words.size() != 3 || words[1].isEmpty() || words[2].isEmpty())
        return UsageError{QStringLiteral("convert takes the names of two files")};
    OptionValues values(parser);
    const double gain = values.number("gain", minimumDecibels, maximumDecibels);
    if (!values.problem().isEmpty())
        return UsageError{values.problem()};
    return ConvertRequest{words[1], gain, words[2], existingFile(parser)};
}

/// Describes a command to the parser; with an empty command, the program.
void describe(QCommandLineParser& parser, const QString& command) {
    if (command == makeCommand) {
        parser.setApplicationDescription(makeDescription());
        parser.addPositionalArgument("kind", "tone, complex, sam or noise.", "make kind");
        parser.addPositionalArgument("file", "The WAV file to make.");
        addSoundOptions(parser);
        addFileOptions(parser);
    } else if (command == convertCommand) {
        parser.setApplicationDescription(convertDescription());
        parser.addPositionalArgument("in", "The file to read.", "convert in");
        parser.addPositionalArgument("out", "The WAV file to make.");
        parser.addOptions(
            {valued("gain", "Change of the level (default %1).", "dB", 0), forceOption()});
    } else if (command == infoCommand) {
        parser.setApplicationDescription(infoDescription());
        parser.addPositionalArgument("file", "WAV files.", "info file...");
        parser.addOption({"json", "Print everything as one JSON array."});
    } else {
        parser.setApplicationDescription(programDescription());
        parser.addPositionalArgument("command", "make, convert or info.");
    }
}

} // namespace

Request parseCommandLine(const QStringList& arguments) {
    QCommandLineParser parser;
    const auto parsed =
        parseCommand(parser, arguments, {makeCommand, convertCommand, infoCommand}, describe);
    if (const auto* text = std::get_if<TextRequest>(&parsed))
        return *text;
    if (const auto* error = std::get_if<UsageError>(&parsed))
        return *error;
    const auto& command = std::get<QString>(parsed);
    if (command == makeCommand)
        return makeRequest(parser);
    if (command == convertCommand)
        return convertRequest(parser);
    const QStringList words = parser.positionalArguments();
    if (words.size() < 2)
        return UsageError{QStringLiteral("info takes the names of files")};
    return InfoRequest{words.mid(1), parser.isSet("json")};
}
