// Fuzzes the WAV class: loads, converts, prints and writes back files of arbitrary bytes.
// SPDX-License-Identifier: GPL-3.0-or-later
//
// An input is the content of a file. Findings are crashes, memory errors and every difference from
// a plain reading of the same bytes: header, data and samples after loading, after conversions of a
// header that a caller has changed, and in the files written back.
#include "base/Sampling.h"
#include "fuzz/Harness.h"
#include "sound/CWav.h"
#include "tests/support/PlainReading.h"

#include <cstring>
#include <limits>
#include <utility>

using fuzzing::MemoryFile;
using fuzzing::require;
using testsupport::PlainReading;
using testsupport::plainSamples;

namespace {

/// Printing more samples would test nothing new and take most of the time.
constexpr std::size_t maximumPrintedSamples = 2048;

std::string headerImage(const CWav& wav) {
    std::string image(testsupport::headerSize, '\0');
    std::memcpy(image.data(), &wav.header, image.size());
    return image;
}

std::string_view dataOf(const CWav& wav) {
    return {wav.rawData.data(), wav.rawData.size()};
}

PlainReading plainReading(std::string_view file) {
    return {file, maximumSampleCount};
}

void requireSamples(const CWav& wav, const std::vector<double>& samples) {
    require(wav.samples == samples, "the samples are those of the bytes");
    require(wav.samplePointer == (wav.samples.empty() ? nullptr : wav.samples.data()),
            "the pointer leads to the first sample");
}

void load(const MemoryFile& file, const PlainReading& expected, CWav& wav) {
    wav.maximumSamplesPerChannel = maximumSampleCount;
    require(wav.LoadWav(file.path()) == expected.isLoaded, "the header decides what is loaded");
    require(headerImage(wav) == expected.header, "the header is the file's");
}

/// Loads a file into a fresh object.
CWav loaded(const MemoryFile& file, const PlainReading& expected) {
    CWav wav;
    load(file, expected, wav);
    require(wav.numberOfSamples == expected.numberOfSamples, "the samples are counted");
    require(dataOf(wav) == expected.data, "the data are the file's");
    require(wav.bytesRead == static_cast<std::int64_t>(expected.data.size()),
            "the bytes are counted");
    requireSamples(wav, expected.samples);
    return wav;
}

/// The expected reading of a file into an object that holds another: a short header keeps the rest
/// of the earlier one.
PlainReading readingAfter(std::string_view earlier, std::string_view content) {
    std::string bytes(content);
    if (content.size() < testsupport::headerSize)
        bytes += earlier.substr(content.size(), testsupport::headerSize - content.size());
    PlainReading reading = plainReading(bytes);
    reading.isLoaded = reading.isLoaded && !content.empty();
    return reading;
}

/// A file without data keeps the samples of the earlier one.
void checkReuse(const MemoryFile& file, std::string_view content) {
    constexpr std::string_view twoSamples("RIFF\x28\0\0\0WAVEfmt \x10\0\0\0\1\0\1\0\x40\x9c\0\0"
                                          "\x80\x38\1\0\2\0\x10\0data\4\0\0\0\1\0\0\x40",
                                          48);
    static const MemoryFile earlier(twoSamples);
    static const PlainReading expectedEarlier = plainReading(twoSamples);
    const PlainReading expected = readingAfter(twoSamples, content);
    CWav wav = loaded(earlier, expectedEarlier);
    load(file, expected, wav);
    const bool isReplaced = expected.isLoaded && expected.dataSize != 0;
    requireSamples(wav, isReplaced ? expected.samples : expectedEarlier.samples);
    require(dataOf(wav) == (isReplaced ? expected.data : expectedEarlier.data),
            "data are replaced or stay");
}

/// Checks the samples after a caller has changed the header.
void checkConversion(CWav& wav, unsigned bitsPerSample, bool hasLimit) {
    wav.header.bitsPerSample = static_cast<std::uint16_t>(bitsPerSample);
    wav.ConvertData();
    std::vector<double> samples;
    if (wav.bytesRead == wav.header.dataSize)
        samples = plainSamples(dataOf(wav).substr(0, wav.header.dataSize), bitsPerSample);
    if (hasLimit && bitsPerSample != 24 && samples.size() > wav.numberOfSamples)
        samples.resize(wav.numberOfSamples);
    requireSamples(wav, samples);
}

void checkConversions(CWav wav) {
    for (const unsigned bits : {8U, 16U, 24U, 32U, 0U, 0xFFFFU})
        checkConversion(wav, bits, true);
    // As many samples as the bytes hold, regardless of the counts.
    wav.numberOfSamples = std::numeric_limits<std::uint32_t>::max();
    const auto held = static_cast<std::uint32_t>(wav.rawData.size());
    for (const std::uint32_t dataSize : {held, held + 1, held / 2, 0xFFFFFFFFU}) {
        wav.header.dataSize = dataSize;
        wav.bytesRead = dataSize;
        for (const unsigned bits : {8U, 16U, 24U})
            checkConversion(wav, bits, false);
    }
}

/// Every copy is appended, and reads like a plain reading of the bytes so far.
void checkWritingBack(const CWav& wav, const PlainReading& original) {
    const std::string copy = original.header + original.data;
    const MemoryFile file;
    std::string expected;
    for (int copies = 1; copies <= 2; ++copies) {
        require(wav.WriteWav(file.path()), "a file can be written");
        expected += copy;
        require(file.bytes() == expected, "what was read is appended");
        const CWav again = loaded(file, plainReading(expected));
        require(!original.isComplete || again.samples == wav.samples,
                "a canonical file loads as it was");
    }
}

void checkPrinting(const CWav& wav, const fuzzing::CountingBuffer& output) {
    constexpr std::size_t shortestHeaderText = std::size_t{12} * 30;
    const std::size_t before = output.count;
    wav.DisplayHeader();
    const std::size_t countAfterHeader = output.count;
    require(countAfterHeader >= before + shortestHeaderText, "twelve lines are printed");
    if (wav.samples.size() > maximumPrintedSamples)
        return;
    wav.DisplayData();
    require(output.count >= countAfterHeader + 2 * wav.samples.size(), "every sample is printed");
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t size) {
    static const fuzzing::CountingBuffer& output = fuzzing::muteStreams();
    static const MemoryFile file;
    const std::string_view content = fuzzing::textOf(bytes, size);
    file.replace(content);
    const PlainReading expected = plainReading(content);

    CWav wav = loaded(file, expected);
    require(wav.GetHeaderSize() == static_cast<int>(testsupport::headerSize) &&
                wav.GetAudioFormat() == 0,
            "these two never change");
    checkPrinting(wav, output);
    checkWritingBack(wav, expected);
    checkReuse(file, content);
    CWav moved = std::move(wav);
    requireSamples(moved, expected.samples);
    requireSamples(wav, {}); // NOLINT(bugprone-use-after-move): is left as a fresh one
    checkConversions(std::move(moved));
    return 0;
}
