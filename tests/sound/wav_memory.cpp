// The memory that loading a WAV file takes, and loading without enough of it.
// SPDX-License-Identifier: GPL-3.0-or-later
#include "test_wav.h"

#include <QtTest>

#include <atomic>
#include <cstdlib>
#include <limits>
#include <new>

#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#if defined(__SANITIZE_ADDRESS__)
#define BUILT_WITH_ADDRESS_SANITIZER 1
#else
#define BUILT_WITH_ADDRESS_SANITIZER 0
#endif

using testsupport::wavHeader;
using testsupport::wavWithData;
using testsupport::wavWithSamples;

namespace {

std::atomic<std::size_t> largestAllocation{0};
std::atomic<std::size_t> allocationLimit{std::numeric_limits<std::size_t>::max()};

/// Watches the sizes of allocations, and lets larger ones than the limit fail, while it lives.
class AllocationWatch {
public:
    explicit AllocationWatch(std::size_t limit = std::numeric_limits<std::size_t>::max()) {
        largestAllocation = 0;
        allocationLimit = limit;
    }
    ~AllocationWatch() { allocationLimit = std::numeric_limits<std::size_t>::max(); }
    AllocationWatch(const AllocationWatch&) = delete;
    AllocationWatch& operator=(const AllocationWatch&) = delete;
    AllocationWatch(AllocationWatch&&) = delete;
    AllocationWatch& operator=(AllocationWatch&&) = delete;
};

constexpr std::size_t mebibyte = std::size_t{1} << 20U;

} // namespace

// For the whole test program, so that the class under test is seen whatever it calls.
void* operator new(std::size_t size) {
    if (size > allocationLimit)
        throw std::bad_alloc();
    if (size > largestAllocation)
        largestAllocation = size;
    if (void* memory = std::malloc(size == 0 ? 1 : size))
        return memory;
    throw std::bad_alloc();
}

void operator delete(void* memory) noexcept {
    std::free(memory);
}

void operator delete(void* memory, std::size_t /*size*/) noexcept {
    std::free(memory);
}

void TestWavMemory::hugeDeclaredSizeCostsWhatTheFileHolds_data() {
    QTest::addColumn<int>("held");
    QTest::addColumn<quint32>("limitMebibytes");
    QTest::newRow("empty data") << 0 << 1U;
    QTest::newRow("small file") << 1000 << 1U;
    QTest::newRow("file of five pieces") << 5 * 1048576 << 10U;
}

void TestWavMemory::hugeDeclaredSizeCostsWhatTheFileHolds() {
    QFETCH(int, held);
    QFETCH(quint32, limitMebibytes);
    const WavFolder folder;
    for (const quint16 bits : {quint16{8}, quint16{16}, quint16{24}}) {
        const std::string path =
            folder.write(wavHeader({40000, 1, bits}, 0xFFFFFFFF) + QByteArray(held, 'x'));
        const AllocationWatch watch;
        CWav wav;
        QVERIFY(wav.LoadWav(path));
        QVERIFY2(largestAllocation <= limitMebibytes * mebibyte,
                 qPrintable(QString::number(largestAllocation)));
        QCOMPARE(wav.rawData.size(), static_cast<std::size_t>(held));
        QCOMPARE(wav.samples.capacity(), std::size_t{0});
    }
}

void TestWavMemory::hugeDeclaredSizeFitsIntoLittleMemory() {
    if (BUILT_WITH_ADDRESS_SANITIZER)
        QSKIP("a limit of the address space leaves the sanitizer none");
    const WavFolder folder;
    const std::string path = folder.write(wavHeader({}, 0xFFFFFFFF) + QByteArray(1000, 'x'));
    const pid_t child = ::fork();
    if (child == 0) {
        const rlim_t pages = testsupport::readBytes("/proc/self/statm").split(' ')[0].toULong();
        const rlim_t limit = pages * static_cast<rlim_t>(::sysconf(_SC_PAGESIZE)) + 16 * mebibyte;
        const rlimit limits{limit, limit};
        CWav wav;
        const bool isRight = ::setrlimit(RLIMIT_AS, &limits) == 0 && wav.LoadWav(path) &&
                             wav.bytesRead == 1000 && wav.samples.empty();
        ::_exit(isRight ? 42 : 1);
    }
    int status = 0;
    QCOMPARE(::waitpid(child, &status, 0), child);
    QVERIFY(WIFEXITED(status));
    QCOMPARE(WEXITSTATUS(status), 42);
}

void TestWavMemory::memoryEndingWhileReadingIsAShortRead() {
    const WavFolder folder;
    const std::string path = folder.write(wavWithData({40000, 1, 8}, QByteArray(3000000, 'x')));
    CWav wav;
    QVERIFY(wav.LoadWav(folder.write(wavWithSamples({}, {1, 2}), "other.wav")));
    {
        const AllocationWatch watch(2 * mebibyte);
        QCOMPARE(errorsOf([&] { QVERIFY(wav.LoadWav(path)); }), std::string());
    }
    QVERIFY(wav.bytesRead < 3000000);
    QCOMPARE(wav.rawData.size(), static_cast<std::size_t>(wav.bytesRead));
    QCOMPARE(rawBytes(wav), QByteArray(rawBytes(wav).size(), 'x'));
    QCOMPARE(wav.numberOfSamples, 3000000U);
    QVERIFY(wav.samples.empty());
    QVERIFY(wav.samplePointer == nullptr);
    QVERIFY(wav.LoadWav(path));
    QCOMPARE(wav.samples.size(), std::size_t{3000000});
}

void TestWavMemory::memoryEndingWhileConvertingLeavesNoSamples() {
    const WavFolder folder;
    for (const quint16 bits : {quint16{8}, quint16{16}, quint16{24}}) {
        const std::string path =
            folder.write(wavWithData({40000, 1, bits}, QByteArray(3000000, 'x')));
        CWav wav;
        QVERIFY(wav.LoadWav(folder.write(wavWithSamples({}, {1, 2}), "other.wav")));
        {
            const AllocationWatch watch(5 * mebibyte);
            QCOMPARE(errorsOf([&] { QVERIFY(wav.LoadWav(path)); }), std::string());
        }
        QCOMPARE(wav.bytesRead, std::int64_t{3000000});
        QVERIFY(wav.samples.empty());
        QVERIFY(wav.samplePointer == nullptr);
        wav.ConvertData();
        QCOMPARE(wav.samples.size(), std::size_t{3000000U * 8U / bits});
        QVERIFY(wav.samplePointer == wav.samples.data());
    }
}
