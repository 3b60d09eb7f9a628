#include "Diagnostics.h"

namespace qlx::host {

void Diagnostics::Warn(const std::string& inText) {
  if (fQuiet > 0) {
    return;
  }
  if (!fSeen.insert(inText).second) {
    return;
  }
  fWarnings.push_back(inText);
  if (fListener) {
    fListener(inText);
  }
}

}  // namespace qlx::host
