// Counts reports. While a guard lives every report of this process comes to it; at its end it fails the test unless
// exactly the expected texts came, in their order:
//
//   AssertionGuard guard({"byteLength <= fMaxLength"});
//   text = "too long for its form";
//
// A guard without texts expects silence.
#pragma once

#include <string>
#include <vector>

#include "MCHostUtilities.h"

namespace qlx::test {

class AssertionGuard final : public IDebugUtilities {
 public:
  struct Entry {
    std::string fFile;
    int32 fLine;
    std::string fText;
  };

  explicit AssertionGuard(std::vector<std::string> inExpected = {});
  ~AssertionGuard();
  AssertionGuard(const AssertionGuard&) = delete;
  AssertionGuard& operator=(const AssertionGuard&) = delete;

  const std::vector<Entry>& GetReports() const { return fReports; }
  // Reports that are no assertions.
  int GetPlainReportCount() const { return fPlainReports; }
  // Makes every assertion throw from the host's side, as a broken host would.
  void ThrowOnReport() { fThrows = true; }

  MCResult MC_CALL QueryInterface(const MCGuid& inID, void** outObject) override;
  uint32 MC_CALL AddRef() override { return 1; }
  uint32 MC_CALL Release() override { return 1; }
  void MC_CALL ReportAssertion(const char* inFile, int32 inLine, const char* inText) override;
  void MC_CALL Report(const char*, int32) override { ++fPlainReports; }
  void MC_CALL Report2(const char*, int32, int32, int32) override { ++fPlainReports; }
  void MC_CALL Report3(const char*, int32, int32, int32, int32) override { ++fPlainReports; }
  void MC_CALL GetCountedObjectBookkeeping(CountedObjectBookkeeping& outValues) override { outValues = {}; }

 private:
  IDebugUtilities* fEarlier;
  std::vector<std::string> fExpected;
  std::vector<Entry> fReports;
  int fPlainReports = 0;
  bool fThrows = false;
};

}  // namespace qlx::test
