// The test classes of the example analyses; each is defined in the file that its comment names.
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "analysis_tables.h"

#include <QObject>

/// Tables of sessions and requests, by each language (test_analysis.cpp).
class TestAnalysisTables : public QObject {
    Q_OBJECT

private slots:
    void manySessionsAreSummarised_data() { addLanguages(); }
    void manySessionsAreSummarised();
    void namesAreParsed_data() { addLanguages(); }
    void namesAreParsed();
    void targetsComeFromATable_data();
    void targetsComeFromATable();
    void targetsOutsideTheTableHaveNoCents_data() { addLanguages(); }
    void targetsOutsideTheTableHaveNoCents();
    void requestsAreWritten_data() { addLanguages(); }
    void requestsAreWritten();
    void otherFilesAreLeftOutAndReported_data() { addLanguages(); }
    void otherFilesAreLeftOutAndReported();
    void duplicatesAreReported_data() { addLanguages(); }
    void duplicatesAreReported();
    void severalTargetsAreReported_data() { addLanguages(); }
    void severalTargetsAreReported();
    void languagesAgree();
};

/// The simulated listeners that ship as examples, and pictures (analysis_examples.cpp).
class TestAnalysisExamples : public QObject {
    Q_OBJECT

private slots:
    void simulatedListenersAreRecognised_data() { addLanguages(); }
    void simulatedListenersAreRecognised();
    void simulationCanBeRepeated();
    void pictureHasEveryRequest();
    void pictureHasAColourForEachSession();
};
