// An advisory lock held while the tool reads, changes and rewrites a file,
// so that several veld processes working on one file take turns instead of
// losing each other's changes.
#ifndef VELD_TOOLS_VELD_FILE_LOCK_H_
#define VELD_TOOLS_VELD_FILE_LOCK_H_

#include <string>

namespace veld::cli {

// Locks FILE.lock (created when missing and left in place: removing it would
// let two processes hold locks on two different files of the same name).
// Waits while another process holds it. Throws Failure when the lock file
// cannot be opened or locked.
class FileLock {
 public:
  explicit FileLock(const std::string& file);
  ~FileLock();
  FileLock(const FileLock&) = delete;
  FileLock& operator=(const FileLock&) = delete;

 private:
  void* handle_ = nullptr;  // the open lock file, as the system keeps it
};

}  // namespace veld::cli

#endif  // VELD_TOOLS_VELD_FILE_LOCK_H_
