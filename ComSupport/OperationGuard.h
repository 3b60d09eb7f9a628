// What may leave the body of an operation that the host calls.
//
// From a component's operation: the framework's own exception, a translated fault among them, and nothing else. From an
// export and from the class factory: nothing. The guard is also where a termination on this thread comes back to.
#pragma once

#include <new>

#include "MCException.h"
#include "MCFaults.h"
#include "MCResult.h"

namespace qlx {

namespace detail {

// Called inside a handler: the code of the exception that is being handled, when it is none of the framework's.
inline MCResult CodeOfForeignException() {
  try {
    throw;
  } catch (const std::bad_alloc&) {
    return MC_E_OUTOFMEMORY;
  } catch (...) {
    return MC_E_FAULT;
  }
}

}  // namespace detail

// Runs the body of a component's operation, which answers a result.
template <class Body>
MCResult GuardOperation(Body&& inBody) {
  MCResult result = MC_S_OK;
  try {
    CallGuarded([&] { result = inBody(); });
  } catch (const TMCException&) {
    throw;
  } catch (...) {
    return detail::CodeOfForeignException();
  }
  return result;
}

// Runs the body of an export or of a factory's operation: every exception becomes a result.
template <class Body>
MCResult GuardExport(Body&& inBody) noexcept {
  try {
    return GuardOperation(inBody);
  } catch (const TMCException& exception) {
    return exception.GetCode();
  } catch (...) {
    return MC_E_FAULT;
  }
}

}  // namespace qlx
