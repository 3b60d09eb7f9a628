#include <stdexcept>

#include "StartedPlugin.h"

namespace qlx::contract {
namespace {

// Makes a pin and ends it again. The result of the attempt; on failure nothing may be left.
MCResult TryPin(const LoadedPlugin& inPlugin) {
  void* view = nullptr;
  const MCResult found = inPlugin->fGetClassObject(kPinClass, IMCClassFactory::kInterfaceID, &view);
  if (found != MC_S_OK) {
    EXPECT_EQ(view, nullptr);
    return found;
  }
  const auto factory = MCAdopt(static_cast<IMCClassFactory*>(view));
  void* pin = nullptr;
  const MCResult made = factory->CreateInstance(nullptr, I3DExModifier::kInterfaceID, &pin);
  EXPECT_EQ(made == MC_S_OK, pin != nullptr);
  if (pin) {
    static_cast<I3DExModifier*>(pin)->Release();
  }
  return made;
}

// Starts, makes a pin and cleans up; then nothing is held.
void RunSession(RecordingHost& ioHost, bool inMakesPin = true) {
  const LoadedPlugin plugin;
  EXPECT_EQ(plugin->fInit(&ioHost), MC_S_OK);
  EXPECT_EQ(TryPin(plugin) == MC_S_OK, inMakesPin);
  EXPECT_EQ(plugin->fCanUnloadNow(), 0);
  EXPECT_EQ(plugin->fCleanUp(), MC_S_OK);
  EXPECT_EQ(ioHost.GetHeldReferences(), 0);
}

TEST(HostileHost, NullRootGivesAPluginThatMakesNothing) {
  const LoadedPlugin plugin;
  EXPECT_EQ(plugin->fInit(nullptr), MC_S_OK);
  EXPECT_NE(TryPin(plugin), MC_S_OK);
  EXPECT_EQ(plugin->fCanUnloadNow(), 0);
  EXPECT_EQ(plugin->fCleanUp(), MC_S_OK);
}

// A host may lack a service, and may say that it has one and give null.
TEST(HostileHost, AnySingleServiceMayBeMissing) {
  for (const MCResult answer : {MC_E_NOINTERFACE, MC_S_OK}) {
    for (const ServiceRow& row : kServiceRows) {
      SCOPED_TRACE(row.fName);
      RecordingHost host;
      host.fMissing = {row.fName};
      host.fMissingAnswer = answer;
      const bool hasMemory = std::string(row.fName) != "1.8";
      RunSession(host, hasMemory);
      EXPECT_EQ(host.fDebug.fAssertions, hasMemory ? Log() : Log{"gMemoryUtilities"});
    }
  }
}

TEST(HostileHost, EveryServiceMayBeMissing) {
  RecordingHost host;
  for (const ServiceRow& row : kServiceRows) {
    host.fMissing.insert(row.fName);
  }
  RunSession(host, false);
}

TEST(HostileHost, ServicesMayAnswerNull) {
  RecordingHost host;
  host.fMultiProcessing.fQueue = nullptr;
  host.fDebug.fGivesBookkeeping = false;
  RunSession(host);
  EXPECT_EQ(host.fDebug.fAssertions.size(), 1U) << "the missing queue is reported";
}

TEST(HostileHost, MemoryMayEndAtAnyRequest) {
  RecordingHost host;
  const LoadedPlugin plugin;
  plugin->fInit(&host);
  const int32 before = host.fMemory.fRequests;
  ASSERT_EQ(TryPin(plugin), MC_S_OK);
  const int32 needed = host.fMemory.fRequests - before;
  ASSERT_GE(needed, 2) << "the factory and the component";
  for (int32 request = 0; request < needed; ++request) {
    SCOPED_TRACE(request);
    host.fMemory.FailFrom(request);
    EXPECT_EQ(TryPin(plugin), MC_E_NOTCREATED);
    EXPECT_EQ(host.fMemory.fAlive, 0);
    EXPECT_EQ(plugin->fCanUnloadNow(), 0);
  }
  host.fMemory.FailFrom(-1);
  EXPECT_EQ(TryPin(plugin), MC_S_OK);
  plugin->fCleanUp();
}

TEST(HostileHost, RootThatThrowsAtOneQueryLacksThatServiceAlone) {
  for (const char* row : {"1.1", "1.7", "1.21", "2.4", "3.1", "3.3"}) {
    SCOPED_TRACE(row);
    RecordingHost host;
    host.fOnAsk = [row](const std::string& inAsked) {
      if (inAsked == row) {
        throw std::runtime_error("a host that throws");
      }
    };
    RunSession(host);
  }
}

TEST(HostileHost, NothingThrownLeavesAnExportOrTheFactory) {
  RecordingHost host;
  host.fSafe.fOnFeatures = [] { throw 42; };
  host.fMemory.fOnRequest = [] { throw std::runtime_error("an allocator that throws"); };
  const LoadedPlugin plugin;
  EXPECT_EQ(plugin->fInit(&host), MC_S_OK);
  void* view = nullptr;
  EXPECT_NE(plugin->fGetClassObject(kPinClass, IMCClassFactory::kInterfaceID, &view), MC_S_OK);

  host.fMemory.fOnRequest = nullptr;
  ASSERT_EQ(plugin->fGetClassObject(kPinClass, IMCClassFactory::kInterfaceID, &view), MC_S_OK);
  auto factory = MCAdopt(static_cast<IMCClassFactory*>(view));
  host.fMemory.fOnRequest = [] { throw 42; };
  void* pin = nullptr;
  EXPECT_NE(factory->CreateInstance(nullptr, IMCUnknown::kInterfaceID, &pin), MC_S_OK);
  EXPECT_EQ(pin, nullptr);
  factory.Clear();
  EXPECT_EQ(host.fMemory.fAlive, 0);
  plugin->fCleanUp();
}

TEST(HostileHost, WhatLivesLongerThanTheStartCanBeReleased) {
  RecordingHost host;
  LoadedPlugin plugin;
  plugin->fInit(&host);
  void* view = nullptr;
  ASSERT_EQ(plugin->fGetClassObject(kPinClass, IMCClassFactory::kInterfaceID, &view), MC_S_OK);
  plugin->fCleanUp();
  EXPECT_EQ(plugin->fCanUnloadNow(), 1);
  plugin.Unload();
  EXPECT_EQ(static_cast<IMCClassFactory*>(view)->Release(), 0U) << "its code is still there";
  EXPECT_EQ(host.fMemory.fAlive, 1) << "without the service the block is left with the host";
  std::free(host.fMemory.fLastBlock);
}

}  // namespace
}  // namespace qlx::contract
