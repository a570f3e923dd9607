// The POSIX platform: files through the C library, GUIDs from libuuid, the
// message box on standard error and a message loop with nothing to pump.
#include <atomic>
#include <climits>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <string>
#include <string_view>

#include <errno.h>
#include <fcntl.h>
#include <pthread.h>
#include <sys/random.h>
#include <sys/stat.h>
#include <unistd.h>
#include <uuid/uuid.h>

#include "platform/posix/posix_error.h"
#include "registry/sqlite/sqlite_registry.h"
#include "veld/platform/platform.h"
#include "veld/runtime/automation_error.h"

namespace veld {

namespace {

// Closes a file descriptor when it goes out of scope.
class ScopedFd {
 public:
  explicit ScopedFd(int fd) : fd_(fd) {}
  ~ScopedFd() {
    if (fd_ >= 0) ::close(fd_);
  }
  ScopedFd(const ScopedFd&) = delete;
  ScopedFd& operator=(const ScopedFd&) = delete;
  int get() const { return fd_; }
  // Closes now and reports whether the close succeeded.
  bool Close() {
    int fd = fd_;
    fd_ = -1;
    return ::close(fd) == 0;
  }

 private:
  int fd_;
};

std::string BaseName(const std::string& path) {
  auto slash = path.find_last_of('/');
  return slash == std::string::npos ? path : path.substr(slash + 1);
}

std::string DirName(const std::string& path) {
  auto slash = path.find_last_of('/');
  if (slash == std::string::npos) return ".";
  return slash == 0 ? "/" : path.substr(0, slash);
}

// Flushes a directory's entries, so that a rename or a new name in it
// survives a crash. Failure only weakens that promise, so it is not reported.
void SyncDirectoryOf(const std::string& path) {
  ScopedFd dir(::open(DirName(path).c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
  if (dir.get() >= 0) ::fsync(dir.get());
}

bool WriteAll(int fd, const char* data, size_t size) {
  while (size > 0) {
    ssize_t n = ::write(fd, data, size);
    if (n < 0) {
      if (errno == EINTR) continue;
      return false;
    }
    data += n;
    size -= static_cast<size_t>(n);
  }
  return true;
}

// Random bytes for GUIDs from the kernel, fetched a few hundred GUIDs at a
// time: one system call per GUID dominated the cost of making many row ids.
// The buffer belongs to a thread and a process; a forked child refills its
// own, so parent and child never hand out the same bytes.
// Counts the forks of this process, so that a pool can tell it was filled
// before one without asking the kernel for the process id on every call.
std::atomic<uint64_t> fork_count{0};

void NoteFork() { fork_count.fetch_add(1, std::memory_order_relaxed); }

bool RandomBytes(uint8_t (&out)[16]) {
  struct Pool {
    uint8_t bytes[4096];
    size_t used = sizeof bytes;
    uint64_t forks = 0;
  };
  static const int watching = pthread_atfork(nullptr, nullptr, &NoteFork);
  (void)watching;
  thread_local Pool pool;
  const uint64_t forks = fork_count.load(std::memory_order_relaxed);
  if (pool.used + sizeof out > sizeof pool.bytes || pool.forks != forks) {
    size_t filled = 0;
    while (filled < sizeof pool.bytes) {
      const ssize_t got = getrandom(pool.bytes + filled, sizeof pool.bytes - filled, 0);
      if (got < 0) {
        if (errno == EINTR) continue;
        return false;
      }
      filled += static_cast<size_t>(got);
    }
    pool.used = 0;
    pool.forks = forks;
  }
  std::memcpy(out, pool.bytes + pool.used, sizeof out);
  // Bytes handed out are not kept.
  std::memset(pool.bytes + pool.used, 0, sizeof out);
  pool.used += sizeof out;
  return true;
}

class PosixPlatform final : public Platform {
 public:
  bool FileExists(const std::string& path) override {
    // A name starting with a dot is the POSIX form of a hidden file, which the
    // ordinary-file search does not admit.
    if (path.empty() || path.find('\0') != std::string::npos) return false;
    std::string base = BaseName(path);
    if (base.empty() || base[0] == '.') return false;
    struct stat st;
    return ::stat(path.c_str(), &st) == 0 && S_ISREG(st.st_mode);
  }

  void FileCopy(const std::string& from, const std::string& to) override {
    ScopedFd in(::open(from.c_str(), O_RDONLY | O_CLOEXEC));
    if (in.get() < 0) RaisePosixError(errno, from);
    struct stat st;
    if (::fstat(in.get(), &st) != 0) RaisePosixError(errno, from);
    if (S_ISDIR(st.st_mode)) RaisePosixError(EISDIR, from);
    ScopedFd out(::open(to.c_str(), O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC, st.st_mode & 0777));
    if (out.get() < 0) RaisePosixError(errno, to);
    char buffer[64 * 1024];
    for (;;) {
      ssize_t n = ::read(in.get(), buffer, sizeof buffer);
      if (n < 0) {
        if (errno == EINTR) continue;
        RaisePosixError(errno, from);
      }
      if (n == 0) break;
      if (!WriteAll(out.get(), buffer, static_cast<size_t>(n))) RaisePosixError(errno, to);
    }
    if (!out.Close()) RaisePosixError(errno, to);
  }

  void RemoveFile(const std::string& path) override {
    struct stat st;
    if (::lstat(path.c_str(), &st) == 0 && S_ISDIR(st.st_mode)) RaisePosixError(EISDIR, path);
    if (::unlink(path.c_str()) != 0) RaisePosixError(errno, path);
  }

  std::string WriteFileBeside(const std::string& path, std::string_view bytes) override {
    // The new file takes the permissions of the file it is to replace.
    mode_t mode = 0666;
    struct stat st;
    if (::stat(path.c_str(), &st) == 0 && S_ISREG(st.st_mode)) mode = st.st_mode & 0777;
    for (int attempt = 0;; ++attempt) {
      uint8_t raw[16];
      if (!RandomBytes(raw)) RaiseError(errnum::kOutOfMemory);
      static constexpr char kHex[] = "0123456789abcdef";
      std::string name = path + ".~";
      for (int i = 0; i < 6; ++i) {
        name += kHex[raw[i] >> 4];
        name += kHex[raw[i] & 15];
      }
      name += ".tmp";
      // O_EXCL with O_CREAT never follows a link planted under the name.
      ScopedFd out(
          ::open(name.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_NOFOLLOW | O_CLOEXEC, mode));
      if (out.get() < 0) {
        if (errno == EEXIST && attempt < 8) continue;
        RaisePosixError(errno, name);
      }
      int failure = 0;
      if (!WriteAll(out.get(), bytes.data(), bytes.size())) failure = errno;
      if (failure == 0 && ::fsync(out.get()) != 0) failure = errno;
      if (failure == 0 && !out.Close()) failure = errno;
      if (failure == 0) return name;
      ::unlink(name.c_str());
      RaisePosixError(failure, name);
    }
  }

  void LinkFile(const std::string& from, const std::string& to) override {
    if (::link(from.c_str(), to.c_str()) == 0) {
      SyncDirectoryOf(to);
      return;
    }
    if (errno != EXDEV && errno != EPERM && errno != EOPNOTSUPP && errno != EMLINK) {
      RaisePosixError(errno, to);
    }
    // No links on this file system: a copy, made as carefully as a new file.
    ScopedFd in(::open(from.c_str(), O_RDONLY | O_CLOEXEC));
    if (in.get() < 0) RaisePosixError(errno, from);
    struct stat st;
    if (::fstat(in.get(), &st) != 0) RaisePosixError(errno, from);
    ScopedFd out(::open(to.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_NOFOLLOW | O_CLOEXEC,
                        st.st_mode & 0777));
    if (out.get() < 0) RaisePosixError(errno, to);
    char buffer[64 * 1024];
    int failure = 0;
    for (;;) {
      ssize_t n = ::read(in.get(), buffer, sizeof buffer);
      if (n < 0 && errno == EINTR) continue;
      if (n < 0) failure = errno;
      if (n <= 0) break;
      if (!WriteAll(out.get(), buffer, static_cast<size_t>(n))) {
        failure = errno;
        break;
      }
    }
    if (failure == 0 && ::fsync(out.get()) != 0) failure = errno;
    if (failure == 0 && !out.Close()) failure = errno;
    if (failure != 0) {
      ::unlink(to.c_str());
      RaisePosixError(failure, to);
    }
    SyncDirectoryOf(to);
  }

  void RenameFile(const std::string& from, const std::string& to) override {
    if (::rename(from.c_str(), to.c_str()) != 0) RaisePosixError(errno, to);
    SyncDirectoryOf(to);
  }

  bool IsReadOnlyFile(const std::string& path) override {
    struct stat st;
    return ::stat(path.c_str(), &st) == 0 && S_ISREG(st.st_mode) && (st.st_mode & 0222) == 0;
  }

  std::string FinalPath(const std::string& path) override {
    struct stat st;
    if (::lstat(path.c_str(), &st) != 0 || !S_ISLNK(st.st_mode)) return path;
    char resolved[PATH_MAX];
    if (::realpath(path.c_str(), resolved) == nullptr) RaiseError(errnum::kPathNotFound);
    return resolved;
  }

  int32_t CreateGuid(Guid& guid) override {
    uint8_t raw[16];
    if (!RandomBytes(raw)) {
      uuid_t generated;
      uuid_generate(generated);
      std::memcpy(raw, generated, sizeof raw);
    }
    // A random (version 4, RFC 4122 variant) GUID, as libuuid makes them.
    raw[6] = static_cast<uint8_t>((raw[6] & 0x0F) | 0x40);
    raw[8] = static_cast<uint8_t>((raw[8] & 0x3F) | 0x80);
    // In the byte order of the text form; the classic layout keeps the first
    // three fields as numbers.
    guid.Data1 = (uint32_t{raw[0]} << 24) | (uint32_t{raw[1]} << 16) | (uint32_t{raw[2]} << 8) |
                 uint32_t{raw[3]};
    guid.Data2 = static_cast<uint16_t>((raw[4] << 8) | raw[5]);
    guid.Data3 = static_cast<uint16_t>((raw[6] << 8) | raw[7]);
    std::memcpy(guid.Data4, raw + 8, 8);
    return 0;
  }

  std::string ProductName() override { return "Veld Common Utility Library"; }

  int32_t ShowMessageBox(const std::string& text, int32_t style,
                         const std::string& title) override {
    std::string caption = title.empty() ? ProductName() : title;
    std::fprintf(stderr, "%s: %s\n", caption.c_str(), text.c_str());
    std::fflush(stderr);
    return 1;  // OK
  }

  void DoEvents() override {}

  std::string AnsiCodePage() override { return "windows-1252"; }

  int32_t TwipsPerPixelX() override { return 15; }
  int32_t TwipsPerPixelY() override { return 15; }

  RegistryBackend& Registry() override { return DefaultSqliteRegistry(); }
};

}  // namespace

Platform& Platform::Default() {
  static PosixPlatform* platform = new PosixPlatform();  // lives for the process
  return *platform;
}

}  // namespace veld
