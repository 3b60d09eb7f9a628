// Copies of what a person can edit of an element's values and of a set's: base values, keys, and what counts as edited.
#pragma once

#include <memory>
#include <vector>

#include "AnimatedValue.h"
#include "Channels.h"
#include "RotationCurve.h"

namespace qlx::host {

struct SavedElement {
  ChannelValues fBase;
  ChannelMask fEdited = 0;
  std::vector<Curve> fCurves;  // one a channel, or none where no channel has keys
  std::shared_ptr<const RotationCurve> fRotation;
  int32 fMode = 0;
  TVector3 fHotPoint;

  // Bytes of memory that it takes, about.
  std::size_t GetSize() const;
};

struct SavedValueSet {
  struct Value {
    ValueNumbers fBase{};
    std::vector<Curve> fCurves;  // as many as the value has
    bool fIsEdited = false;
  };
  std::vector<Value> fValues;

  std::size_t GetSize() const;
};

}  // namespace qlx::host
