// The properties of glTF that are values of the scene, with glTF's own limits. Part of GltfValues.
#pragma once

#include <limits>
#include <string>

#include "GltfValues.h"

namespace qlx::host {

inline constexpr real32 kNoLimit = std::numeric_limits<real32>::max();
inline constexpr real32 kAboveZero = 1e-6f;
inline constexpr real32 kHalfTurn = 3.14159265f;
inline constexpr MCID kColour = "colo"_id;
inline constexpr MCID kRealType = "qfix"_id;

inline constexpr ValueRule kMaterialRules[] = {
    {"/pbrMetallicRoughness/baseColorFactor", "BCol"_id, "Base colour", kColour, 4, 0, 1, 1},
    {"/pbrMetallicRoughness/metallicFactor", "Metl"_id, "Metallic", kRealType, 1, 0, 1, 1},
    {"/pbrMetallicRoughness/roughnessFactor", "Roug"_id, "Roughness", kRealType, 1, 0, 1, 1},
    {"/emissiveFactor", "Emis"_id, "Emissive colour", kColour, 3, 0, 1, 0},
    {"/extensions/KHR_materials_emissive_strength/emissiveStrength", "EmSt"_id, "Emissive strength", kRealType, 1, 0,
     kNoLimit, 1},
    {"/normalTexture/scale", "NorS"_id, "Normal scale", kRealType, 1, -kNoLimit, kNoLimit, 1, "/normalTexture"},
    {"/occlusionTexture/strength", "OccS"_id, "Occlusion strength", kRealType, 1, 0, 1, 1, "/occlusionTexture"},
    {"/alphaCutoff", "AlCu"_id, "Alpha cut-off", kRealType, 1, 0, kNoLimit, 0.5f, "/alphaMode", "MASK"}};

// A camera without an aspect ratio or a far plane has the window's, or none: there is no number that says it.
inline constexpr ValueRule kCameraRules[] = {
    {"/perspective/yfov", "YFov"_id, "Field of view", kRealType, 1, kAboveZero, kHalfTurn},
    {"/perspective/aspectRatio", "Aspe"_id, "Aspect ratio", kRealType, 1, kAboveZero, kNoLimit},
    {"/perspective/znear", "ZNea"_id, "Near plane", kRealType, 1, kAboveZero, kNoLimit, {}, nullptr, nullptr, true},
    {"/perspective/zfar", "ZFar"_id, "Far plane", kRealType, 1, kAboveZero, kNoLimit, {}, nullptr, nullptr, true},
    {"/orthographic/xmag", "XMag"_id, "Half width", kRealType, 1, -kNoLimit, kNoLimit, {}, nullptr, nullptr, true},
    {"/orthographic/ymag", "YMag"_id, "Half height", kRealType, 1, -kNoLimit, kNoLimit, {}, nullptr, nullptr, true},
    {"/orthographic/znear", "ZNea"_id, "Near plane", kRealType, 1, 0, kNoLimit, {}, nullptr, nullptr, true},
    {"/orthographic/zfar", "ZFar"_id, "Far plane", kRealType, 1, kAboveZero, kNoLimit, {}, nullptr, nullptr, true}};

inline constexpr ValueRule kLightRules[] = {
    {"/color", "Colr"_id, "Colour", kColour, 3, 0, 1, 1},
    {"/intensity", "Inte"_id, "Intensity", kRealType, 1, 0, kNoLimit, 1},
    {"/range", "Rang"_id, "Range", kRealType, 1, kAboveZero, kNoLimit, {}, nullptr, nullptr, true},
    {"/spot/innerConeAngle", "InCo"_id, "Inner cone angle", kRealType, 1, 0, kHalfTurn / 2, 0, "/type", "spot"},
    {"/spot/outerConeAngle", "OuCo"_id, "Outer cone angle", kRealType, 1, kAboveZero, kHalfTurn / 2, kHalfTurn / 4,
     "/type", "spot"}};

inline constexpr ValueRule kWeightRule{"/weights", 0, "Morphs", kRealType, 1, -kNoLimit, kNoLimit};
inline constexpr ValueRule kCustomNumber{"", 0, "", kRealType, 1, -kNoLimit, kNoLimit};
inline constexpr ValueRule kCustomBoolean{"", 0, "", "bool"_id, 1, 0, 1};

// "from 0 to 1", "0 or more", "above 0".
std::string LimitText(const ValueRule& inRule);

}  // namespace qlx::host
