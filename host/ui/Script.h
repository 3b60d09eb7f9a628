// What a person does, written down: one action a line.
//
//   # a comment, on a line of its own or behind an action
//   panel 0 of Hand
//   set mval 2.5
//   press slsp {
//     choose plst "Rotation X"
//     ok
//   }
//
// Words are parted by blanks; one with blanks in it stands in double quotes, where \" and \\ are a quote and a
// backslash. A block holds the answers to what the action in front of it makes the plug-in ask.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "model/Diagnostics.h"

namespace qlx::host {

struct ScriptStep {
  int fLine = 0;  // from 1
  std::vector<std::string> fWords;
  bool fHasBlock = false;
  std::vector<ScriptStep> fBlock;
};

// A problem with its place in the script: "edit.txt, line 3: ...".
class ScriptError : public UserError {
 public:
  ScriptError(const std::string& inScript, int inLine, const std::string& inProblem);
};

// The steps of a text, in order. `ScriptError` for what is no script; blocks are at most 32 deep.
std::vector<ScriptStep> ParseScript(const std::string& inScript, std::string_view inText);

// The words as a person would write them.
std::string TextOfStep(const ScriptStep& inStep);

}  // namespace qlx::host
