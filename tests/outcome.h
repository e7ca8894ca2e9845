// SPDX-License-Identifier: MIT
#pragma once

#include "KelRT/Kel_Exception.h"

#include <functional>
#include <string>

namespace test {

/// The text that a function returns, or the message of the Kel_Exception that it throws.
template <typename Function, typename... Arguments>
std::string outcome(Function function, const Arguments&... arguments) {
    try {
        return std::invoke(function, arguments...);
    } catch (const KelRT::Kel_Exception& exception) {
        return exception.what();
    }
}

} // namespace test
