// What is wrong with a command line, a file or a value is one line that says where, and leaves no output behind.
#include <gtest/gtest.h>

#include <algorithm>

#include "QlxRun.h"
#include "TempFolder.h"

namespace qlx::host {
namespace {

void ExpectOneLine(const std::string& inText, const std::string& inLabel) {
  EXPECT_EQ(std::count(inText.begin(), inText.end(), '\n'), 1) << inLabel << ": " << inText;
  EXPECT_EQ(inText.rfind("qlx: ", 0), 0U) << inLabel << ": " << inText;
}

TEST(BadInput, AWrongCommandLineIsAnsweredWithTwo) {
  struct Row {
    const char* fLabel;
    std::vector<std::string> fArguments;
    const char* fSays;
  };
  const Row rows[] = {
      {"no command", {}, "qlx --help"},
      {"unknown command", {"cook"}, "cook"},
      {"no scene", {"bake", "-o", "x.glb"}, "qlx bake --help"},
      {"no output", {"bake", "x.gltf"}, "--output"},
      {"unknown option", {"tree", "x.gltf", "--colour"}, "--colour"},
      {"rate is a word", {"bake", "x.gltf", "-o", "x.glb", "--fps", "fast"}, "--fps"},
      {"frame is a fraction", {"bake", "x.gltf", "-o", "x.glb", "--from", "1.5"}, "--from"},
      {"frame too large", {"bake", "x.gltf", "-o", "x.glb", "--to", "99999999999"}, "--to"},
      {"two scenes", {"tree", "a.gltf", "b.gltf"}, "b.gltf"},
  };
  for (const Row& row : rows) {
    const QlxRun run = RunInProcess(row.fArguments);
    EXPECT_EQ(run.fCode, kExitUsage) << row.fLabel;
    EXPECT_EQ(run.fOut, "") << row.fLabel;
    ExpectOneLine(run.fErr, row.fLabel);
    EXPECT_NE(run.fErr.find(row.fSays), std::string::npos) << row.fLabel << ": " << run.fErr;
  }
}

// Each row bakes the example after `fOptions` are added; the scene is the first of them where it is not the example.
TEST(BadInput, AProblemIsOneLineAndLeavesNoOutput) {
  const TempFolder folder;
  folder.Write("empty.gltf", "");
  folder.Write("text.gltf", "not a scene");
  folder.Write("list.gltf", "[1, 2]");
  folder.Write("other.gltf", R"({"some": "json"})");
  folder.Write("short.glb", "glTF");
  folder.Write("library.txt", "not a library");
  folder.Write("taken.txt", "");
  std::filesystem::create_directory(folder / "folder");
  std::filesystem::create_directory(folder / "folder.gltf");
  const auto before = folder.List();

  const auto at = [&](std::string_view name) { return PathText(folder / name); };
  const std::string good = Example("pinned_arm.gltf");
  struct Row {
    const char* fLabel;
    std::string fScene;
    std::vector<std::string> fOptions;
    const char* fSays;
  };
  const Row rows[] = {
      {"missing scene", at("none.gltf"), {}, "none.gltf: "},
      {"scene is a folder", at("folder.gltf"), {}, "folder.gltf: "},
      {"empty scene", at("empty.gltf"), {}, "empty.gltf: "},
      {"text", at("text.gltf"), {}, "text.gltf: "},
      {"JSON list", at("list.gltf"), {}, "list.gltf: "},
      {"JSON that is no glTF", at("other.gltf"), {}, "other.gltf: "},
      {"container cut short", at("short.glb"), {}, "short.glb: "},
      {"rate nan", good, {"--fps", "nan"}, "--fps: nan"},
      {"rate infinite", good, {"--fps", "inf"}, "--fps: inf"},
      {"rate zero", good, {"--fps", "0"}, "--fps: 0"},
      {"rate negative", good, {"--fps", "-1"}, "--fps: -1"},
      {"rate too high", good, {"--fps", "1e9"}, "--fps: 1000000000"},
      {"range reversed", good, {"--from", "10", "--to", "9"}, "--to: "},
      {"range past the end", good, {"--from", "100000"}, "--from: "},
      {"range before the start", good, {"--from", "-1"}, "--from: "},
      {"range too long for ticks", good, {"--to", "2000000000"}, ""},
      {"no such clip", good, {"--clip", "Walk"}, "Wave"},
      {"no such element", good, {"--plot-also", "Foot"}, "--plot-also: "},
      {"output in no folder", good, {"-o", at("none/out.glb")}, "none/out.glb: "},
      {"output is a folder", good, {"-o", at("folder")}, "folder: "},
      {"output of another kind", good, {"-o", at("out.fbx")}, "out.fbx: "},
      {"table in no folder", good, {"--csv", at("none/out.csv")}, "none/out.csv: "},
      {"table is a folder", good, {"--csv", at("folder")}, "folder: "},
      {"plot below a file", good, {"--plot", at("taken.txt/out.svg")}, "taken.txt/out.svg: "},
      {"table and plot in one", good, {"--csv", at("one"), "--plot", at("folder/../one")}, "one: "},
      {"missing library", good, {"--library", at("none.so")}, "none.so: "},
      {"library is a folder", good, {"--library", at("folder")}, "folder: "},
      {"library lacks an export", good, {"--library", QLX_NO_PLUGIN_FILE}, "no_plugin"},
      {"library is text", good, {"--library", at("library.txt")}, "library.txt: "},
  };
  for (const Row& row : rows) {
    std::vector<std::string> arguments = {"bake", row.fScene};
    if (std::find(row.fOptions.begin(), row.fOptions.end(), "-o") == row.fOptions.end()) {
      arguments.insert(arguments.end(), {"-o", at("out.glb")});
    }
    arguments.insert(arguments.end(), row.fOptions.begin(), row.fOptions.end());
    const QlxRun run = RunInProcess(arguments);
    EXPECT_EQ(run.fCode, kExitFailed) << row.fLabel;
    EXPECT_EQ(run.fOut, "") << row.fLabel;
    ExpectOneLine(run.fErr, row.fLabel);
    EXPECT_NE(run.fErr.find(row.fSays), std::string::npos) << row.fLabel << ": " << run.fErr;
    EXPECT_EQ(folder.List(), before) << row.fLabel;
  }
}

// A failure in one of three outputs leaves none, and harms nothing that was there.
TEST(BadInput, AFailureLeavesEarlierOutputsAsTheyWere) {
  const TempFolder folder;
  const auto scene = folder.Write("out.glb", "earlier scene");
  const auto table = folder.Write("out.csv", "earlier table");
  const QlxRun run = RunInProcess({"bake", Example("pinned_arm.gltf"), "-o", PathText(scene), "--csv", PathText(table),
                                   "--plot", PathText(folder / "none/out.svg")});
  EXPECT_EQ(run.fCode, kExitFailed);
  EXPECT_EQ(ReadFile(scene), "earlier scene");
  EXPECT_EQ(ReadFile(table), "earlier table");
  EXPECT_EQ(folder.List().size(), 2U);
}

}  // namespace
}  // namespace qlx::host
