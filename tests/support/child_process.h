// Child processes that tests kill in the middle of their work.
#ifndef VELD_TESTS_SUPPORT_CHILD_PROCESS_H_
#define VELD_TESTS_SUPPORT_CHILD_PROCESS_H_

#include <functional>

namespace veld::testing {

// Runs `work` in a forked child. `work` calls the `ready` function it is
// given once it is where it should be killed; the child then waits there and
// the parent kills it with SIGKILL. True when the child got ready and died of
// that signal; false when it ended any other way first.
bool KillChildWhenReady(const std::function<void(const std::function<void()>& ready)>& work);

// Runs `work` in a forked child and waits for it: the child's exit code,
// `work`'s result; -1 when the child could not be made or did not exit
// normally. For work that changes what a process cannot undo (its mount
// namespace, its resource limits).
int RunInChild(const std::function<int()>& work);

}  // namespace veld::testing

#endif  // VELD_TESTS_SUPPORT_CHILD_PROCESS_H_
