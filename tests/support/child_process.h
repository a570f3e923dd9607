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

}  // namespace veld::testing

#endif  // VELD_TESTS_SUPPORT_CHILD_PROCESS_H_
