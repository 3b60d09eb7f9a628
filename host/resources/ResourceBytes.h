// The numbers and texts that a resource is made of: big-endian, on every target alike.
#pragma once

#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "MCGuid.h"
#include "MCTypes.h"

namespace qlx::host {

// True for well-formed UTF-8 without NUL and without halves of surrogate pairs.
bool IsUtf8Text(std::string_view inText) noexcept;
// Bytes at the start of the text that are.
std::size_t Utf8StartLength(std::string_view inText) noexcept;

class ResourceWriter {
 public:
  void PutU8(uint8 inValue) { fBytes.push_back(inValue); }
  void PutU16(uint16 inValue);
  void PutU32(uint32 inValue);
  void PutReal(real32 inValue);
  void PutGuid(const MCGuid& inValue);
  // Two bytes of length, then the text. At most 65535 bytes; what is more is left out.
  void PutText(std::string_view inText);

  std::vector<uint8> Take() { return std::move(fBytes); }

 private:
  std::vector<uint8> fBytes;
};

// Reads what such a writer wrote, from bytes that may be anything. What is not there, or cannot be, is a
// `ResourceError` that names the resource and the byte.
class ResourceReader {
 public:
  // The bytes must outlive the reader.
  ResourceReader(std::span<const uint8> inBytes, MCID inType, int16 inID) : fBytes(inBytes), fType(inType), fID(inID) {}

  uint8 GetU8() { return *Take(1, "a byte"); }
  uint16 GetU16();
  uint32 GetU32();
  // Finite.
  real32 GetReal();
  MCGuid GetGuid();
  std::string GetText();
  // A count of things that take at least `inSmallest` bytes each: so many are possible in what is left.
  uint16 GetCount(std::size_t inSmallest);
  // Nothing may be left.
  void End() const;

  // At the value that was read last.
  [[noreturn]] void Fail(const std::string& inProblem) const;

 private:
  const uint8* Take(std::size_t inSize, const char* inWhat);
  std::size_t Left() const { return fBytes.size() - fOffset; }

  std::span<const uint8> fBytes;
  MCID fType;
  int16 fID;
  std::size_t fOffset = 0;
  std::size_t fLast = 0;
};

}  // namespace qlx::host
