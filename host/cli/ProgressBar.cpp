#include "ProgressBar.h"

#include <fmt/format.h>

#include <cmath>
#include <utility>

namespace qlx::host {

namespace {

using std::chrono::milliseconds;

constexpr milliseconds kPatience{1000};
constexpr milliseconds kInterval{100};
constexpr int kBarWidth = 30;

std::string TimeLeft(milliseconds inSpent, double inPart) {
  const double seconds = static_cast<double>(inSpent.count()) / 1000.0 * (1.0 - inPart) / inPart;
  const auto whole = std::llround(seconds);
  return whole < 60 ? fmt::format("{} s left", whole) : fmt::format("{} min {} s left", whole / 60, whole % 60);
}

}  // namespace

ProgressBar::ProgressBar(Console& inConsole, std::string inWork, std::string inUnit, Clock inClock)
    : fConsole(inConsole),
      fWork(std::move(inWork)),
      fUnit(std::move(inUnit)),
      fClock(std::move(inClock)),
      fStart(fClock()),
      fNext(fStart + kPatience) {}

ProgressBar::~ProgressBar() {
  Clear();
}

void ProgressBar::Update(int32 inDone, int32 inTotal) {
  if (!fConsole.fErrIsTerminal || inDone <= 0 || inTotal <= 0) {
    return;
  }
  const milliseconds now = fClock();
  if (now < fNext) {
    return;
  }
  fNext = now + kInterval;
  fShown = true;
  const double part = static_cast<double>(inDone) / inTotal;
  const int full = static_cast<int>(part * kBarWidth);
  fConsole.fErr << fmt::format("\r\x1B[K{} [{}{}] {:3.0f}%  {} {} of {}, {}", fWork, std::string(full, '#'),
                               std::string(kBarWidth - full, '.'), part * 100.0, fUnit, inDone, inTotal,
                               TimeLeft(now - fStart, part))
                << std::flush;
}

void ProgressBar::Clear() {
  if (fShown) {
    fConsole.fErr << "\r\x1B[K" << std::flush;
    fShown = false;
  }
}

ProgressBar::Clock ProgressBar::SteadyClock() {
  return [] { return std::chrono::duration_cast<milliseconds>(std::chrono::steady_clock::now().time_since_epoch()); };
}

}  // namespace qlx::host
