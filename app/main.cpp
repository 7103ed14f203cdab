// The program's entry.
// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/MainWindow.h"
#include "session/ResponseJournal.h"

#include <QApplication>

int main(int argc, char** argv) {
    QApplication application(argc, argv);
    // No display name: the toolkit would append it to the windows' titles.
    QApplication::setApplicationName(QStringLiteral("pellion"));
    QApplication::setApplicationVersion(QStringLiteral("v014"));
    QApplication::setDesktopFileName(QStringLiteral("pellion"));
    nameKeptJournals(journalFolder());
    MainWindow window;
    window.show();
    return QApplication::exec();
}
