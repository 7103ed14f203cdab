// Every code path of the transform, with and without vectors, against the plain passes to the bit.
// SPDX-License-Identifier: GPL-3.0-or-later
#include "test_fft.h"

#include "inputs.h"
#include "support/OpenFft.h"
#include "support/PlainFftPasses.h"

#include <QTest>

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <limits>
#include <vector>

using namespace fftinputs;
using testsupport::OpenFft;

namespace {

struct CodePath {
    const char* name;
    int minimumBits; ///< shorter transforms do not take this path
    void (*transform)(const OpenFft& fft, double* f, const double* x);
};

bool hasAvx2() {
    return __builtin_cpu_supports("avx2");
}

/// Those that this machine supports.
std::vector<CodePath> codePaths() {
    std::vector<CodePath> all = {
        {"do_fft", 0, [](const OpenFft& fft, double* f, const double* x) { fft.do_fft(f, x); }},
        {"pass by pass", 3,
         [](const OpenFft& fft, double* f, const double* x) { fft.compute_fft_general(f, x); }},
        {"two pairs", 3,
         [](const OpenFft& fft, double* f, const double* x) {
             fftreal::transform_in_pairs(fft.work(f, x));
         }},
    };
    if (hasAvx2())
        all.push_back({"quadruples", 3, [](const OpenFft& fft, double* f, const double* x) {
                           fftreal::transform_in_quadruples(fft.work(f, x));
                       }});
    return all;
}

std::vector<std::vector<double>> inputs(int bits) {
    const std::size_t length = std::size_t{1} << bits;
    std::vector<std::vector<double>> all = {
        noise(length),          scaled(noise(length), 1e-300), scaled(noise(length), 1e290),
        mixedExponents(length), signedZeros(length),
    };
    constexpr int longTransform = 18; // where each input takes seconds without optimisation
    if (bits < longTransform) {
        all.push_back(scaled(noise(length), 1e-310)); // denormal numbers
        all.push_back(scaled(noise(length), 1e-150));
        all.push_back(scaled(noise(length), 1e150));
        all.emplace_back(length, -0.0);
        all.push_back(toneBetweenBins(length));
        all.push_back(delayedImpulse(length));
    }
    return all;
}

} // namespace

void TestFftCodePaths::everyCodePathEqualsThePlainPasses_data() {
    QTest::addColumn<int>("bits");
    for (int bits = 0; bits <= 22; ++bits)
        QTest::addRow("2^%d", bits) << bits;
}

void TestFftCodePaths::everyCodePathEqualsThePlainPasses() {
    QFETCH(int, bits);
    const std::size_t length = std::size_t{1} << bits;
    const OpenFft fft(static_cast<std::int64_t>(length));
    const plainfft::Transform plain(bits);
    const double mark = -77.0;
    std::vector<double> framed;
    for (const std::vector<double>& input : inputs(bits)) {
        const std::vector<double> expected = plain(input);
        // Offset by one double, so that nothing is better aligned than a double.
        std::vector<double> framedInput = {mark};
        framedInput.insert(framedInput.end(), input.begin(), input.end());
        for (const CodePath& path : codePaths()) {
            if (bits < path.minimumBits)
                continue;
            framed.assign(length + 2, std::numeric_limits<double>::quiet_NaN());
            framed.front() = mark;
            framed.back() = mark;
            path.transform(fft, framed.data() + 1, framedInput.data() + 1);
            QVERIFY2(std::memcmp(framed.data() + 1, expected.data(), length * sizeof(double)) == 0,
                     path.name);
            QCOMPARE(framed.front(), mark);
            QCOMPARE(framed.back(), mark);
        }
        QVERIFY(std::memcmp(framedInput.data() + 1, input.data(), length * sizeof(double)) == 0);
    }
}

void TestFftCodePaths::initTestCase() {
    if (!hasAvx2())
        qWarning("This machine has no AVX2: the transform by quadruples is not compared.");
}
