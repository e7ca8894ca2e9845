// SPDX-License-Identifier: MIT
#include "KelRT/Kel_Exception.h"

namespace KelRT {

Kel_Exception::Kel_Exception(const std::string& text) : message(text) {}
Kel_Exception::Kel_Exception(const Kel_Exception&) = default;
Kel_Exception& Kel_Exception::operator=(const Kel_Exception&) = default;
Kel_Exception::~Kel_Exception() = default;

std::string Kel_Exception::what() const {
    return message;
}

} // namespace KelRT
