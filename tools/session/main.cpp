// The main function of pellion-session, which checks computers and recovers responses.
// SPDX-License-Identifier: GPL-3.0-or-later
#include "session/ResponseJournal.h"
#include "tools/session/CheckReport.h"
#include "tools/session/Recovery.h"
#include "tools/session/RecoveryWindow.h"
#include "tools/session/SessionCommandLine.h"

#include <QApplication>
#include <QCoreApplication>
#include <QDir>
#include <QFileInfo>
#include <QStandardPaths>

#include <algorithm>
#include <cstdlib>
#include <exception>
#include <iostream>
#include <memory>
#include <variant>

namespace {

int answer(const CheckRequest& request) {
    std::optional<SavedState> saved;
    if (!request.compareWith.isEmpty()) {
        saved = readSavedState(request.compareWith);
        if (!saved->problem.isEmpty()) {
            printError(saved->problem);
            return exitUnusable;
        }
    }
    const CheckReport report = checkReport(computerState(), saved);
    std::cout << (request.isJson ? reportJson(report) : reportText(report)).toStdString();
    if (!request.saveTo.isEmpty()) {
        const QString problem = writeSavedState(request.saveTo, report.state.sound);
        if (!problem.isEmpty()) {
            printError(problem);
            return exitUnusable;
        }
    }
    return report.findings.isEmpty() ? exitDone : exitNotDone;
}

/// Prints the journals, one per line, under the names of the columns.
void list(const KeptJournals& kept) {
    if (!kept.journals.isEmpty())
        std::cout
            << "subject\tsession\tnumber\tstart\ttarget\tresponses\tbytes left out\tjournal\n";
    for (const KeptJournal& journal : kept.journals)
        std::cout << QStringList{journal.subject,
                                 journal.sessionType,
                                 journal.number,
                                 journal.start.toString(Qt::ISODate),
                                 journal.target,
                                 QString::number(journal.responses),
                                 QString::number(journal.bytesLeftOut),
                                 journal.path}
                         .join(u'\t')
                         .toStdString()
                  << '\n';
}

int showWindow(const QString& folder) {
    if (qobject_cast<QApplication*>(QCoreApplication::instance()) == nullptr) {
        printError(QStringLiteral("--window needs a display"));
        return exitUnusable;
    }
    const QString desktop = QStandardPaths::writableLocation(QStandardPaths::DesktopLocation);
    RecoveryWindow window(journalFolder(), folder.isEmpty() ? desktop : folder);
    window.show();
    return QApplication::exec();
}

int answer(const RecoverRequest& request) {
    if (request.isInWindow)
        return showWindow(request.folder);
    if (!request.folder.isEmpty() && !QFileInfo(request.folder).isDir()) {
        printError(QStringLiteral("there is no folder %1").arg(request.folder));
        return exitUnusable;
    }
    const KeptJournals kept = keptJournals(journalFolder());
    if (kept.leftAlone > 0)
        printError(leftAloneText(kept));
    else if (kept.journals.isEmpty())
        printError(QStringLiteral("there is nothing to recover"));
    if (request.folder.isEmpty()) {
        list(kept);
        if (!kept.journals.isEmpty())
            printError(QStringLiteral("to save them: pellion-session recover FOLDER"));
        return exitDone;
    }
    int status = exitDone;
    for (const KeptJournal& journal : kept.journals) {
        const Recovery recovery = recover(journal.path, request.folder);
        std::cout << recoveryText(recovery, journal.path).toStdString() << std::endl;
        if (!recovery.problem.isEmpty())
            status = exitNotDone;
    }
    return status;
}

/// Only the window needs a display. Without one Qt would abort the program.
std::unique_ptr<QCoreApplication> application(int& argc, char** argv) {
    const bool isForWindow = std::any_of(
        argv, argv + argc, [](const char* argument) { return qstrcmp(argument, "--window") == 0; });
    const bool isDisplayKnown = !qEnvironmentVariableIsEmpty("DISPLAY") ||
                                !qEnvironmentVariableIsEmpty("WAYLAND_DISPLAY") ||
                                !qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM");
    if (isForWindow && isDisplayKnown)
        return std::make_unique<QApplication>(argc, argv);
    return std::make_unique<QCoreApplication>(argc, argv);
}

} // namespace

int main(int argc, char** argv) {
    // So that the help shows the program's name and not its path.
    static char name[] = "pellion-session";
    if (argc > 0)
        argv[0] = name;
    const std::unique_ptr<QCoreApplication> instance = application(argc, argv);
    // The journals are in the program's data folder.
    QCoreApplication::setApplicationName(QStringLiteral("pellion"));
    try {
        return finishOutput(std::visit([](const auto& request) { return answer(request); },
                                       parseSessionCommandLine(QCoreApplication::arguments())));
    } catch (const std::exception& exception) {
        printError(QString::fromUtf8(exception.what()));
    }
    return exitNotDone;
}
