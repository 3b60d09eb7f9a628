#include "TextPathRows.h"

#include <algorithm>
#include <iterator>

#include "TreeWalk.h"

namespace qlx {

namespace {

constexpr uint32 kMaxPathSize = 1023;

// One path that grows and shrinks with the walk through the groups.
class RowBuilder {
 public:
  RowBuilder(TextPathFilter inFilter, TextPathVisitor& ioVisitor) : fFilter(inFilter), fVisitor(ioVisitor) {}

  void Emit(TextPathRowKind inKind, uint32 inDepth, const TMCString* inLabel, ParamInfo* inParam,
            uint32 inComponent = 0) {
    fVisitor.VisitRow({inKind, inDepth, fPath, inLabel, inParam, inComponent});
  }

  // Runs the body with the path made longer, where that fits.
  template <class Body>
  void Below(const TMCString& inText, Body&& inBody) {
    const uint32 size = fPath.ByteLength();
    if (size + inText.ByteLength() > kMaxPathSize) {
      return;
    }
    fPath += inText;
    inBody();
    fPath.Assign(fPath.CStr(), size);
  }

  void AddAttributes(IMCUnknown* inObject, uint32 inDepth) {
    const auto attributes = MCQuery<I3DShAttributes>(inObject);
    if (TimeBasedData* const data = attributes ? attributes->GetTimeBasedData() : nullptr) {
      AddHolder(*data, inDepth);
    }
  }

  void AddHolder(TimeBasedData& inHolder, uint32 inDepth);

 private:
  void AddParam(ParamInfo& inParam, uint32 inDepth);

  TMCString1023 fPath;
  TextPathFilter fFilter;
  TextPathVisitor& fVisitor;
};

TMCString15 KeyText(MCID inKey) {
  TMCString15 text;
  text.FromID(inKey, true);
  return text;
}

TMCString15 CommaAnd(const TMCString& inText) {
  TMCString15 text(",");
  text += inText;
  return text;
}

TMCString15 Decimal(uint32 inValue) {
  TMCString15 text;
  text.FromInt(static_cast<int32>(inValue));
  return text;
}

void RowBuilder::AddHolder(TimeBasedData& inHolder, uint32 inDepth) {
  const uint32 count = inHolder.GetParamCount();
  for (uint32 i = 0; i < count; ++i) {
    TMCCountedPtr<ParamInfo> param;
    inHolder.GetParamInfo(param.WriteInto(), i);
    if (!param) {
      continue;
    }
    const MCID id = param->GetParamID();
    const MCID key = id < "    "_id ? MakeIndexKey(i) : id;
    if (!IsHiddenKey(key)) {
      Below(CommaAnd(KeyText(key)), [&] { AddParam(*param, inDepth); });
    }
  }
}

void RowBuilder::AddParam(ParamInfo& inParam, uint32 inDepth) {
  const TMCString& label = inParam.GetParamName();
  TimeBasedData* const group = inParam.GetGroupData();
  if (group && group->GetParamCount() > 0) {
    Emit(TextPathRowKind::kGroup, inDepth, &label, &inParam);
    AddHolder(*group, inDepth + 1);
    return;
  }
  const MCID type = inParam.GetDataType();
  if (fFilter == TextPathFilter::kEditable && !IsEditableType(type)) {
    return;
  }
  Emit(TextPathRowKind::kParam, inDepth, &label, &inParam);
  const TextPathComponents components = GetTextPathComponents(type);
  for (uint32 i = 0; i < components.fCount; ++i) {
    Below(TMCString15(components.fSuffixes[i]),
          [&] { Emit(TextPathRowKind::kComponent, inDepth + 1, nullptr, &inParam, i); });
  }
}

}  // namespace

TextPathComponents GetTextPathComponents(MCID inDataType) {
  static constexpr const char* kColour[] = {",redV", ",grnV", ",bluV", ",alpV"};
  static constexpr const char* kVector[] = {",vecX", ",vecY", ",vecZ"};
  switch (inDataType) {
    case "colo"_id:
      return {kColour, static_cast<uint32>(std::size(kColour))};
    case "vec2"_id:
    case "VEC2"_id:
    case "qfv2"_id:
      return {kVector, 2};
    case "vec3"_id:
    case "VEC3"_id:
    case "qfv3"_id:
    case "dire"_id:
      return {kVector, 3};
    default:
      return {};
  }
}

bool IsEditableType(MCID inDataType) {
  static constexpr MCID kTypes[] = {"actn"_id, "bool"_id, "colo"_id, "dire"_id, "in16"_id, "in32"_id,
                                    "long"_id, "qfix"_id, "qfv2"_id, "qfv3"_id, "re32"_id, "re64"_id,
                                    "shrt"_id, "sr32"_id, "vec2"_id, "vec3"_id, "VEC3"_id};
  return std::find(std::begin(kTypes), std::end(kTypes), inDataType) != std::end(kTypes);
}

void BuildParamRows(TimeBasedData& inHolder, const TMCString& inParent, uint32 inDepth, TextPathFilter inFilter,
                    TextPathVisitor& ioVisitor) {
  RowBuilder rows(inFilter, ioVisitor);
  rows.Below(inParent, [&] { rows.AddHolder(inHolder, inDepth); });
}

void BuildSelfRows(IMCUnknown* inObject, TextPathFilter inFilter, TextPathVisitor& ioVisitor) {
  RowBuilder rows(inFilter, ioVisitor);
  rows.Below(TMCString15("self"), [&] {
    rows.Emit(TextPathRowKind::kGroup, 0, nullptr, nullptr);
    rows.AddAttributes(inObject, 1);
  });
}

void BuildShaderRows(IMCUnknown* inObject, TextPathFilter inFilter, TextPathVisitor& ioVisitor) {
  const auto instance = MCQuery<I3DShInstance>(inObject);
  const uint32 count = instance ? instance->GetShaderCount() : 0;
  if (count == 0) {
    return;
  }
  RowBuilder rows(inFilter, ioVisitor);
  rows.Below(TMCString15("shdr"), [&] {
    rows.Emit(TextPathRowKind::kGroup, 0, nullptr, nullptr);
    for (uint32 i = 0; i < count; ++i) {
      I3DShShader* const shader = instance->GetShader(i);
      if (!shader) {
        continue;
      }
      rows.Below(CommaAnd(KeyText(MakeIndexKey(i))), [&] {
        rows.Emit(TextPathRowKind::kGroup, 1, &shader->GetName(), nullptr);
        rows.AddAttributes(shader, 2);
      });
    }
  });
}

void BuildMorphRows(IMCUnknown* inObject, TextPathVisitor& ioVisitor) {
  const auto holder = MCQuery<I3DShObjectHolder>(inObject);
  I3DShObject* const object = holder ? holder->GetHeldObject() : nullptr;
  TMCCountedPtr<IMCUnknown> data;
  if (object) {
    object->GetObjectData(data.WriteInto());
  }
  const auto morphs = MCQuery<I3DShMorphData>(data);
  const uint32 groups = morphs ? morphs->GetGroupCount() : 0;
  if (groups == 0) {
    return;
  }
  RowBuilder rows(TextPathFilter::kAll, ioVisitor);
  const auto addMorph = [&](uint32 inGroup, uint32 inMorph) {
    TMCCountedPtr<IMCUnknown> morph;
    morphs->GetMorph(morph.WriteInto(), inGroup, inMorph);
    if (const auto param = MCQuery<ParamInfo>(morph)) {
      rows.Emit(TextPathRowKind::kParam, 2, &param->GetParamName(), param.Get());
    }
  };
  rows.Below(TMCString15("RMPH"), [&] {
    rows.Emit(TextPathRowKind::kGroup, 0, nullptr, nullptr);
    for (uint32 group = 0; group < groups; ++group) {
      rows.Below(CommaAnd(Decimal(group)), [&] {
        rows.Emit(TextPathRowKind::kGroup, 1, morphs->GetGroupName(group), nullptr);
        for (uint32 morph = 0; morph < morphs->GetMorphCount(group); ++morph) {
          rows.Below(CommaAnd(Decimal(morph)), [&] { addMorph(group, morph); });
        }
      });
    }
  });
}

void BuildTreeRows(TreeElement& inRoot, TextPathFilter inFilter, TextPathVisitor& ioVisitor) {
  RowBuilder rows(inFilter, ioVisitor);
  rows.Below(TMCString15("aset"), [&] {
    rows.Emit(TextPathRowKind::kGroup, 0, nullptr, nullptr);
    for (TreeElement* element = NextBelow(inRoot, inRoot); element; element = NextBelow(inRoot, *element)) {
      TMCDynamicString name(",<");
      name += element->GetName();
      name += ">";
      rows.Below(name, [&] {
        rows.Emit(TextPathRowKind::kGroup, 1, &element->GetName(), nullptr);
        rows.AddAttributes(element, 2);
      });
    }
  });
}

}  // namespace qlx
