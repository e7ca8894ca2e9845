// SPDX-License-Identifier: MIT
#include "KelRT/Kel_Util.h"

#include <algorithm>
#include <cassert>
#include <string_view>

namespace KelRT {
namespace {

bool isSettingOf(const std::string& key, std::string_view entry) {
    const auto nameLength = entry.find('=');
    return nameLength == key.size() &&
           Kel_Util::stricmp(std::string(entry.substr(0, nameLength)), key) == 0;
}

// Implements both overloads of findKey: Entry is std::string or char*.
template <typename Entry>
std::string findIn(const Entry* entries, std::uint32_t count, const std::string& key) {
    for (std::uint32_t i = 0; i < count; ++i) {
        const std::string_view entry = entries[i];
        if (isSettingOf(key, entry))
            return std::string(entry.substr(key.size() + 1));
    }
    return {};
}

[[maybe_unused]] bool holdsNoNull(char* const* argv, std::uint32_t argc) {
    return argc == 0 || (argv != nullptr && std::find(argv, argv + argc, nullptr) == argv + argc);
}

} // namespace

std::string Kel_Util::findKey(std::vector<std::string>& entries, const std::string& key) {
    // Both overloads count in 32 bits, so this one searches size() modulo 2^32 entries.
    return findIn(entries.data(), static_cast<std::uint32_t>(entries.size()), key);
}

std::string Kel_Util::findKey(std::uint32_t argc, char** argv, const std::string& key) {
    assert(holdsNoNull(argv, argc) && "argv holds argc pointers, none of them null");
    return findIn(argv, argc, key);
}

} // namespace KelRT
