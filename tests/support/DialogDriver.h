// Answers modal dialogs as a person would.
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QMessageBox>
#include <QObject>
#include <QPointer>
#include <QQueue>
#include <QStringList>

#include <functional>

namespace testsupport {

/// Waits for modal dialogs while the program runs and answers each with the next answer in the
/// queue. An unexpected dialog is closed and reported, so that no test hangs.
class DialogDriver : public QObject {
public:
    using Answer = std::function<void(QWidget*)>;

    explicit DialogDriver(QObject* parent = nullptr);

    /// Queues an answer for the next dialog, which must have this title. The answer must close the
    /// dialog.
    void expect(const QString& title, Answer answer);

    /// Chooses a file in the next target or save dialog by typing its path.
    void chooseTarget(const QString& path);
    void saveAs(const QString& path);

    /// Accepts the name that the save dialog proposes.
    void saveAsProposed();

    void cancelTarget();
    void cancelSaving();

    /// Answers the question whether the listener's window is to be closed.
    void answerClosing(QMessageBox::StandardButton button, const QString& text = QString());
    void expectClosing(Answer answer);

    /// Closes a warning, which must have this text where one is given.
    void closeWarning(const QString& text = QString());

    /// Clicks a button of the next message box, which must have this title, and, when a text is
    /// given, that text.
    void click(const QString& title, QMessageBox::StandardButton button,
               const QString& text = QString());

    /// The contents of the dialogs when they were answered: for a save dialog the path proposed.
    QStringList seen() const { return answered; }

    /// Returns and clears the complaints: unexpected dialogs and unused answers.
    QStringList takeComplaints();

private:
    struct Expectation {
        QString title;
        Answer answer;
    };

    void answerDialog();
    void chooseFile(const QString& title, const QString& path);
    void cancelFile(const QString& title);

    QQueue<Expectation> expectations;
    QPointer<QWidget> current; ///< The dialog that is being answered.
    QStringList answered;
    QStringList complaints;
};

} // namespace testsupport
