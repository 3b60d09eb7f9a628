// Descriptions as the bytes of a resource, and back. The form is the same on every target; docs/formats/resources.md
// has it byte by byte.
//
// What is decoded may be any bytes: a `ResourceError` names the resource and the byte of what is wrong.
#pragma once

#include <span>
#include <vector>

#include "Descriptions.h"

namespace qlx::host {

// Resource types. Records have the ids 1, 2, 3... in their order; panels and dialogs their own.
inline constexpr MCID kExtensionType = "Extn"_id;
inline constexpr MCID kParameterMapType = "PMap"_id;
inline constexpr MCID kPanelType = "Panl"_id;
inline constexpr MCID kDialogType = "Dlog"_id;

// Controls stand in each other at most so deep, the root counted.
inline constexpr int kDeepestControl = 16;

std::vector<uint8> EncodeExtension(const ExtensionRecord& inRecord);
std::vector<uint8> EncodeParameterMap(const ParameterMapDescription& inMap);
// Of a panel or dialog: its kind and id are those of the resource.
std::vector<uint8> EncodePart(const PartDescription& inPart);

ExtensionRecord DecodeExtension(std::span<const uint8> inBytes, int16 inID);
ParameterMapDescription DecodeParameterMap(std::span<const uint8> inBytes, int16 inID);
PartDescription DecodePart(std::span<const uint8> inBytes, MCID inKind, int16 inID);

}  // namespace qlx::host
