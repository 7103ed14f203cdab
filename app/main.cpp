// The program's entry.
// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/MainWindow.h"

#include <QApplication>

int main(int argc, char** argv) {
    QApplication application(argc, argv);
    QApplication::setApplicationName(QStringLiteral("pellion"));
    MainWindow window;
    window.show();
    return QApplication::exec();
}
