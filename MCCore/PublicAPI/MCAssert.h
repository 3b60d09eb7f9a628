// Reports of our own bugs. A report never ends the process: what was misused is repaired on the spot, and the
// operation goes on.
#pragma once

#include "MCTypes.h"

namespace qlx {

// The one entry point of every assertion. Goes to `gDebugUtilities`; without that service, to standard error. It
// allocates nothing, throws nothing, and never calls itself.
void MCAssert(const char* inFile, int32 inLine, const char* inExpression) noexcept;

// The report for what goes wrong before the host's services are there: always to standard error. Never ends the
// process.
void MCRuntimeAssert(const char* inFile, int32 inLine, const char* inExpression) noexcept;

}  // namespace qlx

// Reports `expression`'s own text when it is false. The value is the check's.
#define MC_ASSERT(expression) \
  (static_cast<bool>(expression) ? true : (::qlx::MCAssert(__FILE_NAME__, __LINE__, #expression), false))

// The same with a text of its own.
#define MC_ASSERT_TEXT(expression, text) \
  (static_cast<bool>(expression) ? true : (::qlx::MCAssert(__FILE_NAME__, __LINE__, text), false))
