// SPDX-License-Identifier: MIT
#include "lines.h"

#include "host.h"

#include "KelRT/Kel_Util.h"

#include <cerrno>
#include <iostream>
#include <limits>
#include <memory>

namespace field_report {

using KelRT::Kel_Util;

namespace {

// The value of the widest register has 2^18 digits, or 2^19 characters with a blank after each
// digit. The maximum is twice that.
constexpr std::size_t MAX_LINE_LENGTH = std::size_t{1} << 20;
constexpr const char* BYTE_ORDER_MARK = "\xEF\xBB\xBF";

} // namespace

Lines::Lines(const std::string& path) : name(path), stream(&file), buffer(MAX_LINE_LENGTH + 1) {
    if (path == "-") {
        name = "standard input";
        stream = &std::cin;
        host::setBinaryMode(stdin);
        return;
    }
    errno = 0;
    file.open(path, std::ios::binary);
    if (!file)
        throw hostFault("the file cannot be read");
}

Lines::Lines(const std::vector<std::string>& lines)
    : name("command line"), stream(&given), buffer(MAX_LINE_LENGTH + 1) {
    std::string text;
    for (const std::string& line : lines)
        text.append(line) += '\n';
    given.str(text);
}

bool Lines::next(std::string& line) {
    while (read(line)) {
        if (line.find('\0') != std::string::npos)
            throw Fault("the line holds a NUL character");
        line = Kel_Util::trimWhitespace(Kel_Util::stripEndingCR(line));
        if (!line.empty() && line[0] != '#')
            return true;
    }
    return false;
}

bool Lines::read(std::string& line) {
    if (failed)
        return false;
    errno = 0;
    stream->getline(buffer.data(), static_cast<std::streamsize>(buffer.size()));
    const auto count = static_cast<std::size_t>(stream->gcount());
    if (stream->bad()) {
        failed = true;
        throw hostFault("the rest of the file cannot be read");
    }
    if (count == 0) // the end of the file, also on later calls
        return false;
    ++number;
    if (stream->fail() && !stream->eof()) {
        stream->clear();
        stream->ignore(std::numeric_limits<std::streamsize>::max(), '\n');
        throw Fault("the line is longer than " + std::to_string(MAX_LINE_LENGTH) + " characters");
    }
    line.assign(buffer.data(), stream->eof() ? count : count - 1);
    if (number == 1 && line.compare(0, 3, BYTE_ORDER_MARK) == 0)
        line.erase(0, 3);
    return true;
}

std::unique_ptr<Lines> openLines(const std::string& path, Messages& messages) {
    try {
        return std::make_unique<Lines>(path);
    } catch (const Fault& fault) {
        messages.reportFault(path, fault.what());
        return nullptr;
    }
}

} // namespace field_report
