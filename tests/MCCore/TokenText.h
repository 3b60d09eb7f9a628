// Token texts as tests write and read them.
#pragma once

#include <gtest/gtest.h>

#include <string>
#include <string_view>

#include "AssertionGuard.h"
#include "MCException.h"
#include "MCMemoryStream.h"
#include "MCString.h"
#include "MCToken.h"
#include "TestMemory.h"

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

// The code of the exception that the work throws; 0 for none. It must carry the file's name, where one is expected, and
// a line. Reports are not looked at.
template <class Work>
MCResult CodeOf(Work&& inWork, const char* inFile = "MCToken") {
  IDebugUtilities* const earlier = gDebugUtilities;
  class Silence final : public IDebugUtilities {
   public:
    MCResult MC_CALL QueryInterface(const MCGuid&, void**) override { return MC_E_NOINTERFACE; }
    uint32 MC_CALL AddRef() override { return 1; }
    uint32 MC_CALL Release() override { return 1; }
    void MC_CALL ReportAssertion(const char*, int32, const char*) override {}
    void MC_CALL Report(const char*, int32) override {}
    void MC_CALL Report2(const char*, int32, int32, int32) override {}
    void MC_CALL Report3(const char*, int32, int32, int32, int32) override {}
    void MC_CALL GetCountedObjectBookkeeping(CountedObjectBookkeeping&) override {}
  } silence;
  gDebugUtilities = &silence;
  MCResult code = MC_S_OK;
  try {
    inWork();
  } catch (const TMCException& problem) {
    code = problem.GetCode();
    EXPECT_STREQ(problem.GetFileName(), inFile ? inFile : problem.GetFileName());
    EXPECT_GT(problem.GetLine(), 0);
  }
  gDebugUtilities = earlier;
  return code;
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
