// The layout of the records where the closed host meets them: on 32-bit targets.
#include "QLXModifierData.h"

#include <cstddef>

namespace qlx {

#if UINTPTR_MAX == UINT32_MAX

// Strings have a table of operations, so the records have no standard layout; both compilers lay them out all the same.
#pragma GCC diagnostic push
#pragma GCC diagnostic ignored "-Winvalid-offsetof"

static_assert(sizeof(QLXModifierData) == 1468);
static_assert(offsetof(QLXModifierData, fTargetLabel) == 0);
static_assert(offsetof(QLXModifierData, fControllerName) == 272);
static_assert(offsetof(QLXModifierData, fControllerLabel) == 544);
static_assert(offsetof(QLXModifierData, fListAllProperties) == 816);
static_assert(offsetof(QLXModifierData, fListReserved) == 817);
static_assert(offsetof(QLXModifierData, fCombineReplace) == 818);
static_assert(offsetof(QLXModifierData, fCombineSelf) == 819);
static_assert(offsetof(QLXModifierData, fCombineAdd) == 820);
static_assert(offsetof(QLXModifierData, fCombineSubtract) == 821);
static_assert(offsetof(QLXModifierData, fCombineMultiply) == 822);
static_assert(offsetof(QLXModifierData, fCombineDivide) == 823);
static_assert(offsetof(QLXModifierData, fModifyAdd) == 824);
static_assert(offsetof(QLXModifierData, fModifySubtract) == 825);
static_assert(offsetof(QLXModifierData, fModifyMultiply) == 826);
static_assert(offsetof(QLXModifierData, fModifyDivide) == 827);
static_assert(offsetof(QLXModifierData, fModifySet) == 828);
static_assert(offsetof(QLXModifierData, fModifyValue) == 832);
static_assert(offsetof(QLXModifierData, fDecayOn) == 836);
static_assert(offsetof(QLXModifierData, fGrowOn) == 837);
static_assert(offsetof(QLXModifierData, fOscillateOn) == 838);
static_assert(offsetof(QLXModifierData, fStartOn) == 839);
static_assert(offsetof(QLXModifierData, fStartFrame) == 840);
static_assert(offsetof(QLXModifierData, fEndOn) == 844);
static_assert(offsetof(QLXModifierData, fEndFrame) == 848);
static_assert(offsetof(QLXModifierData, fDelayOn) == 852);
static_assert(offsetof(QLXModifierData, fDelayFrames) == 856);
static_assert(offsetof(QLXModifierData, fModifyUnit) == 860);
static_assert(offsetof(QLXModifierData, fMirrorTransform) == 864);
static_assert(offsetof(QLXModifierData, fSourceName) == 868);
static_assert(offsetof(QLXModifierData, fPositionAll) == 1140);
static_assert(offsetof(QLXModifierData, fPositionNone) == 1141);
static_assert(offsetof(QLXModifierData, fPositionCustom) == 1142);
static_assert(offsetof(QLXModifierData, fPositionX) == 1143);
static_assert(offsetof(QLXModifierData, fPositionY) == 1144);
static_assert(offsetof(QLXModifierData, fPositionZ) == 1145);
static_assert(offsetof(QLXModifierData, fPositionInvertX) == 1146);
static_assert(offsetof(QLXModifierData, fPositionInvertY) == 1147);
static_assert(offsetof(QLXModifierData, fPositionInvertZ) == 1148);
static_assert(offsetof(QLXModifierData, fRotationAll) == 1149);
static_assert(offsetof(QLXModifierData, fRotationNone) == 1150);
static_assert(offsetof(QLXModifierData, fRotationCustom) == 1151);
static_assert(offsetof(QLXModifierData, fRotationX) == 1152);
static_assert(offsetof(QLXModifierData, fRotationY) == 1153);
static_assert(offsetof(QLXModifierData, fRotationZ) == 1154);
static_assert(offsetof(QLXModifierData, fRotationInvertX) == 1155);
static_assert(offsetof(QLXModifierData, fRotationInvertY) == 1156);
static_assert(offsetof(QLXModifierData, fRotationInvertZ) == 1157);
static_assert(offsetof(QLXModifierData, fScaleUniform) == 1158);
static_assert(offsetof(QLXModifierData, fScaleX) == 1159);
static_assert(offsetof(QLXModifierData, fScaleY) == 1160);
static_assert(offsetof(QLXModifierData, fScaleZ) == 1161);
static_assert(offsetof(QLXModifierData, fAttributeMode) == 1162);
static_assert(offsetof(QLXModifierData, fLowerLimitOn) == 1163);
static_assert(offsetof(QLXModifierData, fLowerLimit) == 1164);
static_assert(offsetof(QLXModifierData, fUpperLimitOn) == 1168);
static_assert(offsetof(QLXModifierData, fUpperLimit) == 1172);
static_assert(offsetof(QLXModifierData, fName) == 1176);
static_assert(offsetof(QLXModifierData, fAbsolute) == 1448);
static_assert(offsetof(QLXModifierData, fRelative) == 1449);
static_assert(offsetof(QLXModifierData, fLimitUnit) == 1452);
static_assert(offsetof(QLXModifierData, fBakeKeyframes) == 1456);
static_assert(offsetof(QLXModifierData, fFindControllerByName) == 1457);
static_assert(offsetof(QLXModifierData, fFindSourceByName) == 1458);
static_assert(offsetof(QLXModifierData, fRangeOn) == 1459);
static_assert(offsetof(QLXModifierData, fRangeMin) == 1460);
static_assert(offsetof(QLXModifierData, fRangeMax) == 1464);

static_assert(sizeof(QLXDecay) == 16);
static_assert(offsetof(QLXDecay, fDecayLinear) == 0);
static_assert(offsetof(QLXDecay, fDecayQuadratic) == 1);
static_assert(offsetof(QLXDecay, fDecayCubic) == 2);
static_assert(offsetof(QLXDecay, fDecayQuadraticOnly) == 3);
static_assert(offsetof(QLXDecay, fDecayCubicOnly) == 4);
static_assert(offsetof(QLXDecay, fDecayMax) == 8);
static_assert(offsetof(QLXDecay, fDecayMin) == 12);

static_assert(sizeof(QLXGrowth) == 16);
static_assert(offsetof(QLXGrowth, fGrowLinear) == 0);
static_assert(offsetof(QLXGrowth, fGrowQuadratic) == 1);
static_assert(offsetof(QLXGrowth, fGrowCubic) == 2);
static_assert(offsetof(QLXGrowth, fGrowQuadraticOnly) == 3);
static_assert(offsetof(QLXGrowth, fGrowCubicOnly) == 4);
static_assert(offsetof(QLXGrowth, fGrowMax) == 8);
static_assert(offsetof(QLXGrowth, fGrowMin) == 12);

static_assert(sizeof(QLXOscillator) == 24);
static_assert(offsetof(QLXOscillator, fOscillatorSine) == 0);
static_assert(offsetof(QLXOscillator, fOscillatorCosine) == 1);
static_assert(offsetof(QLXOscillator, fOscillatorPhase) == 4);
static_assert(offsetof(QLXOscillator, fOscillatorScale) == 8);
static_assert(offsetof(QLXOscillator, fOscillatorMax) == 12);
static_assert(offsetof(QLXOscillator, fOscillatorMin) == 16);
static_assert(offsetof(QLXOscillator, fOscillatorSpeed) == 20);

static_assert(sizeof(QLXChainLink) == 3656);
static_assert(offsetof(QLXChainLink, fData) == 0);
static_assert(offsetof(QLXChainLink, fCurves) == 1468 && sizeof(QLXCurves) == 56);
static_assert(offsetof(QLXCurves, fDecay) == 0 && offsetof(QLXCurves, fGrowth) == 16);
static_assert(offsetof(QLXCurves, fOscillator) == 32);
static_assert(offsetof(QLXChainLink, fTargetProperty) == 1524);
static_assert(offsetof(QLXChainLink, fControllerProperty) == 2564);
static_assert(offsetof(QLXChainLink, fTargetPath) == 3604);
static_assert(offsetof(QLXChainLink, fControlElementPath) == 3620);
static_assert(offsetof(QLXChainLink, fControllerPath) == 3636);
static_assert(offsetof(QLXChainLink, fTargetPropertySet) == 3652);
static_assert(offsetof(QLXChainLink, fControllerPropertySet) == 3653);
static_assert(offsetof(QLXChainLink, fHasControlElement) == 3654);
static_assert(offsetof(QLXChainLink, fUseControlElement) == 3655);

#pragma GCC diagnostic pop

#endif

}  // namespace qlx
