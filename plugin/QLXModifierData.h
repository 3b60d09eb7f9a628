// What a link of `QLXModifier` is made of: its public block, its curves and oscillator, and the record by which a chain
// of links is laid over a figure.
//
// Lengths are in scene units, angles in radians, times in frames. Radio groups are runs of booleans, tested in their
// order: the first true one wins.
#pragma once

#include "HostScene.h"
#include "MCString.h"

namespace qlx {

// The public block: what the host's parameter exchange reads and writes, field by field. 1468 bytes on 32-bit targets
// (QLXModifierData.cpp states every offset); larger on others, where strings are.
struct QLXModifierData {
  TMCString255 fTargetLabel;        // shown for the target; never evaluated
  TMCString255 fControllerName;     // for the search by name
  TMCString255 fControllerLabel;    // shown for the controller; never evaluated
  bool fListAllProperties = false;  // the panel lists every element of the scene
  bool fListReserved = false;

  // Combine: how the result meets the target's own value.
  bool fCombineReplace = true;
  bool fCombineSelf = false;  // the target drives itself; no controller is read
  bool fCombineAdd = false;
  bool fCombineSubtract = false;
  bool fCombineMultiply = false;
  bool fCombineDivide = false;  // target over result

  // Modify: one step of arithmetic on the controller's value.
  bool fModifyAdd = true;
  bool fModifySubtract = false;
  bool fModifyMultiply = false;
  bool fModifyDivide = false;
  bool fModifySet = false;  // the operand is the value: no controller is needed
  real32 fModifyValue = 0;  // in the unit of `fModifyUnit`

  bool fDecayOn = false;  // wins over growth
  bool fGrowOn = false;
  bool fOscillateOn = false;

  // The window in which the link works; without a switch, its side is that of the animation.
  bool fStartOn = false;
  int32 fStartFrame = 0;
  bool fEndOn = false;
  int32 fEndFrame = 0;
  bool fDelayOn = false;
  int32 fDelayFrames = 0;

  int32 fModifyUnit = -1;

  // Object mode: position, rotation and scale of a source object, axis by axis.
  bool fMirrorTransform = false;
  TMCString255 fSourceName;
  bool fPositionAll = false;
  bool fPositionNone = true;
  bool fPositionCustom = false;
  bool fPositionX = false;
  bool fPositionY = false;
  bool fPositionZ = false;
  bool fPositionInvertX = false;
  bool fPositionInvertY = false;
  bool fPositionInvertZ = false;
  bool fRotationAll = false;
  bool fRotationNone = true;
  bool fRotationCustom = false;
  bool fRotationX = false;
  bool fRotationY = false;
  bool fRotationZ = false;
  bool fRotationInvertX = false;
  bool fRotationInvertY = false;
  bool fRotationInvertZ = false;
  bool fScaleUniform = false;
  bool fScaleX = false;
  bool fScaleY = false;
  bool fScaleZ = false;

  bool fAttributeMode = false;  // one value after another: the target path follows the controller path

  // Limits of what is written, in the unit of `fLimitUnit`. Of crossed ones the upper wins.
  bool fLowerLimitOn = false;
  real32 fLowerLimit = 0;
  bool fUpperLimitOn = false;
  real32 fUpperLimit = 0;

  TMCString255 fName{"QLX"};

  bool fAbsolute = true;   // stored; a link is absolute when it is not relative
  bool fRelative = false;  // work on the change of the controller's value since the start of the window
  int32 fLimitUnit = -1;
  bool fBakeKeyframes = false;

  // Either of the two makes both searches go by name.
  bool fFindControllerByName = false;
  bool fFindSourceByName = false;

  // Bounds of the mapped value. Of crossed ones the lower wins.
  bool fRangeOn = false;
  real32 fRangeMin = 0;
  real32 fRangeMax = 0;
};

// What `fModifyUnit` and `fLimitUnit` say; any other number leaves a value as it is.
enum QLXUnit : int32 {
  kUnitNone = 0,
  kUnitCentimetres = 1,
  kUnitInches = 2,
  kUnitFeet = 3,
  kUnitMetres = 4,
  kUnitDegrees = 5,
  kUnitRadians = 6,
  kUnitPercent = 7,
};

// The factor by which a link fades from the start of its window to the end. The choice is tested in the order linear,
// quadratic only, cubic only, quadratic, cubic.
struct QLXDecay {
  bool fDecayLinear = true;
  bool fDecayQuadratic = false;
  bool fDecayCubic = false;
  bool fDecayQuadraticOnly = false;
  bool fDecayCubicOnly = false;
  real32 fDecayMax = 1;  // at the start
  real32 fDecayMin = 0;  // the lowest
};

// The same for a link that sets in; the same order.
struct QLXGrowth {
  bool fGrowLinear = true;
  bool fGrowQuadratic = false;
  bool fGrowCubic = false;
  bool fGrowQuadraticOnly = false;
  bool fGrowCubicOnly = false;
  real32 fGrowMax = 1;  // the highest
  real32 fGrowMin = 0;  // at the start
};

struct QLXOscillator {
  bool fOscillatorSine = true;
  bool fOscillatorCosine = false;
  real32 fOscillatorPhase = 0;  // radians
  real32 fOscillatorScale = 1;
  real32 fOscillatorMax = 1;
  real32 fOscillatorMin = -1;
  real32 fOscillatorSpeed = 1;  // radians a frame
};

struct QLXCurves {
  QLXDecay fDecay;
  QLXGrowth fGrowth;
  QLXOscillator fOscillator;
};

// The bytes of the longest path that a link takes, which are those of a text path.
inline constexpr uint32 kLongestQLXPath = 1023;

// What a link keeps beside its public block, and saves as tokens. Paths are text paths (scene3d/TextPath.h) or one of
// "GlbX", "GlbY" and "GlbZ", which mean the element's position in the scene.
struct QLXPrivateData {
  TMCDynamicString fTargetPath;  // the value that is written
  bool fTargetPathSet = false;
  bool fControllerPathSet = false;
  ObjectReference fControllerRef;
  ObjectReference fSourceRef;        // of object mode
  TMCDynamicString fControllerPath;  // the value that is read
  QLXCurves fCurves;
};

// One link of a chain, as a dialog composes it and a command lays it: it becomes a modifier of its own by
// `QLXModifier::SetChainLink`. It is in object mode, and its source is the chain's control element. 3656 bytes on
// 32-bit targets.
struct QLXChainLink {
  QLXChainLink() { fData.fMirrorTransform = true; }

  // The control element's name is the record's name of the source.
  TMCString255& GetControlElementName() { return fData.fSourceName; }

  QLXModifierData fData;
  QLXCurves fCurves;
  TMCString1023 fTargetProperty;  // text paths, for a link in attribute mode
  TMCString1023 fControllerProperty;
  TreePath fTargetPath;          // the element that gets the link's modifier
  TreePath fControlElementPath;  // the source of object mode
  TreePath fControllerPath;      // the controller of attribute mode
  bool fTargetPropertySet = false;
  bool fControllerPropertySet = false;
  bool fHasControlElement = false;  // there is a control element ...
  bool fUseControlElement = false;  // ... and the link follows it
};

}  // namespace qlx
