// A plain, slow reading of a WAV file in memory: the reference for the WAV class.
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace testsupport {

constexpr std::size_t headerSize = 44;

/// Returns the number that these bytes are, little-endian.
inline std::uint32_t littleEndian(std::string_view bytes) {
    std::uint32_t number = 0;
    for (auto byte = bytes.rbegin(); byte != bytes.rend(); ++byte)
        number = number * 256U + static_cast<unsigned char>(*byte);
    return number;
}

/// Returns one sample after another, by division. Bytes at the end that are no whole sample, and
/// all bytes at other sizes than 8, 16 and 24 bits, give none.
inline std::vector<double> plainSamples(std::string_view data, unsigned bitsPerSample) {
    std::vector<double> samples;
    if (bitsPerSample != 8 && bitsPerSample != 16 && bitsPerSample != 24)
        return samples;
    const std::size_t width = bitsPerSample / 8U;
    samples.reserve(data.size() / width);
    for (std::size_t offset = 0; offset + width <= data.size(); offset += width) {
        const auto code = static_cast<double>(littleEndian(data.substr(offset, width)));
        if (bitsPerSample == 8)
            samples.push_back((code - 128.0) / 128.0);
        else if (bitsPerSample == 16)
            samples.push_back((code >= 32768.0 ? code - 65536.0 : code) / 32768.0);
        else // 0x800000 is +1, deliberately
            samples.push_back((code > 8388608.0 ? code - 16777216.0 : code) / 8388608.0);
    }
    return samples;
}

/// Header, data and samples of a file; zeros replace the missing part of a short header.
struct PlainReading {
    PlainReading(std::string_view file, std::uint64_t maximumSamplesPerChannel)
        : header(file.substr(0, headerSize)) {
        header.resize(headerSize, '\0');
        audioFormat = field(20, 2);
        channels = field(22, 2);
        samplingRate = field(24, 4);
        bitsPerSample = field(34, 2);
        dataSize = field(40, 4);
        isLoaded = header.substr(8, 4) == "WAVE" && audioFormat == 1 &&
                   (bitsPerSample == 8 || bitsPerSample == 16 || bitsPerSample == 24);
        if (!isLoaded)
            return;
        numberOfSamples = dataSize / (bitsPerSample / 8U);
        const std::uint64_t maximumSampleCount =
            maximumSamplesPerChannel * std::max<std::uint64_t>(channels, 1);
        if (numberOfSamples <= maximumSampleCount && file.size() > headerSize)
            data = file.substr(headerSize, dataSize);
        isComplete = data.size() == dataSize;
        if (isComplete)
            samples = plainSamples(data, bitsPerSample);
    }

    std::string header; ///< 44 bytes
    std::uint32_t audioFormat = 0;
    std::uint32_t channels = 0;
    std::uint32_t samplingRate = 0; ///< Hz
    std::uint32_t bitsPerSample = 0;
    std::uint32_t dataSize = 0; ///< bytes, as declared
    bool isLoaded = false;      ///< whether the header is accepted; otherwise the rest is empty
    std::uint32_t numberOfSamples = 0; ///< of all channels together, as declared
    std::string data;                  ///< the bytes there are, at most those declared
    bool isComplete = false;           ///< whether all declared bytes are there
    std::vector<double> samples;       ///< none unless complete

private:
    std::uint32_t field(std::size_t offset, std::size_t width) const {
        return littleEndian(std::string_view(header).substr(offset, width));
    }
};

} // namespace testsupport
