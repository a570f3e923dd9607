#include "progress_bar.h"

#include <algorithm>
#include <cstdio>

#include "terminal.h"

namespace veld::cli {

namespace {

constexpr int kWidth = 30;
constexpr size_t kStatusWidth = 40;

}  // namespace

ProgressBar::ProgressBar() : enabled_(StderrIsTerminal()) {}

std::string ProgressBar::Line(int32_t total, int32_t current, const std::string& status) {
  const int64_t shown = std::clamp<int64_t>(current, 0, std::max<int32_t>(total, 0));
  const int percent = total > 0 ? static_cast<int>(shown * 100 / total) : 0;
  const int filled = total > 0 ? static_cast<int>(shown * kWidth / total) : 0;
  std::string line = "[" + std::string(static_cast<size_t>(filled), '#') +
                     std::string(static_cast<size_t>(kWidth - filled), ' ') + "] ";
  char number[8];
  std::snprintf(number, sizeof number, "%3d%%", percent);
  line += number;
  std::string text = status;
  if (text.size() > kStatusWidth) {
    size_t cut = kStatusWidth;
    // Never cut a UTF-8 character in two.
    while (cut > 0 && (static_cast<unsigned char>(text[cut]) & 0xC0) == 0x80) --cut;
    text.resize(cut);
  }
  text.resize(std::max(text.size(), kStatusWidth), ' ');
  return line + " " + text;
}

void ProgressBar::Update(int32_t total, int32_t current, const std::string& status) {
  if (!enabled_) return;
  if (drawn_ && status != status_) Finish();
  status_ = status;
  const std::string line = "\r" + Line(total, current, status);
  std::fwrite(line.data(), 1, line.size(), stderr);
  std::fflush(stderr);
  drawn_ = true;
}

void ProgressBar::Finish() {
  if (!drawn_) return;
  std::fputc('\n', stderr);
  drawn_ = false;
}

}  // namespace veld::cli
