#include "GltfDocument.h"

#include <algorithm>
#include <unordered_map>

#include "GltfAnimation.h"
#include "GltfChanges.h"
#include "GltfContent.h"
#include "GltfFiles.h"
#include "GltfModifiers.h"
#include "GltfPointers.h"
#include "GltfScene.h"
#include "GltfSchema.h"
#include "GltfStructure.h"
#include "GltfWriter.h"

namespace qlx::host {

namespace fs = std::filesystem;

struct GltfDocument::Content {
  GltfSource fSource;
  Json fDocument;  // as it was read
  GltfModel fModel;
  std::vector<std::string> fClips;
  std::optional<std::size_t> fClip;
  TMCCountedPtr<Scene> fScene;
  std::vector<Element*> fElements;  // of each node
  ValueTargets fValues;
  bool fHasModifiers = false;  // elements have them; else they are data of the document

  ~Content() {
    if (fScene) {
      fScene->Close();
    }
  }

  void Decode();
  void ChooseClip(const std::string& inName);
  void Build(const GltfReadOptions& inOptions, Host& inHost);
  void Write(const fs::path& inFile, const BakeResult* inBake, WrittenModifiers inModifiers) const;
};

namespace {

// Runs the body; what is wrong gets the file's name in front.
template <class Body>
auto WithFileName(const fs::path& inFile, Body&& inBody) {
  try {
    return inBody();
  } catch (const GltfProblem& problem) {
    throw UserError(PathText(inFile), problem.what());
  }
}

}  // namespace

void GltfDocument::Content::Decode() {
  fSource.fContainer = SplitContainer(ReadWholeFile(fSource.fFile));
  std::string& text = fSource.fContainer.fText;
  fDocument = ParseJson(text);
  fSource.fIsPretty = text.find('\n') != std::string::npos;
  text = {};
  CheckSchema(fDocument);
  CheckRanges(fDocument);
  CheckNodes(fDocument);
  fModel.fBuffers = LoadBuffers(fDocument, fSource.fContainer, fSource.fFile.parent_path());
  fModel.fParts = DecodeParts(fDocument);
  CheckAccessorContent(fDocument, fModel);
}

void GltfDocument::Content::ChooseClip(const std::string& inName) {
  fClips = ListClipNames(fModel);
  if (inName.empty()) {
    fClip = fClips.empty() ? std::nullopt : std::optional<std::size_t>(0);
    return;
  }
  const auto found = std::find(fClips.begin(), fClips.end(), inName);
  if (found == fClips.end()) {
    std::string names;
    for (const std::string& name : fClips) {
      names += (names.empty() ? "" : ", ") + Quoted(name);
    }
    throw GltfProblem("has no animation " + Quoted(inName) + (names.empty() ? ", and no other" : ", only " + names));
  }
  fClip = static_cast<std::size_t>(found - fClips.begin());
}

void GltfDocument::Content::Build(const GltfReadOptions& inOptions, Host& inHost) {
  fScene = Scene::Create(inHost.GetDiagnostics());
  fElements = BuildScene(fDocument, fModel, *fScene);
  fValues = ReadValues(fDocument, fElements, *fScene);
  CheckAnimations(fDocument, fModel, fValues);
  CheckPointers(fDocument, fValues, fScene->GetDiagnostics());
  if (fClip) {
    ReadClip(fDocument, fModel, *fClip, fElements, fValues, inOptions.fFrameRate, *fScene);
  } else {
    fScene->SetTimeRange(0, 0);  // one frame: links work in a scene that stands still, too
    fScene->SetFrameRate(inOptions.fFrameRate.value_or(fScene->GetFrameRate()));
  }
  fHasModifiers = ReadModifiers(fDocument, fElements, inHost);
  for (Element* element : fElements) {
    element->ClearEditedChannels();
  }
  for (const auto& values : fScene->GetValueSets()) {
    values->ClearEdited();
  }
}

void GltfDocument::Content::Write(const fs::path& inFile, const BakeResult* inBake,
                                  WrittenModifiers inModifiers) const {
  std::unordered_map<const Element*, const BakedElement*> baked;
  if (inBake != nullptr) {
    for (const BakedElement& each : inBake->fElements) {
      baked[each.fElement] = &each;
    }
  }
  Json document = fDocument;
  GltfChanges changes(document, fModel, fClip, fScene->GetFrameRate(), fScene->GetDiagnostics());
  for (std::size_t i = 0; i < fElements.size(); ++i) {
    const int node = static_cast<int>(i);
    const auto found = baked.find(fElements[i]);
    if (inBake != nullptr && found != baked.end()) {
      changes.AddBaked(node, *inBake, *found->second);
    }
    changes.AddEdited(node, *fElements[i], found == baked.end() ? ChannelMask{0} : found->second->fChannels);
  }
  changes.AddValues(fValues, inBake);
  AddedData& added = changes.Finish();
  if (fHasModifiers) {
    WriteModifiers(document, fElements, inModifiers);
    ListOwnExtensions(document);
  }
  WriteDocument(document, added, fModel.fBuffers, fSource, inFile);
}

GltfDocument::GltfDocument() : fContent(std::make_unique<Content>()) {}

GltfDocument::~GltfDocument() = default;

std::unique_ptr<GltfDocument> GltfDocument::Read(const fs::path& inFile, const GltfReadOptions& inOptions,
                                                 Host& inHost) {
  return WithFileName(inFile, [&] {
    std::unique_ptr<GltfDocument> document(new GltfDocument);
    Content& content = *document->fContent;
    content.fSource.fFile = inFile;
    content.Decode();
    content.ChooseClip(inOptions.fClip);
    content.Build(inOptions, inHost);
    return document;
  });
}

Scene& GltfDocument::GetScene() const {
  return *fContent->fScene;
}

std::vector<std::string> GltfDocument::GetClipNames() const {
  return fContent->fClips;
}

std::string GltfDocument::GetClip() const {
  return fContent->fClip ? fContent->fClips[*fContent->fClip] : std::string();
}

void GltfDocument::Write(const fs::path& inFile) const {
  WithFileName(inFile, [&] { fContent->Write(inFile, nullptr, WrittenModifiers::kAsTheyAre); });
}

void GltfDocument::WriteBaked(const fs::path& inFile, const BakeResult& inBake, KeepModifiers inKeep) const {
  WrittenModifiers modifiers = WrittenModifiers::kNone;
  if (inKeep != KeepModifiers::kNo) {
    modifiers = inKeep == KeepModifiers::kAsTheyAre ? WrittenModifiers::kAsTheyAre : WrittenModifiers::kSwitchedOff;
  }
  WithFileName(inFile, [&] { fContent->Write(inFile, &inBake, modifiers); });
}

}  // namespace qlx::host
