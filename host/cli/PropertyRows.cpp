#include "PropertyRows.h"

#include <fmt/format.h>

#include <algorithm>
#include <unordered_map>

#include "model/ClosestNames.h"
#include "model/Diagnostics.h"

namespace qlx::host {

namespace {

struct LabelPath {
  const char* fLabel;
  const char* fPath;
};

// Rows whose label has no id: the tree's own, and the numbers of a colour or vector.
constexpr LabelPath kTopRows[] = {{"Global X Position", "self,amet,TRAN,OFFS,GlbX"},
                                  {"Global Y Position", "self,amet,TRAN,OFFS,GlbY"},
                                  {"Global Z Position", "self,amet,TRAN,OFFS,GlbZ"},
                                  {"Morphs", "RMPH"},
                                  {"Shaders", "shdr"}};
constexpr LabelPath kComponentRows[] = {{"Red", "redV"}, {"Green", "grnV"}, {"Blue", "bluV"}, {"Alpha", "alpV"},
                                        {"X", "vecX"},   {"Y", "vecY"},     {"Z", "vecZ"}};

template <std::size_t kCount>
const char* FindLabel(const LabelPath (&inRows)[kCount], const std::string& inLabel) {
  for (const LabelPath& row : inRows) {
    if (inLabel == row.fLabel) {
      return row.fPath;
    }
  }
  return nullptr;
}

// "RotX" of "Rotation X (RotX) [qfix]"; empty where there is none.
std::string IDInLabel(const std::string& inLabel) {
  const std::size_t place = inLabel.rfind(" (");
  const bool isThere = place != std::string::npos && place + 6 < inLabel.size() && inLabel[place + 6] == ')';
  return isThere ? inLabel.substr(place + 2, 4) : "";
}

// The text paths of a tree's rows, by what a person reads there.
class RowPaths {
 public:
  explicit RowPaths(const TreeControl& inTree) {
    for (const TreeControl::Row* row : inTree.GetRows()) {
      fPaths.push_back(fPaths.empty() ? "self" : PathOf(*row));  // the first row is the element
      fByRow.emplace(row, fPaths.back());
    }
  }
  const std::vector<std::string>& GetPaths() const { return fPaths; }

 private:
  std::string PathOf(const TreeControl::Row& inRow) const {
    const std::string& label = inRow.GetLabel();
    if (const char* const path = FindLabel(kTopRows, label)) {
      return path;
    }
    if (inRow.fParent == nullptr) {
      return label;
    }
    const std::string& above = fByRow.at(inRow.fParent);
    const std::string id = IDInLabel(label);
    const char* const component = FindLabel(kComponentRows, label);
    if (!above.starts_with("RMPH") && (!id.empty() || component != nullptr)) {
      return above + ',' + (id.empty() ? component : id);
    }
    const auto& siblings = inRow.fParent->fChildren;
    const auto number = std::find(siblings.begin(), siblings.end(), &inRow) - siblings.begin();
    return fmt::format(fmt::runtime(above == "shdr" ? "{},{:04}" : "{},{}"), above, number);
  }

  std::vector<std::string> fPaths;
  std::unordered_map<const TreeControl::Row*, std::string> fByRow;
};

}  // namespace

std::vector<std::string> PathsOfRows(const TreeControl& inTree) {
  return RowPaths(inTree).GetPaths();
}

std::string RowOfPath(const TreeControl& inTree, const std::string& inPath, const std::string& inPlace) {
  if (inPath.find(',') == std::string::npos) {
    return inPath;
  }
  const std::vector<std::string> paths = PathsOfRows(inTree);
  const auto found = std::find(paths.begin(), paths.end(), inPath);
  if (found == paths.end()) {
    throw UserError(inPlace, fmt::format("no value has the path \"{}\"{}", inPath, ClosestText(inPath, paths)));
  }
  return fmt::format("#{}", found - paths.begin());
}

}  // namespace qlx::host
