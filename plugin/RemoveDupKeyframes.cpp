#include "RemoveDupKeyframes.h"

#include <cstring>
#include <utility>

#include "MCArray.h"

namespace qlx {

namespace {

constexpr int32 kDuplicatesDialog = 158;

class RDCIsSelectionNonEmpty final : public SelectionMenuCallBack {};

// A key's value in the form of another key's, read once for each form that it is asked for in.
class KeyBytes {
 public:
  // Takes the place of another key's; holds the key. False for none.
  bool Become(ITimeLineKey* inKey) {
    fKey = MCShare(inKey);
    fValue = inKey ? inKey->GetValue() : nullptr;
    fIsRead = false;
    return inKey != nullptr;
  }
  int32 GetTime() const { return fKey->GetTime(); }
  IKeyValue* GetValue() const { return fValue; }
  // False for a value that cannot be read so.
  bool Read(MCID inType) {
    if (!fIsRead || fType != inType) {
      bool scratch = false;
      if (inType != "qfix"_id) {
        std::memset(fBytes, 0, sizeof fBytes);
      }
      fType = inType;
      fIsRead = fValue && fValue->ReadValue(fBytes, inType, scratch) == MC_S_OK;
    }
    return fIsRead;
  }
  bool Equals(const KeyBytes& inOther, MCID inType, uint32 inSize) const {
    if (inType != "qfix"_id) {
      return std::memcmp(fBytes, inOther.fBytes, inSize) == 0;
    }
    return AsReal() == inOther.AsReal();  // NaN is none's equal, and -0 is 0
  }

 private:
  real32 AsReal() const {
    real32 number = 0;
    std::memcpy(&number, fBytes, sizeof number);
    return number;
  }

  TMCCountedPtr<ITimeLineKey> fKey;
  IKeyValue* fValue = nullptr;  // the key's own
  bool fIsRead = false;
  MCID fType = 0;
  alignas(real64) std::byte fBytes[IKeyValue::kMaxSize] = {};
};

// A value of more bytes than any has is nobody's duplicate. A real has no size to ask for.
bool IsDuplicate(KeyBytes& ioPrevious, KeyBytes& ioCurrent, KeyBytes& ioNext) {
  IKeyValue* const value = ioPrevious.GetValue();
  if (!value) {
    return false;
  }
  const MCID type = value->GetValueType();
  const uint32 size = type == "qfix"_id ? sizeof(real32) : value->GetValueSize();
  if (size > IKeyValue::kMaxSize) {
    return false;
  }
  return ioPrevious.Read(type) && ioCurrent.Read(type) && ioPrevious.Equals(ioCurrent, type, size) &&
         ioNext.Read(type) && ioCurrent.Equals(ioNext, type, size);
}

// All keys are looked at before the first goes.
class RDCTimelineCallback final : public IForEachTimeLineCallback {
 public:
  void MC_CALL Visit(ITimeLine* inTimeLine, void* /*inOther*/) override {
    TMCArray<int32> times;
    const uint32 count = inTimeLine->GetKeyCount();
    if (count < 3) {
      return;
    }
    KeyBytes keys[3];
    KeyBytes* previous = &keys[0];
    KeyBytes* current = &keys[1];
    KeyBytes* next = &keys[2];
    for (uint32 i = 0; i < count && next->Become(inTimeLine->GetKey(i)); ++i) {
      if (i >= 2 && IsDuplicate(*previous, *current, *next)) {
        if (times.GetElemCount() == 0) {
          times.SetElemSpace(count - i);  // for all that can follow
        }
        times.AddElem(current->GetTime());
      }
      previous = std::exchange(current, std::exchange(next, previous));
    }
    for (const int32 time : times) {
      inTimeLine->DeleteKeyAt(time);
    }
  }
};

class DuplicatesWork final : public KeyframeWork {
 public:
  void Work(ITimeLineOwner& inOwner) override {
    RDCTimelineCallback callback;
    inOwner.ForEachTimeLine(&callback);
  }
};

}  // namespace

void RemoveDupKeyframesCommand::GetMenuCallBack(ISelfPrepareMenuCallBack** outCallBack) {
  StoreMenuCallBack<RDCIsSelectionNonEmpty>(outCallBack);
}

MCResult RemoveDupKeyframesCommand::Init(ISceneCommandContext* inContext) {
  fScope = {};
  return fContext.Init(inContext);
}

MCResult RemoveDupKeyframesCommand::Prepare() {
  return fContext.Prepare("RemoveDupKeyframes", __LINE__);
}

bool RemoveDupKeyframesCommand::Do() {
  return RunCommand([&] {
    DuplicatesWork work;
    RunInScope(fContext, kDuplicatesDialog, fScope, work);
  });
}

}  // namespace qlx
