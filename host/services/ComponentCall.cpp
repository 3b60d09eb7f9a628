#include "ComponentCall.h"

#include <fmt/format.h>

#include <cstring>
#include <exception>
#include <new>

#include "MCException.h"

namespace qlx::host {

namespace {

ComponentFailure MakeForeign(const char* inOperation, MCResult inCode, const char* inWhat) {
  ComponentFailure failure{.fOperation = inOperation, .fCode = inCode};
  std::strncpy(failure.fForeign.data(), inWhat, failure.fForeign.size() - 1);
  return failure;
}

}  // namespace

std::string ComponentFailure::GetText() const {
  std::string text = fmt::format("{} failed with 0x{:08X}", fOperation, static_cast<uint32>(fCode));
  if (fFile) {
    text += fmt::format(" ({}, line {})", fFile, fLine);
  }
  if (fForeign[0] != '\0') {
    text += fmt::format(": threw a foreign exception, {}", fForeign.data());
  }
  return text;
}

std::optional<ComponentFailure> detail::CallComponent(const char* inOperation, void (*inBody)(void*), void* inContext) {
  try {
    CallGuarded([&] { inBody(inContext); });
    return std::nullopt;
  } catch (const TMCException& exception) {
    return ComponentFailure{.fOperation = inOperation,
                            .fCode = exception.GetCode(),
                            .fFile = exception.GetFileName(),
                            .fLine = exception.GetLine()};
  } catch (const std::bad_alloc& exception) {
    return MakeForeign(inOperation, MC_E_OUTOFMEMORY, exception.what());
  } catch (const std::exception& exception) {
    return MakeForeign(inOperation, MC_E_FAULT, exception.what());
  } catch (...) {
    return MakeForeign(inOperation, MC_E_FAULT, "of an unknown type");
  }
}

}  // namespace qlx::host
