// The framework's exception: a failure that a caller must see.
#pragma once

#include <memory>

#include "MCResult.h"

namespace qlx {

// More about a failure, owned by the exception that carries it.
class TMCExceptionDetail {
 public:
  virtual ~TMCExceptionDetail() = default;
};

// Thrown by value. Making one with a code reports it through the assertion entry point, so that a debugging host
// stops at the moment of the throw: nothing for 0 and `MC_E_SILENT`, a text of its own for the cancel codes and for
// `MC_E_NOTCONNECTED`, and "An exception is being thrown" for the rest.
class TMCException final {
 public:
  // `inFile` is a static text (a module's name, such as "PinModifier") or null when the position is not known.
  explicit TMCException(MCResult inCode, const char* inFile = nullptr, int32 inLine = 0,
                        TMCExceptionDetail* inAdoptedDetail = nullptr) noexcept;
  // Copying moves the detail object: the source, though const, is left without one. An exception is copied on its way
  // through the handlers, and its detail has one owner at a time.
  TMCException(const TMCException& inSource) noexcept;
  TMCException& operator=(const TMCException& inSource) noexcept;

  // Null when the position is not known.
  virtual const char* GetFileName() const noexcept;

  MCResult GetCode() const noexcept { return fCode; }
  int32 GetLine() const noexcept { return fLine; }
  TMCExceptionDetail* GetDetail() const noexcept { return fDetail; }

  ~TMCException();

 private:
  MCResult fCode;
  const char* fFileName;
  int32 fLine;
  mutable TMCExceptionDetail* fDetail;
};

// What stands in the slots of abstract classes: throws `MC_E_PURECALL` with no file.
[[noreturn]] void ThrowPureCall();

}  // namespace qlx
