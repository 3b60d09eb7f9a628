#include "LinkList.h"

#include <fmt/format.h>

#include <iterator>
#include <map>

#include "EvaluationOrder.h"

namespace qlx::host {

namespace {

LinkRowState StateOf(Modifier& inModifier, const std::string& inProblem) {
  if (!inModifier.IsEnabled()) {
    return LinkRowState::kOff;
  }
  if (!inProblem.empty()) {
    return LinkRowState::kBroken;
  }
  return inModifier.GetLinkState().fIsInCycle ? LinkRowState::kCycle : LinkRowState::kOk;
}

// The rows of a modifier: keys that it writes beside their value say nothing more.
void AddRows(const LinkRow& inModel, const LinkTrace& inTrace, std::vector<LinkRow>& ioRows) {
  for (const LinkUse& write : inTrace.fWrites) {
    if (write.fValue.fIsKeys) {
      continue;
    }
    LinkRow row = inModel;
    row.fHasTarget = true;
    row.fTarget = write.fValue;
    for (const LinkUse& read : inTrace.fReads) {
      if (read.fStep == write.fStep) {
        row.fSources.push_back(read.fValue.AsKeys(false));
      }
    }
    ioRows.push_back(std::move(row));
  }
}

}  // namespace

LinkList ListLinks(Scene& ioScene) {
  LinkList list;
  list.fCycles = ioScene.FindOrder().GetCycles();
  for (Element* const element : ioScene.GetTreeOrder()) {
    for (std::size_t i = 0; i < element->GetModifiers().size(); ++i) {
      Modifier& modifier = *element->GetModifiers()[i];
      const LinkTrace& trace = modifier.GetLinkState().fTrace;
      const std::string problem = modifier.DescribeProblem(trace);
      LinkRow row;
      row.fElement = element;
      row.fModifier = &modifier;
      row.fIndex = i;
      row.fWhy = problem;
      row.fState = StateOf(modifier, problem);
      const std::size_t before = list.fRows.size();
      AddRows(row, trace, list.fRows);
      if (list.fRows.size() == before && (!problem.empty() || !trace.fReads.empty())) {
        list.fRows.push_back(row);
      }
    }
  }
  return list;
}

const char* NameOfState(LinkRowState inState) {
  static constexpr const char* kNames[] = {"ok", "broken", "cycle", "off"};
  return kNames[static_cast<std::size_t>(inState)];
}

// The picture

namespace {

// A text between quotes, as Graphviz reads it: control characters, which names may hold, become blanks.
std::string DotText(const std::string& inText) {
  std::string text = "\"";
  for (const char each : inText) {
    if (each == '"' || each == '\\') {
      text += '\\';
    }
    text += static_cast<unsigned char>(each) < 0x20 || each == 0x7F ? ' ' : each;
  }
  return text + '"';
}

class LinkDrawing {
 public:
  std::string Draw(const LinkList& inLinks) {
    for (const LinkRow& row : inLinks.fRows) {
      AddRow(row);
    }
    std::string text =
        "digraph links {\n  rankdir=LR;\n  node [shape=box, style=rounded, fontname=\"Helvetica\"];\n"
        "  edge [fontname=\"Helvetica\", fontsize=10];\n";
    std::size_t box = 0;
    for (const auto& [owner, points] : fOwners) {
      fmt::format_to(std::back_inserter(text), "  subgraph cluster_{} {{\n    label={};\n    color=gray;\n", box++,
                     DotText(owner));
      for (const auto& [name, number] : points) {
        fmt::format_to(std::back_inserter(text), "    v{} [label={}];\n", number, DotText(name));
      }
      text += "  }\n";
    }
    return text + fArrows + "}\n";
  }

 private:
  void AddRow(const LinkRow& inRow) {
    const std::size_t target =
        inRow.fHasTarget ? Point(inRow.fTarget) : Point(inRow.fElement->GetNameText(), "(no value)");
    if (inRow.fSources.empty()) {
      const std::size_t source = Point(inRow.fElement->GetNameText(), "(no source)");
      Arrow(source, target, inRow);
    }
    for (const LinkValue& source : inRow.fSources) {
      Arrow(Point(source), target, inRow);
    }
  }

  std::size_t Point(const LinkValue& inValue) {
    const std::string owner = OwnerOfLinkValue(inValue);
    return Point(owner, TextOfLinkValue(inValue).substr(owner.size() + 1));
  }
  std::size_t Point(const std::string& inOwner, const std::string& inName) {
    return fOwners[inOwner].try_emplace(inName, fCount).second ? fCount++ : fOwners[inOwner][inName];
  }

  void Arrow(std::size_t inFrom, std::size_t inTo, const LinkRow& inRow) {
    static constexpr const char* kLooks[] = {"", " [color=red, style=dashed, label=\"broken\"]",
                                             " [color=orange, penwidth=2, label=\"cycle\"]",
                                             " [color=gray, style=dotted, label=\"off\"]"};
    fmt::format_to(std::back_inserter(fArrows), "  v{} -> v{}{};\n", inFrom, inTo,
                   kLooks[static_cast<std::size_t>(inRow.fState)]);
  }

  std::map<std::string, std::map<std::string, std::size_t>> fOwners;
  std::string fArrows;
  std::size_t fCount = 0;
};

}  // namespace

std::string DrawLinks(const LinkList& inLinks) {
  return LinkDrawing().Draw(inLinks);
}

}  // namespace qlx::host
