// The program's entry.
// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/MainWindow.h"
#include "session/ResponseJournal.h"

#include <QApplication>

int main(int argc, char** argv) {
    QApplication application(argc, argv);
    QApplication::setApplicationName(QStringLiteral("pellion"));
    MainWindow window;
    QApplication::setApplicationVersion(QStringLiteral("v014"));
    QApplication::setDesktopFileName(QStringLiteral("pellion"));
    nameKeptJournals(journalFolder());
    window.show();
    return QApplication::exec();
}
