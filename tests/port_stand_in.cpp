// SPDX-License-Identifier: MIT
#include "port_stand_in.h"

#include "port/port.h"

namespace test {

StandIn host;

namespace {

void note(const std::string& call, const char* path) {
    host.calls.push_back(call + " " + path);
}

} // namespace
} // namespace test

namespace Port {

using test::host;

bool File::exist(const char* path) {
    test::note("exist", path);
    return host.everythingExists || host.existing.contains(path);
}

bool File::isdir(const char* path) {
    test::note("isdir", path);
    return host.existing.contains(path);
}

bool File::mkdir(const char* path, bool flag) {
    test::note(flag ? "mkdir with flag" : "mkdir", path);
    if (host.mkdirWorks)
        host.existing.insert(path);
    return host.mkdirWorks;
}

bool File::readable(const char* path) {
    test::note("readable", path);
    return host.readable.contains(path);
}

bool File::create(const char* path) {
    test::note("create", path);
    host.existing.insert(path);
    return true;
}

std::string currentDirectory(char drive) {
    const auto found = host.currentDirectories.find(drive);
    return found != host.currentDirectories.end() ? found->second : "";
}

UT_DIR::UT_DIR(const char* directory, std::uint8_t flag) {
    test::note("list " + std::to_string(flag), directory);
    entries = {"first", "second"};
    valid = !host.listingBreaksOff;
}

} // namespace Port
