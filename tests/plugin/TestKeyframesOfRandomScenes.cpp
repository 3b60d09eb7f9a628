// Commands for keys on the host's own elements and attached values: random scenes against a plain model of what is
// left, and the keys that are marked.
#include <gtest/gtest.h>

#include <array>
#include <bit>
#include <tuple>

#include "CommandTest.h"
#include "DeleteKeyframes.h"
#include "RandomValues.h"
#include "RemoveDupKeyframes.h"
#include "WiggleKeyframes.h"
#include "model/KeySelection.h"

namespace qlx::test {
namespace {

using host::ValueNumbers;

// The keys of a time line by their times.
struct PlainKeys {
  MCID fType;
  std::vector<std::pair<int32, ValueNumbers>> fKeys;

  friend bool operator==(const PlainKeys&, const PlainKeys&) = default;
};

// As a time line gives a value: a number, or bytes.
bool AreEqualKeys(MCID inType, const ValueNumbers& inA, const ValueNumbers& inB) {
  if (inType == "bool"_id) {
    return (inA[0] >= 0.5f) == (inB[0] >= 0.5f);
  }
  using Bytes = std::array<uint32, std::tuple_size_v<ValueNumbers>>;
  return inType == "qfix"_id ? inA[0] == inB[0] : std::bit_cast<Bytes>(inA) == std::bit_cast<Bytes>(inB);
}

void RemoveFrom(PlainKeys& ioKeys, bool inDeletes, int32 inTime) {
  const auto before = ioKeys.fKeys;
  std::erase_if(ioKeys.fKeys, [&](const auto& key) {
    if (inDeletes) {
      return key.first == inTime;
    }
    const auto at = static_cast<std::size_t>(
        std::ranges::find(before, key.first, [](auto& each) { return each.first; }) - before.begin());
    return at > 0 && at + 1 < before.size() && AreEqualKeys(ioKeys.fType, before[at - 1].second, before[at].second) &&
           AreEqualKeys(ioKeys.fType, before[at].second, before[at + 1].second);
  });
}

// An element with a number, a truth value and a colour attached to it.
struct KeyedElement {
  host::Element* fElement;
  std::size_t fParent;
  std::shared_ptr<host::ValueSet> fValues;
};

class RandomKeysTest : public CommandTest {
 protected:
  KeyedElement Add(host::Element& ioParent, std::size_t inNumber) {
    host::Element& element = fScene->AddElement(ioParent, "E");
    const auto values = fScene->AddValues("element");
    for (const MCID type : {"qfix"_id, "bool"_id, "colo"_id}) {
      values->Add({.fID = type, .fName = "Value", .fType = type}, {});
    }
    element.AttachValues({"cust"_id, "Custom", values});
    return {&element, inNumber, values};
  }
  static host::Curve& CurveOf(const KeyedElement& inElement, std::size_t inLine, uint32 inNumber) {
    return inLine < host::kChannelCount ? inElement.fElement->GetOrMakeCurve(host::kChannels[inLine].fChannel)
                                        : inElement.fValues->GetOrMakeCurve(inLine - host::kChannelCount, inNumber);
  }
  static void SetKeys(KeyedElement& ioElement, std::size_t inLine, const PlainKeys& inKeys) {
    for (uint32 number = 0; number < host::WidthOfType(inKeys.fType); ++number) {
      host::Curve& curve = CurveOf(ioElement, inLine, number);
      curve.Clear();
      for (const auto& [time, value] : inKeys.fKeys) {
        curve.SetKey({.fTime = time, .fValue = value[number]});
      }
    }
  }
  static PlainKeys KeysOf(const KeyedElement& inElement, std::size_t inLine) {
    const bool isChannel = inLine < host::kChannelCount;
    PlainKeys keys{isChannel ? "qfix"_id : inElement.fValues->GetInfo(inLine - host::kChannelCount).fType, {}};
    for (uint32 number = 0; number < host::WidthOfType(keys.fType); ++number) {
      const auto& read = CurveOf(inElement, inLine, number).GetKeys();
      keys.fKeys.resize(read.size());
      for (std::size_t i = 0; i < read.size(); ++i) {
        keys.fKeys[i].first = read[i].fTime;
        keys.fKeys[i].second[number] = read[i].fValue;
      }
    }
    return keys;
  }
  static constexpr std::size_t kLines = host::kChannelCount + 3;
};

// Few values and few times, so that much repeats.
PlainKeys RandomKeys(RandomValues& ioRandom, MCID inType) {
  constexpr real32 kNumbers[] = {0, -0.0f, 1, 1, 1, 0.75f, 2};
  PlainKeys keys{inType, {}};
  int32 time = ioRandom.Below(3);
  for (int left = ioRandom.Below(4) == 0 ? 0 : ioRandom.Below(12); left > 0; --left, time += 1 + ioRandom.Below(2)) {
    ValueNumbers value{};
    for (uint32 i = 0; i < host::WidthOfType(inType); ++i) {
      value[i] = i > 0 && ioRandom.Below(8) > 0 ? 1 : kNumbers[ioRandom.Below(7)];
    }
    keys.fKeys.emplace_back(time, value);
  }
  return keys;
}

TEST_F(RandomKeysTest, LoseWhatAPlainModelLoses) {
  RandomValues random(34);
  constexpr std::size_t kTop = 1000;  // no element: the scene's root
  std::size_t lost = 0;
  for (int round = 0; round < 300; ++round) {
    SCOPED_TRACE(round);
    std::vector<KeyedElement> elements;
    std::vector<std::vector<PlainKeys>> model;
    for (int i = 0, count = 2 + random.Below(8); i < count; ++i) {
      const std::size_t parent = i == 0 || random.Below(4) == 0 ? kTop : static_cast<std::size_t>(random.Below(i));
      elements.push_back(Add(parent == kTop ? fScene->GetRootElement() : *elements[parent].fElement, parent));
      model.emplace_back();
      for (std::size_t line = 0; line < kLines; ++line) {
        model.back().push_back(RandomKeys(random, KeysOf(elements.back(), line).fType));
        SetKeys(elements.back(), line, model.back().back());
      }
    }
    const auto isAtOrBelow = [&](std::size_t inElement, std::size_t inAbove) {
      while (inElement != kTop && inElement != inAbove) {
        inElement = elements[inElement].fParent;
      }
      return inElement == inAbove;
    };
    const auto figure = static_cast<std::size_t>(random.Below(static_cast<int>(elements.size())));
    std::vector<host::Element*> joints;
    for (std::size_t i = 0; i < elements.size(); ++i) {
      if (i != figure && isAtOrBelow(i, figure) && random.Coin()) {
        joints.push_back(elements[i].fElement);
      }
    }
    fScene->AddFigure("Skin", *elements[figure].fElement, joints);

    const bool deletes = random.Coin();
    const int32 time = random.Below(12);
    const bool choices[] = {random.Below(3) == 0, random.Coin(), random.Coin()};
    std::vector<TreeElement*> selected;
    bool stops = false;
    for (int left = random.Below(4); left > 0; --left) {
      const auto chosen = static_cast<std::size_t>(random.Below(static_cast<int>(elements.size())));
      selected.push_back(elements[chosen].fElement);
      stops = stops || (choices[0] && !isAtOrBelow(chosen, figure));
      for (std::size_t i = 0; i < elements.size() && !stops; ++i) {
        const bool isMet = choices[0] ? isAtOrBelow(i, figure) : choices[1] ? isAtOrBelow(i, chosen) : i == chosen;
        for (PlainKeys& keys : model[i]) {
          const std::size_t before = keys.fKeys.size();
          if (isMet) {
            RemoveFrom(keys, deletes, time);
          }
          lost += before - keys.fKeys.size();
        }
      }
    }
    fHost.Select(selected);
    fHost.fScene.fRefreshes = 0;
    fScene->Evaluate(time);
    FakeControl& dialog = fServices.fDialogs.Add(deletes ? 165 : 158, [](FakeControl&) { return true; });
    dialog.Add("figu"_id, choices[0]);
    dialog.Add("subt"_id, choices[1]);
    dialog.Add("selo"_id, choices[2]);
    EXPECT_TRUE(deletes ? Run<DeleteKeyframesCommand>() : Run<RemoveDupKeyframesCommand>());
    EXPECT_EQ(fHost.fScene.fRefreshes, stops ? 0 : 1);
    EXPECT_EQ(fServices.fAlerts.fMessages,
              std::vector<std::string>(stops ? 1 : 0, "The selected item is not a figure"));
    fServices.fAlerts.fMessages.clear();
    for (std::size_t i = 0; i < elements.size(); ++i) {
      for (std::size_t line = 0; line < kLines; ++line) {
        ASSERT_EQ(KeysOf(elements[i], line), model[i][line]) << "element " << i << ", line " << line;
      }
    }
  }
  EXPECT_GT(lost, 1000U);
}

// The mark stands at all numbers of a value: a colour moves as a whole.
TEST_F(RandomKeysTest, MarkedKeysOfAttachedValuesMove) {
  constexpr int32 kStep = 100 * kFrameTicks;
  KeyedElement element = Add(fScene->GetRootElement(), 0);
  for (std::size_t line = 0; line < kLines; ++line) {
    PlainKeys keys{KeysOf(element, line).fType, {}};
    for (int32 i = 0; i < 60; ++i) {
      keys.fKeys.emplace_back(i * kStep, ValueNumbers{static_cast<real32>(i % 2), 1, 2, 3});
    }
    SetKeys(element, line, keys);
  }
  EXPECT_EQ(host::SelectKeys(*element.fElement, 20 * kStep, 49 * kStep), 30U * kLines);
  fHost.fScene.fSelected = {element.fElement};
  const auto command = MCAdopt(new WiggleKeyframesCommand);
  command->Init(&fHost);
  command->Prepare();
  *static_cast<WigglePublicData*>(command->GetExtensionDataBuffer()) = {-12, 40};
  EXPECT_TRUE(command->Do());
  for (std::size_t line = 0; line < kLines; ++line) {
    const PlainKeys keys = KeysOf(element, line);
    ASSERT_EQ(keys.fKeys.size(), 60U);
    int moved = 0;
    for (int32 i = 0; i < 60; ++i) {
      const auto& [time, value] = keys.fKeys[static_cast<std::size_t>(i)];
      const int32 move = time - i * kStep;
      moved += move != 0 ? 1 : 0;
      EXPECT_TRUE(move == 0 || (i >= 20 && i < 50)) << i;
      EXPECT_TRUE(move % kFrameTicks == 0 && move >= -10 * kFrameTicks && move <= 40 * kFrameTicks) << move;
      EXPECT_EQ(value[0], static_cast<real32>(i % 2));
    }
    EXPECT_GT(moved, 15) << line;
  }
  const host::ValueSet& values = *element.fValues;
  for (uint32 number = 1; number < 4; ++number) {
    for (std::size_t i = 0; i < 60; ++i) {
      EXPECT_EQ(values.GetCurve(2, number)->GetKeys()[i].fTime, values.GetCurve(2, 0)->GetKeys()[i].fTime);
    }
  }
}

}  // namespace
}  // namespace qlx::test
