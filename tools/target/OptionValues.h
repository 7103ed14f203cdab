// The values of options on a command line, checked.
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>
#include <QStringList>
#include <QVector>

class QCommandLineParser;

/// Reads the values of options and remembers the first invalid one. Numbers have a decimal point in
/// every locale.
class OptionValues {
public:
    explicit OptionValues(const QCommandLineParser& commandLine) : parser(commandLine) {}

    /// Returns an option's number; the minimum if it is not a number from `minimum` to `maximum`.
    double number(const QString& option, double minimum, double maximum);
    int integer(const QString& option, int minimum, int maximum);

    /// Returns the index of an option's value in the list of valid words; 0 if it is not valid.
    int choice(const QString& option, const QStringList& words);

    /// Returns the numbers from 1 on of a list such as "1-4,7", ascending, each once.
    QVector<int> list(const QString& option);

    /// What is wrong with the first invalid value, in one sentence; empty if all are valid.
    QString problem() const { return firstProblem; }

private:
    void reportInvalid(const QString& option, const QString& wanted);

    const QCommandLineParser& parser;
    QString firstProblem;
};
