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

}  // namespace veld::testing
