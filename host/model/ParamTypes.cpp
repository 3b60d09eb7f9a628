#include "ParamTypes.h"

#include <array>
#include <new>

#include "MatrixQuaternion.h"
#include "ParamHolder.h"

namespace qlx::host {

namespace {

using Text = std::array<char, 64>;

template <class Value>
class ValueType final : public HostObject<ParamType> {
 public:
  static_assert(sizeof(Value) <= ParamType::kMaxSize);

  explicit ValueType(MCID inTypeWord) : fTypeWord(inTypeWord) {}

  MCID MC_CALL GetTypeID() override { return fTypeWord; }
  uint32 MC_CALL GetDataSize() override { return sizeof(Value); }
  void MC_CALL ConstructData(void* outData) override { new (outData) Value{}; }
  void MC_CALL DestructData(void* ioData) override { static_cast<Value*>(ioData)->~Value(); }
  void MC_CALL CopyData(const void* inSource, void* outDestination) override {
    *static_cast<Value*>(outDestination) = *static_cast<const Value*>(inSource);
  }

 private:
  MCID fTypeWord;
};

}  // namespace

ParamTypes::ParamTypes() {
  const auto add = [this]<class Value>(Value, std::initializer_list<MCID> inWords) {
    for (const MCID word : inWords) {
      fTypes.emplace(word, MCAdopt<ParamType>(new ValueType<Value>(word)));
    }
  };
  add(bool{}, {"bool"_id});
  add(int16{}, {"in16"_id, "shrt"_id});
  add(int32{}, {"in32"_id, "long"_id, "actn"_id});
  add(real32{}, {"re32"_id, "sr32"_id, "qfix"_id});
  add(real64{}, {"re64"_id, "sr64"_id});
  add(TVector2{}, {"vec2"_id, "VEC2"_id, "qfv2"_id});
  add(TVector3{}, {"vec3"_id, "VEC3"_id, "qfv3"_id, "dire"_id});
  add(ColourValue{}, {"colo"_id});
  add(TMatrix33{}, {"mx33"_id});
  add(MatrixQuaternion{}, {"mqua"_id});
  add(Text{}, {"str "_id});
}

ParamType* ParamTypes::GetParamType(MCID inTypeWord) {
  const auto found = fTypes.find(inTypeWord);
  return found == fTypes.end() ? nullptr : found->second.Get();
}

ParamTypes& GetParamTypes() {
  static const TMCCountedPtr<ParamTypes> sTypes = [] {
    auto types = MakeHosted<ParamTypes>();
    SetParamTypeRegistry(types.Get());
    return types;
  }();
  return *sTypes;
}

}  // namespace qlx::host
