#include "PropertyFill.h"

#include <iterator>
#include <vector>

#include "MCException.h"
#include "PartAccess.h"
#include "QLXPropertyItem.h"

namespace qlx {

namespace {

TMCCountedPtr<QLXPropertyItem> AddPropertyRow(IHierarchyList& ioList, const TMCString& inKey, const TMCString& inLabel,
                                              IMFHierarchyItem* inParent) {
  auto item = MCAdopt(new QLXPropertyItem);
  if (!item) {
    throw TMCException(MC_E_OUTOFMEMORY, "PropertyFill", __LINE__);
  }
  item->SetText(inKey);
  const TMCString* const labels[] = {&inLabel};
  ioList.AddRow(item.Get(), labels, 1, inParent);
  return item;
}

// Left out where there is no id, or no room.
void AppendID(TMCString& ioText, const char* inOpening, MCID inID, const char* inClosing) {
  TMCString15 id;
  id.FromID(inID);
  TMCString31 text(inOpening);
  text += id;
  text += inClosing;
  if (inID != 0 && text.ByteLength() <= ioText.MaxLength() - ioText.ByteLength()) {
    ioText += text;
  }
}

const char* ComponentName(const TextPathRow& inRow) {
  static constexpr const char* kColour[] = {"Red", "Green", "Blue", "Alpha"};
  static constexpr const char* kVector[] = {"X", "Y", "Z"};
  if (inRow.fParam && inRow.fParam->GetDataType() == "colo"_id) {
    return kColour[inRow.fComponent % std::size(kColour)];
  }
  return kVector[inRow.fComponent % std::size(kVector)];
}

// Of the rows that begin a tree of their own.
const char* RootName(const TextPathRow& inRow) {
  return IsMorphPath(inRow.fPath) ? "Morphs" : IsShaderPath(inRow.fPath) ? "Shaders" : "Scene";
}

void MakeLabel(TMCString& outLabel, const TextPathRow& inRow) {
  if (inRow.fKind == TextPathRowKind::kComponent) {
    outLabel = ComponentName(inRow);
    return;
  }
  if (inRow.fDepth == 0 && !inRow.fParam) {
    outLabel = RootName(inRow);
    return;
  }
  if (inRow.fLabel && !inRow.fLabel->IsEmpty()) {
    AssignFitting(outLabel, *inRow.fLabel);
  } else {
    outLabel = "UNKNOWN";
  }
  if (inRow.fParam) {
    AppendID(outLabel, " (", inRow.fParam->GetParamID(), ")");
    AppendID(outLabel, " [", inRow.fParam->GetDataType(), "]");
  }
}

// Adds rows below the latest one of the depth above theirs.
class RowFiller final : public TextPathVisitor {
 public:
  // With a row that is there already, of depth 0.
  RowFiller(IHierarchyList& ioList, IMFHierarchyItem* inRoot) : fList(ioList) {
    if (inRoot) {
      fBranch.push_back(MCShare(inRoot));
    }
  }

  void VisitRow(const TextPathRow& inRow) override {
    fBranch.resize(inRow.fDepth);
    IMFHierarchyItem* const parent = fBranch.empty() ? nullptr : fBranch.back().Get();
    MakeLabel(fLabel, inRow);
    fBranch.push_back(MCShare<IMFHierarchyItem>(AddPropertyRow(fList, inRow.fPath, fLabel, parent).Get()));
  }

 private:
  IHierarchyList& fList;
  TMCString1023 fLabel;
  std::vector<TMCCountedPtr<IMFHierarchyItem>> fBranch;  // from the top down to the row added last
};

void FillOwn(IHierarchyList& ioList, TreeElement& inElement, bool inWithPosition, TextPathFilter inFilter) {
  static constexpr struct {
    const char* fKey;
    const char* fLabel;
  } kPosition[] = {{"GlbX", "Global X Position"}, {"GlbY", "Global Y Position"}, {"GlbZ", "Global Z Position"}};

  const TMCString15 self("self");
  const auto root = AddPropertyRow(ioList, self, inElement.GetName(), nullptr);
  if (inWithPosition) {
    for (const auto& row : kPosition) {
      AddPropertyRow(ioList, TMCString15(row.fKey), TMCString31(row.fLabel), root.Get());
    }
  }
  const auto attributes = MCQuery<I3DShAttributes>(&inElement);
  if (TimeBasedData* const data = attributes ? attributes->GetTimeBasedData() : nullptr) {
    FillProperties(ioList, *data, self, root.Get(), inFilter);
  }
}

void FillScene(IHierarchyList& ioList, TreeElement& inElement, TextPathFilter inFilter) {
  TMCCountedPtr<IMCUnknown> object;
  if (I3DShScene* const scene = inElement.GetScene()) {
    scene->GetRoot(object.WriteInto());
  }
  if (const auto root = MCQuery<TreeElement>(object)) {
    RowFiller filler(ioList, nullptr);
    BuildTreeRows(*root, inFilter, filler);
  }
}

// Without memory for their numbers all rows stay as they are.
void FoldAllRows(IHierarchyList& ioList) {
  TMCArray<uint32> rows;
  if (rows.SetElemCount(ioList.GetRowCount())) {
    for (uint32 i = 0; i < rows.GetElemCount(); ++i) {
      rows[i] = i;
    }
    ioList.SetRowsExpanded(rows, false);
  }
}

}  // namespace

void FillProperties(IHierarchyList& ioList, TimeBasedData& inAttributes, const TMCString& inKeyPrefix,
                    IMFHierarchyItem* inParent, TextPathFilter inFilter) {
  RowFiller filler(ioList, inParent);
  BuildParamRows(inAttributes, inKeyPrefix, inParent ? 1 : 0, inFilter, filler);
}

void FillMorphs(IHierarchyList& ioList, TreeElement& inElement) {
  RowFiller filler(ioList, nullptr);
  BuildMorphRows(&inElement, filler);
}

void FillShaders(IHierarchyList& ioList, TreeElement& inElement, TextPathFilter inFilter) {
  RowFiller filler(ioList, nullptr);
  BuildShaderRows(&inElement, inFilter, filler);
}

void FillPropertyTree(IHierarchyList& ioList, TreeElement& inElement, PropertyTree inTree, TextPathFilter inFilter) {
  ioList.ClearList(0);
  if (inTree == PropertyTree::kScene) {
    FillScene(ioList, inElement, inFilter);
  } else {
    FillOwn(ioList, inElement, inTree == PropertyTree::kOwnAndPosition, inFilter);
  }
  FoldAllRows(ioList);
  if (MCQuery<I3DShObjectHolder>(&inElement)) {
    FillMorphs(ioList, inElement);
  }
  if (MCQuery<I3DShShaderHolder>(&inElement)) {
    FillShaders(ioList, inElement, inFilter);
  }
  TMCArray<uint32> first;
  if (first.AddElem(0)) {
    ioList.SetRowsExpanded(first, true);
  }
}

}  // namespace qlx
