#include "ElementParameters.h"

#include <array>
#include <cstddef>

#include "Element.h"
#include "ValueParameters.h"

namespace qlx::host {

namespace {

void ListSharedParameters(const ParameterGroup& inGroup, WorkLines& ioLines) {
  for (const auto& parameter : inGroup.GetParameters()) {
    if (const ParameterGroup* const group = parameter->GetGroup()) {
      ListSharedParameters(*group, ioLines);
    } else if (parameter->IsShared()) {
      parameter->ListWorkMemory(ioLines);
    }
  }
}

// All elements have these, and share the names.
struct TransformNames {
  TransformNames() {
    for (const ChannelInfo& info : kChannels) {
      fChannels[IndexOf(info.fChannel)] = Parameter::MakeName(info.fName);
    }
  }
  Parameter::Name fElement = Parameter::MakeName("Element");
  Parameter::Name fTransform = Parameter::MakeName("Transform");
  Parameter::Name fPosition = Parameter::MakeName("Position");
  Parameter::Name fRotation = Parameter::MakeName("Rotation");
  Parameter::Name fScaleByAxis = Parameter::MakeName("Scale by axis");
  std::array<Parameter::Name, kChannelCount> fChannels;
};

void AddTransform(ParameterGroup& ioRoot, Element& inElement) {
  static const TransformNames names;
  ParameterGroup& transform = ioRoot.AddGroup("amet"_id, names.fElement).AddGroup("TRAN"_id, names.fTransform);
  const auto add = [&](ParameterGroup& group, std::initializer_list<Channel> channels) {
    for (const Channel channel : channels) {
      group.Add(MakeHosted<Parameter>(kChannels[IndexOf(channel)].fID, names.fChannels[IndexOf(channel)],
                                      std::in_place_type<ElementChannel>, inElement, channel));
    }
  };
  add(transform.AddGroup("OFFS"_id, names.fPosition), {Channel::kPositionX, Channel::kPositionY, Channel::kPositionZ});
  add(transform.AddGroup("ROTA"_id, names.fRotation), {Channel::kRotationX, Channel::kRotationY, Channel::kRotationZ});
  add(transform, {Channel::kUniformScale});
  add(transform.AddGroup("XYZ "_id, names.fScaleByAxis), {Channel::kScaleX, Channel::kScaleY, Channel::kScaleZ});
}

}  // namespace

ElementParameters::ElementParameters(Element& inElement)
    : fRoot(MakeHosted<ParameterGroup>(0, static_cast<TreeElement*>(&inElement))) {
  AddTransform(*fRoot, inElement);
  for (const AttachedValues& attached : inElement.GetAttachedValues()) {
    AddParameters(fRoot->AddGroup(attached.fID, Parameter::MakeName(attached.fName.c_str())), attached.fValues, 0,
                  attached.fValues->GetCount());
  }
}

void ElementParameters::ListWorkMemory(WorkLines& ioLines) const {
  ListSharedParameters(*fRoot, ioLines);
}

ElementParameters::~ElementParameters() {
  fRoot->ForgetOwner();
}

}  // namespace qlx::host
