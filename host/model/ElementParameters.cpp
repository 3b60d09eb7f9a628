#include "ElementParameters.h"

#include <fmt/format.h>

#include <cstddef>
#include <cstring>

#include "Element.h"
#include "HostParameters.h"
#include "ValueParameters.h"

namespace qlx::host {

namespace {

std::string TextOfID(MCID inID) {
  return {static_cast<char>(inID >> 24), static_cast<char>(inID >> 16), static_cast<char>(inID >> 8),
          static_cast<char>(inID)};
}

// In the fewest digits that give the value back.
std::string TextOfValue(const ValueAccess& inValue) {
  alignas(std::max_align_t) uint8 bytes[ParamType::kMaxSize] = {};
  if (!inValue.Read(bytes)) {
    return {};
  }
  const auto as = [&bytes]<class Number>(Number number) {
    std::memcpy(&number, bytes, sizeof(number));
    return fmt::format("{}", number);
  };
  switch (inValue.GetType()) {
    case "bool"_id:
      return as(bool{});
    case "in16"_id:
    case "shrt"_id:
      return as(int16{});
    case "in32"_id:
    case "long"_id:
    case "actn"_id:
      return as(int32{});
    case "qfix"_id:
    case "re32"_id:
    case "sr32"_id:
      return as(real32{});
    case "re64"_id:
    case "sr64"_id:
      return as(real64{});
    case "colo"_id: {
      const ValueNumbers colour = SplitValue("colo"_id, bytes);
      return fmt::format("{} {} {} {}", colour[0], colour[1], colour[2], colour[3]);
    }
    default:
      return {};
  }
}

bool IsAnimated(ValueAccess& inValue) {
  const AnimatedValue* const animated = inValue.AsAnimated();
  return animated != nullptr && animated->HasKeys();
}

void VisitGroup(const ParameterGroup& inGroup, const std::string& inPath,
                const std::function<void(const ParameterRow&)>& inVisit) {
  for (const auto& parameter : inGroup.GetParameters()) {
    const std::string path = inPath + "," + TextOfID(parameter->GetParamID());
    if (const ParameterGroup* const group = parameter->GetGroup()) {
      VisitGroup(*group, path, inVisit);
      continue;
    }
    ValueAccess& value = *parameter->GetValueAccess();
    inVisit({path, parameter->GetParamName().CStr(), value.GetType(), TextOfValue(value), IsAnimated(value)});
  }
}

}  // namespace

ElementParameters::ElementParameters(Element& inElement)
    : fLink(std::make_shared<ElementLink>(&inElement)),
      fRoot(MakeHosted<ParameterGroup>(0, static_cast<TreeElement*>(&inElement))) {
  ParameterGroup& transform = fRoot->AddGroup("amet"_id, "Element").AddGroup("TRAN"_id, "Transform");
  const auto add = [&](ParameterGroup& group, std::initializer_list<Channel> channels) {
    for (const Channel channel : channels) {
      const ChannelInfo& info = kChannels[static_cast<std::size_t>(channel)];
      group.Add(MakeHosted<Parameter>(info.fID, info.fName,
                                      std::unique_ptr<ValueAccess>(std::make_unique<ElementChannel>(fLink, channel))));
    }
  };
  add(transform.AddGroup("OFFS"_id, "Position"), {Channel::kPositionX, Channel::kPositionY, Channel::kPositionZ});
  add(transform.AddGroup("ROTA"_id, "Rotation"), {Channel::kRotationX, Channel::kRotationY, Channel::kRotationZ});
  add(transform, {Channel::kUniformScale});
  add(transform.AddGroup("XYZ "_id, "Scale by axis"), {Channel::kScaleX, Channel::kScaleY, Channel::kScaleZ});
  for (const AttachedValues& attached : inElement.GetAttachedValues()) {
    AddParameters(fRoot->AddGroup(attached.fID, attached.fName.c_str()), attached.fValues, 0,
                  attached.fValues->GetCount());
  }
}

ElementParameters::~ElementParameters() {
  fLink->fElement = nullptr;
  fRoot->ForgetOwner();
}

void ForEachParameter(Element& inElement, const std::function<void(const ParameterRow&)>& inVisit) {
  VisitGroup(inElement.GetParameters(), "self", inVisit);
}

}  // namespace qlx::host
