// Writes the program's click: a short, dry knock of decaying noise over a damped tone.

#include <array>
#include <cmath>
#include <cstdint>
#include <fstream>
#include <iostream>
#include <numbers>
#include <string_view>
#include <vector>

namespace {

constexpr std::uint32_t samplesPerSecond = 44100;

/// A fixed sequence of values in -1 to 1.
class Noise
{
public:
    double next()
    {
        m_state = m_state * 1664525U + 1013904223U;
        return static_cast<double>(m_state >> 8U) / static_cast<double>(1U << 23U) - 1.0;
    }

private:
    std::uint32_t m_state = 20;
};

std::vector<std::int16_t> click()
{
    constexpr double seconds = 0.045;
    constexpr double loudest = 0.45 * 32767;
    constexpr double attack = 0.0006;
    constexpr double fadeOut = 0.008;

    std::vector<std::int16_t> samples;
    Noise noise;
    double rustle = 0;
    for (std::uint32_t i = 0; i < static_cast<std::uint32_t>(seconds * samplesPerSecond); ++i) {
        const double time = static_cast<double>(i) / samplesPerSecond;
        rustle += 0.45 * (noise.next() - rustle); // takes the hiss out
        const double knock = rustle * std::exp(-time / 0.0025);
        const double wood = std::sin(2 * std::numbers::pi * 1150 * time) * std::exp(-time / 0.0055);
        const double body = std::sin(2 * std::numbers::pi * 420 * time) * std::exp(-time / 0.0090);
        const double envelope = std::fmin(1, time / attack) * std::fmin(1, (seconds - time) / fadeOut);
        const double value = envelope * (0.55 * knock + 0.50 * wood + 0.35 * body);
        samples.push_back(static_cast<std::int16_t>(std::lround(loudest * value)));
    }
    return samples;
}

void put(std::ostream &file, std::uint32_t value, int bytes)
{
    for (int i = 0; i < bytes; ++i) {
        file.put(static_cast<char>(value >> (8 * i) & 0xffU));
    }
}

void writeWave(std::ostream &file, const std::vector<std::int16_t> &samples)
{
    constexpr std::uint32_t bytesPerSample = 2;
    const auto dataSize = static_cast<std::uint32_t>(samples.size()) * bytesPerSample;

    file << "RIFF";
    put(file, 36 + dataSize, 4);
    file << "WAVEfmt ";
    put(file, 16, 4);                                // size of this chunk
    put(file, 1, 2);                                 // PCM
    put(file, 1, 2);                                 // mono
    put(file, samplesPerSecond, 4);                  //
    put(file, samplesPerSecond * bytesPerSample, 4); // bytes per second
    put(file, bytesPerSample, 2);                    // bytes per frame
    put(file, 8 * bytesPerSample, 2);                // bits per sample
    file << "data";
    put(file, dataSize, 4);
    for (const std::int16_t sample : samples) {
        put(file, static_cast<std::uint16_t>(sample), 2);
    }
}

} // namespace

int main(int argc, char **argv)
{
    if (argc != 2) {
        std::cerr << "usage: makeclick FILE\n";
        return 2;
    }
    std::ofstream file(argv[1], std::ios::binary);
    writeWave(file, click());
    file.close();
    if (!file) {
        std::cerr << "makeclick: cannot write " << argv[1] << '\n';
        return 1;
    }
    return 0;
}
