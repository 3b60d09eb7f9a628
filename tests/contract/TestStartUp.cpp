#include "StartedPlugin.h"

namespace qlx::contract {
namespace {

Log Ask(const char* inGroup, int inCount) {
  Log log;
  for (int i = 1; i <= inCount; ++i) {
    log.push_back(std::string("ask ") + inGroup + std::to_string(i));
  }
  return log;
}

void Append(Log& ioLog, const Log& inMore) {
  ioLog.insert(ioLog.end(), inMore.begin(), inMore.end());
}

TEST(StartUp, TakesTheServicesInOrderAndPutsItsQuestions) {
  const StartedPlugin started;
  Log expected = Ask("1.", 21);
  Append(expected, {"features 1.9", "processors 1.5", "queue 1.5", "bookkeeping 1.7"});
  Append(expected, Ask("2.", 4));
  Append(expected, {"question 2.4"});
  Append(expected, Ask("3.", 3));
  Append(expected, {"question 3.1"});
  EXPECT_EQ(started.fHost.fLog, expected);
  EXPECT_EQ(started.fHost.fDebug.fAssertions, Log());
  EXPECT_EQ(started.fHost.fCount, 0) << "the root is not held";
}

TEST(StartUp, CleanUpGivesTheServicesBackInOrderAndOnce) {
  RecordingHost host;
  const LoadedPlugin plugin;
  plugin->fInit(&host);
  host.fLog.clear();
  EXPECT_EQ(plugin->fCleanUp(), MC_S_OK);
  Log expected = {"release 3.1", "release 3.2", "release 3.3", "release 2.1",
                  "release 2.2", "release 2.3", "release 2.4"};
  for (const int row : {10, 5, 8, 7, 9, 4, 3, 2, 1, 6, 17, 16, 15, 14, 13, 12, 11, 21, 18, 19, 20}) {
    expected.push_back("release 1." + std::to_string(row));
  }
  EXPECT_EQ(host.fLog, expected);
  EXPECT_EQ(host.GetHeldReferences(), 0);

  EXPECT_EQ(plugin->fCleanUp(), MC_S_OK);
  EXPECT_EQ(host.fLog, expected) << "the second clean-up touches nothing";
}

TEST(StartUp, CleanUpAfterASecondStartDoesNothing) {
  RecordingHost host;
  LoadedPlugin plugin;
  plugin->fInit(&host);
  plugin->fCleanUp();
  EXPECT_EQ(plugin->fInit(&host), MC_S_OK);
  const int32 held = host.GetHeldReferences();
  EXPECT_EQ(plugin->fCleanUp(), MC_S_OK);
  EXPECT_EQ(host.GetHeldReferences(), held);
  EXPECT_GT(held, 0);
}

TEST(StartUp, UnloadQueryAnswersInEveryState) {
  RecordingHost host;
  const LoadedPlugin plugin;
  EXPECT_EQ(plugin->fCanUnloadNow(), 0) << "loaded";
  EXPECT_EQ(plugin->fCleanUp(), MC_S_OK) << "without a start";
  plugin->fInit(&host);
  EXPECT_EQ(plugin->fCanUnloadNow(), 0) << "started: services that are held do not count";
  plugin->fCleanUp();
  EXPECT_EQ(plugin->fCanUnloadNow(), 0) << "cleaned up";
}

}  // namespace
}  // namespace qlx::contract
