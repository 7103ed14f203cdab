// Tables, oscillators, array and memory of the real FFT.
// SPDX-License-Identifier: GPL-3.0-or-later
#include "test_fft.h"

#include "support/Allocations.h"
#include "support/OpenFft.h"
#include "support/TestTable.h"
#include "support/TrigonometricCalls.h"

#include <QTest>

#include <array>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <limits>
#include <string>
#include <type_traits>
#include <vector>

using testsupport::Allocations;
using testsupport::allocationsOf;
using testsupport::OpenFft;

namespace {

/// An element with a destructor and memory of its own; the elements are counted.
struct Element {
    Element() { ++count; }
    ~Element() { --count; }
    Q_DISABLE_COPY_MOVE(Element)

    inline static std::int64_t count = 0;
    std::string text = "longer than what a string holds without memory of its own";
};

struct alignas(256) WideElement {
    double value;
};

} // namespace

void TestFftParts::interfaceHasItsTypes() {
    static_assert(std::has_virtual_destructor_v<FFTReal<double>>);
    static_assert(!std::is_copy_constructible_v<FFTReal<double>>);
    static_assert(!std::is_copy_assignable_v<FFTReal<double>>);
    static_assert(!std::is_copy_constructible_v<DynArray<double>>);
    static_assert(!std::is_copy_assignable_v<DynArray<double>>);
    static_assert(std::is_constructible_v<FFTReal<double>, std::int64_t>);
    static_assert(std::is_same_v<decltype(&FFTReal<double>::do_fft),
                                 void (FFTReal<double>::*)(double*, const double*) const>);
    static_assert(sizeof(RotationOsc) == 4 * sizeof(double));
    static_assert(sizeof(DynArray<double>) == sizeof(double*) + sizeof(std::int64_t));
    QCOMPARE(int{FFTReal<double>::MAX_BIT_DEPTH}, 30);
    QCOMPARE(int{FFTReal<double>::TRIGO_BD_LIMIT}, 12);
}

void TestFftParts::powersOfTwoAreRecognised() {
    for (int bit = 0; bit < 63; ++bit)
        QVERIFY(FFTReal_is_pow2(std::int64_t{1} << bit));
    for (int bit = 2; bit < 63; ++bit) {
        QVERIFY(!FFTReal_is_pow2((std::int64_t{1} << bit) - 1));
        QVERIFY(!FFTReal_is_pow2((std::int64_t{1} << bit) + 1));
    }
    for (int bit = 0; bit < 61; ++bit)
        QVERIFY(!FFTReal_is_pow2(std::int64_t{3} << bit));
    QVERIFY(!FFTReal_is_pow2(std::numeric_limits<std::int64_t>::max()));
}

void TestFftParts::sizesOfTheTables_data() {
    const auto row = testsupport::columns<int, qint64, qint64>("bits", "cosines", "oscillators");
    row("1", 0, 0, 0);
    row("2", 1, 0, 0);
    row("4", 2, 0, 0);
    row("8: pass 3 needs no table", 3, 0, 0);
    row("16: the first level", 4, 4, 0);
    row("32", 5, 12, 0);
    row("4096: the last without oscillators", 12, 2044, 0);
    row("8192: an oscillator that no pass reads", 13, 4092, 1);
    row("16384", 14, 8188, 2);
    row("2^20", 20, 524284, 8);
}

void TestFftParts::sizesOfTheTables() {
    QFETCH(int, bits);
    QFETCH(qint64, cosines);
    QFETCH(qint64, oscillators);
    const qint64 length = qint64{1} << bits;
    const OpenFft fft(length);
    QCOMPARE(qint64{fft._fft_len}, length);
    QCOMPARE(int{fft._nbr_bits}, bits);
    QCOMPARE(qint64{fft._bitrev_table.size()}, length);
    QCOMPARE(qint64{fft._cos_table.size()}, cosines);
    QCOMPARE(qint64{fft._work_buf.size()}, length);
    QCOMPARE(qint64{fft._rot_osc.size()}, oscillators);
    QVERIFY(fft.use_buffer() == &fft._work_buf[0]);
}

void TestFftParts::cosineLevelsAreContiguous() {
    const double pi = 3.14159265358979323846;
    const OpenFft fft(1 << 15);
    std::int64_t index = 0;
    for (int level = 3; level <= 14; ++level)
        for (int i = 0; i < 1 << (level - 1); ++i, ++index)
            QVERIFY(fft._cos_table[index] == std::cos(i * (pi / (1 << level))));
    QCOMPARE(qint64{index}, qint64{fft._cos_table.size()});
}

void TestFftParts::oscillatorsStepByTheUnitOfTheirPass() {
    const double pi = 3.14159265358979323846;
    OpenFft fft(1 << 18);
    QCOMPARE(qint64{fft._rot_osc.size()}, qint64{6});
    for (int j = 0; j < 6; ++j) {
        RotationOsc oscillator = fft._rot_osc[j];
        QVERIFY(oscillator.cos_value() == 1);
        QVERIFY(oscillator.sin_value() == 0);
        oscillator.advance();
        const double angle = pi / 2 / (4096 << j);
        QVERIFY(oscillator.cos_value() == std::cos(angle));
        QVERIFY(oscillator.sin_value() == std::sin(angle));
    }
}

void TestFftParts::oscillatorTurnsAndResets() {
    RotationOsc oscillator;
    const auto isAt = [&](double cosine, double sine) {
        return oscillator.cos_value() == cosine && oscillator.sin_value() == sine;
    };
    oscillator.advance(); // by nothing, as long as no angle is set
    QVERIFY(isAt(1, 0));
    const double c = std::cos(0.3);
    const double s = std::sin(0.3);
    oscillator.set_angle_step(0.3);
    QVERIFY(isAt(1, 0));
    for (int round = 0; round < 2; ++round) { // the step outlives the reset
        oscillator.advance();
        QVERIFY(isAt(c, s));
        oscillator.advance();
        QVERIFY(isAt(c * c - s * s, c * s + s * c));
        oscillator.reset();
        QVERIFY(isAt(1, 0));
    }
}

void TestFftParts::arrayKeepsWhatIsWritten() {
    QCOMPARE(qint64{DynArray<double>().size()}, qint64{0});
    QCOMPARE(qint64{DynArray<double>(0).size()}, qint64{0});
    DynArray<int> array(3);
    QCOMPARE(qint64{array.size()}, qint64{3});
    for (int i = 0; i < 3; ++i)
        array[i] = 10 + i;
    const DynArray<int>& constant = array;
    for (int i = 0; i < 3; ++i)
        QCOMPARE(constant[i], 10 + i);
    QVERIFY(&constant[2] == &array[0] + 2);
}

void TestFftParts::resizingLosesContentsAndZeroChangesNothing() {
    DynArray<RotationOsc> array(5);
    array[0].set_angle_step(1.0);
    const RotationOsc* const old = &array[0];

    // The new array is allocated before the old one is freed, so their addresses differ.
    array.resize(5);
    QCOMPARE(qint64{array.size()}, qint64{5});
    QVERIFY(&array[0] != old);
    array[0].advance();
    QVERIFY(array[0].sin_value() == 0); // a fresh element, not the one whose step was set

    const RotationOsc* const kept = &array[0];
    array.resize(0);
    QCOMPARE(qint64{array.size()}, qint64{5});
    QVERIFY(&array[0] == kept);
}

void TestFftParts::elementsAreDestroyedWithTheirArray() {
    for (const std::int64_t size : {1, 100, 1000, 100000}) {
        {
            DynArray<Element> array(size);
            QCOMPARE(qint64{Element::count}, qint64{size});
            array[size - 1].text += '.';
            array.resize(size + 1);
            QCOMPARE(qint64{Element::count}, qint64{size + 1});
        }
        QCOMPARE(qint64{Element::count}, qint64{0});
    }
}

void TestFftParts::elementsAreAlignedForTheirType() {
    for (const std::int64_t size : {1, 3, 8, 100, 10000}) {
        const DynArray<WideElement> array(size);
        QCOMPARE(reinterpret_cast<std::uintptr_t>(&array[0]) % 256, std::uintptr_t{0});
    }
}

void TestFftParts::longArraysAreAlignedToCacheLines() {
    // Several of each, because one could be aligned by chance.
    for (const std::int64_t size : {256, 1000, 4096, 1 << 17, 1 << 18, 300000}) {
        std::array<DynArray<double>, 5> arrays;
        for (DynArray<double>& array : arrays) {
            array.resize(size);
            QCOMPARE(reinterpret_cast<std::uintptr_t>(&array[0]) % 64, std::uintptr_t{0});
        }
    }
}

void TestFftParts::transformAllocatesNothing() {
    for (std::int64_t length = 1; length <= 1 << 18; length *= 2) {
        const FFTReal<double> fft(length);
        const std::vector<double> x(static_cast<std::size_t>(length), 0.5);
        std::vector<double> f(x.size());
        const Allocations made = allocationsOf([&] { fft.do_fft(f.data(), x.data()); });
        QCOMPARE(made.count, std::size_t{0});
        QVERIFY(made.freed.empty());
    }
}

void TestFftParts::transformCallsNoSineAndNoCosine() {
    for (std::int64_t length = 1; length <= 1 << 18; length *= 2) {
        const long before = testsupport::trigonometricCalls();
        const FFTReal<double> fft(length);
        const std::vector<double> x(static_cast<std::size_t>(length), 0.5);
        std::vector<double> f(x.size());
        const long built = testsupport::trigonometricCalls();
        // The tables need calls: this verifies that calls are counted.
        QCOMPARE(built > before, length > 8);
        fft.do_fft(f.data(), x.data());
        QCOMPARE(testsupport::trigonometricCalls(), built);
    }
}

void TestFftParts::memoryMatchesTheTables() {
    for (int bits = 0; bits <= 19; ++bits) { // from 18 on, on large pages
        const Allocations made =
            allocationsOf([bits] { const FFTReal<double> fft(std::int64_t{1} << bits); });
        const std::size_t length = std::size_t{1} << bits;
        const std::size_t cosines = bits > 3 ? length / 2 - 4 : 0;
        const std::size_t oscillators = bits > 12 ? static_cast<std::size_t>(bits) - 12 : 0;
        QCOMPARE(made.bytes, 8 * length + 8 * length + 8 * cosines + 32 * oscillators);
        QCOMPARE(made.freed.size(), made.count);
    }
}

void TestFftParts::arraysAreFreedInOrder() {
    auto* const fft = new OpenFft(1 << 14);
    const std::vector<const void*> expected = {&fft->_rot_osc[0], fft->use_buffer(),
                                               &fft->_cos_table[0], &fft->_bitrev_table[0], fft};
    FFTReal<double>* const base = fft;
    QVERIFY(allocationsOf([base] { delete base; }).freed == expected);
}
