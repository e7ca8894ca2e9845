// SPDX-License-Identifier: MIT
//
// usage: random_TARGET [COUNT [THREADS [FIRST]]]
//
// Runs a fuzz target as a test on the random inputs FIRST (by default 0) to COUNT - 1. They are
// divided among THREADS. The number of an input is the seed of its bytes.
#include "input.h"

#include <csignal>
#include <random>
#include <thread>
#include <vector>

namespace {

thread_local unsigned long input = 0; // the seed of the current input

void runInputs(unsigned long first, unsigned long count, unsigned long step) {
    for (input = first; input < count; input += step) {
        std::mt19937_64 random(input);
        std::vector<std::uint8_t> bytes(
            static_cast<std::size_t>(random() % (std::size_t{8} << random() % 10)));
        for (auto& byte : bytes)
            byte = static_cast<std::uint8_t>(random());
        LLVMFuzzerTestOneInput(bytes.data(), bytes.size());
    }
}

} // namespace

int main(int argc, char** argv) {
    std::signal(SIGABRT, [](int) { std::fprintf(stderr, "failed at input %lu\n", input); });
    unsigned long numbers[] = {1, 1, 0};
    for (int i = 1; i < argc && i <= 3; ++i)
        numbers[i - 1] = std::strtoul(argv[i], nullptr, 10);
    const auto& [count, threadCount, first] = numbers;
    std::vector<std::thread> threads;
    for (unsigned long i = 0; i < threadCount; ++i)
        threads.emplace_back(runInputs, first + i, count, threadCount);
    for (auto& thread : threads)
        thread.join();
    return 0;
}
