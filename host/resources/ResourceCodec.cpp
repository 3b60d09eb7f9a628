#include "ResourceCodec.h"

#include <fmt/format.h>

#include <algorithm>
#include <iterator>

#include "ControlKinds.h"
#include "ResourceBytes.h"
#include "ResourceError.h"

namespace qlx::host {

namespace {

constexpr uint16 kVersion = 1;
constexpr uint8 kFlagReadOnly = 1;
constexpr uint8 kFlagSameRow = 2;
// Bytes of the smallest control (kind, flags, columns, ids, numbers, empty texts and lists), text and field.
constexpr std::size_t kSmallestControl = 3 + 3 * 4 + 2 + 3 * 4 + 4 * 2;
constexpr std::size_t kSmallestText = 2;
constexpr std::size_t kSmallestField = 2 + 4 + 4;

void PutControl(const ControlDescription& inControl, ResourceWriter& ioWriter) {
  ioWriter.PutU8(static_cast<uint8>(inControl.fKind));
  ioWriter.PutU8(
      static_cast<uint8>((inControl.fReadOnly ? kFlagReadOnly : 0) | (inControl.fSameRow ? kFlagSameRow : 0)));
  ioWriter.PutU8(inControl.fColumns);
  ioWriter.PutU32(inControl.fID);
  ioWriter.PutU32(inControl.fRadioGroup);
  ioWriter.PutU32(inControl.fPaneList);
  ioWriter.PutU16(static_cast<uint16>(inControl.fPaneRow));
  ioWriter.PutReal(inControl.fMinimum);
  ioWriter.PutReal(inControl.fMaximum);
  ioWriter.PutReal(inControl.fDefault);
  ioWriter.PutText(inControl.fLabel);
  ioWriter.PutText(inControl.fHelp);
  ioWriter.PutU16(static_cast<uint16>(inControl.fItems.size()));
  for (const std::string& item : inControl.fItems) {
    ioWriter.PutText(item);
  }
  ioWriter.PutU16(static_cast<uint16>(inControl.fChildren.size()));
  for (const ControlDescription& child : inControl.fChildren) {
    PutControl(child, ioWriter);
  }
}

void CheckVersion(ResourceReader& ioReader) {
  const uint16 version = ioReader.GetU16();
  if (version != kVersion) {
    ioReader.Fail(fmt::format("version {}, where version {} is known", version, kVersion));
  }
}

ControlKind GetKind(ResourceReader& ioReader) {
  const uint8 kind = ioReader.GetU8();
  if (kind >= std::size(kControlKinds)) {
    ioReader.Fail(fmt::format("no control is of the kind {}", kind));
  }
  return static_cast<ControlKind>(kind);
}

// Kind, flags and layout.
ControlDescription GetControlHead(ResourceReader& ioReader) {
  ControlDescription control;
  control.fKind = GetKind(ioReader);
  const uint8 flags = ioReader.GetU8();
  if ((flags & ~(kFlagReadOnly | kFlagSameRow)) != 0) {
    ioReader.Fail(fmt::format("the flags of a control are 0x{:02X}, which no program has written", flags));
  }
  control.fReadOnly = (flags & kFlagReadOnly) != 0;
  control.fSameRow = (flags & kFlagSameRow) != 0;
  control.fColumns = ioReader.GetU8();
  if (control.fColumns < 1 || control.fColumns > 12) {
    ioReader.Fail(fmt::format("a control of {} columns, and there are 12", control.fColumns));
  }
  return control;
}

ControlDescription GetControl(ResourceReader& ioReader, int inDepth) {
  if (inDepth > kDeepestControl) {
    ioReader.Fail(fmt::format("controls in each other, more than {} deep", kDeepestControl));
  }
  ControlDescription control = GetControlHead(ioReader);
  control.fID = ioReader.GetU32();
  control.fRadioGroup = ioReader.GetU32();
  control.fPaneList = ioReader.GetU32();
  control.fPaneRow = static_cast<int16>(ioReader.GetU16());
  if (control.fPaneRow < 0) {
    ioReader.Fail(fmt::format("a pane of the row {}", control.fPaneRow));
  }
  control.fMinimum = ioReader.GetReal();
  control.fMaximum = ioReader.GetReal();
  if (control.fMinimum > control.fMaximum) {
    ioReader.Fail("a range whose maximum is below its minimum");
  }
  control.fDefault = ioReader.GetReal();
  control.fLabel = ioReader.GetText();
  control.fHelp = ioReader.GetText();
  const uint16 items = ioReader.GetCount(kSmallestText);
  for (uint16 i = 0; i < items; ++i) {
    control.fItems.push_back(ioReader.GetText());
  }
  const uint16 children = ioReader.GetCount(kSmallestControl);
  if (children > 0 && !GetKindInfo(control.fKind).fHasChildren) {
    ioReader.Fail(fmt::format("a {} with controls in it", GetKindInfo(control.fKind).fName));
  }
  for (uint16 i = 0; i < children; ++i) {
    control.fChildren.push_back(GetControl(ioReader, inDepth + 1));
  }
  return control;
}

FieldDescription GetField(ResourceReader& ioReader) {
  FieldDescription field;
  field.fName = ioReader.GetText();
  field.fType = ioReader.GetU32();
  if (GetFieldValue(field.fType) == ControlValue::kNone) {
    ioReader.Fail(fmt::format("a field of the unknown type {}", QuotedID(field.fType)));
  }
  field.fControl = ioReader.GetU32();
  return field;
}

}  // namespace

std::vector<uint8> EncodeExtension(const ExtensionRecord& inRecord) {
  ResourceWriter writer;
  writer.PutU16(kVersion);
  writer.PutGuid(inRecord.fClassID);
  writer.PutU32(inRecord.fFamily);
  writer.PutU32(inRecord.fID);
  writer.PutU16(static_cast<uint16>(inRecord.fResourceId));
  writer.PutText(inRecord.fName);
  writer.PutText(inRecord.fLabel);
  writer.PutText(inRecord.fHelp);
  return writer.Take();
}

std::vector<uint8> EncodeParameterMap(const ParameterMapDescription& inMap) {
  ResourceWriter writer;
  writer.PutU16(kVersion);
  writer.PutU32(inMap.fClass);
  writer.PutU16(static_cast<uint16>(inMap.fFields.size()));
  for (const FieldDescription& field : inMap.fFields) {
    writer.PutText(field.fName);
    writer.PutU32(field.fType);
    writer.PutU32(field.fControl);
  }
  return writer.Take();
}

std::vector<uint8> EncodePart(const PartDescription& inPart) {
  ResourceWriter writer;
  writer.PutU16(kVersion);
  writer.PutGuid(inPart.fExtension);
  writer.PutText(inPart.fLabel);
  PutControl(inPart.fRoot, writer);
  return writer.Take();
}

ExtensionRecord DecodeExtension(std::span<const uint8> inBytes, int16 inID) {
  ResourceReader reader(inBytes, kExtensionType, inID);
  CheckVersion(reader);
  ExtensionRecord record;
  record.fClassID = reader.GetGuid();
  record.fFamily = reader.GetU32();
  record.fID = reader.GetU32();
  record.fResourceId = static_cast<int16>(reader.GetU16());
  record.fName = reader.GetText();
  record.fLabel = reader.GetText();
  record.fHelp = reader.GetText();
  reader.End();
  return record;
}

ParameterMapDescription DecodeParameterMap(std::span<const uint8> inBytes, int16 inID) {
  ResourceReader reader(inBytes, kParameterMapType, inID);
  CheckVersion(reader);
  ParameterMapDescription map;
  map.fClass = reader.GetU32();
  const uint16 fields = reader.GetCount(kSmallestField);
  for (uint16 i = 0; i < fields; ++i) {
    map.fFields.push_back(GetField(reader));
    const auto isSame = [&](const FieldDescription& other) { return other.fName == map.fFields.back().fName; };
    if (std::any_of(map.fFields.begin(), map.fFields.end() - 1, isSame)) {
      reader.Fail(fmt::format("two fields with the name \"{}\"", map.fFields.back().fName));
    }
  }
  reader.End();
  return map;
}

PartDescription DecodePart(std::span<const uint8> inBytes, MCID inKind, int16 inID) {
  ResourceReader reader(inBytes, inKind, inID);
  CheckVersion(reader);
  PartDescription part;
  part.fKind = inKind;
  part.fResourceId = inID;
  part.fExtension = reader.GetGuid();
  part.fLabel = reader.GetText();
  part.fRoot = GetControl(reader, 1);
  reader.End();
  return part;
}

}  // namespace qlx::host
