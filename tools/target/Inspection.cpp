// Whether the program would read a WAV file as intended.
// SPDX-License-Identifier: GPL-3.0-or-later
#include "tools/target/Inspection.h"

#include "base/NumberTexts.h"
#include "base/Sampling.h"
#include "sound/RegularFile.h"
#include "tools/target/DecodedSound.h"
#include "tools/target/FindingsAndFix.h"
#include "tools/target/IntendedSound.h"

#include <QFile>

#include <iostream>
#include <sstream>

namespace {

/// Captures what is written to standard error during its lifetime.
class ErrorText {
public:
    ErrorText() : original(std::cerr.rdbuf(buffer.rdbuf())) {}
    ~ErrorText() { std::cerr.rdbuf(original); }
    ErrorText(const ErrorText&) = delete;
    ErrorText(ErrorText&&) = delete;
    ErrorText& operator=(const ErrorText&) = delete;
    ErrorText& operator=(ErrorText&&) = delete;

    QString text() const { return QString::fromStdString(buffer.str()).trimmed(); }

private:
    std::ostringstream buffer;
    std::streambuf* original;
};

} // namespace

int playedSamples(qint64 samples, quint32 samplingRate) {
    return sampleCount(durationAsShown(static_cast<double>(samples) / samplingRate), playedRate);
}

Inspection inspect(const QString& fileName) {
    Inspection inspection;
    inspection.fileName = fileName;
    inspection.program.maximumSamplesPerChannel = maximumSampleCount;
    bool isLoaded = false;
    {
        const ErrorText errors;
        isLoaded = inspection.program.LoadWav(fileName.toStdString());
        inspection.programMessage = errors.text();
    }
    const RegularFile regular(fileName.toStdString(), RegularFile::Purpose::Reading);
    if (regular.path().empty())
        return inspection;
    QFile file(QString::fromStdString(regular.path().string()));
    inspection.isOpened = file.open(QIODevice::ReadOnly);
    if (!inspection.isOpened)
        return inspection;
    inspection.riff = readRiff(file);
    inspection.intended = intendedSound(file, inspection.riff);
    if (inspection.intended.samples.empty()) {
        const RiffContents& riff = inspection.riff;
        const bool isLengthDeclared =
            riff.format && riff.format->isInBlocks() && riff.declaredFrames > 0;
        DecodedSound sound =
            decodedSound(regular.path().string(),
                         isLengthDeclared ? riff.declaredFrames : quint32(maximumSampleCount));
        inspection.intended = std::move(sound.wav);
        inspection.container = sound.container;
        inspection.encoding = sound.encoding;
    }
    addFindings(inspection, isLoaded);
    return inspection;
}
