// SPDX-License-Identifier: MIT
#pragma once

#include "KelRT/Kel_Exception.h"

#include <string>

namespace test {

/// What \a call throws as Kel_Exception; "nothing" when it returns.
template <typename Call>
std::string thrownBy(Call call) {
    try {
        call();
    } catch (const KelRT::Kel_Exception& exception) {
        return exception.what();
    }
    return "nothing";
}

} // namespace test
