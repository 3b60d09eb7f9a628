// The persisted image of a translation table, and texts translated by what it holds: no byte of an image is trusted,
// and no escape block makes a text leave its room.
#include <cstring>

#include "FuzzTarget.h"
#include "MCAsciiTranslation.h"
#include "MCString.h"
#include "TranslationTable.h"

namespace qlx::fuzz {

namespace {

template <class Text>
void Translate(const char* inText, MCSize inCount) {
  for (int32 direction = 0; direction < 2; ++direction) {
    Text text(inText, inCount);
    text.TranslateAscii(direction);
    FuzzCheck(text.ByteLength() <= text.MaxLength(), "more bytes than room");
    FuzzCheck(text.CStr()[text.ByteLength()] == 0, "no NUL at the end");
    FuzzCheck(text.Length() <= text.ByteLength(), "more characters than bytes");
  }
  Text text(inText, inCount);
  text.ImportTranslatedBytes();
  FuzzCheck(text.ByteLength() <= text.MaxLength(), "more bytes than room");
}

}  // namespace

}  // namespace qlx::fuzz

// The image, and after its 512 bytes of tables and both blocks what is left is the text. An input without a whole image
// is text alone.
extern "C" int LLVMFuzzerTestOneInput(const uint8_t* inBytes, size_t inSize) {
  using namespace qlx;
  const fuzz::FuzzHost host(1024 + 300 * inSize);
  // Whatever the result: a table that refused its image translates nothing.
  const test::HostedTable table({inBytes, inBytes + inSize});
  fuzz::FuzzCheck(table.GetResult() == MC_S_OK || table.GetResult() == MC_E_EOF, "another result than two");
  for (int key = 0; key < 256; ++key) {
    for (int32 direction = 0; direction < 2; ++direction) {
      const char* const text = table.Table().GetEscapeString(static_cast<uint8>(key), direction);
      fuzz::FuzzCheck(!text || std::strlen(text) < 255, "a text longer than its block");
    }
  }
  const size_t used = std::min<size_t>(inSize, table.GetResult() == MC_S_OK ? 513 : 0);
  const char* const text = reinterpret_cast<const char*>(inBytes + used);
  fuzz::Translate<TMCString15>(text, inSize - used);
  fuzz::Translate<TMCString255>(text, inSize - used);
  fuzz::Translate<TMCDynamicString>(text, inSize - used);
  return 0;
}
