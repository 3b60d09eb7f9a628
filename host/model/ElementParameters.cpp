#include "ElementParameters.h"

#include <cstddef>

#include "Element.h"
#include "ValueParameters.h"
#include "WorkAhead.h"

namespace qlx::host {

namespace {

void ListSharedParameters(const ParameterGroup& inGroup, WorkLines& ioLines) {
  for (const auto& parameter : inGroup.GetParameters()) {
    if (const ParameterGroup* const group = parameter->GetGroup()) {
      ListSharedParameters(*group, ioLines);
    } else if (parameter->IsShared()) {
      ioLines.Add(parameter.Get(), sizeof(Parameter));
      ioLines.Add(parameter->GetValueAccess(), sizeof(ElementChannel));
    }
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

void ElementParameters::ListWorkMemory(WorkLines& ioLines) const {
  ioLines.Add(fLink.get(), sizeof(ElementLink));
  ListSharedParameters(*fRoot, ioLines);
}

ElementParameters::~ElementParameters() {
  fLink->fElement = nullptr;
  fRoot->ForgetOwner();
}

}  // namespace qlx::host
