// Answers modal dialogs as a person would.
// SPDX-License-Identifier: GPL-3.0-or-later
#include "support/DialogDriver.h"

#include <QAbstractButton>
#include <QApplication>
#include <QDialogButtonBox>
#include <QFileDialog>
#include <QLineEdit>
#include <QPushButton>
#include <QTest>
#include <QTimer>

#include <algorithm>
#include <utility>

namespace testsupport {

namespace {

constexpr int pollIntervalMs = 20;

QString targetTitle() {
    return QStringLiteral("Select a target sound file");
}
QString saveTitle() {
    return QStringLiteral("Save a file");
}

QString closingTitle() {
    return QStringLiteral("Confirmation MessageBox");
}

QLineEdit* fileNameField(QWidget* dialog) {
    return dialog->findChild<QLineEdit*>(QStringLiteral("fileNameEdit"));
}

void clickButton(QWidget* dialog, QDialogButtonBox::ButtonRole role) {
    const auto* box = dialog->findChild<QDialogButtonBox*>(QStringLiteral("buttonBox"));
    for (QAbstractButton* button : box->buttons())
        if (box->buttonRole(button) == role) {
            QTest::mouseClick(button, Qt::LeftButton);
            return;
        }
}

/// Whether a click would reach a button: for a moment after it is shown, a dialog may have no
/// height.
bool isLaidOut(const QWidget& dialog) {
    const auto buttons = dialog.findChildren<QAbstractButton*>();
    return std::none_of(buttons.begin(), buttons.end(), [](const QAbstractButton* button) {
        return button->isVisible() && button->rect().isEmpty();
    });
}

QString contentOf(QWidget* dialog) {
    if (const auto* message = qobject_cast<QMessageBox*>(dialog))
        return message->text();
    if (const auto* files = qobject_cast<QFileDialog*>(dialog))
        return files->directory().absolutePath() + u'/' + fileNameField(dialog)->text();
    return {};
}

} // namespace

DialogDriver::DialogDriver(QObject* parent) : QObject(parent) {
    QTimer::singleShot(pollIntervalMs, this, &DialogDriver::answerDialog);
}

void DialogDriver::expect(const QString& title, Answer answer) {
    expectations.enqueue({title, std::move(answer)});
}

void DialogDriver::chooseTarget(const QString& path) {
    chooseFile(targetTitle(), path);
}

void DialogDriver::saveAs(const QString& path) {
    chooseFile(saveTitle(), path);
}

void DialogDriver::saveAsProposed() {
    expect(saveTitle(), [](QWidget* dialog) { clickButton(dialog, QDialogButtonBox::AcceptRole); });
}

void DialogDriver::cancelTarget() {
    cancelFile(targetTitle());
}

void DialogDriver::cancelSaving() {
    cancelFile(saveTitle());
}

void DialogDriver::answerClosing(QMessageBox::StandardButton button, const QString& text) {
    click(closingTitle(), button, text);
}

void DialogDriver::expectClosing(Answer answer) {
    expect(closingTitle(), std::move(answer));
}

void DialogDriver::closeWarning(const QString& text) {
    click(QStringLiteral("Warning"), QMessageBox::Ok, text);
}

void DialogDriver::chooseFile(const QString& title, const QString& path) {
    expect(title, [path](QWidget* dialog) {
        QLineEdit* field = fileNameField(dialog);
        field->setText(path);
        clickButton(dialog, QDialogButtonBox::AcceptRole);
    });
}

void DialogDriver::cancelFile(const QString& title) {
    expect(title, [](QWidget* dialog) { clickButton(dialog, QDialogButtonBox::RejectRole); });
}

void DialogDriver::click(const QString& title, QMessageBox::StandardButton button,
                         const QString& text) {
    expect(title, [this, button, text](QWidget* dialog) {
        auto* box = qobject_cast<QMessageBox*>(dialog);
        if (box == nullptr || box->button(button) == nullptr) {
            complaints.append(QStringLiteral("%1 has no such button").arg(dialog->windowTitle()));
            dialog->close();
            return;
        }
        if (!text.isNull() && box->text() != text)
            complaints.append(QStringLiteral("the box reads: %1").arg(box->text()));
        QTest::mouseClick(box->button(button), Qt::LeftButton);
    });
}

void DialogDriver::answerDialog() {
    // Restarted at once: a repeating timer would not fire while an answer opens another dialog.
    QTimer::singleShot(pollIntervalMs, this, &DialogDriver::answerDialog);
    QWidget* dialog = QApplication::activeModalWidget();
    if (dialog == nullptr || dialog == current || !dialog->isVisible() || !isLaidOut(*dialog))
        return;
    current = dialog;
    answered.append(contentOf(dialog));
    if (expectations.isEmpty() || expectations.head().title != dialog->windowTitle()) {
        complaints.append(QStringLiteral("unexpected dialog \"%1\": %2")
                              .arg(dialog->windowTitle(), answered.last()));
        dialog->close();
    } else {
        expectations.dequeue().answer(dialog);
    }
    // The next box may be created at the same address.
    if (current == nullptr || !current->isVisible())
        current.clear();
}

QStringList DialogDriver::takeComplaints() {
    for (const Expectation& expectation : std::as_const(expectations))
        complaints.append(QStringLiteral("no dialog \"%1\" came").arg(expectation.title));
    expectations.clear();
    return std::exchange(complaints, {});
}

} // namespace testsupport
