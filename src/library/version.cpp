// SPDX-License-Identifier: MIT
#include "library/version.h"

#include "KelRT/Version.h"
#include "library/globals.h"

#include <cstdlib>
#include <mutex>

namespace KelRT {
namespace {

constexpr const char* BRANCH = "A.01a";
constexpr const char* BUILD_TIMESTAMP = __DATE__ " " __TIME__;

// Guards the five texts in globals.h. It is initialised at compile time, so it does not depend on
// the order in which globals are constructed.
std::mutex fillMutex;

using Compose = std::string (*)();

// Composes `text` if it is still empty. The caller holds fillMutex. If memory is exhausted, throws
// and leaves `text` empty.
const std::string& fill(std::string& text, Compose compose) {
    if (text.empty())
        text = compose();
    return text;
}

const std::string& branch() {
    return fill(library::branchText, [] { return std::string(BRANCH); });
}

const std::string& build() {
    return fill(library::buildText, [] { return std::string(BUILD_TIMESTAMP); });
}

const std::string& versionNumber() {
    return fill(library::versionNumberText, [] {
        return library::composeVersionNumber(KELRT_VERSION_TWO_PART, KELRT_VERSION_PATCH);
    });
}

const std::string& version() {
    return fill(library::versionText, [] { return versionNumber() + " " + branch(); });
}

const std::string& fullVersion() {
    return fill(library::fullVersionText, [] { return version() + " - Compiled " + build(); });
}

const char* query(const std::string& (*text)()) {
    const std::lock_guard<std::mutex> lock(fillMutex);
    return text().c_str();
}

} // namespace

std::string library::composeVersionNumber(const std::string& twoPart,
                                          const std::string& patchLevel) {
    // NOLINTNEXTLINE(cert-err34-c): text without digits counts as 0.
    return std::atoi(patchLevel.c_str()) != 0 ? twoPart + "." + patchLevel : twoPart;
}

const char* getVersionNumber() {
    return query(versionNumber);
}
const char* getBuildNumber() {
    return query(build);
}
const char* getVersion() {
    return query(version);
}
const char* getVersionWithBuildNumber() {
    return query(fullVersion);
}

} // namespace KelRT
