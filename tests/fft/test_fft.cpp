// Known transforms of the real FFT, and the main function of its tests.
// SPDX-License-Identifier: GPL-3.0-or-later
#include "test_fft.h"

#include "inputs.h"
#include "support/TestMain.h"
#include "support/TestTable.h"

using Values = std::vector<double>;

void TestFftValues::knownTransforms_data() {
    const auto row = testsupport::columns<Values, Values>("x", "expected");
    row("one value is copied", {-0.3}, {-0.3});
    row("two values: sum and difference", {3, 5}, {8, -2});
    row("four values", {1, 2, 4, 8}, {15, -3, -5, -6});
    row("impulse", {1, 0, 0, 0, 0, 0, 0, 0}, {1, 1, 1, 1, 1, 0, 0, 0});
    row("delayed impulse: the imaginary slot is positive", {0, 1, 0, 0}, {1, 0, -1, 1});
    row("cosine", {1, 0, -1, 0}, {0, 2, 0, 0});
    row("sine: the usual transform has -2", {0, 1, 0, -1}, {0, 0, 0, 2});
    row("1 all the time, and 2 up and down", {3, -1, 3, -1, 3, -1, 3, -1},
        {8, 0, 0, 0, 16, 0, 0, 0});
}

void TestFftValues::knownTransforms() {
    QFETCH(Values, x);
    QTEST(transformed(x), "expected");
}

void TestFftValues::oneObjectServesManyTransforms() {
    const std::size_t length = 32768;
    const FFTReal<double> fft(length);
    const Values first = fftinputs::noise(length);
    Values second = first;
    second[0] = 1e6;
    const Values firstAlone = transformed(first);
    const Values secondAlone = transformed(second);
    QVERIFY(firstAlone != secondAlone);

    Values f(length);
    for (int round = 0; round < 3; ++round) {
        fft.do_fft(f.data(), first.data());
        QVERIFY(f == firstAlone);
        fft.do_fft(f.data(), second.data());
        QVERIFY(f == secondAlone);
    }
}

int main(int argc, char** argv) {
    return testsupport::runAll<TestFftValues, TestFftParts, TestFftCodePaths, TestFftAccuracy>(
        argc, argv);
}
