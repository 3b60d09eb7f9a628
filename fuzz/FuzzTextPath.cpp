// Text paths of any bytes against a made-up tree of parameters: groups in groups, hidden and nameless parameters, ids
// that are no text, two of one id.
#include <memory>
#include <vector>

#include "FakeAttributes.h"
#include "FuzzTarget.h"
#include "TextPathRows.h"

namespace qlx::fuzz {
namespace {

using test::FakeHolder;
using test::FakeParam;

class Tree {
 public:
  explicit Tree(FuzzInput& ioInput) : fTop(MakeHolder(ioInput, 0)) {}

  FakeHolder& GetTop() { return *fTop; }
  bool Has(const ParamInfo* inParam) const {
    return std::any_of(fParams.begin(), fParams.end(), [&](const auto& param) { return param.get() == inParam; });
  }
  bool IsUnheld() const {
    return std::all_of(fParams.begin(), fParams.end(), [](const auto& param) { return param->fCount == 0; });
  }

 private:
  static MCID PickID(uint8_t inByte) {
    static constexpr MCID kIDs[] = {"amet"_id, "TRAN"_id, "ROTA"_id, "RotX"_id,  "XYZ "_id, "HOTP"_id,
                                    "0000"_id, 0,         5,         0x80FF0041, "colo"_id, ",ame"_id};
    return kIDs[inByte % std::size(kIDs)];
  }
  static MCID PickType(uint8_t inByte) {
    static constexpr MCID kTypes[] = {"qfix"_id, "colo"_id, "VEC2"_id, "dire"_id, 0};
    return kTypes[inByte % std::size(kTypes)];
  }

  FakeHolder* MakeHolder(FuzzInput& ioInput, int inDepth) {
    std::vector<FakeParam*> params;
    for (int left = ioInput.TakeByte() % 6; left > 0; --left) {
      const uint8_t kind = ioInput.TakeByte();
      FakeHolder* const group = inDepth < 6 && kind >= 0x80 ? MakeHolder(ioInput, inDepth + 1) : nullptr;
      fParams.push_back(std::make_unique<FakeParam>(PickID(kind & 0x7F), PickType(ioInput.TakeByte()), group));
      params.push_back(fParams.back().get());
    }
    fHolders.push_back(std::make_unique<FakeHolder>(std::move(params)));
    return fHolders.back().get();
  }

  std::vector<std::unique_ptr<FakeParam>> fParams;
  std::vector<std::unique_ptr<FakeHolder>> fHolders;
  FakeHolder* fTop;
};

// Each row of a parameter that resolves at all gives one of the tree with the same id and the same key.
class CheckRows final : public TextPathVisitor {
 public:
  explicit CheckRows(Tree& inTree) : fTree(inTree) {}
  void VisitRow(const TextPathRow& inRow) override {
    const auto found = ResolveTextPath(static_cast<TimeBasedData*>(&fTree.GetTop()), inRow.fPath);
    FuzzCheck(!found || fTree.Has(found.Get()), "a row gave a parameter from elsewhere");
    FuzzCheck(inRow.fPath.ByteLength() <= 1023, "a row longer than a path");
  }

 private:
  Tree& fTree;
};

}  // namespace
}  // namespace qlx::fuzz

int LLVMFuzzerTestOneInput(const uint8_t* inBytes, size_t inSize) {
  using namespace qlx;
  const fuzz::FuzzHost host(4096);
  fuzz::FuzzInput input(inBytes, inSize);
  fuzz::Tree tree(input);
  {
    const TMCString1023 text(input.Rest(), std::min<size_t>(input.RestSize(), 1023));
    const auto found = ResolveTextPath(static_cast<TimeBasedData*>(&tree.GetTop()), text);
    fuzz::FuzzCheck(!found || tree.Has(found.Get()), "a parameter from elsewhere");
    fuzz::CheckRows rows(tree);
    BuildSelfRows(static_cast<TimeBasedData*>(&tree.GetTop()), TextPathFilter::kAll, rows);
    ParseIndexKey({text.CStr(), text.ByteLength()});
  }
  fuzz::FuzzCheck(tree.IsUnheld(), "a parameter is still held");
  return 0;
}
