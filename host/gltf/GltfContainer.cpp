#include "GltfContainer.h"

#include <limits>

#include "GltfProblem.h"

namespace qlx::host {

namespace {

constexpr uint32 kMagic = 0x46546C67;     // "glTF"
constexpr uint32 kTextType = 0x4E4F534A;  // "JSON"
constexpr uint32 kBinaryType = 0x004E4942;
constexpr std::size_t kHeaderSize = 12;
constexpr std::size_t kChunkHeaderSize = 8;

[[noreturn]] void FailAt(std::size_t inOffset, const std::string& inProblem) {
  throw GltfProblem("byte " + std::to_string(inOffset) + ": " + inProblem);
}

// Hands out bytes from the front; what is not there is an error with the position.
class ChunkReader {
 public:
  explicit ChunkReader(std::span<const uint8> inBytes) : fBytes(inBytes) {}

  std::size_t GetOffset() const { return fOffset; }
  std::size_t GetLeft() const { return fBytes.size() - fOffset; }

  std::span<const uint8> Read(std::size_t inCount, const char* inWhat) {
    if (inCount > GetLeft()) {
      FailAt(fOffset, std::string(inWhat) + " of " + std::to_string(inCount) + " bytes, but the file has only " +
                          std::to_string(GetLeft()) + " left");
    }
    const auto bytes = fBytes.subspan(fOffset, inCount);
    fOffset += inCount;
    return bytes;
  }

  uint32 ReadWord(const char* inWhat) {
    const auto bytes = Read(4, inWhat);
    return bytes[0] | static_cast<uint32>(bytes[1]) << 8 | static_cast<uint32>(bytes[2]) << 16 |
           static_cast<uint32>(bytes[3]) << 24;
  }

 private:
  std::span<const uint8> fBytes;
  std::size_t fOffset = 0;
};

GlbChunk ReadChunk(ChunkReader& ioReader) {
  const std::size_t start = ioReader.GetOffset();
  const uint32 length = ioReader.ReadWord("a chunk header");
  const uint32 type = ioReader.ReadWord("a chunk header");
  if (length % 4 != 0) {
    FailAt(start, "a chunk of " + std::to_string(length) + " bytes, which is no multiple of 4");
  }
  const auto bytes = ioReader.Read(length, "a chunk");
  return {type, {bytes.begin(), bytes.end()}};
}

GltfContainer SplitGlb(std::span<const uint8> inBytes) {
  ChunkReader reader(inBytes);
  reader.ReadWord("the GLB header");
  const uint32 version = reader.ReadWord("the GLB header");
  if (version != 2) {
    FailAt(4, "GLB of version " + std::to_string(version) + ", only 2 can be read");
  }
  const uint32 length = reader.ReadWord("the GLB header");
  if (length != inBytes.size()) {
    FailAt(8,
           "the GLB header says " + std::to_string(length) + " bytes, the file has " + std::to_string(inBytes.size()));
  }
  GltfContainer container;
  container.fIsGlb = true;
  GlbChunk text = ReadChunk(reader);
  if (text.fType != kTextType) {
    FailAt(kHeaderSize, "the first chunk is not JSON");
  }
  container.fText.assign(text.fBytes.begin(), text.fBytes.end());
  while (reader.GetLeft() > 0) {
    GlbChunk chunk = ReadChunk(reader);
    if (chunk.fType == kBinaryType && !container.fBinary && container.fOther.empty()) {
      container.fBinary = std::move(chunk.fBytes);
    } else {
      container.fOther.push_back(std::move(chunk));
    }
  }
  return container;
}

void AppendWord(std::vector<uint8>& ioBytes, uint32 inValue) {
  for (int shift = 0; shift < 32; shift += 8) {
    ioBytes.push_back(static_cast<uint8>(inValue >> shift));
  }
}

template <class Bytes>
void AppendChunk(std::vector<uint8>& ioBytes, uint32 inType, const Bytes& inContent, uint8 inPadding) {
  const std::size_t padded = (inContent.size() + 3) / 4 * 4;
  AppendWord(ioBytes, static_cast<uint32>(padded));
  AppendWord(ioBytes, inType);
  ioBytes.insert(ioBytes.end(), inContent.begin(), inContent.end());
  ioBytes.insert(ioBytes.end(), padded - inContent.size(), inPadding);
}

uint64 PaddedChunk(std::size_t inContent) {
  return kChunkHeaderSize + (static_cast<uint64>(inContent) + 3) / 4 * 4;
}

uint64 GlbSize(const GltfContainer& inContainer) {
  uint64 size = kHeaderSize + PaddedChunk(inContainer.fText.size());
  size += inContainer.fBinary ? PaddedChunk(inContainer.fBinary->size()) : 0;
  for (const GlbChunk& chunk : inContainer.fOther) {
    size += PaddedChunk(chunk.fBytes.size());
  }
  return size;
}

}  // namespace

GltfContainer SplitContainer(std::vector<uint8> inBytes) {
  if (inBytes.empty()) {
    throw GltfProblem("the file is empty");
  }
  const std::string_view start(reinterpret_cast<const char*>(inBytes.data()), std::min<std::size_t>(4, inBytes.size()));
  if (start == "glTF") {
    return SplitGlb(inBytes);
  }
  GltfContainer container;
  container.fText.assign(inBytes.begin(), inBytes.end());
  return container;
}

std::vector<uint8> JoinContainer(const GltfContainer& inContainer) {
  if (!inContainer.fIsGlb) {
    return {inContainer.fText.begin(), inContainer.fText.end()};
  }
  const uint64 size = GlbSize(inContainer);
  if (size > std::numeric_limits<uint32>::max()) {
    throw GltfProblem("a GLB file holds 4 GB at most");
  }
  std::vector<uint8> bytes;
  bytes.reserve(static_cast<std::size_t>(size));
  AppendWord(bytes, kMagic);
  AppendWord(bytes, 2);
  AppendWord(bytes, static_cast<uint32>(size));
  AppendChunk(bytes, kTextType, inContainer.fText, ' ');
  if (inContainer.fBinary) {
    AppendChunk(bytes, kBinaryType, *inContainer.fBinary, 0);
  }
  for (const GlbChunk& chunk : inContainer.fOther) {
    AppendChunk(bytes, chunk.fType, chunk.fBytes, 0);
  }
  return bytes;
}

}  // namespace qlx::host
