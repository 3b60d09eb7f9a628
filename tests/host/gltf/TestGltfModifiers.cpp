// Modifiers in the node extension QLX_modifiers, and what keeps an element's id.
#include "SceneText.h"
#include "services/PluginModifier.h"

namespace qlx::host {

namespace {

Json PinBlock() {
  return Json::parse(R"({"modifiers": [{"class": "fPIN", "enabled": true, "parameters": {
      "fPositionSet": true, "fActive": true, "fGlobal": false, "fPosition": [1.5, -2, 0.1],
      "fReserved": [0, 0, 0]}}]})");
}

SceneText MakePinnedArm(const Json& inBlock = PinBlock()) {
  SceneText text = MakeMovingArm();
  text.fJson["nodes"][0]["extensions"] = {{"EXT_other", {{"a", 1}}}, {"QLX_modifiers", inBlock}};
  text.fJson["extensionsUsed"] = {"EXT_other", "QLX_modifiers"};
  return text;
}

class GltfModifiers : public GltfTest {
 protected:
  void SetUp() override { LoadPlugin(); }

  static PluginModifier& PinOf(GltfDocument& inDocument) {
    const auto& modifiers = inDocument.GetScene().FindByName("Arm")->GetModifiers();
    EXPECT_EQ(modifiers.size(), 1u);
    return dynamic_cast<PluginModifier&>(*modifiers[0]);
  }
};

}  // namespace

TEST_F(GltfModifiers, AreReadByTheNamesOfTheirFieldsAndWrittenAsTheyWere) {
  const auto document = OpenText(MakePinnedArm());
  PluginModifier& pin = PinOf(*document);
  const ParameterMap& map = *pin.GetParameterMap();
  EXPECT_TRUE(pin.IsEnabled());
  EXPECT_EQ(std::get<bool>(pin.GetField(*map.Find("fPositionSet"))), true);
  EXPECT_EQ(std::get<bool>(pin.GetField(*map.Find("fGlobal"))), false);
  EXPECT_EQ((std::get<std::array<real32, 3>>(pin.GetField(*map.Find("fPosition")))),
            (std::array<real32, 3>{1.5f, -2, 0.1f}));
  document->GetScene().Evaluate(0);
  EXPECT_EQ(ElementOf(*document, "Arm").GetValue(Channel::kPositionX), 1.5f) << "inches";
  const Json out = Written(*document);
  EXPECT_EQ(out["nodes"][0]["extensions"]["QLX_modifiers"], PinBlock());
  EXPECT_EQ(out["nodes"][0]["extensions"]["EXT_other"], Json({{"a", 1}}));
  EXPECT_EQ(out["nodes"][0]["extensions"]["QLX_element"]["id"], 2);
  EXPECT_EQ(out["nodes"][1], MakeMovingArm().fJson["nodes"][1]);
  EXPECT_EQ(out["extensionsUsed"], Json({"EXT_other", "QLX_modifiers", "QLX_element"}));
}

TEST_F(GltfModifiers, FieldsThatAreMissingKeepTheirDefaults) {
  const auto document = OpenText(MakePinnedArm(Json::parse(R"({"modifiers": [{"class": "fPIN", "enabled": false}]})")));
  PluginModifier& pin = PinOf(*document);
  EXPECT_FALSE(pin.IsEnabled());
  EXPECT_EQ(std::get<bool>(pin.GetField(*pin.GetParameterMap()->Find("fActive"))), false);
}

TEST_F(GltfModifiers, BlocksThatAreWrongNameTheirPlace) {
  const struct {
    const char* fPointer;
    const char* fValue;
    const char* fError;
  } rows[] = {
      {"", "[]", ": must be an object"},
      {"", "{}", ".modifiers: must be an array"},
      {"/modifiers", "{}", ".modifiers: must be an array"},
      {"/more", "1", ": unknown member \"more\""},
      {"/modifiers/0", "3", ".modifiers[0]: must be an object"},
      {"/modifiers/0/more", "1", ".modifiers[0]: unknown member \"more\""},
      {"/modifiers/0/class", "7", ".modifiers[0].class: must be a text of four characters"},
      {"/modifiers/0/class", "\"pin\"", ".modifiers[0].class: must be a text of four characters"},
      {"/modifiers/0/class", "\"abcd\"", ".modifiers[0].class: \"abcd\" is an unknown class"},
      {"/modifiers/0/enabled", "1", ".modifiers[0].enabled: must be true or false"},
      {"/modifiers/0/private", "\"text\"", ".modifiers[0].private: the class has no private data"},
      {"/modifiers/0/parameters", "[]", ".modifiers[0].parameters: must be an object"},
      {"/modifiers/0/parameters/fActive", "1", ".modifiers[0].parameters.fActive: must be true or false"},
      {"/modifiers/0/parameters/fLocked", "true", ".modifiers[0].parameters.fLocked: the class has no such field"},
      {"/modifiers/0/parameters/fPosition", "[1, 2]",
       ".modifiers[0].parameters.fPosition: must be an array of three numbers"},
      {"/modifiers/0/parameters/fPosition", "1",
       ".modifiers[0].parameters.fPosition: must be an array of three numbers"},
      {"/modifiers/0/parameters/fPosition/1", "null", ".modifiers[0].parameters.fPosition[1]: must be a number"},
      {"/modifiers/0/parameters/fPosition/1", "1e39",
       ".modifiers[0].parameters.fPosition[1]: is too large for a 32-bit real"},
  };
  for (const auto& row : rows) {
    Json block = PinBlock();
    block[Json::json_pointer(row.fPointer)] = Json::parse(row.fValue);
    ExpectError(MakePinnedArm(block).GetText(), std::string("nodes[0].extensions.QLX_modifiers") + row.fError,
                row.fPointer);
  }
}

TEST_F(GltfModifiers, ABakeTakesThemAwayOrSwitchesThemOff) {
  Json out = Baked(*OpenText(MakePinnedArm()), {});
  EXPECT_EQ(out["nodes"][0]["extensions"], Json({{"EXT_other", {{"a", 1}}}}));
  EXPECT_EQ(out["extensionsUsed"], Json::array({"EXT_other"}));

  SceneText alone = MakePinnedArm();
  alone.fJson["nodes"][0]["extensions"].erase("EXT_other");
  alone.fJson["extensionsUsed"] = {"QLX_modifiers"};
  out = Baked(*OpenText(alone), {});
  EXPECT_FALSE(out["nodes"][0].contains("extensions"));
  EXPECT_FALSE(out.contains("extensionsUsed"));

  out = Baked(*OpenText(MakePinnedArm()), {}, KeepModifiers::kSwitchedOff);
  EXPECT_EQ(out["nodes"][0]["extensions"]["QLX_modifiers"]["modifiers"][0]["enabled"], false);
}

// A link's private text, as a hand would write it.
constexpr const char* kLinkText = "pset 1\ncpsl \"self,amet,TRAN,ROTA,RotZ\"\nsobj \"03000000\"\ncpst 1\n";

Json LinkBlock(const std::string& inPrivate) {
  Json block = Json::parse(R"({"modifiers": [{"class": "fQLX", "enabled": true, "parameters":
      {"fName": "Wheel", "fAttributeMode": true, "fModifyValue": 0.25, "fEndFrame": -3}}]})");
  block["modifiers"][0]["private"] = inPrivate;
  return block;
}

TEST_F(GltfModifiers, LinksComeBackAsTheyWereWritten) {
  OpenText(MakePinnedArm(LinkBlock(kLinkText)))->Write(fFolder / "first.gltf");
  const Json first = ReadJson("first.gltf")["nodes"][0]["extensions"]["QLX_modifiers"]["modifiers"][0];
  EXPECT_EQ(first["parameters"].size(), PluginCatalog::GetBuiltIn()->FindMap("fQLX"_id)->GetFields().size());
  EXPECT_EQ(first["parameters"]["fName"], "Wheel");
  EXPECT_EQ(first["parameters"]["fControllerName"], "");
  EXPECT_EQ(first["parameters"]["fModifyValue"], 0.25);
  EXPECT_EQ(first["parameters"]["fEndFrame"], -3);
  const auto text = first["private"].get<std::string>();
  EXPECT_EQ(text.find("pset 1"), 0U) << "as the modifier writes it, without a level: " << text;
  EXPECT_NE(text.find("\"03000000\""), std::string::npos) << text;
  EXPECT_NE(text.find("decy {"), std::string::npos) << text;
  Open("first.gltf")->Write(fFolder / "second.gltf");
  EXPECT_EQ(ReadJson("second.gltf"), ReadJson("first.gltf"));
}

TEST_F(GltfModifiers, IdsAndReferencesSurviveReorderingByAnotherProgram) {
  const auto before = OpenText(MakePinnedArm(LinkBlock(kLinkText)));
  ASSERT_EQ(before->GetScene().FindByID(3), before->GetScene().FindByName("Hand"));
  Json moved = Written(*before);
  EXPECT_EQ(moved["nodes"][1]["extensions"]["QLX_element"]["id"], 3) << "a link refers to it";
  moved["nodes"].insert(moved["nodes"].begin(), Json{{"name", "New"}});
  moved["nodes"][1]["children"] = {2};
  moved["scenes"][0]["nodes"] = {0, 1};
  moved.erase("animations");
  fFolder.Write("moved.gltf", moved.dump());
  const auto after = Open("moved.gltf");
  EXPECT_EQ(ElementOf(*after, "Arm").GetUniqueID(), 2U);
  EXPECT_EQ(ElementOf(*after, "Hand").GetUniqueID(), 3U);
  const uint32 given = ElementOf(*after, "New").GetUniqueID();
  EXPECT_GT(given, 3U);
  Written(*after);
  EXPECT_EQ(ElementOf(*Open("out.gltf"), "New").GetUniqueID(), given);
}

TEST_F(GltfModifiers, DamagedLinksNameFileNodeAndLine) {
  const struct {
    const char* fPointer;
    Json fValue;
    const char* fError;
  } rows[] = {
      {"parameters/fName", 3, "parameters.fName: must be a text"},
      {"parameters/fName", std::string(256, 'n'), "parameters.fName: is a text of 256 bytes, and 255 is the most"},
      {"parameters/fName", std::string("a\0b", 3), "parameters.fName: has a NUL in it"},
      {"private", 3, "private: must be a text"},
      {"private", "pset 1\ndecy {\n", "private: not token text: line 2, byte 12: this { is never closed"},
      {"private", "pset 1\nsobj \"0g\"\n", "private: line 2, byte"},
      {"private", "pset 1\n\ndecy {\ndlin many\n}\n", "private: line 4, byte"},
  };
  for (const auto& row : rows) {
    Json block = LinkBlock(kLinkText);
    block[Json::json_pointer(std::string("/modifiers/0/") + row.fPointer)] = row.fValue;
    ExpectError(MakePinnedArm(block).GetText(), row.fError, row.fValue.dump());
  }
}

TEST_F(GltfModifiers, NewOnesAreWrittenWithTextThatCanBeReadAgain) {
  for (const auto& [length, rest] : {std::pair(99, "\uFFFD"), {254, ""}}) {
    const auto document = OpenText(MakeMovingArm());
    auto link = fHost.CreateModifier("fQLX"_id);
    ASSERT_TRUE(link);
    const std::string name(static_cast<std::size_t>(length), 'x');
    ASSERT_TRUE(link->SetField(*link->GetParameterMap()->Find("fControllerName"), name + "\xC3"));  // half a character
    ElementOf(*document, "Hand").AddModifier(*link, 0);
    const Json out = Written(*document);
    EXPECT_EQ(out["extensionsUsed"], Json({"QLX_modifiers", "QLX_element"}));
    const Json& written = out["nodes"][1]["extensions"]["QLX_modifiers"]["modifiers"][0];
    EXPECT_EQ(written["parameters"]["fControllerName"], name + rest);
    EXPECT_EQ(ElementOf(*Open("out.gltf"), "Hand").GetModifiers().size(), 1u);
  }
}

// The document for others says what the code does.
TEST(GltfModifierSchema, NamesTheFieldsOfEachClass) {
  const Json schema = Json::parse(ReadFile(std::filesystem::path(QLX_FORMATS) / "node.QLX_modifiers.schema.json"));
  for (const auto& [definition, id] :
       {std::pair("pin", "fPIN"_id), std::pair("link", "fQLX"_id), std::pair("slider", "fSLD"_id)}) {
    std::vector<std::string> documented;
    for (const auto& [name, field] : schema["$defs"][definition]["properties"].items()) {
      documented.push_back(name);
    }
    std::vector<std::string> fields;
    for (const ParameterField& field : PluginCatalog::GetBuiltIn()->FindMap(id)->GetFields()) {
      fields.push_back(field.fName);
    }
    EXPECT_EQ(documented, fields) << definition;
  }
}

TEST_F(GltfTest, WithoutAPluginModifiersStayAsData) {
  SceneText text = MakePinnedArm();
  text.fJson["nodes"][1]["extensions"]["QLX_modifiers"] = Json::parse(R"({"modifiers": [{"class": "abcd"}]})");
  const auto document = OpenText(text);
  EXPECT_TRUE(document->GetScene().FindByName("Arm")->GetModifiers().empty());
  ASSERT_EQ(fDiagnostics.GetWarnings().size(), 1u);
  EXPECT_EQ(Baked(*document, {}), Json::parse(text.GetText()));
}

}  // namespace qlx::host
