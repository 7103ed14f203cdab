// The pages of memory behind long sounds.
// SPDX-License-Identifier: GPL-3.0-or-later
#include "test_target.h"

#include "sound/LargePages.h"

#include <QFile>
#include <QtTest>

#include <cstdint>
#include <vector>

#include <sys/mman.h>

namespace {

constexpr std::size_t largePage = std::size_t{1} << 21U;

std::uintptr_t addressOf(const void* memory) {
    return reinterpret_cast<std::uintptr_t>(memory);
}

/// Returns whether large pages have been asked for behind an address ("hg" among the flags of its
/// mapping, as proc(5) names them).
bool isOnLargePages(std::uintptr_t address) {
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

/// Fresh memory, page by page.
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

    /// Where the first large page begins.
    [[nodiscard]] char* firstBoundary() const {
        return static_cast<char*>(begin) + (largePage - addressOf(begin) % largePage) % largePage;
    }

    const std::size_t size;
    void* const begin;
};

bool systemHasLargePages() {
    const Memory memory(2 * largePage);
    return madvise(memory.begin, memory.size, MADV_HUGEPAGE) == 0;
}

} // namespace

void TestTargetLargePages::initTestCase() {
    if (!systemHasLargePages())
        QSKIP("This system has no large pages to ask for.");
}

void TestTargetLargePages::wholeLargePagesAreAskedForAndNoOthers() {
    const Memory memory(8 * largePage);
    char* const boundary = memory.firstBoundary();
    constexpr std::size_t some = 4096;
    // From just behind one boundary to just before another: three large pages lie between.
    preferLargePages(boundary + some, 5 * largePage - 2 * some);
    QVERIFY(!isOnLargePages(addressOf(boundary + some)));
    QVERIFY(!isOnLargePages(addressOf(boundary + largePage - 1)));
    QVERIFY(isOnLargePages(addressOf(boundary + largePage)));
    QVERIFY(isOnLargePages(addressOf(boundary + 4 * largePage - 1)));
    QVERIFY(!isOnLargePages(addressOf(boundary + 4 * largePage)));
}

void TestTargetLargePages::shortMemoryIsLeftAlone() {
    const Memory memory(4 * largePage);
    char* const boundary = memory.firstBoundary();
    preferLargePages(boundary + 1, largePage - 1);
    preferLargePages(nullptr, 0);
    QVERIFY(!isOnLargePages(addressOf(boundary)));
    QVERIFY(!isOnLargePages(addressOf(boundary + largePage)));
}

void TestTargetLargePages::reservedVectorIsEmpty() {
    QVector<double> few{1, 2, 3};
    reserveOnLargePages(few, 2);
    QVERIFY(few.isEmpty());

    std::vector<double> many(5, 1.0);
    constexpr std::size_t count = 8 * largePage / sizeof(double);
    reserveOnLargePages(many, count);
    QVERIFY(many.empty());
    QVERIFY(many.capacity() >= count);
    QVERIFY(isOnLargePages(addressOf(many.data()) + 4 * largePage));
}

void TestTargetLargePages::longTargetLiesOnLargePages() {
    // Two minutes: 38 MB of samples.
    const QString path = fixture->write("long.wav", QVector<int>(120 * 40000, 1234));
    fixture->prepare(path);
    const auto& window = fixture->window();
    for (const QVector<double>* vector :
         {&window.targetSamples, &window.fftFrequencies, &window.fftAmplitudes, &window.fftPhases})
        QVERIFY(isOnLargePages(addressOf(vector->constData() + vector->size() / 2)));
    QVERIFY(isOnLargePages(addressOf(window.wav.samples.data() + window.wav.samples.size() / 2)));
    QVERIFY(isOnLargePages(addressOf(window.wav.rawData.data() + window.wav.rawData.size() / 2)));
}
