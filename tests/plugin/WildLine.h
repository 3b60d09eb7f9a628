// A time line of a host that answers what a test says.
#pragma once

#include <gtest/gtest.h>

#include <algorithm>
#include <cstring>
#include <functional>
#include <vector>

#include "FakeObject.h"
#include "HostTimeLines.h"
#include "PlainScene.h"

namespace qlx::test {

// Keys of a host whose values are of any type, with references that are counted.
class WildKey final : public FakeObject<ITimeLineKey, IKeyValue> {
 public:
  int32 MC_CALL GetTime() override { return fTime; }
  void MC_CALL SetTime(int32 inTime) override { fTime = inTime; }
  bool MC_CALL IsSelected() override { return fIsSelected; }
  IKeyValue* MC_CALL GetValue() override { return fHasValue ? this : nullptr; }
  uint32 MC_CALL GetValueSize() override { return fSize; }
  MCID MC_CALL GetValueType() override { return fType; }
  MCResult MC_CALL ReadValue(void* outBuffer, MCID inTypeId, bool&) override {
    if (inTypeId != fType) {
      return MC_E_NOTVALID;
    }
    std::memcpy(outBuffer, fBytes, std::min<std::size_t>(fSize, sizeof fBytes));
    return MC_S_OK;
  }

  int32 fTime = 0;
  bool fIsSelected = true;
  bool fHasValue = true;
  MCID fType = "qfix"_id;
  uint32 fSize = 4;
  uint8 fBytes[IKeyValue::kMaxSize] = {};
};

// A time line of them, and the element that it is of.
class WildLine final : public FakeObject<ITimeLine, ITimeLineOwner, I3DShAnimated, IAttribute> {
 public:
  explicit WildLine(std::size_t inKeys) : fKeys(inKeys) {
    for (std::size_t i = 0; i < inKeys; ++i) {
      fKeys[i].fTime = static_cast<int32>(i * 100000 + i * i * 37);  // of all seeds
    }
  }
  ~WildLine() override {
    for (const WildKey& key : fKeys) {
      EXPECT_EQ(key.fCount, 0);
    }
  }
  IAttribute* MC_CALL GetAttribute() override { return fAttribute ? this : nullptr; }
  MCID MC_CALL GetAttributeId() override { return fAttribute; }
  MCResult MC_CALL InsertKey(int32, const void* inValue, MCID) override {
    fInserted.push_back(*static_cast<const real32*>(inValue));
    return MC_E_NOTVALID;
  }
  uint32 MC_CALL GetKeyCount() override { return static_cast<uint32>(fKeys.size()); }
  ITimeLineKey* MC_CALL GetKey(uint32 inIndex) override {
    ++fAsked;
    return &fKeys.at(inIndex);
  }
  void MC_CALL DeleteKeyAt(int32 inTime) override { fDeleted.push_back(inTime); }
  void MC_CALL FindKeyAfter(int32 inTime, SceneTime& outTime, ITimeLineKey** outKey) override {
    fLookedUp.push_back(inTime);
    outTime.fTicks = fNeighbour.fTime;
    MCAssignCounted<ITimeLineKey>(outKey, fHasNeighbour ? &fNeighbour : nullptr);
  }
  void MC_CALL FindKeyBefore(int32 inTime, ITimeLineKey** outKey, int32) override {
    fLookedUp.push_back(inTime);
    MCAssignCounted<ITimeLineKey>(outKey, fHasNeighbour ? &fNeighbour : nullptr);
  }
  ITimeLineOwner* MC_CALL GetTimeLineOwner() override { return this; }
  void MC_CALL ForEachTimeLine(IForEachTimeLineCallback* inCallback) override {
    for (int i = 0; i < fVisits; ++i) {
      inCallback->Visit(this, nullptr);
      if (fOnVisited) {
        fOnVisited();
      }
    }
  }

  std::vector<WildKey> fKeys;
  WildKey fNeighbour;
  bool fHasNeighbour = false;
  MCID fAttribute = 0;  // 0 for none
  std::vector<real32> fInserted;
  std::vector<int32> fDeleted;
  std::vector<int32> fLookedUp;
  int fVisits = 2;
  std::function<void()> fOnVisited;
  int fAsked = 0;
};

// The element has the line in place of its own.
inline void Attach(WildLine& inLine, PlainElement& ioElement) {
  ioElement.fAnswer = [&inLine](const MCGuid& inID, void** outObject) {
    return inID == I3DShAnimated::kInterfaceID && inLine.QueryInterface(inID, outObject) == MC_S_OK;
  };
}

}  // namespace qlx::test
