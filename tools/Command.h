// The command line code that pellion-target and pellion-session share.
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>
#include <QStringList>

#include <variant>

class QCommandLineParser;

/// Exit statuses. The last is for a command line, file or folder that cannot be used.
constexpr int exitDone = 0;
constexpr int exitNotDone = 1;
constexpr int exitUnusable = 2;

/// Print a text that was asked for.
struct TextRequest {
    QString text;
};

/// A command line that cannot be understood.
struct UsageError {
    QString problem; ///< One sentence without full stop.
};

/// Describes a command and its options to the parser; with an empty command, the program.
using CommandDescriber = void (*)(QCommandLineParser& parser, const QString& command);

/// Parses a command line: the program's name, one of at least two commands, and what belongs to it.
/// Returns the command, whose options and arguments the parser then holds; for --help and --version
/// a text.
std::variant<QString, TextRequest, UsageError> parseCommand(QCommandLineParser& parser,
                                                            const QStringList& arguments,
                                                            const QStringList& commands,
                                                            CommandDescriber describe);

/// Prints a line on standard error after the program's name.
void printError(const QString& text);

/// Print a text or an error, and return the exit status.
int answer(const TextRequest& request);
int answer(const UsageError& error);

/// Flushes standard output; returns the given exit status, or exitNotDone after an error message if
/// not everything could be written.
int finishOutput(int status);
