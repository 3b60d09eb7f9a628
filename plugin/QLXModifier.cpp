#include "QLXModifier.h"

#include <algorithm>
#include <cstddef>
#include <iterator>
#include <new>
#include <utility>

#include "MCException.h"
#include "MCStream.h"
#include "ModifiedElement.h"
#include "OperationGuard.h"
#include "QLXEvaluation.h"
#include "QLXModifierTokens.h"

namespace qlx {

namespace {

// A reference is the bytes of the last id of a tree path, lowest byte first.
void SetReference(ObjectReference& outReference, const TreePath& inPath) {
  const uint32 count = inPath.GetElemCount();
  const uint32 id = count == 0 ? 0 : inPath[count - 1];
  if (!outReference.SetElemCount(count == 0 ? 0 : sizeof id)) {
    return;
  }
  for (uint32 i = 0; i < outReference.GetElemCount(); ++i) {
    outReference[i] = static_cast<uint8>(id >> (8 * i));
  }
}

// What there was no memory for is empty.
bool IsWholeCopy(const QLXPrivateData& inSource, const QLXPrivateData& inCopy) {
  return inCopy.fTargetPath.ByteLength() == inSource.fTargetPath.ByteLength() &&
         inCopy.fControllerPath.ByteLength() == inSource.fControllerPath.ByteLength() &&
         inCopy.fControllerRef.GetElemCount() == inSource.fControllerRef.GetElemCount() &&
         inCopy.fSourceRef.GetElemCount() == inSource.fSourceRef.GetElemCount();
}

MCResult MC_CALL Work(void* inModifier, TreeElement* inTree) {
  return static_cast<QLXModifier*>(inModifier)->QLXModifier::SetTreeElement(inTree);
}

}  // namespace

MCResult QLXModifier::QueryInterface(const MCGuid& inID, void** outObject) {
  if (inID == IExStreamIO::kInterfaceID) {
    return MCStoreCounted<IExStreamIO>(this, outObject);
  }
  if (inID == IModifierWork::kInterfaceID) {
    return MCStoreCounted<IModifierWork>(this, outObject);
  }
  if (inID == kInterfaceID) {
    return MCStoreCounted<QLXModifier>(this, outObject);
  }
  return TBasicTreeModifier::QueryInterface(inID, outObject);
}

MCResult QLXModifier::SetTreeElement(TreeElement* inTree) {
  return GuardOperation([&] {
    if (!inTree) {
      return MC_S_OK;
    }
    if (!fMemory.fTargetElement) {
      fMemory.fTargetElement.Share(inTree);
    }
    EvaluateLink({fData, fPrivate, fMemory, fLookups}, *inTree);
    return MC_S_OK;
  });
}

void QLXModifier::GetWorkCall(WorkCall& outCall) {
  outCall = {Work, this};
}

uint32 QLXModifier::ListWorkMemory(WorkMemory* outRanges, uint32 inRoom) {
  const auto between = [](const void* inStart, const void* inEnd) {
    const auto* const start = static_cast<const std::byte*>(inStart);
    return WorkMemory{start, static_cast<MCSize>(static_cast<const std::byte*>(inEnd) - start)};
  };
  const auto whole = [](const auto& inPart) { return WorkMemory{&inPart, sizeof inPart}; };
  constexpr MCSize kVector = 32;  // as much of two texts is compared at once, past their ends
  const bool isByName = fData.fFindControllerByName || fData.fFindSourceByName;
  const TMCString& name = fData.fAttributeMode ? fData.fControllerName : fData.fSourceName;
  const WorkMemory ranges[] = {
      between(&fMemory.fTargetElement, &fMemory + 1),
      between(&fLookups, fLookups.GetEndOfWork()),
      between(&fData.fCombineReplace, &fData.fSourceName),
      between(&fData.fPositionAll, &fData.fName),
      between(&fData.fAbsolute, &fPrivate),
      fData.fRelative || fData.fCombineSelf ? whole(fMemory.fChannels) : WorkMemory{},
      fData.fDelayOn ? whole(fMemory.fDelayQueue) : WorkMemory{},
      isByName ? WorkMemory{&name, sizeof(TMCString) + name.ByteLength() + kVector} : WorkMemory{},
      isByName ? whole(fLookups.GetFoundName()) : WorkMemory{},
      isByName ? WorkMemory{fLookups.GetFoundName().CStr(), fLookups.GetFoundName().ByteLength() + kVector}
               : WorkMemory{},
      fData.fDecayOn || fData.fGrowOn || fData.fOscillateOn ? whole(fPrivate.fCurves) : WorkMemory{},
  };
  const auto count = std::min<uint32>(inRoom, std::size(ranges));
  std::copy_n(ranges, count, outRanges);
  return count;
}

MCResult QLXModifier::ExtensionDataChanged() {
  if (!fLinksLocked) {
    fLookups.Forget();
    fPrivate.fTargetPathSet = false;
    fPrivate.fControllerPathSet = false;
    fMemory.fLastTime = 0;
  }
  return MC_S_OK;
}

void QLXModifier::Clone(IExDataExchanger** outCopy, void* /*inAllocationContext*/) {
  if (!outCopy) {
    return;
  }
  if (IExDataExchanger* const old = std::exchange(*outCopy, nullptr)) {
    old->Release();
  }
  auto* const copy = new (std::nothrow) QLXModifier;
  if (!copy) {
    throw TMCException(MC_E_OUTOFMEMORY, "QLXModifier", __LINE__);
  }
  copy->fClonedFrom = this;
  *outCopy = static_cast<IExDataExchanger*>(copy);
  copy->fData = fData;
  if (CopyDataTo(*outCopy) != MC_S_OK) {
    std::exchange(*outCopy, nullptr)->Release();
    throw TMCException(MC_E_OUTOFMEMORY, "QLXModifier", __LINE__);
  }
}

MCResult QLXModifier::CopyDataTo(IExDataExchanger* inOther) {
  const auto other = MCQuery<QLXModifier>(inOther);
  if (other && other.Get() != this) {
    other->fPrivate = fPrivate;
    other->fLinksLocked = fLinksLocked;
    other->fLookups.Forget();
    const bool hasMemory = other->fMemory.CopyFrom(fMemory);
    return hasMemory && IsWholeCopy(fPrivate, other->fPrivate) ? MC_S_OK : MC_E_OUTOFMEMORY;
  }
  return MC_S_OK;
}

MCResult QLXModifier::Read(TMCStream* inStream, Fallback inFallback, void* inContext) {
  return GuardExport([&] {
    if (!inStream) {
      return MC_E_INVALIDARG;
    }
    fLookups.Forget();
    ReadTokens(*inStream, fPrivate, inFallback, inContext);
    return MC_S_OK;
  });
}

MCResult QLXModifier::Write(TMCStream* inStream) {
  return GuardExport([&] {
    if (!inStream) {
      return MC_E_INVALIDARG;
    }
    WriteTokens(*inStream, fPrivate);
    return inStream->fail() ? MC_E_NOTVALID : MC_S_OK;
  });
}

void QLXModifier::SetTargetPath(const TMCString& inPath) {
  fLookups.Forget();
  fPrivate.fTargetPath = TMCString1023(inPath);
  fPrivate.fTargetPathSet = true;
}

void QLXModifier::SetControllerPath(const TMCString& inPath) {
  fLookups.Forget();
  fPrivate.fControllerPath = TMCString1023(inPath);
  fPrivate.fControllerPathSet = true;
}

void QLXModifier::SetControllerRef(const ObjectReference& inReference) {
  fLookups.Forget();
  fPrivate.fControllerRef = inReference;
}

void QLXModifier::SetSourceRef(const ObjectReference& inReference) {
  fLookups.Forget();
  fPrivate.fSourceRef = inReference;
}

// A clone shares the element that it was evaluated on with the modifier that it was made from: the host knows better.
TMCCountedPtr<TreeElement> QLXModifier::FindElement() {
  auto element = FindModifiedElement(*this);
  return element ? element : fMemory.fTargetElement;
}

void QLXModifier::SetChainLink(const QLXChainLink& inLink) {
  fLookups.Forget();
  fData = inLink.fData;
  fPrivate.fCurves = inLink.fCurves;
  fPrivate.fTargetPath = inLink.fTargetProperty;
  fPrivate.fTargetPathSet = inLink.fTargetPropertySet;
  fPrivate.fControllerPath = inLink.fControllerProperty;
  fPrivate.fControllerPathSet = inLink.fControllerPropertySet;
  SetReference(fPrivate.fControllerRef, inLink.fControllerPath);
  const bool hasSource = inLink.fHasControlElement && inLink.fUseControlElement;
  SetReference(fPrivate.fSourceRef, hasSource ? inLink.fControlElementPath : TreePath());
}

}  // namespace qlx
