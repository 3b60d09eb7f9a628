#include "SavedValues.h"

#include <algorithm>
#include <bit>

#include "Element.h"
#include "Scene.h"
#include "ValueSet.h"

namespace qlx::host {

namespace {

bool SameBits(real32 inA, real32 inB) {
  return std::bit_cast<uint32>(inA) == std::bit_cast<uint32>(inB);
}

bool SameKey(const CurveKey& inA, const CurveKey& inB) {
  return inA.fTime == inB.fTime && SameBits(inA.fValue, inB.fValue) && SameBits(inA.fInTangent, inB.fInTangent) &&
         SameBits(inA.fOutTangent, inB.fOutTangent) && inA.fInterpolation == inB.fInterpolation;
}

bool SameTurn(const QuaternionValue& inA, const QuaternionValue& inB) {
  return std::equal(inA.begin(), inA.end(), inB.begin(),
                    [](real64 a, real64 b) { return std::bit_cast<uint64>(a) == std::bit_cast<uint64>(b); });
}

bool SameRotation(const RotationCurve* inA, const RotationCurve* inB) {
  if (inA == nullptr || inB == nullptr) {
    return inA == inB;
  }
  return inA->GetInterpolation() == inB->GetInterpolation() &&
         std::equal(inA->GetKeys().begin(), inA->GetKeys().end(), inB->GetKeys().begin(), inB->GetKeys().end(),
                    [](const RotationKey& keyA, const RotationKey& keyB) {
                      return keyA.fTime == keyB.fTime && SameTurn(keyA.fValue, keyB.fValue) &&
                             SameTurn(keyA.fInTangent, keyB.fInTangent) && SameTurn(keyA.fOutTangent, keyB.fOutTangent);
                    });
}

bool SamePoint(const TVector3& inA, const TVector3& inB) {
  return SameBits(inA.x, inB.x) && SameBits(inA.y, inB.y) && SameBits(inA.z, inB.z);
}

const Curve& NoKeys() {
  static const Curve kNoKeys;
  return kNoKeys;
}

std::size_t SizeOfCurves(const std::vector<Curve>& inCurves) {
  std::size_t size = inCurves.size() * sizeof(Curve);
  for (const Curve& curve : inCurves) {
    size += curve.GetKeys().size() * sizeof(CurveKey);
  }
  return size;
}

}  // namespace

std::size_t SavedElement::GetSize() const {
  return sizeof(*this) + SizeOfCurves(fCurves) + (fRotation ? fRotation->GetKeys().size() * sizeof(RotationKey) : 0);
}

std::size_t SavedValueSet::GetSize() const {
  std::size_t size = sizeof(*this) + fValues.size() * sizeof(Value);
  for (const Value& value : fValues) {
    size += SizeOfCurves(value.fCurves);
  }
  return size;
}

// Curves

void Curve::Restore(const Curve& inSaved) {
  fKeys = inSaved.fKeys;
  fNextSerial = std::max(fNextSerial, inSaved.fNextSerial);
}

bool Curve::HasSameKeys(const Curve& inCurve) const {
  return std::equal(fKeys.begin(), fKeys.end(), inCurve.fKeys.begin(), inCurve.fKeys.end(), SameKey);
}

// Elements

SavedElement Element::SaveValues() const {
  SavedElement saved{fState.fBase, fEdited, {}, nullptr, GetMode(), GetHotPoint()};
  const auto hasKeys = [this](const ChannelInfo& info) {
    const Curve* const curve = GetCurve(info.fChannel);
    return curve != nullptr && !curve->IsEmpty();
  };
  if (std::any_of(kChannels.begin(), kChannels.end(), hasKeys)) {
    for (const ChannelInfo& info : kChannels) {
      saved.fCurves.push_back(*GetCurve(info.fChannel));
    }
  }
  if (fRotationCurve != nullptr) {
    saved.fRotation = std::make_shared<const RotationCurve>(*fRotationCurve);
  }
  return saved;
}

bool Element::HasValues(const SavedElement& inSaved) const {
  if (DifferentChannels(fState.fBase, inSaved.fBase) != 0 || fEdited != inSaved.fEdited || GetMode() != inSaved.fMode ||
      !SamePoint(GetHotPoint(), inSaved.fHotPoint) || !SameRotation(fRotationCurve.get(), inSaved.fRotation.get())) {
    return false;
  }
  return std::all_of(kChannels.begin(), kChannels.end(), [&](const ChannelInfo& info) {
    const Curve* const curve = GetCurve(info.fChannel);
    const Curve& saved = inSaved.fCurves.empty() ? NoKeys() : inSaved.fCurves[IndexOf(info.fChannel)];
    return (curve == nullptr ? NoKeys() : *curve).HasSameKeys(saved);
  });
}

void Element::RestoreValues(const SavedElement& inSaved) {
  if (fScene == nullptr) {
    return;
  }
  fState.fBase = inSaved.fBase;
  if (GetCurve(Channel::kPositionX) != nullptr || !inSaved.fCurves.empty()) {
    for (const ChannelInfo& info : kChannels) {
      GetOrMakeCurve(info.fChannel)
          .Restore(inSaved.fCurves.empty() ? NoKeys() : inSaved.fCurves[IndexOf(info.fChannel)]);
    }
  }
  if (inSaved.fRotation != nullptr) {
    SetRotationCurve(std::make_unique<RotationCurve>(*inSaved.fRotation));
  } else {
    fRotationCurve.reset();
  }
  if (GetMode() != inSaved.fMode) {
    SetMode(inSaved.fMode);
  }
  if (!SamePoint(GetHotPoint(), inSaved.fHotPoint)) {
    SetHotPoint(inSaved.fHotPoint);
  }
  fEdited = inSaved.fEdited;
  NotePoseEdit(kRotationMask | kScaleMask);
  fState.fWritten = 0;
  fState.fKeepsUnmodified = false;
  StoreEvaluated(SampleAt(fScene->GetTime()));
}

// Sets of values

SavedValueSet ValueSet::SaveValues() const {
  SavedValueSet saved;
  for (const Value& value : fValues) {
    saved.fValues.push_back({value.fBase, value.fCurves, value.fIsEdited});
  }
  return saved;
}

bool ValueSet::HasValues(const SavedValueSet& inSaved) const {
  return std::equal(fValues.begin(), fValues.end(), inSaved.fValues.begin(), inSaved.fValues.end(),
                    [](const Value& value, const SavedValueSet::Value& saved) {
                      if (value.fIsEdited != saved.fIsEdited ||
                          !std::equal(value.fBase.begin(), value.fBase.end(), saved.fBase.begin(), SameBits)) {
                        return false;
                      }
                      for (std::size_t i = 0; i < std::max(value.fCurves.size(), saved.fCurves.size()); ++i) {
                        if (!(i < value.fCurves.size() ? value.fCurves[i] : NoKeys())
                                 .HasSameKeys(i < saved.fCurves.size() ? saved.fCurves[i] : NoKeys())) {
                          return false;
                        }
                      }
                      return true;
                    });
}

void ValueSet::RestoreValues(const SavedValueSet& inSaved) {
  if (fScene == nullptr || inSaved.fValues.size() != fValues.size()) {
    return;
  }
  for (std::size_t i = 0; i < fValues.size(); ++i) {
    Value& value = fValues[i];
    const SavedValueSet::Value& saved = inSaved.fValues[i];
    value.fBase = saved.fBase;
    value.fIsEdited = saved.fIsEdited;
    if (!value.fCurves.empty() || !saved.fCurves.empty()) {
      std::size_t number = 0;
      for (Curve& curve : MakeCurves(value)) {
        curve.Restore(number < saved.fCurves.size() ? saved.fCurves[number] : NoKeys());
        ++number;
      }
    }
    value.fEvaluated = value.fUnmodified = SampleAt(i, fScene->GetTime());
  }
}

}  // namespace qlx::host
