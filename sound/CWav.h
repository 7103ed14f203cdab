// PCM WAV files with the canonical 44-byte header: reading, printing and writing.
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <limits>
#include <string>
#include <type_traits>
#include <vector>

/// The first 44 bytes of a canonical WAV file, field by field in the order of the file. The numbers
/// are little-endian, and identifiers are four characters without a terminating zero.
struct WavHeader {
    std::array<char, 4> riffIdentifier;        ///< "RIFF", not checked
    std::uint32_t riffChunkSize;               ///< bytes of the file after this field
    std::array<char, 4> format;                ///< must be "WAVE"
    std::array<char, 4> formatChunkIdentifier; ///< "fmt ", not checked
    std::uint32_t formatChunkSize;             ///< 16 for PCM, not checked
    std::uint16_t audioFormat;                 ///< must be 1, linear PCM
    std::uint16_t numberOfChannels;
    std::uint32_t samplingRate; ///< samples per second and channel
    std::uint32_t byteRate;     ///< bytes per second
    std::uint16_t blockAlign;   ///< bytes per sample of all channels together
    std::uint16_t bitsPerSample;
    std::array<char, 4> dataChunkIdentifier; ///< "data", not checked
    std::uint32_t dataSize;                  ///< bytes of sample data that follow the header
};

static_assert(sizeof(WavHeader) == 44 && std::is_trivially_copyable_v<WavHeader>,
              "the header is read from the file and written to it as one block");
static_assert(offsetof(WavHeader, riffIdentifier) == 0 && offsetof(WavHeader, riffChunkSize) == 4 &&
              offsetof(WavHeader, format) == 8 && offsetof(WavHeader, formatChunkIdentifier) == 12);
static_assert(offsetof(WavHeader, formatChunkSize) == 16 && offsetof(WavHeader, audioFormat) == 20);
static_assert(offsetof(WavHeader, numberOfChannels) == 22 &&
              offsetof(WavHeader, samplingRate) == 24 && offsetof(WavHeader, byteRate) == 28);
static_assert(offsetof(WavHeader, blockAlign) == 32 && offsetof(WavHeader, bitsPerSample) == 34);
static_assert(offsetof(WavHeader, dataChunkIdentifier) == 36 &&
              offsetof(WavHeader, dataSize) == 40);

/// One WAV file in memory: its header, its data bytes and its samples.
///
/// Only the canonical header is understood: chunks are not searched for, so a file with a longer
/// format chunk, or with other chunks before "data", is refused or misread. Problems are reported
/// as lines on standard error. No size in a file is trusted, and a lack of memory for data
/// or samples counts as a file that ends early.
class CWav {
public:
    CWav() = default;
    ~CWav() = default;
    CWav(const CWav&) = delete;
    CWav& operator=(const CWav&) = delete;
    /// The object moved from is then as after default construction.
    CWav(CWav&& other) noexcept;
    CWav& operator=(CWav&& other) noexcept;

    /// Reads a file and converts its data to samples.
    ///
    /// Returns whether it is a regular file whose header says WAVE, PCM and 8, 16 or 24 bits. A
    /// file that cannot be opened changes nothing. Any other file overwrites the header, even if it
    /// is refused; one shorter than 44 bytes overwrites only the beginning. A file that ends before
    /// the data size counts as loaded, with the bytes it has and no samples; a data size of 0
    /// leaves data and samples as they were.
    bool LoadWav(std::string fileName);

    /// Converts the data bytes at the header's bits per sample and replaces the samples. There are
    /// samples only if exactly the header's data size was read, with 8, 16 or 24 bits per sample.
    /// Other numbers of bits are reported on standard error.
    void ConvertData();

    /// Appends the header and the data bytes, as they were read, to a file, which is created if it
    /// does not exist. Returns false if it cannot be opened or is not a regular file; errors while
    /// writing are not reported.
    bool WriteWav(std::string fileName) const;

    /// Returns the number of bytes of a header, 44.
    int GetHeaderSize() const;

    /// Returns audioFormatWord, which is not the header's audio format.
    std::uint16_t GetAudioFormat() const;

    /// Prints the header to standard output in twelve labelled lines; the size of the format chunk
    /// is not printed.
    void DisplayHeader() const;

    /// Prints the samples to standard output, one per line.
    void DisplayData() const;

    WavHeader header{};
    std::uint16_t audioFormatWord = 0; ///< never set
    std::vector<char> rawData;         ///< the data bytes as read, at most the header's data size
    std::int64_t bytesRead = 0;        ///< data bytes that the last read obtained
    /// Of all channels together, as the header declares it; there may be fewer in `samples`.
    std::uint32_t numberOfSamples = 0;
    double* samplePointer = nullptr; ///< first of `samples`, null if there are none
    std::vector<double> samples;     ///< full scale -1 to +1, channels interleaved

    /// If a file declares more samples than this, its data are not read, as if it ended after the
    /// header.
    std::uint64_t maximumSamplesPerChannel = std::numeric_limits<std::uint32_t>::max();

private:
    void exchangeWith(CWav& other) noexcept;
};
