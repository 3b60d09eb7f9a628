// One line on a terminal that shows how far a long work is, and is gone when the work is done.
#pragma once

#include <chrono>
#include <functional>
#include <string>

#include "Console.h"
#include "MCTypes.h"

namespace qlx::host {

// Says nothing in the first second, nothing off a terminal, and at most ten times a second.
class ProgressBar {
 public:
  using Clock = std::function<std::chrono::milliseconds()>;  // time since any fixed point

  // `inWork`: "baking", `inUnit`: "frame".
  ProgressBar(Console& inConsole, std::string inWork, std::string inUnit, Clock inClock = SteadyClock());
  ~ProgressBar();  // clears the line
  ProgressBar(const ProgressBar&) = delete;
  ProgressBar& operator=(const ProgressBar&) = delete;

  void Update(int32 inDone, int32 inTotal);
  // Takes the line away, so that something else can be written. The next update shows it again.
  void Clear();

  static Clock SteadyClock();

 private:
  Console& fConsole;
  std::string fWork;
  std::string fUnit;
  Clock fClock;
  std::chrono::milliseconds fStart;
  std::chrono::milliseconds fNext;
  bool fShown = false;
};

}  // namespace qlx::host
