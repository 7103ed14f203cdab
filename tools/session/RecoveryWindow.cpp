// The window of "pellion-session recover --window".
// SPDX-License-Identifier: GPL-3.0-or-later
#include "tools/session/RecoveryWindow.h"

#include "tools/session/Recovery.h"

#include <QFileDialog>
#include <QFileInfo>
#include <QGridLayout>
#include <QHeaderView>
#include <QIcon>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QTableWidget>

#include <utility>

namespace {

/// Names a widget for screen readers and tests, and returns it.
template <typename Widget> Widget* named(Widget* widget, const char* name, const char* label) {
    widget->setObjectName(QLatin1String(name));
    widget->setAccessibleName(QLatin1String(label));
    return widget;
}

} // namespace

RecoveryWindow::RecoveryWindow(QString journalsFolder, const QString& folder)
    : journals(std::move(journalsFolder)),
      labelMessage(named(new QLabel(this), "labelMessage", "Message")),
      tableJournals(
          named(new QTableWidget(this), "tableJournals", "Responses that were not saved")),
      lineEditFolder(named(new QLineEdit(folder, this), "lineEditFolder", "Save in folder")),
      pushButtonFolder(
          named(new QPushButton("Choose…", this), "pushButtonFolder", "Choose the folder")),
      pushButtonSave(named(new QPushButton("Save all", this), "pushButtonSave", "Save all")),
      pushButtonClose(named(new QPushButton("Close", this), "pushButtonClose", "Close")) {
    setWindowTitle(QStringLiteral("Recover Pellion responses"));
    setWindowIcon(QIcon::fromTheme(QStringLiteral("pellion")));
    layOut();
    connect(pushButtonFolder, &QPushButton::clicked, this, &RecoveryWindow::chooseFolder);
    connect(pushButtonSave, &QPushButton::clicked, this, &RecoveryWindow::saveAll);
    connect(pushButtonClose, &QPushButton::clicked, this, &QDialog::accept);
    fillTable();
}

void RecoveryWindow::layOut() {
    tableJournals->setColumnCount(6);
    tableJournals->setHorizontalHeaderLabels(
        {"Subject", "Session", "Number", "Start", "Target", "Responses"});
    tableJournals->setEditTriggers(QAbstractItemView::NoEditTriggers);
    tableJournals->setTabKeyNavigation(false);
    tableJournals->verticalHeader()->hide();
    labelMessage->setWordWrap(true);
    labelMessage->setTextInteractionFlags(Qt::TextSelectableByMouse | Qt::TextSelectableByKeyboard);
    pushButtonSave->setDefault(true);
    auto* layout = new QGridLayout(this);
    layout->addWidget(tableJournals, 0, 0, 1, 3);
    layout->addWidget(new QLabel(QStringLiteral("Save in folder"), this), 1, 0);
    layout->addWidget(lineEditFolder, 1, 1);
    layout->addWidget(pushButtonFolder, 1, 2);
    layout->addWidget(labelMessage, 2, 0, 1, 3);
    layout->addWidget(pushButtonSave, 3, 1, Qt::AlignRight);
    layout->addWidget(pushButtonClose, 3, 2);
    constexpr int characters = 90;
    resize(fontMetrics().averageCharWidth() * characters, fontMetrics().height() * characters / 4);
}

void RecoveryWindow::fillTable() {
    const KeptJournals kept = keptJournals(journals);
    tableJournals->setRowCount(kept.journals.size());
    for (int row = 0; row < kept.journals.size(); ++row) {
        const KeptJournal& journal = kept.journals[row];
        const QStringList texts{
            journal.subject, journal.sessionType,
            journal.number,  journal.start.toString(QStringLiteral("yyyy-MM-dd HH:mm:ss")),
            journal.target,  QString::number(journal.responses)};
        for (int column = 0; column < texts.size(); ++column)
            tableJournals->setItem(row, column, new QTableWidgetItem(texts[column]));
        tableJournals->item(row, 0)->setData(Qt::UserRole, journal.path);
    }
    tableJournals->resizeColumnsToContents();
    pushButtonSave->setEnabled(!kept.journals.isEmpty());
    if (kept.leftAlone > 0)
        labelMessage->setText(QStringLiteral("Please note: %1.").arg(leftAloneText(kept)));
    else if (kept.journals.isEmpty())
        labelMessage->setText(QStringLiteral("There are no responses to recover."));
}

void RecoveryWindow::chooseFolder() {
    const QString folder = QFileDialog::getExistingDirectory(this, QStringLiteral("Save in folder"),
                                                             lineEditFolder->text());
    if (!folder.isEmpty())
        lineEditFolder->setText(folder);
}

void RecoveryWindow::saveAll() {
    const QString folder = lineEditFolder->text();
    if (!QFileInfo(folder).isDir()) {
        labelMessage->setText(QStringLiteral("There is no folder \"%1\".").arg(folder));
        return;
    }
    QStringList messages;
    for (int row = 0; row < tableJournals->rowCount(); ++row) {
        const QString path = tableJournals->item(row, 0)->data(Qt::UserRole).toString();
        messages << recoveryText(recover(path, folder), path);
    }
    fillTable();
    labelMessage->setText(messages.join(u'\n'));
}
