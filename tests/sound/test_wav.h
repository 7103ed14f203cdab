// The test classes of the WAV files; each is defined in the file that its comment names.
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "sound/CWav.h"
#include "support/FileBytes.h"
#include "support/PlainReading.h"
#include "support/StreamCapture.h"
#include "support/TestTable.h"
#include "support/WavBytes.h"

#include <QObject>
#include <QTemporaryDir>

#include <string>
#include <string_view>
#include <tuple>
#include <vector>

using testsupport::columns;
using testsupport::errorsOf;

using Samples = std::vector<double>;

/// A folder for the files of one test.
class WavFolder {
public:
    [[nodiscard]] QString path(const QString& name) const { return folder_.filePath(name); }

    /// Writes a file and returns its path; an empty one when that fails.
    [[nodiscard]] std::string write(const QByteArray& bytes,
                                    const QString& name = "target.wav") const {
        const bool isWritten = testsupport::writeBytes(path(name), bytes);
        return isWritten ? path(name).toStdString() : std::string();
    }

private:
    QTemporaryDir folder_;
};

inline QByteArray headerImage(const CWav& wav) {
    return {reinterpret_cast<const char*>(&wav.header), static_cast<int>(sizeof(wav.header))};
}

inline QByteArray rawBytes(const CWav& wav) {
    return {wav.rawData.data(), static_cast<int>(wav.rawData.size())};
}

/// All that an object holds, to be compared with ==.
inline auto stateOf(const CWav& wav) {
    return std::make_tuple(headerImage(wav), wav.audioFormatWord, wav.rawData, wav.bytesRead,
                           wav.numberOfSamples, wav.samplePointer, wav.samples,
                           wav.maximumSamplesPerChannel);
}

/// Bytes without a period that a block or piece of a file could share.
inline QByteArray unevenBytes(int count) {
    QByteArray bytes(count, '\0');
    quint32 state = 1;
    for (char& byte : bytes) {
        state = state * 1664525U + 1013904223U;
        byte = static_cast<char>(state >> 24U);
    }
    return bytes;
}

inline std::string_view viewOf(const QByteArray& bytes) {
    return {bytes.constData(), static_cast<std::size_t>(bytes.size())};
}

inline Samples plainSamples(const QByteArray& data, int bitsPerSample) {
    return testsupport::plainSamples(viewOf(data), static_cast<unsigned>(bitsPerSample));
}

/// Samples, header fields and members after a load (test_wav.cpp).
class TestWavLoading : public QObject {
    Q_OBJECT

private slots:
    void operationsAndMembersHaveTheirTypes();
    void headerIsKeptAsInTheFile();
    void audioFormatWordIsIndependentOfTheHeader();
    void samplesAreScaledExactly_data();
    void samplesAreScaledExactly();
    void everyCodeIsASample_data();
    void everyCodeIsASample();
    void nextLoadReplacesThePrevious();
    void dataSizeZeroKeepsPreviousSamples();
    void fileWithTooManySamplesIsNotRead_data();
    void fileWithTooManySamplesIsNotRead();
    void movedObjectTakesEverything();
};

/// Refused files, their messages, and the object after them (wav_refusals.cpp).
class TestWavRefusals : public QObject {
    Q_OBJECT

private slots:
    void missingFileLeavesTheObjectAsItWas_data();
    void missingFileLeavesTheObjectAsItWas();
    void unreadableFileCannotBeOpened();
    void fileOverwritesOnlyTheHeaderThatItHolds_data();
    void fileOverwritesOnlyTheHeaderThatItHolds();
    void onlyRegularFilesAreOpened_data();
    void onlyRegularFilesAreOpened();
    void linksToRegularFilesAreFollowed();
    void convertingUnknownSizesIsReported_data();
    void convertingUnknownSizesIsReported();
    void messagesAreFlushed();
};

/// Malformed and unusual files, one after the other (wav_unusual.cpp).
class TestWavUnusual : public QObject {
    Q_OBJECT

private slots:
    void messageResultAndSamples_data();
    void messageResultAndSamples();
};

/// Files written, and printed headers and samples (wav_output.cpp).
class TestWavOutput : public QObject {
    Q_OBJECT

private slots:
    void writtenFileEqualsTheOneRead_data();
    void writtenFileEqualsTheOneRead();
    void freshObjectWritesAHeaderOfZeros();
    void changedHeaderIsWrittenWithItsDataSize_data();
    void changedHeaderIsWrittenWithItsDataSize();
    void pathsThatCannotBeWritten_data();
    void pathsThatCannotBeWritten();
    void headerIsPrintedInTwelveLines();
    void identifiersArePrintedAsFourCharacters();
    void samplesArePrintedOneALine();
    void printingIgnoresTheFormatOfStandardOutput();
};

/// Wrong sizes, and headers changed by a caller (wav_robustness.cpp).
class TestWavRobustness : public QObject {
    Q_OBJECT

private slots:
    void shortDataLoadWithoutSamples_data();
    void shortDataLoadWithoutSamples();
    void sizesNearTheBlockSizeAreReadWhole_data();
    void sizesNearTheBlockSizeAreReadWhole();
    void changedHeaderConvertsOnlyHeldBytes_data();
    void changedHeaderConvertsOnlyHeldBytes();
    void noDescriptorStaysOpen();
};

/// Files that change while they are read (wav_changing.cpp).
class TestWavChanging : public QObject {
    Q_OBJECT

private slots:
    void fifoThatReplacesTheFileDoesNotBlock();
    void shrinkingFileIsReadWholeOrAsAShortRead();
    void replacedFileIsNeverMixedWithTheOther();
};

/// The memory that a load takes, and loading without enough of it (wav_memory.cpp).
class TestWavMemory : public QObject {
    Q_OBJECT

private slots:
    void memoryFollowsTheFileSizeNotTheDeclaredSize_data();
    void memoryFollowsTheFileSizeNotTheDeclaredSize();
    void lackOfMemoryWhileReadingIsAShortRead();
    void lackOfMemoryWhileConvertingLeavesNoSamples();
};

/// Files of common programs, and another reader (wav_programs.cpp).
class TestWavPrograms : public QObject {
    Q_OBJECT

private slots:
    void canonicalFilesAreLoaded_data();
    void canonicalFilesAreLoaded();
    void otherHeadersAreRefused_data();
    void otherHeadersAreRefused();
    void chunkBeforeTheDataIsMisread();
    void handmadeFilesAgreeWithLibsndfile_data();
    void handmadeFilesAgreeWithLibsndfile();
    void writtenFileIsReadBySox();
};
