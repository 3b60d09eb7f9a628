// The values of a set as parameters and time lines.
#pragma once

#include "Parameter.h"
#include "TimeLine.h"
#include "ValueSet.h"

namespace qlx::host {

// One value of a set.
class SetValue final : public AnimatedValue {
 public:
  SetValue(std::shared_ptr<ValueSet> inSet, std::size_t inIndex) : fSet(std::move(inSet)), fIndex(inIndex) {}

  const ValueSet& GetSet() const { return *fSet; }
  std::size_t GetIndex() const { return fIndex; }

  MCID GetType() const override { return fSet->GetInfo(fIndex).fType; }
  bool Read(void* outValue) const override;
  bool Write(const void* inValue) override;
  bool ReadBase(void* outValue) const override;
  bool WriteBase(const void* inValue) override;
  bool SampleAt(int32 inTime, void* outValue) const override;
  const Curve* GetCurve(uint32 inNumber) const override;
  bool EditCurves(const std::function<void(Curve&, uint32)>& inEdit) override;

 private:
  std::shared_ptr<ValueSet> fSet;
  std::size_t fIndex;
};

// Adds a parameter for each of the values from `inFirst` on.
void AddParameters(ParameterGroup& ioGroup, const std::shared_ptr<ValueSet>& inSet, std::size_t inFirst,
                   std::size_t inCount);
// Adds the time line of each value.
void AddTimeLines(TimeLines& ioTimeLines, const std::shared_ptr<ValueSet>& inSet);

// The parameters and time lines of a thing whose values all stand in one set.
class ValueAttributes {
 public:
  explicit ValueAttributes(IMCUnknown* inOwner) : fRoot(MakeHosted<ParameterGroup>(0, inOwner)) {}
  ~ValueAttributes() { fRoot->ForgetOwner(); }
  ValueAttributes(const ValueAttributes&) = delete;
  ValueAttributes& operator=(const ValueAttributes&) = delete;

  ParameterGroup& GetRoot() const { return *fRoot; }
  TimeLines& GetTimeLines() { return fTimeLines; }

 private:
  TMCCountedPtr<ParameterGroup> fRoot;
  TimeLines fTimeLines;
};

}  // namespace qlx::host
