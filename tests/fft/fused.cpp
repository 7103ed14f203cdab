// The real FFT gives the same bits where the compiler may fuse operations.
// SPDX-License-Identifier: GPL-3.0-or-later
#include "fused.h"

#include "inputs.h"
#include "support/PlainFftPasses.h"
#include "support/TestMain.h"

#include <QObject>
#include <QTest>

#include <cstddef>
#include <cstring>
#include <vector>

class TestFftFused : public QObject {
    Q_OBJECT

private slots:
    void compilerFusesOrdinaryCode();
    void theTransformIsNotFused_data();
    void theTransformIsNotFused();
};

namespace {

bool canFuse() {
    return __builtin_cpu_supports("fma");
}

} // namespace

void TestFftFused::compilerFusesOrdinaryCode() {
    if (!canFuse())
        QSKIP("This machine has no fused multiply-add.");
    // (1 + e)(1 - e) is 1 - e^2, which is 1 once it is rounded.
    const double e = 0x1p-40;
    QCOMPARE(multipliedAndAdded(1 + e, 1 - e, -1.0), -e * e);
}

void TestFftFused::theTransformIsNotFused_data() {
    QTest::addColumn<int>("bits");
    for (int bits = 0; bits <= 16; ++bits)
        QTest::addRow("2^%d", bits) << bits;
}

void TestFftFused::theTransformIsNotFused() {
    if (!canFuse())
        QSKIP("This machine has no fused multiply-add.");
    QFETCH(int, bits);
    const std::vector<double> x = fftinputs::noise(std::size_t{1} << bits);
    const std::vector<double> expected = plainfft::Transform(bits)(x);
    for (const TransformInto transform : {transformedFast, transformedPassByPass}) {
        std::vector<double> f(x.size());
        transform(bits, f.data(), x.data());
        QVERIFY(std::memcmp(f.data(), expected.data(), f.size() * sizeof(double)) == 0);
    }
}

int main(int argc, char** argv) {
    return testsupport::runAll<TestFftFused>(argc, argv);
}

#include "fused.moc"
