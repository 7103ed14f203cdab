// PCM WAV files with the canonical 44-byte header: reading, printing and writing.
// SPDX-License-Identifier: GPL-3.0-or-later
#include "sound/CWav.h"

#include "base/HugePages.h"
#include "sound/RegularFile.h"
#include "sound/SampleConversion.h"

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <iostream>
#include <locale>
#include <new>
#include <stdexcept>
#include <string_view>
#include <utility>

static_assert(__BYTE_ORDER__ == __ORDER_LITTLE_ENDIAN__,
              "the header is taken from the file as it is");

namespace {

constexpr std::array<char, 4> waveFormat{'W', 'A', 'V', 'E'};
constexpr std::uint16_t linearPcm = 1;

/// Data are read in blocks of this many bytes, so that a large declared size alone takes no memory.
constexpr std::size_t bytesPerBlock = std::size_t{1} << 20U;

/// Samples are converted in blocks of this many: the zeros that resize() writes are then still in
/// the level-1 cache when the samples replace them.
constexpr std::size_t samplesPerBlock = 1024;

/// Fills an empty vector with the samples that the bytes hold, at most `maximum`; throws, and
/// leaves it empty, when there is no room.
template <typename Encoding>
void fillSamples(std::string_view bytes, std::size_t maximum, std::vector<double>& samples) {
    std::size_t remaining = std::min(maximum, bytes.size() / Encoding::byteCount);
    reserveOnHugePages(samples, remaining);
    const char* source = bytes.data();
    while (remaining > 0) {
        const std::size_t count = std::min(remaining, samplesPerBlock);
        samples.resize(samples.size() + count);
        double* const block = samples.data() + samples.size() - count;
        for (std::size_t i = 0; i < count; ++i)
            block[i] = Encoding::decode(source + i * Encoding::byteCount);
        source += count * Encoding::byteCount;
        remaining -= count;
    }
}

/// Calls a function that allocates memory for vectors; returns whether it succeeded.
template <typename Function> bool tryAllocating(Function&& function) {
    try {
        std::forward<Function>(function)();
    } catch (const std::bad_alloc&) {
        return false;
    } catch (const std::length_error&) {
        return false;
    }
    return true;
}

/// Returns how many bytes a file holds from where it is read next.
std::size_t remainingBytes(std::istream& file) {
    const std::streamoff next = file.tellg();
    file.seekg(0, std::ios::end);
    const std::streamoff end = file.tellg();
    file.seekg(next);
    return file && end > next ? static_cast<std::size_t>(end - next) : 0;
}

/// Replaces `bytes` by the next ones of a file: `wanted` of them, or fewer when the file ends or
/// memory runs out.
void readUpTo(std::size_t wanted, std::istream& file, std::vector<char>& bytes) {
    // Avoids the copies of growing block by block. One extra byte, so that the last read reaches
    // the end of the file.
    bool hasRoom = tryAllocating(
        [&] { reserveOnHugePages(bytes, std::min(wanted, remainingBytes(file) + 1)); });
    std::size_t obtained = 0;
    while (hasRoom && obtained < wanted && file) {
        std::size_t block = std::min(wanted - obtained, bytesPerBlock);
        if (bytes.capacity() > obtained) // fill the reserved room before growing
            block = std::min(block, bytes.capacity() - obtained);
        hasRoom = tryAllocating([&] { bytes.resize(obtained + block); });
        if (hasRoom) {
            file.read(bytes.data() + obtained, static_cast<std::streamsize>(block));
            obtained += static_cast<std::size_t>(file.gcount());
        }
    }
    bytes.resize(obtained);
}

/// Reports a problem with a file on standard error; returns false, which its caller returns too.
bool refuse(std::string_view problem, const std::filesystem::path& path) {
    std::cerr << problem << path.native() << std::endl;
    return false;
}

/// Calls a function with a stream in its default format, independent of that of std::cout, and
/// prints the result to standard output.
template <typename Function> void printInDefaultFormat(Function&& function) {
    std::ostream output(std::cout.rdbuf());
    output.imbue(std::locale::classic());
    std::forward<Function>(function)(output);
    output.flush();
}

std::string_view textOf(const std::array<char, 4>& identifier) {
    return {identifier.data(), identifier.size()};
}

} // namespace

CWav::CWav(CWav&& other) noexcept : CWav() {
    exchangeWith(other);
}

CWav& CWav::operator=(CWav&& other) noexcept {
    CWav taken(std::move(other));
    exchangeWith(taken);
    return *this;
}

void CWav::exchangeWith(CWav& other) noexcept {
    std::swap(header, other.header);
    std::swap(maximumSamplesPerChannel, other.maximumSamplesPerChannel);
    std::swap(audioFormatWord, other.audioFormatWord);
    std::swap(rawData, other.rawData);
    std::swap(bytesRead, other.bytesRead);
    std::swap(numberOfSamples, other.numberOfSamples);
    std::swap(samplePointer, other.samplePointer);
    std::swap(samples, other.samples);
}

bool CWav::LoadWav(std::string fileName) {
    const std::filesystem::path path(std::move(fileName));
    const RegularFile opened(path, RegularFile::Purpose::Reading);
    std::ifstream file(opened.path(), std::ios::binary);
    if (!file.is_open())
        return refuse("Unable to open WAV file: ", path);

    file.read(reinterpret_cast<char*>(&header), sizeof(header));
    if (file.gcount() == 0)
        return refuse("Header size is zero. ", path);
    if (header.format != waveFormat)
        return refuse("Not a WAV file: ", path);
    if (header.audioFormat != linearPcm)
        return refuse("Not a PCM (linear quantitation) WAV file: ", path);
    if (header.bitsPerSample != 8 && header.bitsPerSample != 16 && header.bitsPerSample != 24)
        return refuse("Not a 8-bit, 16-bit, or 24-bit WAV file: ", path);

    numberOfSamples = header.dataSize / (header.bitsPerSample / 8U);
    if (header.dataSize != 0) {
        const std::uint64_t maximumSampleCount =
            maximumSamplesPerChannel * std::max<std::uint64_t>(header.numberOfChannels, 1);
        const bool isTooLong = numberOfSamples > maximumSampleCount;
        readUpTo(isTooLong ? 0 : header.dataSize, file, rawData);
        bytesRead = static_cast<std::int64_t>(rawData.size());
        ConvertData();
    }
    return true;
}

void CWav::ConvertData() {
    samples.clear();
    // Header and data are public: a caller may have changed them since the file was read.
    const bool isComplete = bytesRead == header.dataSize;
    const std::size_t heldBytes = std::min<std::size_t>(header.dataSize, rawData.size());
    const std::string_view bytes(rawData.data(), isComplete ? heldBytes : 0);
    // Without memory there are no samples, as after a short read.
    tryAllocating([&] {
        switch (header.bitsPerSample) {
        case 8:
            return fillSamples<Unsigned8Bit>(bytes, numberOfSamples, samples);
        case 16:
            return fillSamples<Signed16Bit>(bytes, numberOfSamples, samples);
        case 24:
            return fillSamples<Signed24Bit>(bytes, bytes.size(), samples);
        case 32:
            std::cerr << "32-bit PCM is not working yet." << std::endl;
            return;
        default:
            std::cerr << "Not recognizable bits per sample. " << std::endl;
        }
    });
    samplePointer = samples.empty() ? nullptr : samples.data();
}

bool CWav::WriteWav(std::string fileName) const {
    const std::filesystem::path path(std::move(fileName));
    const RegularFile opened(path, RegularFile::Purpose::Appending);
    std::ofstream file(opened.path(), std::ios::binary | std::ios::app);
    if (!file.is_open())
        return refuse("Unable to write wave file: ", path);

    file.write(reinterpret_cast<const char*>(&header), sizeof(header));
    const std::size_t heldBytes = std::min<std::size_t>(header.dataSize, rawData.size());
    file.write(rawData.data(), static_cast<std::streamsize>(heldBytes));
    return true;
}

int CWav::GetHeaderSize() const {
    return static_cast<int>(sizeof(header));
}

std::uint16_t CWav::GetAudioFormat() const {
    return audioFormatWord;
}

void CWav::DisplayHeader() const {
    printInDefaultFormat([this](std::ostream& output) {
        output << "RIFF header                : " << textOf(header.riffIdentifier) << '\n'
               << "WAVE header                : " << textOf(header.format) << '\n'
               << "FMT                        : " << textOf(header.formatChunkIdentifier)
               << '\n'
               // The laboratory's label is wrong and kept: the value is the size of the RIFF
               // chunk's content.
               << "Data size                  : " << header.riffChunkSize << '\n'
               << "Sampling Rate              : " << header.samplingRate << '\n'
               << "Number of bits per sample  : " << header.bitsPerSample << '\n'
               << "Number of channels         : " << header.numberOfChannels << '\n'
               << "Number of bytes per second : " << header.byteRate << '\n'
               << "Data length (bytes)        : " << header.dataSize << '\n'
               << "Audio Format               : " << header.audioFormat << '\n'
               << "Block align                : " << header.blockAlign << '\n'
               << "Data string                : " << textOf(header.dataChunkIdentifier) << '\n';
    });
}

void CWav::DisplayData() const {
    printInDefaultFormat([this](std::ostream& output) {
        for (const double sample : samples)
            output << sample << '\n';
    });
}
