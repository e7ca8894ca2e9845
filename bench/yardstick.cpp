// SPDX-License-Identifier: MIT
//
// A library that needs the standard library and does nothing when it is loaded.
#include <stdexcept>
#include <string>

extern "C" __attribute__((visibility("default"))) void yardstick(const char* text) {
    throw std::runtime_error(std::string(text) + text);
}
