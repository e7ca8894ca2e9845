// SPDX-License-Identifier: MIT
//
// A row of a table compares several contenders that do the same work of the same size. The name of
// a benchmark has its family, work, size and contender, with '/' between them; report.py makes the
// tables from these names.
#pragma once

#include <benchmark/benchmark.h>

#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <functional>
#include <random>
#include <string>
#include <type_traits>
#include <utility>
#include <vector>

namespace bench {

using Bytes = std::vector<unsigned char>;

/// Returns \a count random bytes, the same in every run.
inline Bytes randomBytes(std::size_t count) {
    std::mt19937_64 random(count);
    Bytes bytes(count);
    for (auto& byte : bytes)
        byte = static_cast<unsigned char>(random());
    return bytes;
}

class Row {
public:
    /// \param items the number of operations in one run; the tables show the time of one operation
    Row(const std::string& family, const std::string& work, const std::string& size,
        std::uint64_t items = 1)
        : prefix(family + '/' + work + '/' + size + '/'), itemCount(items) {}

    /// Adds a contender: an object with `void run()` and `std::string result()`. Each benchmark
    /// starts from a copy of \a contender. The result after the first run must equal that of the
    /// row's first contender. If the contender has `void prepare()`, this is called before each
    /// run, outside the measured time. If `run()` returns a double, this is the measured time in
    /// seconds.
    template <typename Contender>
    Row& add(const std::string& name, const Contender& contender) {
        Contender trial = contender;
        if constexpr (requires { trial.prepare(); })
            trial.prepare();
        static_cast<void>(trial.run());
        check(name, trial.result());
        return measure(name, contender);
    }

    /// Adds the limit, which does less than the work, so its result is not checked.
    template <typename Contender>
    Row& limit(const Contender& contender) {
        return measure("limit", contender);
    }

    /// Adds the contender that \a make returns for an object of PEER, unless PEER is missing.
    template <typename Peer, typename Make>
    Row& addPeer(const std::string& name, Make make) {
        if constexpr (requires { Peer::MISSING; })
            return missing(name);
        else
            return add(name, make(Peer()));
    }

    /// Adds a peer that was not found when this program was configured.
    Row& missing(const std::string& name) {
        benchmark::RegisterBenchmark((prefix + name).c_str(), [](benchmark::State& state) {
            state.SkipWithError("missing");
        });
        return *this;
    }

private:
    template <typename Contender>
    static constexpr bool MEASURES_ITSELF =
        std::is_same_v<decltype(std::declval<Contender&>().run()), double>;

    template <typename Contender>
    Row& measure(const std::string& name, const Contender& contender) {
        const auto items = static_cast<double>(itemCount);
        auto* const registered = benchmark::RegisterBenchmark(
            (prefix + name).c_str(), [contender, items](benchmark::State& state) {
                Contender own = contender;
                for (auto iteration : state) {
                    (void)iteration;
                    prepare(own, state);
                    if constexpr (MEASURES_ITSELF<Contender>)
                        state.SetIterationTime(own.run());
                    else
                        own.run();
                    benchmark::ClobberMemory();
                }
                state.counters["items"] = items;
            });
        if constexpr (MEASURES_ITSELF<Contender>)
            registered->UseManualTime();
        return *this;
    }

    template <typename Contender>
    static void prepare(Contender& contender, benchmark::State& state) {
        if constexpr (requires { contender.prepare(); }) {
            state.PauseTiming();
            contender.prepare();
            state.ResumeTiming();
        }
    }

    void check(const std::string& name, const std::string& result) {
        if (!hasResult) {
            firstResult = result;
            hasResult = true;
        } else if (result != firstResult) {
            std::fprintf(stderr, "%s%s: the result differs from that of the first contender\n",
                         prefix.c_str(), name.c_str());
            std::exit(1);
        }
    }

    std::string prefix;
    std::uint64_t itemCount;
    std::string firstResult;
    bool hasResult = false;
};

/// A contender that consists of a state and two functions.
template <typename State, typename Run, typename Result>
struct Contender {
    State state;
    Run work;
    Result text;
    void run() { work(state); }
    std::string result() { return text(state); }
};

template <typename State, typename Run, typename Result>
Contender(State, Run, Result) -> Contender<State, Run, Result>;

/// Returns a contender that copies \a text, as a limit for work that makes such a text.
inline auto copying(const std::string& text) {
    return Contender{std::pair{text, text},
                     [](auto& own) {
                         std::memcpy(own.first.data(), own.second.data(), own.first.size());
                         benchmark::DoNotOptimize(own.first.data());
                     },
                     [](auto& own) { return own.first; }};
}

/// Runs the benchmarks that the rows have registered.
inline int runAll(int argc, char** argv) {
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
    return 0;
}

/// Returns a range of bytes as a string, for comparing results.
template <typename Range>
std::string textOf(const Range& range) {
    return {range.begin(), range.end()};
}

} // namespace bench
