// Texts of any bytes: the bytes of every form stay within their room, and no edit reaches outside the
// text. Counts of characters are not checked: an edit of broken UTF-8 leaves them what they may be.
#include <cstring>

#include "FuzzTarget.h"
#include "MCString.h"

namespace qlx::fuzz {

namespace {

void CheckBytes(const TMCString& inText) {
  FuzzCheck(inText.ByteLength() <= inText.MaxLength(), "more bytes than room");
  FuzzCheck(inText.CStr()[inText.ByteLength()] == 0, "no NUL at the end");
}

template <class Text>
void Edit(FuzzInput inInput) {
  Text text(inInput.Rest(), inInput.RestSize());
  CheckBytes(text);
  const TMCString63 part(text, 1, 5);
  for (int step = 0; step < 16 && inInput.RestSize() > 0; ++step) {
    const auto index = int32{inInput.TakeByte()} - 2;
    const int32 count = inInput.TakeByte();
    switch (inInput.TakeByte() % 6) {
      case 0:
        text.Delete(index, count);
        break;
      case 1:
        text.Insert(part, index);
        break;
      case 2:
        text += part;
        break;
      case 3:
        text.SetLength(text.Length() / 2);
        break;
      case 4:
        text += static_cast<char>(count);
        break;
      default:
        text = Text(text, index, count);
        break;
    }
    CheckBytes(text);
    text.Find(part, index);
    text.GetChar(index);
  }
}

}  // namespace

}  // namespace qlx::fuzz

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* inBytes, size_t inSize) {
  const qlx::fuzz::FuzzHost host(16 * inSize + 4096);
  qlx::fuzz::Edit<qlx::TMCString15>({inBytes, inSize});
  qlx::fuzz::Edit<qlx::TMCDynamicString>({inBytes, inSize});
  return 0;
}
