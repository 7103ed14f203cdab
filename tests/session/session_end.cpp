// The end of a session: saving, the next file number, and no sound afterwards.
// SPDX-License-Identifier: GPL-3.0-or-later
#include "support/ExpectedResults.h"
#include "support/FileBytes.h"
#include "test_session.h"

#include <QCheckBox>
#include <QPushButton>
#include <QRegularExpression>
#include <QSpinBox>
#include <QTest>

void TestSessionEnd::theMainWindowIsFreedWithoutGo() {
    fixture->window().checkBoxSaveData->setChecked(false);
    preparePractice();
    SubjectWindow* listener = go();
    fixture->window().pushButtonPractice->setEnabled(false);
    emit listener->subjectWindowClosed();
    QVERIFY(fixture->window().isEnabled());
    QVERIFY(fixture->window().pushButtonPractice->isEnabled());
    QVERIFY(fixture->window().pushButtonExperiment->isEnabled());
    QVERIFY(!fixture->window().pushButtonGo->isEnabled());
}

void TestSessionEnd::finishItSavesAndAdvancesOnly() {
    preparePractice();
    go();
    const auto buttons = [this] { return state().filter(QRegularExpression("^push|^wind")); };
    const QStringList before = buttons();
    fixture->dialogs.saveAsProposed();
    fixture->window().finishIt();
    QCOMPARE(fixture->fileNumber(), 2);
    QVERIFY(QFile::exists(fixture->pathOf(QStringLiteral("SUB001_practice001.txt"))));
    QVERIFY(!fixture->window().isEnabled());
    QCOMPARE(buttons(), before);

    fixture->window().data.saveDataToFile = false;
    fixture->window().finishIt();
    QCOMPARE(fixture->fileNumber(), 3);
}

void TestSessionEnd::resultsAreSavedBeforeTheNumberAdvances() {
    preparePractice();
    SubjectWindow* listener = go();
    emit listener->subjectResponded(4, 640);
    emit listener->subjectResponded(4, 523);
    const QString results = fixture->pathOf(QStringLiteral("mine.txt"));
    fixture->dialogs.saveAs(results);
    bool wasSavedBefore = false;
    connect(fixture->window().spinBoxFileNumber, QOverload<int>::of(&QSpinBox::valueChanged), this,
            [&] { wasSavedBefore = QFile::exists(results); });
    emit listener->subjectWindowClosed();
    QVERIFY(wasSavedBefore);
    QCOMPARE(testsupport::readBytes(results),
             testsupport::expectedResults("target.wav", {640, 523}));
    QVERIFY(fixture->dialogs.seen().last().endsWith(QStringLiteral("/SUB001_practice001.txt")));
}

void TestSessionEnd::disableAllComponentsDisablesTheWindow() {
    fixture->window().disableAllComponents();
    QVERIFY(!fixture->window().isEnabled());
    for (const auto* button : fixture->window().findChildren<QPushButton*>())
        QVERIFY(!button->isEnabled());
}

void TestSessionEnd::doNothingDoesNothing() {
    preparePractice();
    const QStringList before = state();
    const int linesBefore = fixture->log.all().size();
    fixture->window().doNothing();
    QCOMPARE(state(), before);
    QCOMPARE(fixture->log.all().size(), linesBefore);
}
