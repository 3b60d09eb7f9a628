// The units of a link as its popups list them, by their codes (`QLXUnit`).
#pragma once

#include "HostInterface.h"
#include "MCString.h"

namespace qlx {

inline constexpr const char* kQLXUnitNames[] = {"<none>", "cm", "in", "ft", "m", "degrees", "radians", "percent"};

// Fills a popup that is empty. One with entries stays: so the first fill fixes the order.
inline void FillUnitList(IPopupControl* ioPopup) {
  if (ioPopup && ioPopup->GetItemCount() == 0) {
    for (const char* const name : kQLXUnitNames) {
      ioPopup->AddItem(TMCString15(name));
    }
  }
}

}  // namespace qlx
