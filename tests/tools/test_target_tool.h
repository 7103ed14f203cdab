// Tests of pellion-target, the console program that makes target sounds and looks at them.
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "support/FileBytes.h"
#include "support/ProgramRun.h"
#include "support/TestTable.h"
#include "support/WavBytes.h"

#include <QObject>
#include <QStringList>
#include <QTemporaryDir>

using testsupport::columns;

/// What a run of pellion-target has left.
struct ToolRun : testsupport::ProgramRun {
    /// Returns the text after the label in each line of the output that has it.
    QStringList linesOf(const QString& label) const;
};

/// Where the program is let loose: a fresh folder.
class ToolFolder {
public:
    /// Runs pellion-target in the folder; the arguments are split at blanks.
    ToolRun run(const QString& arguments) const;

    /// Runs it with arguments as they are, and more environment variables ("NAME=value").
    ToolRun runWords(const QStringList& arguments, const QStringList& environment = {}) const;

    /// Runs a shell's command line in the folder, which may call pellion-target by its name;
    /// returns whether it succeeded.
    bool shell(const QString& commandLine) const {
        return testsupport::runShell(
            "PATH=\"$(dirname '" PELLION_TARGET "'):$PATH\"; " + commandLine, folder.path());
    }

    QString path(const QString& name) const { return folder.filePath(name); }
    QByteArray read(const QString& name) const { return testsupport::readBytes(path(name)); }
    bool write(const QString& name, const QByteArray& bytes) const {
        return testsupport::writeBytes(path(name), bytes);
    }
    QStringList names() const;

private:
    QTemporaryDir folder;
};

/// What a sound is before it is rounded: a signal of the signal library at a level.
namespace expectedsound {
QVector<double> tone(int count, double frequency, double phaseDegrees = 0);

/// The library's noise of a seed, without its mean.
QVector<double> noise(int count, uint seed);

double peak(const QVector<double>& samples);

/// Scales by a factor re a reference.
QVector<double> scaled(QVector<double> samples, double reference, double decibels);

/// The integers that a file holds of samples within full scale.
QVector<int> codes(const QVector<double>& samples, int bits);
} // namespace expectedsound

/// Files that the tests of "info" share.
namespace madefiles {
/// Command lines for a shell: the first makes plain.wav, a good target of a quarter of a second at
/// half of full scale; the second, with options and a name after it, a file out of that.
extern const char* const plain;
extern const char* const byFfmpeg;

/// The identifier and the size in front of a chunk.
QByteArray tag(const char* identifier, quint32 size);

/// A file of samples that are not silent.
QByteArray handmade(const testsupport::WavFormat& format = {}, int frames = 1000);
} // namespace madefiles

class TestTargetMaking : public QObject {
    Q_OBJECT

private slots:
    void soundsAreExact_data();
    void soundsAreExact();
    void noiseIsMadeAgainByItsSeed();
    void headersAreCanonical_data();
    void headersAreCanonical();
    void namesWithPercentSignsStayAsTheyAre();
    void oddDataAreFollowedByAByteOfZero();
    void durationsAreRoundedToTheNearestSample_data();
    void durationsAreRoundedToTheNearestSample();
};

class TestTargetRefusals : public QObject {
    Q_OBJECT

private slots:
    void clippingNamesTheSampleAndWritesNothing_data();
    void clippingNamesTheSampleAndWritesNothing();
    void silenceIsNotWritten();
    void anExistingFileIsKept();
    void forceReplacesTheWholeFile();
    void forceReplacesWhatALinkPointsTo();
    void aFileThatCannotBeMadeIsNamed_data();
    void aFileThatCannotBeMadeIsNamed();
    void aFullDiskLeavesTheOldFile();
    void nothingButTheFileIsLeft();
    void wrongCommandLinesAreExplained_data();
    void wrongCommandLinesAreExplained();
    void numbersKeepTheirPointInEveryLocale();
    void whatWouldBePlayedOtherwiseIsNoted();
    void helpHasExamplesThatWork_data();
    void helpHasExamplesThatWork();
    void helpAndVersionNeedNoDisplay();
    void manualDescribesTheOptionsOfTheHelp();
    void manualIsWellFormed();
};

class TestTargetInfo : public QObject {
    Q_OBJECT

private slots:
    void goodFilesAreAsIntended_data();
    void goodFilesAreAsIntended();
    void faultsAreReportedAndFixed_data();
    void faultsAreReportedAndFixed();
    void fileBeyondFixingIsReported_data();
    void fileBeyondFixingIsReported();
    void odditiesAreNoted_data();
    void odditiesAreNoted();
    void headerIsThatOfTheProgram();
    void levelsAreMeasuredPerChannel_data();
    void levelsAreMeasuredPerChannel();
    void severalFilesAreAllLookedAt();
    void namesAreQuotedForTheShell_data();
    void namesAreQuotedForTheShell();
    void jsonHoldsTheSame();
    void mangledFilesDoNoHarm();
};

class TestTargetConversion : public QObject {
    Q_OBJECT

private slots:
    void resultIsThatOfSox_data();
    void resultIsThatOfSox();
    void stepsAreReported_data();
    void stepsAreReported();
    void encodingsOf16BitsKeepTheirLength_data();
    void encodingsOf16BitsKeepTheirLength();
    void overshootIsReportedWithTheGainThatHelps_data();
    void overshootIsReportedWithTheGainThatHelps();
    void fileWithoutUsableSoundIsRefused_data();
    void fileWithoutUsableSoundIsRefused();
    void fileIsConvertedInPlace();
};

class TestTargetParts : public QObject {
    Q_OBJECT

private slots:
    void samplesAreRoundedToTheNearestCode_data();
    void samplesAreRoundedToTheNearestCode();
    void playedLengthIsThatOfTheMainWindow_data();
    void playedLengthIsThatOfTheMainWindow();
    void soundsOfEveryTargetsLengthCanBeConverted_data();
    void soundsOfEveryTargetsLengthCanBeConverted();
    void suggestedGainIsTheHighestThatHelps();
    void chunksAreFoundWhereverTheyAre();
    void aChunkCutOffHoldsWhatIsThere();
    void minimumCodeOf24BitsIsMinusOne();
};
