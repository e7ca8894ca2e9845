// SPDX-License-Identifier: MIT
//
// A target as a test: a fixed number of random inputs, the same in every run. The argument is the
// number; a second one runs that input alone.
#include "input.h"

#include <csignal>
#include <cstring>
#include <random>
#include <vector>

namespace {

unsigned long input = 0;

void runInput() {
    std::mt19937_64 random(input); // the seed
    std::vector<std::uint8_t> bytes(random() % (std::size_t{8} << random() % 10));
    for (auto& byte : bytes)
        byte = static_cast<std::uint8_t>(random());
    LLVMFuzzerTestOneInput(bytes.data(), bytes.size());
}

} // namespace

int main(int argc, char** argv) {
    std::signal(SIGABRT, [](int) { std::fprintf(stderr, "by input %lu\n", input); });
    const unsigned long count = std::strtoul(argv[1], nullptr, 10);
    for (input = argc > 2 ? std::strtoul(argv[2], nullptr, 10) : 0; input < count; ++input)
        runInput();
    return 0;
}
