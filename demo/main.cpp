// The demonstration's main function: pellion_demo FOLDER.
// SPDX-License-Identifier: GPL-3.0-or-later
#include "demo/Demonstration.h"

#include <QApplication>
#include <QTextStream>

#include <cstdlib>

int main(int argc, char** argv) {
    QApplication application(argc, argv);
    QApplication::setApplicationName(QStringLiteral("pellion"));
    // Otherwise a picture shows the blinking text cursor by chance.
    QApplication::setCursorFlashTime(0);
    const QStringList arguments = QApplication::arguments();
    if (arguments.size() != 2 || !QDir(arguments.last()).exists()) {
        QTextStream(stderr) << "usage: pellion_demo FOLDER\n"
                               "Holds a demonstration session and leaves its pictures, results "
                               "and sound in the folder.\n";
        return EXIT_FAILURE;
    }
    return Demonstration(arguments.last()).run() ? EXIT_SUCCESS : EXIT_FAILURE;
}
