// How the real FFT ends the program when it is misused. Built twice, with NDEBUG and without.
// SPDX-License-Identifier: GPL-3.0-or-later
#include "support/OpenFft.h"
#include "support/TestMain.h"
#include "support/TestTable.h"

#include <QByteArray>
#include <QObject>
#include <QVector>

#include <array>
#include <csignal>
#include <cstdint>
#include <functional>
#include <limits>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>
#include <vector>

#if !defined(EXPECT_NDEBUG) || EXPECT_NDEBUG != defined(NDEBUG)
#error "This program is not built as its name says."
#endif

using testsupport::OpenFft;

namespace {

using Action = std::function<void()>;

/// How a child process ended.
struct Ending {
    int status = 0;      ///< as waitpid() reports it
    QByteArray reported; ///< all of its standard error
};

/// Runs `action` in a child process without a core file. Should the action return, the child ends
/// with status 0; should it hang, with SIGALRM.
Ending endingOf(const Action& action) {
    std::array<int, 2> ends = {-1, -1}; // to read from, to write to
    if (pipe(ends.data()) != 0)
        qFatal("no pipe");
    const pid_t child = fork();
    if (child < 0)
        qFatal("no child process");
    if (child == 0) {
        const rlimit none = {0, 0};
        setrlimit(RLIMIT_CORE, &none);
        // QtTest catches fatal signals to report them; here they must end the child.
        signal(SIGABRT, SIG_DFL);
        signal(SIGALRM, SIG_DFL);
        alarm(20);
        dup2(ends.back(), STDERR_FILENO);
        close(ends.front());
        close(ends.back());
        action();
        _exit(0);
    }
    close(ends.back());
    Ending ending;
    std::array<char, 512> buffer{};
    for (ssize_t count = 0; (count = read(ends.front(), buffer.data(), buffer.size())) > 0;)
        ending.reported.append(buffer.data(), static_cast<int>(count));
    close(ends.front());
    waitpid(child, &ending.status, 0);
    return ending;
}

/// 2^14 values: the shortest length that has passes of every kind.
struct Fixture {
    OpenFft fft{1 << 14};
    std::vector<double> first = std::vector<double>(1 << 14);
    std::vector<double> second = std::vector<double>(1 << 14);
    double* f = first.data();
    double* x = second.data();
    double* null = nullptr;
    double* buffer = fft.use_buffer();
};

struct Misuse {
    const char* name;
    Action action;
    const char* text;
    const char* function;
    const char* file;
};

/// One case for each kind of invalid length.
QVector<Misuse> lengths() {
    const char* const negative = "size >= 0";
    const char* const zero = "x > 0";
    const char* const uneven = "FFTReal_is_pow2 (length)";
    const char* const tooLong = "_nbr_bits <= MAX_BIT_DEPTH";
    const auto of = [](std::int64_t length) { return [length] { OpenFft fft(length); }; };
    const auto minimum = std::numeric_limits<std::int64_t>::min();
    const auto maximum = std::numeric_limits<std::int64_t>::max();
    const std::int64_t one = 1;
    const char* const header = "FFTReal.h";
    return {
        {"length -1", of(-1), negative, "FFTReal", header},
        {"length -8, whose size is a power of two", of(-8), negative, "FFTReal", header},
        {"the minimum length", of(minimum), negative, "FFTReal", header},
        {"length 0", of(0), zero, "FFTReal_is_pow2", header},
        {"length 3", of(3), uneven, "FFTReal", header},
        {"length 6", of(6), uneven, "FFTReal", header},
        {"length 4095", of(4095), uneven, "FFTReal", header},
        {"length 2^30 - 1", of((one << 30) - 1), uneven, "FFTReal", header},
        {"length 2^30 + 1", of((one << 30) + 1), uneven, "FFTReal", header},
        {"length 2^31 + 2^30", of((one << 31) + (one << 30)), uneven, "FFTReal", header},
        {"length 2^32 + 1, of which 32 bits are 1", of((one << 32) + 1), uneven, "FFTReal", header},
        {"the maximum length", of(maximum), uneven, "FFTReal", header},
        {"length 2^31", of(one << 31), tooLong, "FFTReal", header},
        {"length 2^32, of which 32 bits are 0", of(one << 32), tooLong, "FFTReal", header},
        {"length 2^40", of(one << 40), tooLong, "FFTReal", header},
        {"length 2^62", of(one << 62), tooLong, "FFTReal", header},
        {"power of two below 1", [] { (void)FFTReal_is_pow2(-8); }, zero, "FFTReal_is_pow2",
         header},
    };
}

/// The five checks of the arrays, in both functions, and their order where two are violated.
QVector<Misuse> arrays() {
    using Door = void (OpenFft::*)(double*, const double*) const;
    struct NamedDoor {
        const char* name;
        Door door;
    };
    QVector<Misuse> cases;
    for (const NamedDoor& named :
         {NamedDoor{"do_fft", &OpenFft::do_fft},
          NamedDoor{"compute_fft_general", &OpenFft::compute_fft_general}}) {
        const auto with = [door = named.door](double* Fixture::*f, double* Fixture::*x) -> Action {
            return [=] {
                Fixture fixture;
                (fixture.fft.*door)(fixture.*f, fixture.*x);
            };
        };
        const auto add = [&](const char* name, const Action& action, const char* text) {
            cases.append({name, action, text, named.name, "FFTReal.h"});
        };
        add("output is null", with(&Fixture::null, &Fixture::x), "f != 0");
        add("output is the buffer", with(&Fixture::buffer, &Fixture::x), "f != use_buffer ()");
        add("input is null", with(&Fixture::f, &Fixture::null), "x != 0");
        add("input is the buffer", with(&Fixture::f, &Fixture::buffer), "x != use_buffer ()");
        add("input is the output", with(&Fixture::x, &Fixture::x), "x != f");
        add("both are null", with(&Fixture::null, &Fixture::null), "f != 0");
        add("both are the buffer", with(&Fixture::buffer, &Fixture::buffer), "f != use_buffer ()");
    }
    return cases;
}

/// The checks of the single passes.
QVector<Misuse> passes() {
    QVector<Misuse> cases;
    const auto add = [&](const char* name, const char* text, const char* function,
                         const std::function<void(Fixture&)>& misuse) {
        const Action action = [misuse] {
            Fixture fixture;
            misuse(fixture);
        };
        cases.append({name, action, text, function, "FFTReal.h"});
    };
    const char* const firstPasses = "compute_direct_pass_1_2";
    add("to null", "df != 0", firstPasses,
        [](Fixture& at) { at.fft.compute_direct_pass_1_2(nullptr, at.x); });
    add("in place", "df != x", firstPasses,
        [](Fixture& at) { at.fft.compute_direct_pass_1_2(at.x, at.x); });
    const char* const thirdPass = "compute_direct_pass_3";
    add("to null", "df != 0", thirdPass,
        [](Fixture& at) { at.fft.compute_direct_pass_3(nullptr, at.x); });
    add("from null", "sf != 0", thirdPass,
        [](Fixture& at) { at.fft.compute_direct_pass_3(at.f, nullptr); });
    add("in place", "df != sf", thirdPass,
        [](Fixture& at) { at.fft.compute_direct_pass_3(at.x, at.x); });

    struct LaterPass {
        const char* name;
        void (OpenFft::*run)(double* df, const double* sf, int pass) const;
        int first;
        const char* textBefore;
    };
    for (const LaterPass& pass :
         {LaterPass{"compute_direct_pass_n", &OpenFft::compute_direct_pass_n, 3, "pass >= 3"},
          LaterPass{"compute_direct_pass_n_lut", &OpenFft::compute_direct_pass_n_lut, 3,
                    "pass >= 3"},
          LaterPass{"compute_direct_pass_n_osc", &OpenFft::compute_direct_pass_n_osc, 13,
                    "pass > TRIGO_BD_LIMIT"}}) {
        const auto addWith = [&](const char* name, const char* text, double* Fixture::*df,
                                 double* Fixture::*sf, int number) {
            add(name, text, pass.name,
                [=](Fixture& at) { (at.fft.*pass.run)(at.*df, at.*sf, number); });
        };
        addWith("to null", "df != 0", &Fixture::null, &Fixture::x, pass.first);
        addWith("from null", "sf != 0", &Fixture::f, &Fixture::null, pass.first);
        addWith("in place", "df != sf", &Fixture::x, &Fixture::x, pass.first);
        addWith("one too low", pass.textBefore, &Fixture::f, &Fixture::x, pass.first - 1);
        addWith("the number of bits", "pass < _nbr_bits", &Fixture::f, &Fixture::x, 14);
    }
    return cases;
}

/// The checks of the array class.
QVector<Misuse> dynArray() {
    const char* const header = "DynArray.h";
    const auto readAt = [](std::int64_t size, std::int64_t position) -> Action {
        return [=] {
            const DynArray<double> array(size);
            (void)array[position];
        };
    };
    const auto writeAt = [](std::int64_t size, std::int64_t position) -> Action {
        return [=] {
            DynArray<double> array(size);
            array[position] = 1;
        };
    };
    const Action makeNegative = [] { const DynArray<double> array(-1); };
    const Action resizeToNegative = [] { DynArray<double>(2).resize(-1); };
    return {
        {"array of negative size", makeNegative, "size >= 0", "DynArray", header},
        {"resizing to a negative size", resizeToNegative, "size >= 0", "resize", header},
        {"reading before the first", readAt(3, -1), "pos >= 0", "operator[]", header},
        {"reading after the last", readAt(3, 3), "pos < _len", "operator[]", header},
        {"reading an empty array", readAt(0, 0), "pos < _len", "operator[]", header},
        {"writing before the first", writeAt(3, -1), "pos >= 0", "operator[]", header},
        {"writing after the last", writeAt(3, 3), "pos < _len", "operator[]", header},
        {"writing far after", writeAt(3, (std::int64_t{1} << 32) + 1), "pos < _len", "operator[]",
         header},
    };
}

} // namespace

Q_DECLARE_METATYPE(Action)

class TestFftAssertions : public QObject {
    Q_OBJECT

private slots:
    void misuseAbortsWithItsText_data();
    void misuseAbortsWithItsText();
    void properUseReportsNothing();
    void reportedLineIsThatOfTheAssertion();
};

void TestFftAssertions::misuseAbortsWithItsText_data() {
    const auto row = testsupport::columns<Action, QByteArray, QByteArray, QByteArray>(
        "action", "text", "function", "file");
    for (const QVector<Misuse>& cases : {lengths(), arrays(), passes(), dynArray()})
        for (const Misuse& misuse : cases)
            row(QByteArray(misuse.function) + ": " + misuse.name, misuse.action, misuse.text,
                misuse.function, misuse.file);
}

void TestFftAssertions::misuseAbortsWithItsText() {
    QFETCH(Action, action);
    QFETCH(QByteArray, text);
    QFETCH(QByteArray, function);
    QFETCH(QByteArray, file);
    const Ending ending = endingOf(action);
    QVERIFY2(WIFSIGNALED(ending.status), ending.reported.constData());
    QCOMPARE(WTERMSIG(ending.status), SIGABRT);

    // folder/File.h:LINE: function: Assertion `text' failed.
    QCOMPARE(ending.reported.count('\n'), 1);
    const QByteArray tail = ": " + function + ": Assertion `" + text + "' failed.\n";
    QVERIFY2(ending.reported.endsWith(tail), ending.reported.constData());
    const QByteArray place = ending.reported.chopped(tail.size());
    const int colon = place.lastIndexOf(':');
    QVERIFY2(place.left(colon).endsWith(file), place.constData());
    QVERIFY2(place.mid(colon + 1).toInt() > 0, place.constData());
}

void TestFftAssertions::properUseReportsNothing() {
    const Ending ending = endingOf([] {
        Fixture fixture;
        fixture.fft.do_fft(fixture.f, fixture.x);
        fixture.fft.compute_direct_pass_n(fixture.f, fixture.x, 13);
        for (std::int64_t length = 1; length <= 1 << 20; length *= 2)
            OpenFft fft(length);
    });
    QVERIFY(WIFEXITED(ending.status));
    QCOMPARE(WEXITSTATUS(ending.status), 0);
    QCOMPARE(ending.reported, QByteArray());
}

void TestFftAssertions::reportedLineIsThatOfTheAssertion() {
    const int line = __LINE__ + 1;
    const Ending ending = endingOf([] { FFTREAL_ASSERT(1 > 2, "one  >  two"); });
    QVERIFY(WIFSIGNALED(ending.status));
    const QByteArray place = QByteArray(__FILE__) + ":" + QByteArray::number(line) + ": ";
    QVERIFY2(ending.reported.startsWith(place), ending.reported.constData());
    QVERIFY2(ending.reported.endsWith(": Assertion `one  >  two' failed.\n"),
             ending.reported.constData());
}

int main(int argc, char** argv) {
    return testsupport::runAll<TestFftAssertions>(argc, argv);
}

#include "assertions.moc"
