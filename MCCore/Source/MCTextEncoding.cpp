#include "MCTextEncoding.h"

namespace qlx {

namespace {

void CreateCodePage(IMCTranscoder** outTranscoder) noexcept {
  CreateCodePageTranscoder(kWesternCodePage, outTranscoder);
}

}  // namespace

const MCTextEncoding kUtf8Encoding = {"UTF-8", {}, 0, CreateUtf8Transcoder, &kUtf8MarkedEncoding};
const MCTextEncoding kUtf8MarkedEncoding = {"UTF-8 with a mark", {0xEF, 0xBB, 0xBF}, 3, CreateUtf8Transcoder, nullptr};
const MCTextEncoding kCodePageEncoding = {"the system's code page", {}, 0, CreateCodePage, nullptr};
const MCTextEncoding kBinaryEncoding = {"no text", {}, 0, nullptr, nullptr};

}  // namespace qlx
