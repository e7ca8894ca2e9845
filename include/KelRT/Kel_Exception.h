// SPDX-License-Identifier: MIT
#pragma once

#include "KelRT/Export.h"

#include <string>

namespace KelRT {

/// What the file, directory and environment functions throw: one message that says what failed.
///
/// The class deliberately has no base: a handler for `std::exception` does not catch it. It is
/// thrown by value and caught by reference; its type identity crosses the library boundary, so a
/// client built with hidden visibility catches it by type.
///
/// Threads: as any value; distinct objects are independent.
class KELRT_API Kel_Exception {
public:
    /// Keeps a copy of \a text. \throws std::bad_alloc
    Kel_Exception(const std::string& text); // NOLINT(google-explicit-constructor)

    /// Copies the message; the copies are independent. \throws std::bad_alloc
    Kel_Exception(const Kel_Exception& other);

    /// Copies the message; assigning an object to itself changes nothing. \throws std::bad_alloc
    Kel_Exception& operator=(const Kel_Exception& other);

    virtual ~Kel_Exception();

    /// A new string with the message given at construction. \throws std::bad_alloc
    virtual std::string what() const;

private:
    std::string message;
};

} // namespace KelRT
