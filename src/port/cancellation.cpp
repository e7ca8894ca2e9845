// SPDX-License-Identifier: MIT
#include "port/port.h"

#if !defined(_WIN32)
#include <pthread.h>
#endif

namespace Port {

#if defined(_WIN32)

CancellationDisabled::CancellationDisabled() noexcept = default;
CancellationDisabled::~CancellationDisabled() = default;

#else

CancellationDisabled::CancellationDisabled() noexcept {
    pthread_setcancelstate(PTHREAD_CANCEL_DISABLE, &before);
}

CancellationDisabled::~CancellationDisabled() {
    pthread_setcancelstate(before, nullptr);
}

#endif

} // namespace Port
