// Runs a fuzzer's code on each file named on the command line, in a build without libFuzzer.
// SPDX-License-Identifier: GPL-3.0-or-later
#include <cstdint>
#include <cstdio>
#include <fstream>
#include <iterator>
#include <string>

// The functions that libFuzzer calls; the first exists only in fuzzers that need a set-up.
extern "C" int LLVMFuzzerInitialize(int* argumentCount, char*** arguments) __attribute__((weak));
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t size);

int main(int argumentCount, char** arguments) {
    if (LLVMFuzzerInitialize != nullptr)
        LLVMFuzzerInitialize(&argumentCount, &arguments);
    for (int i = 1; i < argumentCount; ++i) {
        std::ifstream file(arguments[i], std::ios::binary);
        const std::string bytes(std::istreambuf_iterator<char>(file), {});
        // The last line names the file of a finding, which ends the program.
        std::fprintf(stderr, "Running: %s\n", arguments[i]);
        if (!file.is_open())
            return 1;
        LLVMFuzzerTestOneInput(reinterpret_cast<const std::uint8_t*>(bytes.data()), bytes.size());
    }
    return argumentCount > 1 ? 0 : 1;
}
