#include "MCException.h"

#include <utility>

#include "MCAssert.h"

namespace qlx {

namespace {

// Null for the codes that are thrown in silence.
const char* ReportText(MCResult inCode) {
  switch (inCode) {
    case MC_S_OK:
    case MC_E_SILENT:
      return nullptr;
    case MC_E_CANCEL:
    case MC_E_CANCEL2:
      return "A cancel exception is being thrown";
    case MC_E_NOTCONNECTED:
      return "An unable to connect exception is being thrown";
    default:
      return "An exception is being thrown";
  }
}

// Tables of abstract classes refer to the entry for pure operations weakly, which takes nothing out of an archive. This
// reference brings it into everything that can throw.
[[gnu::used]] void (*const sPureCallEntry)() = &ThrowPureCall;

}  // namespace

TMCException::TMCException(MCResult inCode, const char* inFile, int32 inLine,
                           TMCExceptionDetail* inAdoptedDetail) noexcept
    : fCode(inCode), fFileName(inFile), fLine(inLine), fDetail(inAdoptedDetail) {
  if (const char* text = ReportText(inCode)) {
    MCAssert(inFile, inLine, text);
  }
}

TMCException::TMCException(const TMCException& inSource) noexcept
    : fCode(inSource.fCode),
      fFileName(inSource.fFileName),
      fLine(inSource.fLine),
      fDetail(std::exchange(inSource.fDetail, nullptr)) {}

TMCException& TMCException::operator=(const TMCException& inSource) noexcept {
  if (this != &inSource) {
    fCode = inSource.fCode;
    fFileName = inSource.fFileName;
    fLine = inSource.fLine;
    delete std::exchange(fDetail, std::exchange(inSource.fDetail, nullptr));
  }
  return *this;
}

TMCException::~TMCException() {
  delete fDetail;
}

const char* TMCException::GetFileName() const noexcept {
  return fFileName;
}

}  // namespace qlx
