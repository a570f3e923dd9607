// What the one-phase-per-process benchmarks read of their own process: a
// clock's seconds and the peak resident memory.
#ifndef VELD_BENCH_PROCESS_STATS_H_
#define VELD_BENCH_PROCESS_STATS_H_

#include <cstdlib>
#include <ctime>
#include <fstream>
#include <string>

namespace veld_bench {

// The time of `clock` (CLOCK_MONOTONIC, CLOCK_PROCESS_CPUTIME_ID) in seconds.
inline double Seconds(clockid_t clock) {
  timespec ts;
  clock_gettime(clock, &ts);
  return static_cast<double>(ts.tv_sec) + static_cast<double>(ts.tv_nsec) * 1e-9;
}

// The process's peak resident set (VmHWM) in KiB; -1 when unknown.
inline long PeakKib() {
  std::ifstream status("/proc/self/status");
  std::string line;
  while (std::getline(status, line)) {
    if (line.rfind("VmHWM:", 0) == 0) return std::atol(line.c_str() + 6);
  }
  return -1;
}

}  // namespace veld_bench

#endif  // VELD_BENCH_PROCESS_STATS_H_
