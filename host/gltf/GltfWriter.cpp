#include "GltfWriter.h"

#include <algorithm>

#include "GltfFiles.h"
#include "GltfSchema.h"
#include "GltfStructure.h"
#include "GltfUri.h"

namespace qlx::host {

namespace fs = std::filesystem;

namespace {

constexpr const char* kBufferType = "application/octet-stream";

// True for ".glb", false for ".gltf".
bool WantsGlb(const fs::path& inFile) {
  std::string extension = PathText(inFile.extension());
  std::transform(extension.begin(), extension.end(), extension.begin(),
                 [](char each) { return each >= 'A' && each <= 'Z' ? static_cast<char>(each + 0x20) : each; });
  if (extension != ".glb" && extension != ".gltf") {
    throw GltfProblem("the name must end in .gltf or .glb");
  }
  return extension == ".glb";
}

std::span<const uint8> BytesOf(const Json& inBuffer, const std::vector<uint8>& inContent) {
  return std::span(inContent).first(static_cast<std::size_t>(NumberOf(inBuffer, "byteLength", 0)));
}

class BufferPlacing {
 public:
  BufferPlacing(Json& ioDocument, const Buffers& inBuffers, GltfContainer& ioContainer)
      : fDocument(ioDocument), fBuffers(inBuffers), fContainer(ioContainer) {}

  void Place(AddedData& ioAdded) {
    const std::size_t count = ArrayOf(fDocument, "buffers").size();
    for (std::size_t i = 0; i < count; ++i) {
      PlaceBuffer(i);
    }
    if (!ioAdded.IsEmpty()) {
      PlaceAdded(ioAdded);
    }
  }

 private:
  void PlaceBuffer(std::size_t inIndex) {
    Json& buffer = fDocument["buffers"][inIndex];
    if (!fBuffers[inIndex]) {
      return;  // an extension fills it
    }
    const std::span<const uint8> bytes = BytesOf(buffer, *fBuffers[inIndex]);
    if (fContainer.fIsGlb && inIndex == 0) {
      fContainer.fBinary.emplace(bytes.begin(), bytes.end());
      buffer.erase("uri");
      return;
    }
    const Json* uri = FindMember(buffer, "uri");
    if (uri == nullptr || !IsDataUri(uri->get_ref<const std::string&>())) {
      buffer["uri"] = EncodeDataUri(kBufferType, bytes);
    }
  }

  // Behind the binary chunk, else in a buffer of its own, which becomes the chunk of a file without buffers.
  void PlaceAdded(AddedData& ioAdded) {
    const std::vector<uint8>& bytes = ioAdded.GetBytes();
    Json& buffers = fDocument["buffers"];
    if (fContainer.fBinary) {
      const std::size_t offset = (fContainer.fBinary->size() + 3) / 4 * 4;
      fContainer.fBinary->resize(offset);
      fContainer.fBinary->insert(fContainer.fBinary->end(), bytes.begin(), bytes.end());
      buffers[0]["byteLength"] = fContainer.fBinary->size();
      return ioAdded.PutInto(fDocument, 0, offset);
    }
    Json buffer = {{"byteLength", bytes.size()}};
    if (fContainer.fIsGlb && buffers.empty()) {
      fContainer.fBinary = bytes;
    } else {
      buffer["uri"] = EncodeDataUri(kBufferType, bytes);
    }
    buffers.push_back(std::move(buffer));
    ioAdded.PutInto(fDocument, buffers.size() - 1, 0);
  }

  Json& fDocument;
  const Buffers& fBuffers;
  GltfContainer& fContainer;
};

// A path that means nothing (a broken "%") or no file stays as it is: images are not ours to refuse.
std::string MovedUri(const std::string& inUri, const fs::path& inFrom, const fs::path& inTo) {
  try {
    const fs::path file = FileOfUri(inUri, inFrom, Place());
    std::error_code ignored;
    if (!fs::exists(file, ignored)) {
      return inUri;
    }
    const std::string moved = UriOfFile(file, inTo);
    return moved.empty() ? EncodeDataUri("image/" + PathText(file.extension()).substr(1), ReadWholeFile(file)) : moved;
  } catch (const GltfProblem&) {
    return inUri;
  }
}

fs::path FolderOf(const fs::path& inFile) {
  const fs::path folder = inFile.parent_path();
  return folder.empty() ? fs::path(".") : folder;
}

void MoveImages(Json& ioDocument, const fs::path& inFrom, const fs::path& inTo) {
  std::error_code error;
  if (!ioDocument.contains("images") || fs::equivalent(inFrom, inTo, error)) {
    return;
  }
  for (Json& image : ioDocument["images"]) {
    Json* uri = FindMember(image, "uri");
    if (uri != nullptr && IsRelativeUri(uri->get_ref<const std::string&>())) {
      *uri = MovedUri(uri->get<std::string>(), inFrom, inTo);
    }
  }
}

}  // namespace

void WriteDocument(Json& ioDocument, AddedData& ioAdded, const Buffers& inBuffers, const GltfSource& inSource,
                   const fs::path& inFile) {
  GltfContainer container;
  container.fIsGlb = WantsGlb(inFile);
  if (container.fIsGlb) {
    container.fOther = inSource.fContainer.fOther;
  }
  BufferPlacing(ioDocument, inBuffers, container).Place(ioAdded);
  MoveImages(ioDocument, FolderOf(inSource.fFile), FolderOf(inFile));
  CheckSchema(ioDocument);
  CheckRanges(ioDocument);
  container.fText = ioDocument.dump(inSource.fIsPretty && !container.fIsGlb ? 2 : -1);
  WriteWholeFile(inFile, JoinContainer(container));
}

}  // namespace qlx::host
