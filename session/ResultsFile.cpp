// The main window: naming and writing the results file.
// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/MainWindow.h"

#include "session/OutputFileName.h"
#include "session/ResultsText.h"

#include <QDir>
#include <QFile>
#include <QFileDialog>
#include <QFileInfo>
#include <QLineEdit>
#include <QMessageBox>
#include <QTextStream>

void MainWindow::updateOutputFileName() {
    data.outputFileName = proposedOutputFileName(
        data.subjectCode, data.sessionTypes.value(data.sessionTypeIndex), data.fileNumber);
    lineEditOutputFileName->setText(data.outputFileName);
}

void MainWindow::writeDataToTxt() {
    const QString textFiles = QStringLiteral("Text files (*.txt)");
    QString selectedFilter = textFiles;
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

    QFile file(chosen);
    if (!file.open(QIODevice::WriteOnly | QIODevice::Text | QIODevice::Truncate)) {
        QMessageBox::warning(this, QStringLiteral("Warning"),
                             QStringLiteral("could not open file for writing \r\n") +
                                 data.outputFilePath + data.outputFileName,
                             QMessageBox::Ok);
        return;
    }
    if (!data.records.isEmpty()) {
        QTextStream stream(&file);
        stream << resultsText(data.records.constFirst().fileName, trendFrequencies);
    }
    // A full disk shows only here: until then the bytes are held back.
    const bool isWritten = file.flush();
    file.close();
    if (!isWritten || file.error() != QFileDevice::NoError)
        QMessageBox::warning(this, QStringLiteral("Warning"),
                             QStringLiteral("could not write file \r\n") + data.outputFilePath,
                             QMessageBox::Ok);
}
