// SPDX-License-Identifier: MIT
//! [example]
#include "KelRT/Kel_Exception.h"
#include "KelRT/Kel_Util.h"
#include "KelRT/Version.h"

#include <cstdio>
#include <string>
#include <vector>

using namespace KelRT;

int main() {
    std::printf("Kel %s\n", getVersionWithBuildNumber());

    std::vector<std::string> entries = {"as before"};
    try {
        Kel_Util::getDirectoryFileList("no/such/directory", false, entries);
    } catch (const Kel_Exception& failure) {       // not derived from std::exception
        std::printf("%s", failure.what().c_str()); // the message ends in a newline
    }
    std::printf("the list is %s\n", entries.front().c_str());
}
//! [example]
