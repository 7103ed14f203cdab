// The command line code that pellion-target and pellion-session share.
// SPDX-License-Identifier: GPL-3.0-or-later
#include "tools/Command.h"

#include "base/Version.h"

#include <QCommandLineParser>
#include <QCoreApplication>

#include <algorithm>
#include <iostream>

namespace {

/// Lists words as "make, convert or info".
QString alternatives(const QStringList& words) {
    return words.mid(0, words.size() - 1).join(QStringLiteral(", ")) + QStringLiteral(" or ") +
           words.constLast();
}

} // namespace

std::variant<QString, TextRequest, UsageError> parseCommand(QCommandLineParser& parser,
                                                            const QStringList& arguments,
                                                            const QStringList& commands,
                                                            CommandDescriber describe) {
    const auto found =
        std::find_if(arguments.cbegin(), arguments.cend(),
                     [&](const QString& argument) { return commands.contains(argument); });
    const QString command = found == arguments.cend() ? QString() : *found;
    describe(parser, command);
    const QCommandLineOption help({"h", "help"}, "Describe what the program does.");
    const QCommandLineOption version({"v", "version"}, "Print the program's version.");
    parser.addOptions({help, version});
    if (!parser.parse(arguments)) {
        // Qt's text is a whole sentence; here it has no full stop.
        QString problem = parser.errorText();
        if (problem.endsWith(u'.'))
            problem.chop(1);
        return UsageError{problem};
    }
    if (parser.isSet(help))
        return TextRequest{parser.helpText()};
    if (parser.isSet(version))
        return TextRequest{QStringLiteral("%1 %2\n").arg(arguments.constFirst(), programVersion())};
    const QStringList words = parser.positionalArguments();
    if (words.isEmpty() || words.constFirst() != command)
        return UsageError{QStringLiteral("the command is missing: ") + alternatives(commands)};
    return command;
}

void printError(const QString& text) {
    std::cerr << QCoreApplication::arguments().constFirst().toStdString() << ": "
              << text.toStdString() << '\n';
}

int answer(const TextRequest& request) {
    std::cout << request.text.toStdString();
    return exitDone;
}

int answer(const UsageError& error) {
    printError(error.problem);
    printError(QStringLiteral("see --help"));
    return exitUnusable;
}

int finishOutput(int status) {
    std::cout.flush();
    if (std::cout)
        return status;
    printError(QStringLiteral("standard output cannot be written"));
    return exitNotDone;
}
