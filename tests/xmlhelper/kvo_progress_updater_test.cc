#include "veld/xmlhelper/kvo_progress_updater.h"

#include <cstdint>
#include <functional>
#include <memory>
#include <stdexcept>
#include <string>
#include <utility>
#include <vector>

#include <gtest/gtest.h>

#include "veld/platform/platform.h"
#include "veld/runtime/automation_error.h"
#include "veld/xmlhelper/connection.h"

#include "support/testing.h"

namespace veld {
namespace {

// A platform whose message-loop pass writes "pump" into a shared log and may
// run a hook (as a host's own event handlers would run during the pass).
class PumpRecordingPlatform : public ForwardingPlatform {
 public:
  explicit PumpRecordingPlatform(std::vector<std::string>& log) : log_(log) {}

  void DoEvents() override {
    log_.push_back("pump");
    if (hook) hook();
  }

  std::function<void()> hook;

 private:
  std::vector<std::string>& log_;
};

class KvoProgressUpdaterTest : public ::testing::Test {
 protected:
  KvoProgressUpdaterTest() : platform_(log_), installed_(platform_) {}

  // A handler that logs its name and the three values.
  KvoProgressUpdater::ProgressChanged Logger(const std::string& name) {
    return [this, name](int32_t nTotal, int32_t nCurrent, const std::string& sStatus) {
      log_.push_back(name + ":" + std::to_string(nTotal) + "/" + std::to_string(nCurrent) + "/" +
                     sStatus);
    };
  }

  std::vector<std::string> log_;
  PumpRecordingPlatform platform_;
  ScopedPlatform installed_;
  KvoProgressUpdater updater_;
};

using Log = std::vector<std::string>;

TEST_F(KvoProgressUpdaterTest, WithNoListenerTheCallStillRunsTheMessageLoopPassAndReturns) {
  updater_.ProgressChangeNotify(10, 1, "step");
  EXPECT_EQ(log_, Log({"pump"}));
  updater_.ProgressChangeNotify(10, 2);
  EXPECT_EQ(log_, Log({"pump", "pump"}));
}

TEST_F(KvoProgressUpdaterTest, OmittedStatusReachesTheListenerAsEmpty) {
  std::string status = "not called";
  Connection connection = updater_.Connect(
      [&status](int32_t, int32_t, const std::string& sStatus) { status = sStatus; });
  updater_.ProgressChangeNotify(3, 2);
  EXPECT_EQ(status, "");
}

TEST_F(KvoProgressUpdaterTest, EveryListenerReceivesTheValuesInConnectionOrder) {
  Connection first = updater_.Connect(Logger("first"));
  Connection second = updater_.Connect(Logger("second"));
  Connection third = updater_.Connect(Logger("third"));
  updater_.ProgressChangeNotify(100, 42, "copying");
  EXPECT_EQ(log_,
            Log({"first:100/42/copying", "second:100/42/copying", "third:100/42/copying", "pump"}));
}

TEST_F(KvoProgressUpdaterTest, ValuesArePassedOnUnchecked) {
  Connection connection = updater_.Connect(Logger("l"));
  updater_.ProgressChangeNotify(-5, 2147483647, "");
  updater_.ProgressChangeNotify(0, -2147483647 - 1, "\xC3\xA9");
  EXPECT_EQ(log_, Log({"l:-5/2147483647/", "pump", "l:0/-2147483648/\xC3\xA9", "pump"}));
}

TEST_F(KvoProgressUpdaterTest, MessageLoopPassRunsOncePerNotificationAfterTheListeners) {
  Connection first = updater_.Connect(Logger("a"));
  Connection second = updater_.Connect(Logger("b"));
  updater_.ProgressChangeNotify(2, 1, "x");
  updater_.ProgressChangeNotify(2, 2, "y");
  EXPECT_EQ(log_, Log({"a:2/1/x", "b:2/1/x", "pump", "a:2/2/y", "b:2/2/y", "pump"}));
}

TEST_F(KvoProgressUpdaterTest, DestroyingTheConnectionDisconnects) {
  Connection kept = updater_.Connect(Logger("kept"));
  {
    Connection scoped = updater_.Connect(Logger("scoped"));
    EXPECT_TRUE(scoped.Connected());
    updater_.ProgressChangeNotify(1, 1, "in");
  }
  updater_.ProgressChangeNotify(1, 1, "out");
  EXPECT_EQ(log_, Log({"kept:1/1/in", "scoped:1/1/in", "pump", "kept:1/1/out", "pump"}));
}

TEST_F(KvoProgressUpdaterTest, DisconnectStopsTheListenerAndMayBeRepeated) {
  Connection connection = updater_.Connect(Logger("l"));
  EXPECT_TRUE(connection.Connected());
  connection.Disconnect();
  EXPECT_FALSE(connection.Connected());
  connection.Disconnect();
  updater_.ProgressChangeNotify(1, 0, "");
  EXPECT_EQ(log_, Log({"pump"}));
  Connection unconnected;
  EXPECT_FALSE(unconnected.Connected());
  unconnected.Disconnect();
}

TEST_F(KvoProgressUpdaterTest, MovedConnectionKeepsTheListenerAndAssignmentDropsTheOldOne) {
  Connection first = updater_.Connect(Logger("first"));
  Connection moved = std::move(first);
  EXPECT_TRUE(moved.Connected());
  updater_.ProgressChangeNotify(1, 1, "a");
  Connection second = updater_.Connect(Logger("second"));
  moved = std::move(second);  // "first" goes, "second" stays through `moved`
  updater_.ProgressChangeNotify(1, 1, "b");
  EXPECT_EQ(log_, Log({"first:1/1/a", "pump", "second:1/1/b", "pump"}));
}

TEST_F(KvoProgressUpdaterTest, ListenerMayDisconnectItselfInsideItsHandler) {
  Connection self;
  int calls = 0;
  self = updater_.Connect([&](int32_t, int32_t, const std::string&) {
    ++calls;
    self.Disconnect();
  });
  Connection after = updater_.Connect(Logger("after"));
  updater_.ProgressChangeNotify(1, 1, "once");
  updater_.ProgressChangeNotify(1, 1, "twice");
  EXPECT_EQ(calls, 1);
  EXPECT_FALSE(self.Connected());
  EXPECT_EQ(log_, Log({"after:1/1/once", "pump", "after:1/1/twice", "pump"}));
}

TEST_F(KvoProgressUpdaterTest, ListenerMayDestroyItsOwnConnectionInsideItsHandler) {
  auto self = std::make_unique<Connection>();
  std::string captured = "text kept by the handler";
  *self = updater_.Connect([&, captured](int32_t, int32_t, const std::string&) {
    self.reset();
    // The handler's own captures are still usable after its connection went.
    log_.push_back(captured);
  });
  updater_.ProgressChangeNotify(1, 1, "");
  updater_.ProgressChangeNotify(1, 1, "");
  EXPECT_EQ(log_, Log({"text kept by the handler", "pump", "pump"}));
}

TEST_F(KvoProgressUpdaterTest, ListenerDisconnectedDuringANotificationMissesItsRest) {
  Connection later;
  Connection first = updater_.Connect([&](int32_t, int32_t, const std::string&) {
    log_.push_back("first");
    later.Disconnect();
  });
  later = updater_.Connect(Logger("later"));
  updater_.ProgressChangeNotify(1, 1, "");
  EXPECT_EQ(log_, Log({"first", "pump"}));
}

TEST_F(KvoProgressUpdaterTest, ListenerConnectedDuringANotificationReceivesTheNextOne) {
  std::vector<Connection> added;
  Connection first = updater_.Connect([&](int32_t, int32_t nCurrent, const std::string&) {
    log_.push_back("first:" + std::to_string(nCurrent));
    if (added.empty()) added.push_back(updater_.Connect(Logger("added")));
  });
  updater_.ProgressChangeNotify(2, 1, "");
  updater_.ProgressChangeNotify(2, 2, "");
  EXPECT_EQ(log_, Log({"first:1", "pump", "first:2", "added:2/2/", "pump"}));
}

TEST_F(KvoProgressUpdaterTest, ThrowingListenerEndsTheNotificationAndLeavesTheUpdaterWorking) {
  bool fail = true;
  Connection first = updater_.Connect(Logger("first"));
  Connection thrower = updater_.Connect([&](int32_t, int32_t, const std::string&) {
    log_.push_back("thrower");
    if (fail) throw std::runtime_error("cancelled by the user");
  });
  Connection last = updater_.Connect(Logger("last"));
  try {
    updater_.ProgressChangeNotify(5, 1, "s");
    ADD_FAILURE() << "the handler's exception did not reach the caller";
  } catch (const std::runtime_error& error) {
    EXPECT_STREQ(error.what(), "cancelled by the user");
  }
  // The rest of that notification and its message-loop pass were skipped.
  EXPECT_EQ(log_, Log({"first:5/1/s", "thrower"}));
  EXPECT_TRUE(first.Connected());
  EXPECT_TRUE(thrower.Connected());
  EXPECT_TRUE(last.Connected());

  log_.clear();
  fail = false;
  updater_.ProgressChangeNotify(5, 2, "t");
  EXPECT_EQ(log_, Log({"first:5/2/t", "thrower", "last:5/2/t", "pump"}));
}

TEST_F(KvoProgressUpdaterTest, AutomationErrorOfAListenerReachesTheCaller) {
  Connection thrower =
      updater_.Connect([](int32_t, int32_t, const std::string&) { RaiseError(errnum::kOverflow); });
  EXPECT_RAISES(updater_.ProgressChangeNotify(1, 1, ""), errnum::kOverflow, "Overflow");
  EXPECT_TRUE(log_.empty());
}

TEST_F(KvoProgressUpdaterTest, NotificationFromInsideTheMessageLoopPassIsDelivered) {
  Connection connection = updater_.Connect(Logger("l"));
  int depth = 0;
  platform_.hook = [&] {
    if (depth++ == 0) updater_.ProgressChangeNotify(9, 9, "nested");
  };
  updater_.ProgressChangeNotify(9, 1, "outer");
  EXPECT_EQ(log_, Log({"l:9/1/outer", "pump", "l:9/9/nested", "pump"}));
}

TEST_F(KvoProgressUpdaterTest, ConnectionOutlivesTheUpdater) {
  auto updater = std::make_unique<KvoProgressUpdater>();
  Connection connection = updater->Connect(Logger("l"));
  EXPECT_TRUE(connection.Connected());
  updater.reset();
  EXPECT_FALSE(connection.Connected());
  connection.Disconnect();
}

TEST_F(KvoProgressUpdaterTest, HandlerMayDestroyTheUpdater) {
  auto updater = std::make_unique<KvoProgressUpdater>();
  Connection first = updater->Connect([&](int32_t, int32_t, const std::string&) {
    log_.push_back("first");
    updater.reset();
  });
  Connection second = updater->Connect(Logger("second"));
  updater->ProgressChangeNotify(1, 1, "");
  EXPECT_EQ(updater, nullptr);
  EXPECT_FALSE(second.Connected());
  EXPECT_EQ(log_, Log({"first", "pump"}));
}

TEST_F(KvoProgressUpdaterTest, EmptyHandlerIsRefused) {
  EXPECT_RAISES(static_cast<void>(updater_.Connect(nullptr)), errnum::kInvalidProcedureCall,
                "Invalid procedure call or argument");
  updater_.ProgressChangeNotify(1, 1, "");
  EXPECT_EQ(log_, Log({"pump"}));
}

}  // namespace
}  // namespace veld
