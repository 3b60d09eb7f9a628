#include "MotionPlot.h"

#include <fmt/format.h>

#include <algorithm>
#include <span>

#include "ChannelText.h"
#include "MCFrameTime.h"
#include "Text.h"

namespace qlx::host {

namespace {

constexpr std::size_t kElementsDrawn = 8;
constexpr std::size_t kMostInBlock = 6;  // lines of one colour each
constexpr std::size_t kSetsDrawn = 6;
constexpr const char* kAxes[] = {"X", "Y", "Z"};

class MotionPlot {
 public:
  MotionPlot(Scene& inScene, const MotionPlotInput& inInput) : fScene(inScene), fInput(inInput) {}

  Plot Make() {
    const BakeResult& bake = fInput.fBake;
    fPlot.fTitle = fInput.fScene + ": what the modifiers changed";
    fPlot.fSubtitle = Subtitle();
    fPlot.fAxisTitle = "frame";
    for (std::size_t i = 0; i < bake.fTimes.size(); ++i) {
      fPlot.fAxis.push_back(static_cast<real64>(bake.fRange.fFirst) + static_cast<real64>(i));
    }
    const std::size_t drawn = std::min(bake.fElements.size(), kElementsDrawn);
    for (const Group& group : GroupsOf({bake.fElements.begin(), bake.fElements.begin() + static_cast<int>(drawn)})) {
      for (const BakedElement* element : group) {
        AddPositions(*element);
      }
      AddValues(group);
    }
    const std::size_t setsLeft = AddSets(bake.fValues);
    fPlot.fNote = Note(bake.fElements.size() - drawn, setsLeft);
    if (bake.fElements.empty() && bake.fValues.empty()) {
      fPlot.fNote = "No modifier changed a value.";
    }
    return std::move(fPlot);
  }

 private:
  using Group = std::vector<const BakedElement*>;

  // Elements below one parent with the same changed values, in the order of the first of each group.
  static std::vector<Group> GroupsOf(std::span<const BakedElement> inElements) {
    std::vector<Group> groups;
    for (const BakedElement& element : inElements) {
      const auto isAlike = [&element](const Group& group) {
        return group.size() < kMostInBlock && group[0]->fChannels == element.fChannels &&
               group[0]->fElement->GetParentElement() == element.fElement->GetParentElement();
      };
      const auto place = std::ranges::find_if(groups, isAlike);
      (place == groups.end() ? groups.emplace_back() : *place).push_back(&element);
    }
    return groups;
  }

  static std::string Note(std::size_t inElementsLeft, std::size_t inSetsLeft) {
    std::string left = inElementsLeft == 0 ? "" : Counted(inElementsLeft, "more element");
    if (inSetsLeft != 0) {
      left += (left.empty() ? "" : " and ") + Counted(inSetsLeft, "more set") + " of values";
    }
    return left.empty() ? "" : left + " changed; a CSV table (--csv) has them all.";
  }

  std::string Subtitle() const {
    const BakeRange& range = fInput.fBake.fRange;
    const std::string clip = fInput.fClip.empty() ? "Frames" : fmt::format("Clip \"{}\", frames", fInput.fClip);
    return fmt::format("{} {} to {} at {} a second", clip, range.fFirst, range.fLast, fScene.GetFrameRate());
  }

  bool IsElsewhere(const Element* inElement) const {
    const auto differs = [&](int axis) {
      return fInput.fWith.Get(inElement, axis) != fInput.fWithout.Get(inElement, axis);
    };
    return differs(0) || differs(1) || differs(2);
  }

  // The position in the scene, beside the parent's and those of others. With neither it says what the values say.
  void AddPositions(const BakedElement& inElement) {
    const std::string name = inElement.fElement->GetNameText();
    const std::vector<Other> others = OthersOf(*inElement.fElement);
    if (others.empty() || !IsElsewhere(inElement.fElement)) {
      return;
    }
    PlotBlock block{name + ": position in the scene", {}};
    for (int axis = 0; axis < 3; ++axis) {
      PlotPanel panel{kAxes[axis], "inches", {}};
      for (std::size_t i = 0; i < others.size(); ++i) {
        panel.fLines.push_back(
            {others[i].fName, static_cast<int>(i) + 1, false, fInput.fWith.Get(others[i].fElement, axis)});
      }
      panel.fLines.push_back({name + " without modifiers", 0, true, fInput.fWithout.Get(inElement.fElement, axis)});
      panel.fLines.push_back({name, 0, false, fInput.fWith.Get(inElement.fElement, axis)});
      block.fPanels.push_back(std::move(panel));
    }
    fPlot.fBlocks.push_back(std::move(block));
  }

  struct Other {
    const Element* fElement;
    std::string fName;
  };

  std::vector<Other> OthersOf(const Element& inElement) const {
    std::vector<Other> others;
    const Element* const parent = inElement.GetParentElement();
    if (parent != nullptr && parent != &fScene.GetRootElement()) {
      others.push_back({parent, parent->GetNameText() + " (its parent)"});
    }
    for (const Element* element : fInput.fAlso) {
      if (element != parent && element != &inElement) {
        others.push_back({element, element->GetNameText()});
      }
    }
    return others;
  }

  // The values that were changed, in the elements' own space: a line an element.
  void AddValues(const Group& inGroup) {
    std::vector<std::string> names;
    for (const BakedElement* element : inGroup) {
      names.push_back(element->fElement->GetNameText());
    }
    PlotBlock block{fmt::format("{}: changed values, relative to {} parent", fmt::join(names, ", "),
                                names.size() == 1 ? "its" : "their"),
                    {}};
    for (const ChannelInfo* channel : ChannelsOf(inGroup[0]->fChannels)) {
      block.fPanels.push_back(MakeGroupPanel(inGroup, names, *channel));
    }
    fPlot.fBlocks.push_back(std::move(block));
  }

  // What is the same without modifiers for all has one line.
  static PlotPanel MakeGroupPanel(const Group& inGroup, const std::vector<std::string>& inNames,
                                  const ChannelInfo& inChannel) {
    PlotPanel panel{inChannel.fName, UnitOf(inChannel.fChannel), {}};
    std::vector<PlotPanel> owns;
    for (const BakedElement* element : inGroup) {
      owns.push_back(MakePanel(panel.fTitle, "", *element, inChannel.fChannel));
    }
    const bool isShared = std::ranges::all_of(
        owns, [&owns](const PlotPanel& own) { return own.fLines[0].fValues == owns[0].fLines[0].fValues; });
    for (std::size_t i = 0; i < owns.size(); ++i) {
      for (PlotLine& line : owns[i].fLines) {
        line.fColour = static_cast<int>(i);
      }
      if (!isShared) {
        owns[i].fLines[0].fName = inNames[i] + " without modifiers";
      }
      if (owns.size() > 1) {
        owns[i].fLines[1].fName = inNames[i];
      }
      const auto first = owns[i].fLines.begin() + (isShared && i > 0 ? 1 : 0);
      panel.fLines.insert(panel.fLines.end(), first, owns[i].fLines.end());
    }
    return panel;
  }

  // Values of one set stand together. Answers how many sets were left out.
  std::size_t AddSets(const std::vector<BakedValue>& inValues) {
    const ValueSet* last = nullptr;
    std::size_t count = 0;
    for (const BakedValue& value : inValues) {
      if (value.fValues.get() != last) {
        last = value.fValues.get();
        if (++count <= kSetsDrawn) {
          fPlot.fBlocks.push_back({last->GetLabel() + ": changed values", {}});
        }
      }
      if (count <= kSetsDrawn) {
        AddNumbers(value, fPlot.fBlocks.back());
      }
    }
    return count - std::min(count, kSetsDrawn);
  }

  // Of the numbers of a value those that were changed.
  static void AddNumbers(const BakedValue& inValue, PlotBlock& ioBlock) {
    const ValueInfo& info = inValue.fValues->GetInfo(inValue.fIndex);
    for (uint32 i = 0; i < WidthOfType(info.fType); ++i) {
      PlotPanel panel = MakePanel(info.fName + NameOfNumber(info.fType, i), "", inValue, i);
      if (panel.fLines.front().fValues != panel.fLines.back().fValues) {
        ioBlock.fPanels.push_back(std::move(panel));
      }
    }
  }

  // What something baked has under a channel or number, before and after.
  template <class TBaked, class TIndex>
  static PlotPanel MakePanel(std::string inTitle, const char* inUnit, const TBaked& inBaked, TIndex inIndex) {
    const auto values = [inIndex](const auto& inFrames) {
      std::vector<real64> numbers;
      numbers.reserve(inFrames.size());
      for (const auto& frame : inFrames) {
        numbers.push_back(static_cast<real64>(frame[inIndex]));
      }
      return numbers;
    };
    return {std::move(inTitle),
            inUnit,
            {{"without modifiers", 0, true, values(inBaked.fBefore)},
             {"with modifiers", 0, false, values(inBaked.fFrames)}}};
  }

  Scene& fScene;
  const MotionPlotInput& fInput;
  Plot fPlot;
};

}  // namespace

MotionRecord::MotionRecord(const std::vector<Element*>& inElements) {
  for (const Element* element : inElements) {
    fPositions[element];
  }
}

void MotionRecord::Add() {
  for (auto& [element, positions] : fPositions) {
    positions.push_back(element->GetGlobalMatrix().fOffset);
  }
}

std::vector<real64> MotionRecord::Get(const Element* inElement, int inComponent) const {
  std::vector<real64> values;
  if (const auto found = fPositions.find(inElement); found != fPositions.end()) {
    values.reserve(found->second.size());
    for (const TVector3& position : found->second) {
      values.push_back(static_cast<real64>(position[inComponent]));
    }
  }
  return values;
}

Plot MakeMotionPlot(Scene& inScene, const MotionPlotInput& inInput) {
  return MotionPlot(inScene, inInput).Make();
}

void RecordWithoutModifiers(Scene& inScene, BakeRange inRange, MotionRecord& outRecord) {
  std::vector<Modifier*> switchedOff;
  for (const Element* element : inScene.GetTreeOrder()) {
    for (const TMCCountedPtr<Modifier>& modifier : element->GetModifiers()) {
      if (modifier->IsEnabled()) {
        modifier->SetEnabled(false);
        switchedOff.push_back(modifier.Get());
      }
    }
  }
  for (int32 frame = inRange.fFirst; frame <= inRange.fLast; ++frame) {
    inScene.Evaluate(FrameToTicks(frame, inScene.GetFrameRate()));
    outRecord.Add();
  }
  for (Modifier* modifier : switchedOff) {
    modifier->SetEnabled(true);
  }
}

}  // namespace qlx::host
