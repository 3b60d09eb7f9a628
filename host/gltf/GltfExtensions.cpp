#include "GltfExtensions.h"

#include <algorithm>

namespace qlx::host {

namespace {

bool IsListed(const Json& inDocument, const char* inList, const char* inName) {
  const Json& names = ArrayOf(inDocument, inList);
  return std::find(names.begin(), names.end(), inName) != names.end();
}

}  // namespace

void ListExtension(Json& ioDocument, const char* inName) {
  if (!IsListed(ioDocument, "extensionsUsed", inName)) {
    ioDocument["extensionsUsed"].push_back(inName);
  }
}

void UnlistExtension(Json& ioDocument, const char* inName) {
  for (const char* list : {"extensionsUsed", "extensionsRequired"}) {
    if (!IsListed(ioDocument, list, inName)) {
      continue;
    }
    Json& names = ioDocument[list];
    names.erase(std::remove(names.begin(), names.end(), inName), names.end());
    if (names.empty()) {
      ioDocument.erase(list);
    }
  }
}

}  // namespace qlx::host
