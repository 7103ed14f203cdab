// The main function of the program.
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

/// Returns the icon in every size among the program's resources.
QIcon programIcon() {
    QIcon icon;
    for (const QFileInfo& picture : QDir(QStringLiteral(":/icons")).entryInfoList())
        // As a pixmap: given a file name, QIcon probes its icon engines first.
        icon.addPixmap(QPixmap(picture.filePath(), "PNG"));
    return icon;
}

/// Sets environment variables that the sound server and Qt read, unless they are set already.
void completeEnvironment() {
    for (const auto& [variable, value] :
         {// Otherwise sound mixers show Qt's own name for its connection, "QtPulseAudio:" and
          // a process id.
          std::pair("PULSE_PROP_OVERRIDE_application.name", "Pellion"),
          std::pair("PULSE_PROP_application.icon_name", "pellion"),
          // Nothing is drawn by OpenGL, whose driver alone would take half of the program's
          // memory and a third of its starting time.
          std::pair("QT_XCB_GL_INTEGRATION", "none")})
        if (!qEnvironmentVariableIsSet(variable))
            qputenv(variable, value);
}

} // namespace

int main(int argc, char** argv) {
    completeEnvironment();
    QApplication application(argc, argv);
    // No display name: Qt would append it to the windows' titles.
    QApplication::setApplicationName(QStringLiteral("pellion"));
    QApplication::setApplicationVersion(programVersion());
    QApplication::setDesktopFileName(QStringLiteral("pellion"));
    QApplication::setWindowIcon(programIcon());
    reportLeftoverJournals(journalFolder());
    MainWindow window;
    window.show();
    return QApplication::exec();
}
