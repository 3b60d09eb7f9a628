// Token texts as tests write and read them.
#pragma once

#include <string>
#include <string_view>

#include "HostedTest.h"
#include "MCMemoryStream.h"
#include "MCString.h"
#include "MCToken.h"
#include "ThrownBy.h"

namespace qlx::test {

inline constexpr const char* kStreamReport = "Stream throw TMCException";
inline constexpr const char* kThrowReport = "An exception is being thrown";

// A stream that only its virtual operations reach, as one from the other side of the binary border is.
class ForeignStream final : public TMCMemoryStream {
 public:
  using TMCMemoryStream::TMCMemoryStream;
};

// A text, for reading. It must outlive the stream.
template <class Stream = TMCMemoryStream>
Stream Reading(std::string_view inText) {
  return Stream(const_cast<char*>(inText.data()), static_cast<int32>(inText.size()), kStreamReadable);
}

inline std::string Written(const TMCMemoryStream& inStream) {
  return {reinterpret_cast<const char*>(inStream.GetData()), static_cast<std::size_t>(inStream.GetSize())};
}

// What a writer writes on a new stream.
template <class Writer>
std::string WrittenBy(Writer&& inWriter) {
  TMCMemoryStream stream;
  inWriter(stream);
  EXPECT_FALSE(stream.fail());
  return Written(stream);
}

// An exception of tokens names its module.
template <class Work>
MCResult TokenCodeOf(Work&& inWork) {
  return CodeOf(inWork, "MCToken");
}

// The rest of a stream.
inline std::string Rest(TMCStream& ioStream) {
  std::string text;
  uint8 byte = 0;
  while (!ioStream.GetByte(byte).eof() && !ioStream.fail()) {
    text += static_cast<char>(byte);
  }
  return text;
}

}  // namespace qlx::test
