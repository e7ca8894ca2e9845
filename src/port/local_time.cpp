// SPDX-License-Identifier: MIT
#include "port/port.h"

#include <ctime>

namespace Port {

bool localTime(std::time_t time, std::tm& local) noexcept {
#if defined(_WIN32)
    return localtime_s(&local, &time) == 0;
#else
    tzset(); // localtime_r need not follow a change of the time zone
    return localtime_r(&time, &local) != nullptr;
#endif
}

} // namespace Port
