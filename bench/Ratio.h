#pragma once

#include <benchmark/benchmark.h>

#include <algorithm>
#include <chrono>
#include <cstddef>
#include <vector>

namespace zym {

/// Times `work` beside `limit`, turn and turn about, and prints how many times longer the work
/// takes by the medians of both, so that a busy machine shows as little as it can. Each does the
/// same `count` of operations a call; what takes nanoseconds wants many.
template <class Work, class Limit>
void measure(benchmark::State& state, double count, Work work, Limit limit) {
  using Clock = std::chrono::steady_clock;
  const auto median = [](std::vector<double>& times) {
    const auto middle = times.begin() + static_cast<std::ptrdiff_t>(times.size() / 2);
    std::nth_element(times.begin(), middle, times.end());
    return *middle;
  };
  std::vector<double> worked;
  std::vector<double> limited;
  for ([[maybe_unused]] auto turn : state) {
    const auto start = Clock::now();
    work();
    const auto middle = Clock::now();
    limit();
    const auto end = Clock::now();
    worked.push_back(std::chrono::duration<double>(middle - start).count());
    limited.push_back(std::chrono::duration<double>(end - middle).count());
    state.SetIterationTime(worked.back());
  }
  const double each = median(worked) / count;
  const double bound = median(limited) / count;
  state.counters["ns"] = each * 1e9;
  state.counters["limit_ns"] = bound * 1e9;
  state.counters["ratio"] = each / bound;
}

}  // namespace zym

/// Registers a benchmark that uses `measure`.
#define ZYM_BENCHMARK(function) BENCHMARK(function)->UseManualTime()
