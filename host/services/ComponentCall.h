// The one guard around every call into a component of a plug-in.
//
//   std::optional<ComponentFailure> failure = CallComponent("PinModifier::SetTreeElement", [&] {
//     result = modifier->SetTreeElement(element);
//   });
//
// What may leave a component, and what becomes of the rest: docs/decisions/what-may-leave-the-plug-in.md.
#pragma once

#include <array>
#include <memory>
#include <optional>
#include <string>
#include <type_traits>

#include "MCFaults.h"
#include "MCResult.h"

namespace qlx::host {

// What came out of a component's operation instead of an answer. The texts that it points to belong to the caller and
// to the plug-in: it is used before the plug-in goes.
struct ComponentFailure {
  const char* fOperation = "";  // "PinModifier::SetTreeElement"
  MCResult fCode = 0;
  const char* fFile = nullptr;  // the module that threw, or null when the position is not known
  int32 fLine = 0;
  std::array<char, 96> fForeign{};  // what an exception that no component may throw said of itself; empty for others

  // "PinModifier::HandleEvent failed with 0x80010005 (PinModifier, line 105)"
  std::string GetText() const;
};

namespace detail {
std::optional<ComponentFailure> CallComponent(const char* inOperation, void (*inBody)(void*), void* inContext);
}

// Runs `inBody()`, which calls into a component. Nothing thrown and no fault gets past: it becomes the failure.
//   TMCException            its code and position
//   a translated fault      `MC_E_FAULT`
//   a termination inside    `MC_E_FAULT`, at the position of the guard that ended it
//   std::bad_alloc          `MC_E_OUTOFMEMORY`; the component broke its contract, so the failure says so
//   any other exception     `MC_E_FAULT`, likewise
// Allocates nothing on the way through. Faults are translated on threads that have translation on (MCFaults.h); the
// operation that a fault ended may have left its own data half changed, never the guard.
template <class Body>
std::optional<ComponentFailure> CallComponent(const char* inOperation, Body&& inBody) {
  using Plain = std::remove_reference_t<Body>;
  return detail::CallComponent(
      inOperation, [](void* context) { (*static_cast<Plain*>(context))(); },
      const_cast<void*>(static_cast<const void*>(std::addressof(inBody))));
}

}  // namespace qlx::host
