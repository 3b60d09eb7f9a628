#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>

#include "MCFilePath.h"
#include "ProblemOf.h"
#include "model/Diagnostics.h"
#include "services/Host.h"

namespace qlx::host {
namespace {

std::string ProblemOfFile(const std::filesystem::path& inFile) {
  return test::ProblemOf([&] { const PluginLibrary library(inFile); });
}

TEST(PluginLibrary, ErrorsNameTheFileAndWhatIsWrong) {
  const std::filesystem::path folder = std::filesystem::temp_directory_path();
  const std::filesystem::path text = folder / u8"qlx-no-library-\u00e4.txt";
  std::ofstream(text) << "not a library";
  EXPECT_EQ(ProblemOfFile(QLX_PLUGIN_FILE), "") << "and unloaded, never started";
  EXPECT_EQ(ProblemOfFile(folder / "qlx-missing.so"),
            PathText(folder / "qlx-missing.so") + ": no such plug-in library");
  EXPECT_EQ(ProblemOfFile(folder), PathText(folder) + ": is a folder, not a plug-in library");
  const std::string start = PathText(text) + ": not a library that can be loaded (";
  EXPECT_EQ(ProblemOfFile(text).substr(0, start.size()), start);
  EXPECT_EQ(ProblemOfFile(QLX_NO_PLUGIN_FILE), QLX_NO_PLUGIN_FILE ": not a plug-in, it lacks the export MCDllCleanUp");
  std::filesystem::remove(text);
}

TEST(Host, RefusesWhatCannotBeLoadedAndHasNoPluginThen) {
  Diagnostics diagnostics;
  Host host(diagnostics);
  host.LoadPlugin(QLX_PLUGIN_FILE);
  EXPECT_NE(host.GetPlugin(), nullptr);
  EXPECT_THROW(host.LoadPlugin("nowhere"), UserError);
  EXPECT_EQ(host.GetPlugin(), nullptr);
  EXPECT_FALSE(host.CreateModifier("fPIN"_id));
  EXPECT_EQ(diagnostics.GetWarnings(), std::vector<std::string>{"PinModifier: no plug-in is loaded"});
}

TEST(Host, DefaultPluginStandsBesideTheProgram) {
  EXPECT_TRUE(std::filesystem::equivalent(Host::FindDefaultPlugin(), QLX_PLUGIN_FILE));
}

TEST(Host, LeavesNothingBehind) {
  Diagnostics diagnostics;
  for (int i = 0; i < 3; ++i) {
    Host host(diagnostics);
    host.LoadPlugin(QLX_PLUGIN_FILE);
    EXPECT_TRUE(host.CreateModifier("fPIN"_id));
    EXPECT_TRUE(host.GetPlugin()->CanUnload());
    EXPECT_GE(host.GetMemoryCounts().fAllocations, 2U);
    EXPECT_EQ(host.GetMemoryCounts().fAlive, 0U);
  }
  EXPECT_EQ(diagnostics.GetWarnings(), std::vector<std::string>());
  EXPECT_EQ(gMemoryUtilities, nullptr);
}

}  // namespace
}  // namespace qlx::host
