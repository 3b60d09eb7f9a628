// The dialogs in which a person shapes the curves of a link.
#pragma once

#include "QLXModifierData.h"

namespace qlx {

// Each shows the fields, runs its dialog, and takes the fields back on OK. Cancelled, nothing changes.
void EditDecay(QLXDecay& ioDecay);
void EditGrowth(QLXGrowth& ioGrowth);
void EditOscillator(QLXOscillator& ioOscillator);

}  // namespace qlx
