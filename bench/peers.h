// SPDX-License-Identifier: MIT
//
// The peers that were found when this was configured (HAVE_...). Never part of the library.
#pragma once

#if defined(__GNUC__)
#pragma GCC diagnostic push
#pragma GCC diagnostic ignored "-Wall"
#pragma GCC diagnostic ignored "-Wextra"
#endif
#ifdef HAVE_GMP
#include <gmpxx.h>
#endif
#ifdef HAVE_LLVM
#include <llvm/ADT/APInt.h>
#include <llvm/ADT/StringExtras.h>
#include <llvm/Support/Format.h>
#include <llvm/Support/MathExtras.h>
#include <llvm/Support/raw_ostream.h>
#endif
#ifdef HAVE_OPENSSL
#include <openssl/crypto.h>
#endif
#ifdef HAVE_ABSL
#include <absl/strings/escaping.h>
#include <absl/strings/numbers.h>
#include <absl/strings/str_cat.h>
#include <absl/strings/str_split.h>
#endif
#ifdef HAVE_FMT
#include <fmt/compile.h>
#include <fmt/format.h>
#endif
#ifdef HAVE_BOOST
#include <boost/algorithm/hex.hpp>
#include <boost/dynamic_bitset.hpp>
#include <boost/tokenizer.hpp>
#endif
#if defined(__GNUC__)
#pragma GCC diagnostic pop
#endif
