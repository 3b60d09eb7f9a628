#include <gtest/gtest.h>

#include <new>
#include <stdexcept>

#include "AssertionGuard.h"
#include "MCException.h"
#include "services/ComponentCall.h"

namespace qlx::host {
namespace {

TEST(ComponentCall, TellsWhatCameOut) {
  const test::AssertionGuard reports({"An exception is being thrown", "An exception is being thrown"});
  const struct {
    const char* fLabel;
    void (*fBody)();
    MCResult fCode;
    const char* fText;
  } kRows[] = {
      {"exception with its place", [] { throw TMCException(MC_E_INVALIDARG, "PinModifier", 105); }, MC_E_INVALIDARG,
       "Pin failed with 0x80010005 (PinModifier, line 105)"},
      {"exception without", [] { throw TMCException(MC_E_FAULT); }, MC_E_FAULT, "Pin failed with 0x80010004"},
      {"silent exception", [] { throw TMCException(MC_E_SILENT); }, MC_E_SILENT, "Pin failed with 0x80010081"},
      {"no memory", [] { throw std::bad_alloc(); }, MC_E_OUTOFMEMORY,
       "Pin failed with 0x80010002: threw a foreign exception, std::bad_alloc"},
      {"foreign exception", [] { throw std::runtime_error("no luck"); }, MC_E_FAULT,
       "Pin failed with 0x80010004: threw a foreign exception, no luck"},
      {"no exception class", [] { throw 42; }, MC_E_FAULT,
       "Pin failed with 0x80010004: threw a foreign exception, of an unknown type"},
  };
  for (const auto& row : kRows) {
    const auto failure = CallComponent("Pin", row.fBody);
    ASSERT_TRUE(failure) << row.fLabel;
    EXPECT_EQ(failure->fCode, row.fCode) << row.fLabel;
    EXPECT_EQ(failure->GetText(), row.fText) << row.fLabel;
  }
}

TEST(ComponentCall, CutsLongTexts) {
  const auto failure = CallComponent("Pin", [] { throw std::runtime_error(std::string(1000, 'x')); });
  ASSERT_TRUE(failure);
  EXPECT_EQ(std::string(failure->fForeign.data()), std::string(failure->fForeign.size() - 1, 'x'));
}

TEST(ComponentCall, InnerCallsKeepTheirFailures) {
  std::optional<ComponentFailure> inner;
  EXPECT_FALSE(CallComponent("outer", [&] { inner = CallComponent("inner", [] { throw 42; }); }));
  ASSERT_TRUE(inner);
  EXPECT_STREQ(inner->fOperation, "inner");
}

}  // namespace
}  // namespace qlx::host
