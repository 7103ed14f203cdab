// The window of "pellion-session recover --window".
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QDialog>
#include <QString>

class QLabel;
class QLineEdit;
class QPushButton;
class QTableWidget;

/// Shows the kept journals of a folder in a table, and saves all of them as results files.
class RecoveryWindow : public QDialog {
public:
    /// Proposes `folder` for the results files.
    RecoveryWindow(QString journalsFolder, const QString& folder);

private:
    void layOut();
    void fillTable();
    void chooseFolder();
    void saveAll();

    QString journals;
    QLabel* labelMessage;
    QTableWidget* tableJournals;
    QLineEdit* lineEditFolder;
    QPushButton* pushButtonFolder;
    QPushButton* pushButtonSave;
    QPushButton* pushButtonClose;
};
