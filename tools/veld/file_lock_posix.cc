#include <cerrno>
#include <cstdint>
#include <cstring>
#include <string>

#include <fcntl.h>
#include <sys/file.h>
#include <unistd.h>

#include "commands.h"
#include "file_lock.h"

namespace veld::cli {

FileLock::FileLock(const std::string& file) {
  const std::string name = file + ".lock";
  // Never through a link planted under the lock's name.
  const int fd = ::open(name.c_str(), O_RDWR | O_CREAT | O_NOFOLLOW | O_CLOEXEC, 0666);
  if (fd < 0) throw Failure("cannot open lock file " + name + ": " + std::strerror(errno));
  int locked;
  do {
    locked = ::flock(fd, LOCK_EX);
  } while (locked != 0 && errno == EINTR);
  if (locked != 0) {
    const int error = errno;
    ::close(fd);
    throw Failure("cannot lock " + name + ": " + std::strerror(error));
  }
  handle_ = reinterpret_cast<void*>(static_cast<intptr_t>(fd) + 1);
}

FileLock::~FileLock() {
  if (handle_ != nullptr) ::close(static_cast<int>(reinterpret_cast<intptr_t>(handle_) - 1));
}

}  // namespace veld::cli
