#include "PropertyFill.h"

#include <iterator>
#include <vector>

#include "MCException.h"
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

void AppendID(TMCString& ioText, const char* inOpening, MCID inID, const char* inClosing) {
  if (inID != 0) {
    TMCString15 text;
    text.FromID(inID);
    ioText += inOpening;
    ioText += text;
    ioText += inClosing;
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

TMCDynamicString LabelOf(const TextPathRow& inRow) {
  if (inRow.fKind == TextPathRowKind::kComponent) {
    return ComponentName(inRow);
  }
  if (inRow.fDepth == 0 && !inRow.fParam) {
    return RootName(inRow);
  }
  TMCDynamicString label(inRow.fLabel && !inRow.fLabel->IsEmpty() ? inRow.fLabel->CStr() : "UNKNOWN");
  if (inRow.fParam) {
    AppendID(label, " (", inRow.fParam->GetParamID(), ")");
    AppendID(label, " [", inRow.fParam->GetDataType(), "]");
  }
  return label;
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
    fBranch.push_back(MCShare<IMFHierarchyItem>(AddPropertyRow(fList, inRow.fPath, LabelOf(inRow), parent).Get()));
  }

 private:
  IHierarchyList& fList;
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
