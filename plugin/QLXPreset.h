// The settings of a link as a text file, to be used for other links and in other scenes.
//
// One value a line, in a fixed order: the public block from its first field up to `fFindSourceByName`, whether the
// target is chosen and its path, the same of the controller, then the fields of decay, growth and oscillator. Texts
// stand between quotes, truth values are 1 and 0. The range (`fRangeOn`, `fRangeMin`, `fRangeMax`) and object
// references are not part of a preset: it names its objects by their names alone, and loading one leaves the range as
// it was.
#pragma once

#include "MCStream.h"
#include "QLXModifierData.h"

namespace qlx {

// A number that is not finite is written as 0. A stream that fails is left failed.
void WritePreset(TMCStream& ioStream, const QLXModifierData& inData, const QLXPrivateData& inPrivate);

// False for a damaged preset, with the line, from 1, where something else stands than should. The data may be half
// changed then: read into a copy.
bool ReadPreset(TMCStream& ioStream, QLXModifierData& ioData, QLXPrivateData& ioPrivate, int32& outLine);

}  // namespace qlx
