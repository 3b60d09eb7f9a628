// A plug-in that does what none should: what a host has to live with. It offers two classes, the pin's and
// that of the command that deletes keys.
#pragma once

namespace qlx::test {

enum class OddMode {
  kPlain,
  kSmallBlock,       // the public block is a byte too short
  kNullBlock,        // there is none
  kClones,           // makes its own copies: the position goes up by one, and a private number goes along
  kClonesInPart,     // the same, but there is no memory for the private number
  kThrows,           // the working call throws what no component may throw; so does a command
  kFails,            // the working call answers a failure; so does a command's preparation
  kNotImplemented,   // the working call is not there; a command answers that it did nothing
  kLeavesADialog,    // a command leaves a dialog open, and resources current, and throws
  kDisabledByFault,  // a command's menu entry throws
  kNoModifier,       // the component lacks the interface of one
  kAsksAtItsEnd,     // the component uses its outer object while it is ended
  kStartFails,       // start-up throws
};

using SetOddMode = void (*)(OddMode);

}  // namespace qlx::test
