#include "FakeScene.h"

#include <cstring>

namespace qlx::contract {

MCResult FakeTimeLine::InsertKey(int32 inTime, const void* inValue, MCID inTypeId) {
  InsertedKey key{.fTime = inTime, .fValue = 0, .fType = inTypeId};
  std::memcpy(&key.fValue, inValue, sizeof key.fValue);
  fKeys.push_back(key);
  return MC_E_NOTVALID;  // nobody looks at it
}

void FakeTimeLineOwner::ForEachTimeLine(IForEachTimeLineCallback* inCallback) {
  ++fWalks;
  EXPECT_GT(GetReferences(), 0) << "the owner is held while it is walked";
  for (FakeTimeLine* timeLine : fTimeLines) {
    inCallback->Visit(timeLine, nullptr);
    if (fAfterEach) {
      fAfterEach();
    }
  }
}

MCResult FakeElement::GetLocalTransform(TTreeTransform& outTransform) {
  if (fOnRead) {
    fOnRead();
  }
  outTransform = fLocal;
  return MC_S_OK;
}

MCResult FakeElement::SetLocalTransform(const TTreeTransform& inTransform, int32 in1, int32 in2, int32 in3, int32 in4,
                                        int32 in5, int32 in6) {
  fWrites.push_back({false, inTransform, {in1, in2, in3, in4, in5, in6}});
  return MC_S_OK;
}

MCResult FakeElement::GetGlobalTransform(TTreeTransform& outTransform) {
  outTransform = fGlobal;
  return MC_S_OK;
}

MCResult FakeElement::SetGlobalTransform(const TTreeTransform& inTransform, int32 in1, int32 in2, int32 in3, int32 in4,
                                         int32 in5) {
  fWrites.push_back({true, inTransform, {in1, in2, in3, in4, in5}});
  return MC_S_OK;
}

MCResult FakeElement::GetGlobalTransformChain(TTreeChainTransform& outTransform) {
  outTransform = fChain;
  return MC_S_OK;
}

}  // namespace qlx::contract
