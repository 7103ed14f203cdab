// The main window: naming and writing the results file.
// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/MainWindow.h"

#include "session/FileReplacement.h"
#include "session/ResultsFile.h"
#include "window/WarningBox.h"

#include <QDir>
#include <QFileDialog>
#include <QFileInfo>
#include <QLineEdit>

void MainWindow::updateOutputFileName() {
    data.outputFileName = proposedOutputFileName(
        data.subjectCode, data.sessionTypes.value(data.sessionTypeIndex), data.fileNumber);
    lineEditOutputFileName->setText(data.outputFileName);
}

void MainWindow::writeDataToTxt() {
    QString selectedFilter = QStringLiteral("Text files (*.txt)");
    const QString chosen = QFileDialog::getSaveFileName(
        this, tr("Save a file"), data.outputFilePath + u'/' + data.outputFileName,
        QStringLiteral("All files (*.*);; Text files (*.txt)"), &selectedFilter,
        QFileDialog::DontConfirmOverwrite);
    const QFileInfo chosenFile(chosen);
    // The path holds the file's name as well, and both are empty after a cancelled dialog:
    // deliberate. "Go" reads the folder from its field again.
    data.outputFilePath = chosen;
    data.outputFileName = chosenFile.fileName();
    // For a missing folder this makes a folder of the file's own name, so that the file cannot be
    // opened and the experimenter is warned: deliberate.
    if (!chosenFile.dir().exists())
        QDir().mkpath(data.outputFilePath);

    QByteArray bytes;
    if (const Record* record = firstRecord())
        bytes = resultsText(record->fileName, trendFrequencies).toLocal8Bit();
    const FileReplacement outcome = replaceFile(chosen, bytes);
    // Before the warning, which may stay open for a long time.
    if (outcome == FileReplacement::Written)
        journal.discard(chosen);
    else
        journal.keep();
    if (outcome == FileReplacement::NotOpened)
        showWarning(this, QStringLiteral("could not open file for writing \r\n") +
                              data.outputFilePath + data.outputFileName);
    else if (outcome == FileReplacement::NotWritten)
        showWarning(this, QStringLiteral("could not write file \r\n") + data.outputFilePath);
}
