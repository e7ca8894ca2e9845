// SPDX-License-Identifier: MIT
#pragma once

#include <string>

namespace model {

/// The absolute form of a path below a root, found slowly: one character after the other is added
/// to a part, which is applied to the text when it is complete.
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
