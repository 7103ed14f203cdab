// The memory pages of long sounds.
// SPDX-License-Identifier: GPL-3.0-or-later
#include "test_target.h"

#include "base/HugePages.h"

#include <QFile>
#include <QTest>

#include <cstdint>
#include <vector>

#include <sys/mman.h>

namespace {

constexpr std::size_t hugePage = std::size_t{1} << 21U;

std::uintptr_t addressOf(const void* memory) {
    return reinterpret_cast<std::uintptr_t>(memory);
}

/// Returns whether huge pages were requested for an address (flag "hg" of its mapping, see
/// proc(5)).
bool isOnHugePages(std::uintptr_t address) {
    QFile file("/proc/self/smaps");
    if (!file.open(QIODevice::ReadOnly))
        return false;
    bool isInside = false;
    for (const QByteArray& line : file.readAll().split('\n')) {
        const QByteArray first = line.split(' ').first();
        const QList<QByteArray> ends = first.split('-');
        if (ends.size() == 2)
            isInside = address >= ends[0].toULongLong(nullptr, 16) &&
                       address < ends[1].toULongLong(nullptr, 16);
        else if (isInside && first == "VmFlags:")
            return line.split(' ').contains("hg");
    }
    return false;
}

/// Newly mapped memory, page by page.
class Memory {
public:
    explicit Memory(std::size_t bytes)
        : size(bytes),
          begin(mmap(nullptr, bytes, PROT_READ | PROT_WRITE, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0)) {}
    ~Memory() { munmap(begin, size); }
    Memory(const Memory&) = delete;
    Memory(Memory&&) = delete;
    Memory& operator=(const Memory&) = delete;
    Memory& operator=(Memory&&) = delete;

    /// The address of the first huge page.
    [[nodiscard]] char* firstBoundary() const {
        return static_cast<char*>(begin) + (hugePage - addressOf(begin) % hugePage) % hugePage;
    }

    const std::size_t size;
    void* const begin;
};

bool systemHasHugePages() {
    const Memory memory(2 * hugePage);
    return madvise(memory.begin, memory.size, MADV_HUGEPAGE) == 0;
}

} // namespace

void TestTargetHugePages::initTestCase() {
    if (!systemHasHugePages())
        QSKIP("This system has no huge pages to ask for.");
}

void TestTargetHugePages::onlyWholeHugePagesAreRequested() {
    const Memory memory(8 * hugePage);
    char* const boundary = memory.firstBoundary();
    constexpr std::size_t some = 4096;
    // From just after one boundary to just before another, with three huge pages in between.
    preferHugePages(boundary + some, 5 * hugePage - 2 * some);
    QVERIFY(!isOnHugePages(addressOf(boundary + some)));
    QVERIFY(!isOnHugePages(addressOf(boundary + hugePage - 1)));
    QVERIFY(isOnHugePages(addressOf(boundary + hugePage)));
    QVERIFY(isOnHugePages(addressOf(boundary + 4 * hugePage - 1)));
    QVERIFY(!isOnHugePages(addressOf(boundary + 4 * hugePage)));
}

void TestTargetHugePages::shortMemoryGetsNoHugePages() {
    const Memory memory(4 * hugePage);
    char* const boundary = memory.firstBoundary();
    preferHugePages(boundary + 1, hugePage - 1);
    preferHugePages(nullptr, 0);
    QVERIFY(!isOnHugePages(addressOf(boundary)));
    QVERIFY(!isOnHugePages(addressOf(boundary + hugePage)));
}

void TestTargetHugePages::reservedVectorIsEmpty() {
    QVector<double> few{1, 2, 3};
    reserveOnHugePages(few, 2);
    QVERIFY(few.isEmpty());

    std::vector<double> many(5, 1.0);
    constexpr std::size_t count = 8 * hugePage / sizeof(double);
    reserveOnHugePages(many, count);
    QVERIFY(many.empty());
    QVERIFY(many.capacity() >= count);
    QVERIFY(isOnHugePages(addressOf(many.data()) + 4 * hugePage));

    const double* const memory = many.data();
    many.resize(3);
    reserveOnHugePages(many, count);
    QVERIFY(many.empty());
    QCOMPARE(many.data(), memory);
    reserveOnHugePages(many, 2);
    QVERIFY(many.capacity() < count);
}

void TestTargetHugePages::longTargetUsesHugePages() {
    // Two minutes: 38 MB of samples.
    const QString path = fixture->write("long.wav", QVector<int>(120 * 40000, 1234));
    fixture->prepare(path);
    const auto& window = fixture->window();
    for (const QVector<double>* vector :
         {&window.targetSamples, &window.fftFrequencies, &window.fftAmplitudes, &window.fftPhases})
        QVERIFY(isOnHugePages(addressOf(vector->constData() + vector->size() / 2)));
    QVERIFY(isOnHugePages(addressOf(window.wav.samples.data() + window.wav.samples.size() / 2)));
    QVERIFY(isOnHugePages(addressOf(window.wav.rawData.data() + window.wav.rawData.size() / 2)));

    // A short target releases all of it.
    fixture->prepare(fixture->write("short.wav", QVector<int>(400, 1234)));
    for (const QVector<double>* vector :
         {&window.targetSamples, &window.fftFrequencies, &window.fftAmplitudes, &window.fftPhases})
        QCOMPARE(vector->capacity(), vector->size());
    QCOMPARE(window.pointsFFT.capacity(), window.pointsFFT.size());
}
