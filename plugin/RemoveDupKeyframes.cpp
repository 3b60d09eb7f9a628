#include "RemoveDupKeyframes.h"

#include <cstring>

#include "MCArray.h"

namespace qlx {

namespace {

constexpr int32 kDuplicatesDialog = 158;

class RDCIsSelectionNonEmpty final : public SelectionMenuCallBack {};

// A key's value in the form of another key's.
class KeyBytes {
 public:
  // False for a value that cannot be read so.
  bool Read(ITimeLineKey& inKey, MCID inType) {
    IKeyValue* const value = inKey.GetValue();
    bool scratch = false;
    return value && value->ReadValue(fBytes, inType, scratch) == MC_S_OK;
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

  alignas(real64) std::byte fBytes[IKeyValue::kMaxSize] = {};
};

// A value of more bytes than any has is nobody's duplicate.
bool IsDuplicate(ITimeLineKey& inPrevious, ITimeLineKey& inCurrent, ITimeLineKey& inNext) {
  IKeyValue* const value = inPrevious.GetValue();
  const uint32 size = value ? value->GetValueSize() : 0;
  if (!value || size > IKeyValue::kMaxSize) {
    return false;
  }
  const MCID type = value->GetValueType();
  KeyBytes previous;
  KeyBytes current;
  KeyBytes next;
  return previous.Read(inPrevious, type) && current.Read(inCurrent, type) && next.Read(inNext, type) &&
         previous.Equals(current, type, size) && current.Equals(next, type, size);
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
    auto previous = MCShare(inTimeLine->GetKey(0));
    auto current = MCShare(inTimeLine->GetKey(1));
    for (uint32 i = 2; i < count && previous && current; ++i) {
      auto next = MCShare(inTimeLine->GetKey(i));
      if (next && IsDuplicate(*previous, *current, *next)) {
        if (times.GetElemCount() == 0) {
          times.SetElemSpace(count - i);  // for all that can follow
        }
        times.AddElem(current->GetTime());
      }
      previous = std::move(current);
      current = std::move(next);
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
