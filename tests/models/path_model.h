// SPDX-License-Identifier: MIT
#pragma once

#include <string>

namespace model {

/// Returns the absolute form of a path below a root. It is slow and obvious: it collects a part of
/// the path one character at a time, and applies the part to the result at the next separator.
inline std::string absolutePath(char separator, const std::string& root, const std::string& path) {
    std::string text = root;
    std::string part;
    for (const char character : path + "/") {
        if (character != '/' && character != '\\') {
            part += character;
            continue;
        }
        if (part == "..")
            text.erase(text.size() > root.size() ? text.rfind(separator) : text.size());
        else if (!part.empty() && part != ".")
            text += separator + part;
        part.clear();
    }
    return text.size() == root.size() || path.back() == '/' || path.back() == '\\'
               ? text + separator
               : text;
}

} // namespace model
