#pragma once

#include <benchmark/benchmark.h>

#include <algorithm>
#include <chrono>
#include <cstddef>
#include <vector>

namespace zym {

inline double medianOf(std::vector<double>& times) {
  const auto middle = times.begin() + static_cast<std::ptrdiff_t>(times.size() / 2);
  std::nth_element(times.begin(), middle, times.end());
  return *middle;
}

/// Runs the work and, beside it, the same at the limit of what is possible, by turns, and reports
/// the work's time, the limit's ("bare_us"), and the ratio of their medians, next to what the ratio
/// may be at most. `prepare` runs before each of them and isn't measured.
template <class Prepare, class Work, class Bare>
void measureRatio(benchmark::State& state, double atMost, Prepare prepare, Work work, Bare bare) {
  using Clock = std::chrono::steady_clock;
  const auto secondsOf = [&](auto& run) {
    prepare();
    const Clock::time_point start = Clock::now();
    run();
    return std::chrono::duration<double>(Clock::now() - start).count();
  };
  std::vector<double> workTimes;
  std::vector<double> bareTimes;
  secondsOf(bare);
  secondsOf(work);
  for (auto iteration : state) {
    (void)iteration;
    const bool isWorkFirst = workTimes.size() % 2 == 0;
    if (isWorkFirst) workTimes.push_back(secondsOf(work));
    bareTimes.push_back(secondsOf(bare));
    if (!isWorkFirst) workTimes.push_back(secondsOf(work));
    state.SetIterationTime(workTimes.back());
  }
  const double bareMedian = medianOf(bareTimes);
  state.counters["bare_us"] = bareMedian * 1e6;
  state.counters["ratio"] = medianOf(workTimes) / bareMedian;
  state.counters["at_most"] = atMost;
}

template <class Work, class Bare>
void measureRatio(benchmark::State& state, double atMost, Work work, Bare bare) {
  measureRatio(
      state, atMost, [] {}, work, bare);
}

/// Times `work` beside `limit`, turn and turn about, and prints how many times longer the work
/// takes by the medians of both, so that a busy machine shows as little as it can. Each does the
/// same `count` of operations a call; what takes nanoseconds wants many.
template <class Work, class Limit>
void measure(benchmark::State& state, double count, Work work, Limit limit) {
  using Clock = std::chrono::steady_clock;
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
  const double each = medianOf(worked) / count;
  const double bound = medianOf(limited) / count;
  state.counters["ns"] = each * 1e9;
  state.counters["limit_ns"] = bound * 1e9;
  state.counters["ratio"] = each / bound;
}

}  // namespace zym

/// Registers a benchmark that uses `measure`.
#define ZYM_BENCHMARK(function) BENCHMARK(function)->UseManualTime()
