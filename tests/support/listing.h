// SPDX-License-Identifier: MIT
#pragma once

#include "KelRT/Kel_Exception.h"
#include "KelRT/Kel_Util.h"

#include <algorithm>
#include <string>
#include <vector>

namespace test {

using Texts = std::vector<std::string>;

/// Calls getDirectoryFileList() with the list {"old"}. Returns the list, sorted. If the call throws
/// a Kel_Exception, returns the list followed by the message.
inline Texts listed(const std::string& directory, bool listFlag = false) {
    Texts list{"old"};
    try {
        KelRT::Kel_Util::getDirectoryFileList(directory, listFlag, list);
        std::sort(list.begin(), list.end());
    } catch (const KelRT::Kel_Exception& exception) {
        list.emplace_back(exception.what());
    }
    return list;
}

/// Returns the result of listed() for a directory that cannot be read: the list is unchanged.
inline Texts refused(const std::string& directory) {
    return {"old", "Could not open the directory: " + directory + "\n"};
}

} // namespace test
