// What is wrong with a command line, a file or a value is one line that says where, and leaves no output behind.
#include "QlxRun.h"

namespace qlx::host {
namespace {

class BadInput : public QlxTest {};

TEST_F(BadInput, AWrongCommandLineIsAnsweredWithTwo) {
  ExpectProblems({{"no command", {}, "qlx --help"},
                  {"unknown command", {"cook"}, "cook"},
                  {"no scene", {"bake", "-o", "x.glb"}, "qlx bake --help"},
                  {"no output", {"bake", "x.gltf"}, "--output"},
                  {"neither output nor a dry run", {"keys", "x.gltf", "delete"}, "--output (or --dry-run) is required"},
                  {"unknown option", {"tree", "x.gltf", "--colour"}, "--colour"},
                  {"rate is a word", {"bake", "x.gltf", "-o", "x.glb", "--fps", "fast"}, "--fps"},
                  {"frame is a fraction", {"bake", "x.gltf", "-o", "x.glb", "--from", "1.5"}, "--from"},
                  {"frame too large", {"bake", "x.gltf", "-o", "x.glb", "--to", "99999999999"}, "--to"},
                  {"no such order", {"bake", "x.gltf", "-o", "x.glb", "--order", "best"}, "--order"},
                  {"two scenes", {"tree", "a.gltf", "b.gltf"}, "b.gltf"}},
                 kExitUsage);
}

TEST_F(BadInput, AProblemIsOneLineAndLeavesNoOutput) {
  fFolder.Write("text.gltf", "not a scene");
  fFolder.Write("taken.txt", "");
  std::filesystem::create_directory(fFolder / "folder");
  const struct {
    const char* fLabel;
    std::vector<std::string> fOptions;
    std::string fSays;
  } rows[] = {
      {"rate nan", {"--fps", "nan"}, "--fps: nan"},
      {"rate zero", {"--fps", "0"}, "--fps: 0"},
      {"rate too high", {"--fps", "1e9"}, "--fps: 1000000000"},
      {"range reversed", {"--from", "10", "--to", "9"}, "--to: "},
      {"range past the end", {"--from", "100000"}, "--from: "},
      {"range before the start", {"--from", "-1"}, "--from: "},
      {"range too long for ticks", {"--to", "2000000000"}, ""},
      {"no such clip", {"--clip", "Walk"}, "Wave"},
      {"no such element", {"--plot-also", "Foot"}, "--plot-also: "},
      {"table in no folder", {"--csv", At("none/out.csv")}, "none/out.csv: "},
      {"table is a folder", {"--csv", At("folder")}, "folder: "},
      {"plot below a file", {"--plot", At("taken.txt/out.svg")}, "taken.txt/out.svg: "},
      {"table and plot in one", {"--csv", At("one"), "--plot", At("folder/../one")}, "one: "},
      {"missing library", {"--library", At("none.so")}, "none.so: "},
      {"library lacks an export", {"--library", QLX_NO_PLUGIN_FILE}, "no_plugin"},
  };
  const std::string good = Example("pinned_arm.gltf");
  for (const auto& row : rows) {
    std::vector<std::string> words = {"bake", good, "-o", At("out.glb")};
    words.insert(words.end(), row.fOptions.begin(), row.fOptions.end());
    ExpectProblems({{row.fLabel, words, row.fSays}});
  }
  ExpectProblems({{"missing scene", {"bake", At("none.gltf"), "-o", At("out.glb")}, "none.gltf: "},
                  {"text", {"bake", At("text.gltf"), "-o", At("out.glb")}, "text.gltf: "},
                  {"output in no folder", {"bake", good, "-o", At("none/out.glb")}, "none/out.glb: "},
                  {"output is a folder", {"bake", good, "-o", At("folder")}, "folder: "},
                  {"output of another kind", {"bake", good, "-o", At("out.fbx")}, "out.fbx: "},
                  {"a drawing in no folder", {"links", good, "--dot", At("none/x.dot")}, "x.dot: "},
                  {"missing scene of links", {"links", "missing.gltf"}, "missing.gltf: "}});
}

// A failure in one of three outputs leaves none, and harms nothing that was there.
TEST_F(BadInput, AFailureLeavesEarlierOutputsAsTheyWere) {
  fFolder.Write("out.glb", "earlier scene");
  fFolder.Write("out.csv", "earlier table");
  ExpectProblems(
      {{"no folder for the plot",
        {"bake", Example("pinned_arm.gltf"), "-o", At("out.glb"), "--csv", At("out.csv"), "--plot", At("none/out.svg")},
        "none/out.svg: "}});
  EXPECT_EQ(ReadFile(fFolder / "out.glb"), "earlier scene");
  EXPECT_EQ(ReadFile(fFolder / "out.csv"), "earlier table");
}

}  // namespace
}  // namespace qlx::host
