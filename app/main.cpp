// The program's entry.
// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/MainWindow.h"
#include "session/ResponseJournal.h"

#include <QApplication>
#include <QDir>
#include <QIcon>

#include <utility>

namespace {

/// The same drawing in every size that the program carries.
QIcon programIcon() {
    QIcon icon;
    for (const QFileInfo& picture : QDir(QStringLiteral(":/icons")).entryInfoList())
        icon.addFile(picture.filePath());
    return icon;
}

/// Sound mixers would show the toolkit's name for its connection, "QtPulseAudio" and a number. What
/// the environment says goes.
void nameSounds() {
    for (const auto& [variable, value] :
         {std::pair("PULSE_PROP_OVERRIDE_application.name", "Pellion"),
          std::pair("PULSE_PROP_application.icon_name", "pellion")})
        if (!qEnvironmentVariableIsSet(variable))
            qputenv(variable, value);
}

} // namespace

int main(int argc, char** argv) {
    nameSounds();
    QApplication application(argc, argv);
    // No display name: the toolkit would append it to the windows' titles.
    QApplication::setApplicationName(QStringLiteral("pellion"));
    QApplication::setApplicationVersion(QStringLiteral("v014"));
    QApplication::setDesktopFileName(QStringLiteral("pellion"));
    QApplication::setWindowIcon(programIcon());
    nameKeptJournals(journalFolder());
    MainWindow window;
    window.show();
    return QApplication::exec();
}
