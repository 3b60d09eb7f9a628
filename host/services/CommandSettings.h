// The settings of a command: its public block, in its panel.
#pragma once

#include <memory>

#include "ParameterMap.h"
#include "ui/Form.h"

namespace qlx::host {

class Host;

// Shows a block in the controls of a panel, and asks the person. On OK the block holds what the controls do; otherwise,
// with false, it is as it was. True at once for a panel that shows none of the fields.
bool EditSettings(Host& inHost, MCID inClass, const ParameterMap& inMap, std::shared_ptr<const PartDescription> inPanel,
                  void* ioBlock);

}  // namespace qlx::host
