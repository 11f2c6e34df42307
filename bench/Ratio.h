#pragma once

#include <benchmark/benchmark.h>

#include <algorithm>
#include <chrono>
#include <vector>

namespace zym {

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
  const auto medianOf = [](std::vector<double>& times) {
    const auto middle = times.begin() + static_cast<std::ptrdiff_t>(times.size() / 2);
    std::nth_element(times.begin(), middle, times.end());
    return *middle;
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

}  // namespace zym
