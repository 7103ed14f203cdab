// The program's entry.
// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/MainWindow.h"
#include "base/Version.h"
#include "session/ResponseJournal.h"

#include <QApplication>
#include <QDir>
#include <QIcon>
#include <QPixmap>

#include <utility>

namespace {

/// The same drawing in every size that the program carries.
QIcon programIcon() {
    QIcon icon;
    for (const QFileInfo& picture : QDir(QStringLiteral(":/icons")).entryInfoList())
        // As a picture: for a file the toolkit would look through its engines for drawings first.
        icon.addPixmap(QPixmap(picture.filePath(), "PNG"));
    return icon;
}

/// Sets what the sound server and the toolkit read from the environment, but for variables that are
/// set already.
void completeEnvironment() {
    for (const auto& [variable, value] :
         {// Sound mixers would show the toolkit's name for its connection, "QtPulseAudio" and a
          // number.
          std::pair("PULSE_PROP_OVERRIDE_application.name", "Pellion"),
          std::pair("PULSE_PROP_application.icon_name", "pellion"),
          // Nothing is drawn by OpenGL. Its driver alone would take half of the program's memory
          // and a third of its start.
          std::pair("QT_XCB_GL_INTEGRATION", "none")})
        if (!qEnvironmentVariableIsSet(variable))
            qputenv(variable, value);
}

} // namespace

int main(int argc, char** argv) {
    completeEnvironment();
    QApplication application(argc, argv);
    // No display name: the toolkit would append it to the windows' titles.
    QApplication::setApplicationName(QStringLiteral("pellion"));
    QApplication::setApplicationVersion(programVersion());
    QApplication::setDesktopFileName(QStringLiteral("pellion"));
    QApplication::setWindowIcon(programIcon());
    reportLeftoverJournals(journalFolder());
    MainWindow window;
    window.show();
    return QApplication::exec();
}
