#include "support/child_process.h"

#include <signal.h>
#include <sys/wait.h>
#include <unistd.h>

namespace veld::testing {

bool KillChildWhenReady(const std::function<void(const std::function<void()>& ready)>& work) {
  int ready_pipe[2];
  if (pipe(ready_pipe) != 0) return false;
  const pid_t child = fork();
  if (child < 0) return false;
  if (child == 0) {
    close(ready_pipe[0]);
    try {
      work([&] {
        const char byte = 'x';
        if (write(ready_pipe[1], &byte, 1) != 1) _exit(2);
        for (;;) pause();
      });
    } catch (...) {
    }
    _exit(1);
  }
  close(ready_pipe[1]);
  char byte = 0;
  const bool child_ready = read(ready_pipe[0], &byte, 1) == 1;
  close(ready_pipe[0]);
  kill(child, SIGKILL);
  int status = 0;
  waitpid(child, &status, 0);
  return child_ready && WIFSIGNALED(status) && WTERMSIG(status) == SIGKILL;
}

int RunInChild(const std::function<int()>& work) {
  const pid_t child = fork();
  if (child < 0) return -1;
  if (child == 0) {
    int code = 1;
    try {
      code = work();
    } catch (...) {
    }
    _exit(code);
  }
  int status = 0;
  if (waitpid(child, &status, 0) != child || !WIFEXITED(status)) return -1;
  return WEXITSTATUS(status);
}

}  // namespace veld::testing
