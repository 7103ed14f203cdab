// Tests of the example analyses of results files.
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "analysis_tables.h"

#include <QObject>

class TestAnalysis : public QObject {
    Q_OBJECT

private slots:
    void manySessionsAreSummarised_data() { addLanguages(); }
    void manySessionsAreSummarised();
    void namesAreTakenApart_data() { addLanguages(); }
    void namesAreTakenApart();
    void targetsFrequencyIsAnArgument_data() { addLanguages(); }
    void targetsFrequencyIsAnArgument();
    void otherFilesAreLeftOutAndNamed_data() { addLanguages(); }
    void otherFilesAreLeftOutAndNamed();
    void wrongCommandLinesAreRefused_data();
    void wrongCommandLinesAreRefused();
    void severalTargetsAreSaid_data() { addLanguages(); }
    void severalTargetsAreSaid();
    void pictureHasEveryRequest();
    void pictureHasEverySessionsColour();
};
