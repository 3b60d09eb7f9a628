// A host that offers every service, plainly, and writes down what the plug-in asks of it.
#pragma once

#include <gtest/gtest.h>

#include <array>
#include <cstdlib>
#include <functional>
#include <set>
#include <string>
#include <vector>

#include "FakeObject.h"
#include "HostServices.h"

namespace qlx::contract {

using Log = std::vector<std::string>;

// The rows of the three groups in the order in which a plug-in asks for them: "1.1" to "1.21", "2.1" to "2.4", "3.1"
// to "3.3".
struct ServiceRow {
  const char* fName;
  MCGuid fID;
};
inline constexpr std::size_t kServiceCount = 28;
extern const std::array<ServiceRow, kServiceCount> kServiceRows;

// A service that writes "release 1.8" when a reference to it is given back.
template <class Interface>
class Service : public test::FakeObject<Interface> {
 public:
  void Connect(const char* inRow, Log& ioLog) {
    fRow = inRow;
    fLog = &ioLog;
  }

  uint32 MC_CALL Release() override {
    Write("release ");
    return test::FakeObject<Interface>::Release();
  }

 protected:
  void Write(const char* inText) { fLog->push_back(std::string(inText) + fRow); }

 private:
  const char* fRow = "";
  Log* fLog = nullptr;
};

// Blocks of the C runtime, counted.
class FakeMemory final : public Service<IMemoryUtilities> {
 public:
  void* MC_CALL Allocate(MCSize inSize) override { return Make(inSize); }
  void* MC_CALL AllocateWithFlags(MCSize inSize, uint32) override { return Make(inSize); }
  void* MC_CALL Reallocate(void* inBlock, MCSize inSize) override;
  void MC_CALL Free(void* inBlock) override { End(inBlock); }
  void* MC_CALL NewObject(MCSize inSize) override { return Make(inSize); }
  void MC_CALL DeleteObject(void* inObject) override { End(inObject); }
  void* MC_CALL NewArray(MCSize inSize) override { return Make(inSize); }
  void MC_CALL DeleteArray(void* inArray) override { End(inArray); }

  // The requests from this one on (0 is the next) are answered with null.
  void FailFrom(int32 inRequest) { fLeft = inRequest; }
  // Called ahead of each request.
  std::function<void()> fOnRequest;
  int32 fRequests = 0;
  int32 fAlive = 0;
  void* fLastBlock = nullptr;  // the one given last

 private:
  void* Make(MCSize inSize);
  void End(void* inBlock);

  int32 fLeft = -1;
};

class FakeDebug final : public Service<IDebugUtilities> {
 public:
  void MC_CALL ReportAssertion(const char*, int32, const char* inText) override { fAssertions.emplace_back(inText); }
  void MC_CALL Report(const char*, int32) override {}
  void MC_CALL Report2(const char*, int32, int32, int32) override {}
  void MC_CALL Report3(const char*, int32, int32, int32, int32) override {}
  void MC_CALL GetCountedObjectBookkeeping(CountedObjectBookkeeping& outValues) override {
    Write("bookkeeping ");
    if (fGivesBookkeeping) {
      outValues = {.fHead = &fFirst, .fTail = &fLast, .fSerialCounter = &fSerial, .fLiveCount = &fLive};
    }
  }

  std::vector<std::string> fAssertions;
  bool fGivesBookkeeping = true;

 private:
  TMCCountedObject* fFirst = nullptr;
  TMCCountedObject* fLast = nullptr;
  int32 fSerial = 0;
  int32 fLive = 0;
};

class FakeSafeUtilities final : public Service<IShSafeUtilities> {
 public:
  void MC_CALL GetProcessorFeatures(ProcessorFeatures& outFeatures) override {
    Write("features ");
    outFeatures.fBytes[0] = 1;
    if (fOnFeatures) {
      fOnFeatures();
    }
  }
  const TMCAsciiTranslationTable* MC_CALL GetAsciiTranslationTable() override { return nullptr; }

  std::function<void()> fOnFeatures;
};

class FakeShell final : public Service<IShellUtilities> {
 public:
  bool MC_CALL IsEventHandlingSuspended() override { return false; }
  void MC_CALL SetShellState(uint32, uint8, uint8) override {}
  IMCUnknown* MC_CALL EnsureObjectHolder(TreeElement*) override { return nullptr; }
  bool MC_CALL ChooseObject(TreeElement**, const TMCString&, const TMCString&, int32, int32, int32) override {
    return false;
  }
};

class FakeMultiProcessing final : public Service<IMultiProcessing> {
 public:
  uint32 MC_CALL GetProcessorCount() override {
    Write("processors ");
    return 2;
  }
  void* MC_CALL GetMainJobQueue() override {
    Write("queue ");
    return fQueue;
  }

  void* fQueue = this;
};

// A host without components, resources and dialogs of its own.
class FakeComponents final : public Service<IComponentFactory> {
 public:
  MCResult MC_CALL CreateComponent(MCID, MCID, IMCUnknown**) override { return MC_E_NOTCREATED; }
};

class FakeDialogFactory final : public Service<IDialogFactory> {
 public:
  MCResult MC_CALL CreateDialog(IMFPart**, MCID, int32) override { return MC_E_NOTVALID; }
};

class FakeResources final : public Service<IResourceManager> {
 public:
  MCResult MC_CALL PushResourceContext(MCID, MCID, uint32&) override { return MC_E_NOTVALID; }
  MCResult MC_CALL PopResourceContext(uint32) override { return MC_E_NOTVALID; }
};

class FakeQuestion final : public Service<IHostQuestion> {
 public:
  bool MC_CALL Answer() override {
    Write("question ");
    return true;
  }
};

// The host's root. Services without an interface that the plug-in calls are plain objects.
class RecordingHost final : public test::FakeObject<IMCUnknown> {
 public:
  RecordingHost();
  // Writes "ask 1.8"; "ask ?" for an id that is no service's.
  MCResult MC_CALL QueryInterface(const MCGuid& inID, void** outObject) override;

  // References that are held to the services and the root.
  int32 GetHeldReferences() const;

  Log fLog;
  std::set<std::string> fMissing;              // rows that the host lacks
  MCResult fMissingAnswer = MC_E_NOINTERFACE;  // what it answers for them, with null
  std::function<void(const std::string& inRow)> fOnAsk;

  FakeMemory fMemory;
  FakeDebug fDebug;
  FakeSafeUtilities fSafe;
  FakeShell fShell;
  FakeMultiProcessing fMultiProcessing;
  FakeComponents fComponents;
  FakeDialogFactory fDialogs;
  FakeResources fResources;
  FakeQuestion fSecondQuestion;
  FakeQuestion fThirdQuestion;

 private:
  template <class Interface>
  void Put(const char* inRow, Service<Interface>& inService);

  struct Entry {
    IMCUnknown* fService = nullptr;
    std::function<int32()> fReferences;
  };
  std::array<Service<IMCUnknown>, kServiceCount> fPlain;
  std::array<Entry, kServiceCount> fServices;
};

}  // namespace qlx::contract
