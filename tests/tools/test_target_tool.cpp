// Tests of pellion-target, the console program that makes target sounds and looks at them.
// SPDX-License-Identifier: GPL-3.0-or-later
#include "test_target_tool.h"

#include "signal/OstrelClasses.h"
#include "signal/RandomGenerator.h"
#include "support/TestMain.h"

#include <QDir>

#include <algorithm>
#include <cmath>

namespace {

constexpr double samplingRate = 40000; // Hz

} // namespace

QStringList ToolRun::linesOf(const QString& label) const {
    QStringList found;
    // A file's header may hold zeros, and is printed as it is.
    const QString text = QString::fromUtf8(output.constData(), output.size());
    for (const QString& line : text.split(u'\n'))
        if (line.startsWith(label.leftJustified(27) + QStringLiteral(": ")))
            found.append(line.mid(29));
    return found;
}

ToolRun ToolFolder::run(const QString& arguments) const {
    return runWords(arguments.split(u' ', Qt::SkipEmptyParts));
}

ToolRun ToolFolder::runWords(const QStringList& arguments, const QStringList& environment) const {
    return {testsupport::runProgram(QStringLiteral(PELLION_TARGET), arguments, folder.path(),
                                    environment)};
}

QStringList ToolFolder::names() const {
    return QDir(folder.path()).entryList(QDir::AllEntries | QDir::Hidden | QDir::NoDotAndDotDot);
}

namespace expectedsound {

QVector<double> tone(int count, double frequency, double phaseDegrees) {
    return sine(samplingRate, count / samplingRate, frequency, 1, phaseDegrees);
}

QVector<double> noise(int count, uint seed) {
    seedRandomNumbers(seed);
    QVector<double> samples(count);
    double sum = 0;
    for (double& sample : samples)
        sum += sample = nextRandomNumber() / 2147483647.0;
    for (double& sample : samples)
        sample -= sum / count;
    return samples;
}

double peak(const QVector<double>& samples) {
    const auto [minimum, maximum] = std::minmax_element(samples.cbegin(), samples.cend());
    return std::max(-*minimum, *maximum);
}

QVector<double> scaled(QVector<double> samples, double reference, double decibels) {
    for (double& sample : samples)
        sample *= std::pow(10, decibels / 20) / reference;
    return samples;
}

QVector<int> codes(const QVector<double>& samples, int bits) {
    QVector<int> integers(samples.size());
    const int greatest = (1 << (bits - 1)) - 1;
    std::transform(samples.cbegin(), samples.cend(), integers.begin(), [&](double sample) {
        const int code = int(std::lround(sample * (greatest + 1)));
        return std::min(std::max(code, -greatest), greatest) + (bits == 8 ? 128 : 0);
    });
    return integers;
}

} // namespace expectedsound

namespace madefiles {

const char* const plain = "sox -r 40000 -n -b 16 -c 1 plain.wav synth 0.25 sine 440 vol 0.5";
const char* const byFfmpeg = "ffmpeg -v error -i plain.wav ";

QByteArray tag(const char* identifier, quint32 size) {
    QByteArray bytes(identifier);
    bytes.resize(8);
    testsupport::setUnsigned32(bytes, 4, size);
    return bytes;
}

QByteArray handmade(const testsupport::WavFormat& format, int frames) {
    QVector<int> samples(frames * format.channelCount);
    for (int i = 0; i < samples.size(); ++i)
        samples[i] = (i * 37 + 11) % 251;
    return testsupport::wavWithSamples(format, samples);
}

} // namespace madefiles

int main(int argc, char** argv) {
    const QCoreApplication application(argc, argv);
    return testsupport::runAll<TestTargetMaking, TestTargetRefusals, TestTargetConversion,
                               TestTargetInfo, TestTargetParts>(argc, argv);
}
