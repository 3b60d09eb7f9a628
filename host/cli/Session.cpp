#include "Session.h"

#include <fmt/format.h>

#include <algorithm>
#include <limits>

#include "MCFrameTime.h"
#include "Text.h"
#include "gltf/GltfFiles.h"

namespace qlx::host {

namespace {

constexpr std::size_t kWarningsShown = 20;

}  // namespace

Session::Session(CommandContext& inContext) : fConsole(inContext.fConsole), fHost(fDiagnostics) {
  fHost.LoadPlugin(inContext.fLibrary.empty() ? Host::FindDefaultPlugin() : PathOfText(inContext.fLibrary));
}

std::unique_ptr<GltfDocument> Session::Open(const SceneOptions& inOptions) {
  if (inOptions.fRate && !IsValidFrameRate(*inOptions.fRate)) {
    throw UserError("--fps", fmt::format("{} is no frame rate: it takes a number above 0, at most {}", *inOptions.fRate,
                                         kTicksPerSecond));
  }
  return GltfDocument::Read(PathOfText(inOptions.fScene), {inOptions.fClip, inOptions.fRate}, fHost);
}

void Session::ShowWarnings() {
  const std::vector<std::string>& warnings = fDiagnostics.GetWarnings();
  const std::size_t shown = std::min(warnings.size(), kWarningsShown);
  for (std::size_t i = 0; i < shown; ++i) {
    fConsole.fErr << "qlx: warning: " << Printable(warnings[i]) << '\n';
  }
  if (shown < warnings.size()) {
    fConsole.fErr << fmt::format("qlx: and {}\n", Counted(warnings.size() - shown, "more warning"));
  }
  fConsole.fErr.flush();
}

std::string ShortName(const SceneOptions& inOptions) {
  return PathText(PathOfText(inOptions.fScene).filename());
}

int32 TimeOfFrame(Scene& ioScene, int32 inFrame, const std::string& inPlace) {
  const int32 time = FrameToTicks(inFrame, ioScene.GetFrameRate());
  // Times that do not fit stop at the last tick that there is.
  if (inFrame < 0 || time == std::numeric_limits<int32>::max()) {
    throw UserError(inPlace, fmt::format("{} is no frame of a scene: they begin at 0 and end with the ticks that there "
                                         "are",
                                         inFrame));
  }
  return time;
}

}  // namespace qlx::host
