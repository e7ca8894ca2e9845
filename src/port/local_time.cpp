// SPDX-License-Identifier: MIT
#include "port/port.h"

#include <ctime>

namespace Port {

bool localTime(std::time_t time, std::tm& local) noexcept {
#if defined(_WIN32)
    const __time64_t wide = time;
    return _localtime64_s(&local, &wide) == 0;
#else
    tzset(); // localtime_r need not follow a change of the time zone
    return localtime_r(&time, &local) != nullptr;
#endif
}

} // namespace Port
