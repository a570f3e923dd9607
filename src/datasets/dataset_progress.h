// Progress of long dataset work (Parse, ParseFile, the export) told to an
// attached KvoProgressUpdater: about two hundred notifications per call at
// most, and always one at the end.
#ifndef VELD_DATASETS_DATASET_PROGRESS_H_
#define VELD_DATASETS_DATASET_PROGRESS_H_

#include <cstdint>
#include <string>
#include <vector>

#include <libxml/tree.h>

#include "veld/xmlhelper/kvo_progress_updater.h"

namespace veld::datasets_internal {

class ProgressSteps {
 public:
  // Nothing is told when `updater` is null.
  ProgressSteps(KvoProgressUpdater* updater, int64_t total, std::string status)
      : updater_(updater), total_(total), status_(std::move(status)) {
    step_ = total_ / 200 > 0 ? total_ / 200 : 1;
    next_ = step_;
  }

  // `done` more units are done; tells the updater when a step is crossed.
  void Advance(int64_t done) {
    if (updater_ == nullptr || done <= 0) return;
    current_ += done;
    if (current_ < next_ && current_ < total_) return;
    next_ = (current_ / step_ + 1) * step_;
    Tell(current_ < total_ ? current_ : total_);
  }

  // The units done so far (counted only when there is an updater).
  int64_t current() const { return current_; }

  // Tells the end, unless the last notification already did.
  void Finish() {
    if (updater_ != nullptr && told_ != total_) Tell(total_);
  }

 private:
  void Tell(int64_t current) {
    told_ = current;
    updater_->ProgressChangeNotify(Clamp(total_), Clamp(current), status_);
  }

  static int32_t Clamp(int64_t value) {
    return value > INT32_MAX ? INT32_MAX : static_cast<int32_t>(value);
  }

  KvoProgressUpdater* updater_;
  int64_t total_;
  std::string status_;
  int64_t step_;
  int64_t next_;
  int64_t current_ = 0;
  int64_t told_ = -1;
};

// The number of "row" elements at any depth below each of `nodes`: the units
// of a Parse.
inline int64_t CountRows(const std::vector<xmlNodePtr>& nodes) {
  int64_t count = 0;
  for (xmlNodePtr top : nodes) {
    if (top->type != XML_ELEMENT_NODE) continue;
    xmlNodePtr node = top->children;
    while (node != nullptr) {
      if (node->type == XML_ELEMENT_NODE && xmlStrEqual(node->name, BAD_CAST "row")) ++count;
      if (node->type == XML_ELEMENT_NODE && node->children != nullptr) {
        node = node->children;
        continue;
      }
      while (node != nullptr && node->next == nullptr) {
        node = node->parent;
        if (node == top) node = nullptr;
      }
      if (node != nullptr) node = node->next;
    }
  }
  return count;
}

}  // namespace veld::datasets_internal

#endif  // VELD_DATASETS_DATASET_PROGRESS_H_
