// SPDX-License-Identifier: MIT
//
// The logging peers that were found when this was configured. Never part of the library.
#pragma once

#if defined(__GNUC__)
#pragma GCC diagnostic push
#pragma GCC diagnostic ignored "-Wall"
#pragma GCC diagnostic ignored "-Wextra"
#endif
#ifdef HAVE_SPDLOG
#include <spdlog/fmt/bin_to_hex.h>
#include <spdlog/sinks/basic_file_sink.h>
#include <spdlog/spdlog.h>
#endif
#ifdef HAVE_GLOG
#include <glog/logging.h>
#endif
#if defined(__GNUC__)
#pragma GCC diagnostic pop
#endif
