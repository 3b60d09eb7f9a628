#include "KeySelection.h"

#include "Element.h"
#include "ValueSet.h"

namespace qlx::host {

namespace {

std::size_t SelectKeysOf(Curve& ioCurve, int32 inFrom, int32 inTo) {
  std::size_t count = 0;
  for (const CurveKey& key : ioCurve.GetKeys()) {
    const bool isSelected = key.fTime >= inFrom && key.fTime <= inTo;
    ioCurve.SelectKey(key.fTime, isSelected);
    count += isSelected ? 1 : 0;
  }
  return count;
}

}  // namespace

std::size_t SelectKeys(Element& ioElement, int32 inFrom, int32 inTo) {
  std::size_t count = 0;
  for (const ChannelInfo& channel : kChannels) {
    if (ioElement.GetCurve(channel.fChannel)) {
      count += SelectKeysOf(ioElement.GetOrMakeCurve(channel.fChannel), inFrom, inTo);
    }
  }
  for (const AttachedValues& attached : ioElement.GetAttachedValues()) {
    ValueSet& values = *attached.fValues;
    for (std::size_t i = 0; i < values.GetCount(); ++i) {
      // The first number's curve stands for a value: all have the same keys.
      for (uint32 number = 0; values.HasKeys(i) && values.GetCurve(i, number); ++number) {
        const std::size_t marked = SelectKeysOf(values.GetOrMakeCurve(i, number), inFrom, inTo);
        count += number == 0 ? marked : 0;
      }
    }
  }
  return count;
}

}  // namespace qlx::host
