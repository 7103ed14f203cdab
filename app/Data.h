// The settings of an experiment.
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "app/Record.h"
#include "base/Sampling.h"

#include <QString>
#include <QStringList>
#include <QVector>

/// Every setting of a session and the candidate targets, with the defaults that the program
/// starts with. The main window owns one; the widgets mirror it: initParameters() copies it into
/// them at start, getParameters() copies them back.
struct Data {
    double samplingRate = playedRate; ///< Hz, of everything generated and played.
    double soundDuration = 0.25;      ///< Seconds, of one sound.
    /// Samples of one sound: floor(soundDuration x samplingRate). After a target has been loaded,
    /// the count of its file, until "Go" reads the fields again.
    int nSamples = 10000;
    double plotDuration = 0.25;      ///< Seconds of the waveform that are drawn.
    int nPointsToPlot = 10000;       ///< Samples of the waveform that are drawn, at most nSamples.
    double fftMaxFrequency = 2000.0; ///< Hz, the highest frequency shown in the spectrum.
    int nFFTPointsToPlot = 500;      ///< Spectrum bins drawn, at most half the spectrum's length.

    QString wavFolder = desktopFolder(); ///< Folder in which the target dialog opens.
    /// Folder of the results file; after saving, the full path of the file.
    QString outputFilePath = wavFolder;
    QString wavFilePath = wavFolder; ///< Folder of the current target.

    QString subjectCode = QStringLiteral("SUB001");
    QString outputFileName = subjectCode + QStringLiteral(".txt");

    QStringList sessionTypes = {QStringLiteral("practice"), QStringLiteral("experiment")};
    int sessionTypeIndex = 0;
    QStringList soundTypes = {QStringLiteral(".wav files"), QStringLiteral("reserved")};
    int soundTypeIndex = 0;
    QStringList mainParameters = {QStringLiteral("sound files"), QStringLiteral("reserved")};
    int mainParameterIndex = 0;

    int fileNumber = 1; ///< Number of the session's results file, from 1.
    /// Seconds of the pause before each sound, in addition to one soundDuration.
    double silentInterval = 0.5;
    QString wavFileName = QStringLiteral("File001.wav"); ///< File name of the current target.
    QVector<Record> records; ///< Candidate targets; element 0 also holds the session's match.

    int frequencyMin = 10;      ///< Hz, the lowest frequency that the listener can set.
    int frequencyMax = 1000;    ///< Hz, the highest frequency that the listener can set.
    int frequencyStart = 500;   ///< Hz, where each session starts.
    int frequencyCurrent = 500; ///< Hz, of the comparison sinusoid.
    int frequencyStepSize = 1;  ///< Hz, the step of the listener's slider and spin box.

    int nResponses = 0;         ///< Sinusoids played so far in this session.
    qint64 reserved = 0;        ///< Reset together with nResponses, read by nothing.
    bool saveDataToFile = true; ///< Whether closing a session writes the results file.
};
