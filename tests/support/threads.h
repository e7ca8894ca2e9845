// SPDX-License-Identifier: MIT
#pragma once

#include <atomic>
#include <cstddef>
#include <future>
#include <thread>
#include <vector>

namespace test {

/// Returns the results of \a call(0) to \a call(count - 1). Each call has a thread of its own, and
/// no thread makes its call before all have started.
template <typename Call>
auto resultsOfThreads(std::size_t count, Call call) {
    using Result = decltype(call(count));
    std::atomic<std::size_t> missing{count};
    std::vector<std::future<Result>> threads(count);
    for (std::size_t number = 0; number < count; ++number)
        threads[number] = std::async(std::launch::async, [&, number] {
            for (--missing; missing > 0;)
                std::this_thread::yield();
            return call(number);
        });
    std::vector<Result> results(count);
    for (std::size_t number = 0; number < count; ++number)
        results[number] = threads[number].get();
    return results;
}

} // namespace test
