// The sound of a file of any format.
// SPDX-License-Identifier: GPL-3.0-or-later
#include "tools/target/DecodedSound.h"

#include <algorithm>
#include <memory>
#include <sndfile.h>
#include <vector>

namespace {

QString nameOf(int format) {
    SF_FORMAT_INFO info{};
    info.format = format;
    sf_command(nullptr, SFC_GET_FORMAT_INFO, &info, sizeof(info));
    return QString::fromUtf8(info.name);
}

quint16 bitsOf(int encoding) {
    switch (encoding) {
    case SF_FORMAT_PCM_S8:
    case SF_FORMAT_PCM_U8:
        return 8;
    case SF_FORMAT_PCM_16:
    case SF_FORMAT_ULAW:
    case SF_FORMAT_ALAW:
    case SF_FORMAT_IMA_ADPCM:
    case SF_FORMAT_MS_ADPCM:
    case SF_FORMAT_GSM610:
        return 16;
    case SF_FORMAT_PCM_24:
        return 24;
    default:
        return 32;
    }
}

/// Reads in blocks, since a header can declare more than the file holds.
std::vector<double> samplesOf(SNDFILE* file, int channels, sf_count_t maximumFrames) {
    constexpr int blockSamples = 65536;
    const sf_count_t blockFrames = std::max(blockSamples / channels, 1);
    std::vector<double> samples;
    std::vector<double> block(static_cast<std::size_t>(blockFrames * channels));
    sf_count_t frames = 0;
    while (frames < maximumFrames) {
        const sf_count_t read =
            sf_readf_double(file, block.data(), std::min(blockFrames, maximumFrames - frames));
        if (read <= 0)
            break;
        samples.insert(samples.end(), block.cbegin(), block.cbegin() + read * channels);
        frames += read;
    }
    return samples;
}

} // namespace

DecodedSound decodedSound(const std::string& path, qint64 maximumFrames) {
    DecodedSound sound;
    SF_INFO info{};
    const std::unique_ptr<SNDFILE, int (*)(SNDFILE*)> file(sf_open(path.c_str(), SFM_READ, &info),
                                                           sf_close);
    if (!file)
        return sound;
    const int encoding = info.format & SF_FORMAT_SUBMASK;
    sound.container = nameOf(info.format & SF_FORMAT_TYPEMASK);
    sound.encoding = nameOf(encoding);
    sound.wav.header.numberOfChannels = static_cast<quint16>(info.channels);
    sound.wav.header.samplingRate = static_cast<quint32>(info.samplerate);
    sound.wav.header.bitsPerSample = bitsOf(encoding);
    sound.wav.samples = samplesOf(file.get(), info.channels, maximumFrames);
    sound.wav.numberOfSamples = static_cast<quint32>(sound.wav.samples.size());
    return sound;
}
