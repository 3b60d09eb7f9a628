// Attribute paths through a file: saved, reordered and read again, with twins of what they name.
#include "AttributePathRecorder.h"
#include "SceneText.h"
#include "TextPath.h"

namespace qlx::host {

namespace {

class GltfPaths : public GltfTest {
 protected:
  static IMCUnknown* RootOf(GltfDocument& inDocument) {
    return static_cast<TreeElement*>(&inDocument.GetScene().GetRootElement());
  }
  static TMCCountedPtr<ParamInfo> RotationOf(GltfDocument& inDocument, const char* inName) {
    Element* const element = inDocument.GetScene().FindByName(inName);
    return ResolveTextPath(static_cast<TreeElement*>(element), TMCString1023("self,amet,TRAN,ROTA,RotX"));
  }
  static AttributePath Record(GltfDocument& inDocument, AttributePathMode inMode, const char* inName) {
    AttributePathRecorder recorder;
    recorder.Set(inMode, RotationOf(inDocument, inName).Get());
    AttributePath path;
    recorder.CopyTo(RootOf(inDocument), path);
    return path;
  }
};

}  // namespace

TEST_F(GltfPaths, FindTheirParameterInTheReorderedFile) {
  SceneText text;
  text.AddNode({{"name", "Arm"}, {"children", {1, 2}}});
  text.fJson["nodes"].push_back({{"name", "Hand"}});
  text.fJson["nodes"].push_back({{"name", "Tool"}});
  auto document = OpenText(text);
  const AttributePath byID = Record(*document, AttributePathMode::kByElementID, "Hand");
  const AttributePath fromRoot = Record(*document, AttributePathMode::kFromRoot, "Hand");
  document->Write(fFolder / "out.gltf");

  SceneText changed;
  changed.fJson = ReadJson("out.gltf");
  changed.fJson["nodes"][0]["children"] = {2, 1, 3};
  changed.fJson["nodes"].push_back({{"name", "Hand"}});   // a twin beside it
  changed.AddNode({{"name", "Arm"}, {"children", {5}}});  // and one of its parent,
  changed.fJson["nodes"].push_back({{"name", "Hand"}});   // with a hand of its own
  document = OpenText(changed);
  for (const AttributePath& path : {byID, fromRoot}) {
    const auto found = path.FindParamInfo(RootOf(*document));
    ASSERT_TRUE(found);
    EXPECT_EQ(found, RotationOf(*document, "Hand"));
  }

  // Where the name has gone, the path takes what stands at the place, and the id does not.
  changed.fJson["nodes"][1]["name"] = "Palm";
  changed.fJson["nodes"][3]["name"] = "Thumb";
  changed.fJson["nodes"][5]["name"] = "Finger";
  document = OpenText(changed);
  EXPECT_EQ(byID.FindParamInfo(RootOf(*document)), RotationOf(*document, "Palm"));
  EXPECT_EQ(fromRoot.FindParamInfo(RootOf(*document)), RotationOf(*document, "Tool"));
}

}  // namespace qlx::host
