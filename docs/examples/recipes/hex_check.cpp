// SPDX-License-Identifier: MIT
//! [example]
#include <cstdio>
#include <string>

// Returns true if the text has only hexadecimal digits, and at least one.
static bool isHexadecimal(const std::string& text) {
    return !text.empty() && text.find_first_not_of("0123456789ABCDEFabcdef") == std::string::npos;
}

int main() {
    for (const char* const text : {"4ba00477", "4BA0_0477", "0x4BA00477", "4BAOO477", ""})
        std::printf("%-12s %s\n", text, isHexadecimal(text) ? "hexadecimal" : "something else");
}
//! [example]
