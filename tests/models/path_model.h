// SPDX-License-Identifier: MIT
#pragma once

#include <string>
#include <vector>

namespace model {

/// Returns the normalised form of a path below a root. It is slow and obvious: it collects a part
/// of the path one character at a time, and applies the part at the next separator.
inline std::string normalized(char separator, const std::string& root, const std::string& path) {
    std::vector<std::string> parts;
    std::string part;
    for (const char character : path + "/") {
        if (character != '/' && character != '\\') {
            part += character;
            continue;
        }
        if (part == ".." && !parts.empty())
            parts.pop_back();
        if (!part.empty() && part != "." && part != "..")
            parts.push_back(part);
        part.clear();
    }
    std::string text = root;
    for (const std::string& each : parts)
        text += separator + each;
    return path.back() == '/' || path.back() == '\\' ? text + separator : text;
}

} // namespace model
