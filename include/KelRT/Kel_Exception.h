// SPDX-License-Identifier: MIT
#pragma once

#include "KelRT/Export.h"

#include <string>

namespace KelRT {

KELRT_PRIVATE_TYPES_BEGIN

/// The file, directory and environment functions throw this exception. Its message says what
/// failed.
///
/// The class has no base class, so a handler for `std::exception` does not catch it. Catch it by
/// reference: it is thrown by value. Its type is exported, so a handler for it also works in a
/// client that is built with hidden visibility.
///
/// Threads: distinct objects are independent.
class KELRT_API Kel_Exception {
public:
    /// Keeps a copy of \a text. \throws std::bad_alloc
    Kel_Exception(const std::string& text); // NOLINT(google-explicit-constructor)

    /// Copies the message; the copies are independent. \throws std::bad_alloc
    Kel_Exception(const Kel_Exception& other);

    /// Copies the message; assigning an object to itself changes nothing. \throws std::bad_alloc
    Kel_Exception& operator=(const Kel_Exception& other);

    virtual ~Kel_Exception();

    /// Returns a new string with the message given at construction. \throws std::bad_alloc
    [[nodiscard]] virtual std::string what() const;

private:
    std::string message;
};

KELRT_PRIVATE_TYPES_END

} // namespace KelRT
