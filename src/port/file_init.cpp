// SPDX-License-Identifier: MIT
#include "port/port.h"

#include <atomic>

namespace Port {
namespace {

// Constant-initialised, so it takes no part in the order of the globals.
std::atomic<int> holders{0};

} // namespace

FileInit::FileInit() noexcept {
    ++holders;
}

FileInit::~FileInit() {
    --holders;
}

bool FileInit::ready() {
    return holders > 0;
}

} // namespace Port
