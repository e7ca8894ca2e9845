// SPDX-License-Identifier: MIT
//
// A host that exists only here, under the portability layer: port_stand_in.cpp takes the place of
// the layer's calls to the real one. So the texts of any host can be followed, and calls fail that
// a real host does not fail.
#pragma once

#include <map>
#include <set>
#include <string>
#include <vector>

namespace test {

struct StandIn {
    std::set<std::string> existing; ///< names that exist; those made are added
    std::set<std::string> readable; ///< files that open for reading
    bool everythingExists = false;
    bool mkdirWorks = true;
    bool listingBreaksOff = false;
    std::map<char, std::string> currentDirectories; ///< of a drive, or of 0; missing: unreadable

    std::vector<std::string> calls; ///< what was asked, as "exist NAME"
};

/// The one host of the test program; each case begins with a fresh one.
extern StandIn host;

} // namespace test
