// The command line of pellion-session.
// SPDX-License-Identifier: GPL-3.0-or-later
#include "tools/session/SessionCommandLine.h"

#include <QCommandLineParser>

namespace {

const QString checkCommand = QStringLiteral("check");
const QString recoverCommand = QStringLiteral("recover");

const char* const programDescription =
    R"(Checks a computer before a session of Pellion, and recovers responses after it.

Commands:
  check             report whether this computer is ready for a session
  recover           list the responses that were not saved
  recover FOLDER    save them as results files in a folder

Examples:
  pellion-session check
  pellion-session recover
  pellion-session recover .

For details see "pellion-session check --help" and "pellion-session recover --help".
)";

const char* const checkDescription =
    R"(Checks the sound server and its default output, the folders that sessions write to,
responses that were not saved, and the load. Changes nothing, and plays nothing.

Each problem is one line, "Finding", with what to do about it. With --compare, a problem
that the saved state has as well is a "Note".

Examples:
  pellion-session check
  pellion-session check --save good-day.json
  pellion-session check --compare good-day.json
  pellion-session check --json

Exit status: 0 without findings, 1 with findings, 2 when the command line cannot be
understood or a file cannot be used.
)";

const char* const recoverDescription =
    R"(Lists the journals of sessions whose results were not saved. With a folder, saves each of
them there as a results file, under the name that Pellion proposed for it. A file that exists
is never replaced: the next free file number is taken. A journal is removed when its results
file is complete on the disk. The journal of a running session is left alone.

Examples:
  pellion-session recover
  pellion-session recover .
  pellion-session recover ~/Desktop

Exit status: 0 when every journal was listed or saved, 1 when one was kept, 2 when the
command line cannot be understood or the folder cannot be used.
)";

void describe(QCommandLineParser& parser, const QString& command) {
    if (command == checkCommand) {
        parser.setApplicationDescription(QLatin1String(checkDescription));
        parser.addPositionalArgument("check", "This command.");
        parser.addOptions({{"save", "Save today's state, to compare with it later.", "file"},
                           {"compare", "Report what differs from a saved state.", "file"},
                           {"json", "Print everything as JSON."}});
    } else if (command == recoverCommand) {
        parser.setApplicationDescription(QLatin1String(recoverDescription));
        parser.addPositionalArgument("recover", "This command.");
        parser.addPositionalArgument("folder", "Where to save; without it, list only.", "[folder]");
        parser.addOption({"window", "Do it in a window."});
    } else {
        parser.setApplicationDescription(QLatin1String(programDescription));
        parser.addPositionalArgument("command", "check or recover.");
    }
}

SessionRequest checkRequest(const QCommandLineParser& parser) {
    if (parser.positionalArguments().size() > 1)
        return UsageError{QStringLiteral("check takes no further argument: \"%1\"")
                              .arg(parser.positionalArguments()[1])};
    for (const QString option : {"save", "compare"})
        if (parser.isSet(option) && parser.value(option).isEmpty())
            return UsageError{QStringLiteral("--%1 takes the name of a file").arg(option)};
    return CheckRequest{parser.value("save"), parser.value("compare"), parser.isSet("json")};
}

SessionRequest recoverRequest(const QCommandLineParser& parser) {
    const QStringList words = parser.positionalArguments();
    if (words.size() > 2 || words.constLast().isEmpty())
        return UsageError{QStringLiteral("recover takes the name of one folder")};
    return RecoverRequest{words.value(1), parser.isSet("window")};
}

} // namespace

SessionRequest parseSessionCommandLine(const QStringList& arguments) {
    QCommandLineParser parser;
    const auto parsed = parseCommand(parser, arguments, {checkCommand, recoverCommand}, describe);
    if (const auto* text = std::get_if<TextRequest>(&parsed))
        return *text;
    if (const auto* error = std::get_if<UsageError>(&parsed))
        return *error;
    return std::get<QString>(parsed) == checkCommand ? checkRequest(parser)
                                                     : recoverRequest(parser);
}
