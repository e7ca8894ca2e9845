// SPDX-License-Identifier: MIT
#pragma once

#include "KelRT/Kel_Exception.h"

#include <functional>
#include <stdexcept>
#include <string>

namespace test {

/// Returns the text that a function returns or, if it throws a Kel_Exception or a std::logic_error,
/// the message of the exception.
template <typename Function, typename... Arguments>
std::string outcome(Function function, const Arguments&... arguments) {
    try {
        return std::invoke(function, arguments...);
    } catch (const KelRT::Kel_Exception& exception) {
        return exception.what();
    } catch (const std::logic_error& error) {
        return error.what();
    }
}

} // namespace test
