// A progress bar on standard error for long work (exports, large files),
// fed by the library's progress events. It draws only on a terminal.
#ifndef VELD_TOOLS_VELD_PROGRESS_BAR_H_
#define VELD_TOOLS_VELD_PROGRESS_BAR_H_

#include <cstdint>
#include <string>

namespace veld::cli {

class ProgressBar {
 public:
  // Draws when standard error is a terminal.
  ProgressBar();
  explicit ProgressBar(bool enabled) : enabled_(enabled) {}
  ~ProgressBar() { Finish(); }
  ProgressBar(const ProgressBar&) = delete;
  ProgressBar& operator=(const ProgressBar&) = delete;

  bool Enabled() const { return enabled_; }
  // Draws the state over the last one; a new status starts a new line, so
  // that each phase of the work keeps its own.
  void Update(int32_t total, int32_t current, const std::string& status);
  // Ends the bar's line, once.
  void Finish();

  // The line drawn for a state, without the leading carriage return.
  static std::string Line(int32_t total, int32_t current, const std::string& status);

 private:
  bool enabled_;
  bool drawn_ = false;
  std::string status_;
};

}  // namespace veld::cli

#endif  // VELD_TOOLS_VELD_PROGRESS_BAR_H_
