// The persisted text format: a tree of four-character ids with values, groups and binary blocks, on any stream.
//
//   pset 1                      a value line: id, blank, value, line end
//   spar "a \"text\""           a text, quotes and backslashes escaped
//   decy {                      a group
//   dmax 0.5
//   }
//   DATA $00000003<CR>abc$      a binary block: its length in hex digits, one CR, the bytes, $
//   # comment                   up to the end of the line, between tokens
//
// Saved scenes consist of these bytes: a change here is a change of a file format.
//
// Every reader ends on any bytes whatever: with a value, with a failed stream, or with a `TMCException` that carries
// "MCToken" and one of these codes. It takes no more memory than the data can fill, and nesting costs no stack.
//   MC_E_EOF         the stream ended early
//   MC_E_BADTOKEN    something else stands there
//   MC_E_INVALIDARG  a brace in packed data
// Writers do not throw; a write that failed is in the stream's `state()`.
#pragma once

#include "MCStream.h"

namespace qlx {

class TMCString;
class TMCDynamicString;

// How a stream's tokens are laid out, kept with the stream under the key 'Tokn'.
struct MCTokenState {
  uint8 flag0 = 1;     // stored only
  uint8 compact = 0;   // 1: no blank before `{` or a text
  uint8 indent = 0;    // 1: lines are indented by depth
  int32 depth = 0;     // current nesting; counted while `indent` is 1
  uint32 pending = 0;  // the unfinished group of packed data, see `WritePacked`
  int32 tokenValue = 1;
};
static_assert(sizeof(MCTokenState) == 16);

struct MCPoint {
  int32 fFirst = 0;
  int32 fSecond = 0;
};

struct MCRect {
  int32 fFirst = 0;
  int32 fSecond = 0;
  int32 fThird = 0;
  int32 fFourth = 0;
};

namespace MCToken {

inline constexpr MCID kStateKey = "Tokn"_id;
inline constexpr MCID kMoreID = "MORE"_id;
inline constexpr uint8 kFirstBinHex = '0';
inline constexpr uint32 kUnknownLength = 0xFFFFFFFF;
// A token's text, NUL included. Longer words and texts are cut to 255 bytes as they are read.
using Buffer = char[256];

// ---- the record ----

// The stream's own record, or a shared one with the default values, which nobody writes to.
const MCTokenState& GetState(const TMCStream& inStream) noexcept;
// The stream's own, made when it has none yet. Null without memory.
MCTokenState* EditState(TMCStream& inStream) noexcept;
void SetTokenValue(TMCStream& inStream, int32 inValue) noexcept;
int32 GetTokenValue(const TMCStream& inStream) noexcept;

// ---- tokens ----

enum class Kind : uint8 { kWord, kString, kBlock, kOpen, kClose, kEnd };

// Reads one token; answers 0 or `MC_E_EOF`. A word that the end of the stream ends is in the buffer, with `MC_E_EOF`: a
// whole file ends with a line end. A binary block is skipped and reads as "$". With `keepQuotes` the quotes and escapes
// of a text stay, and so does comment text (with the line end that ends it) in front of the token.
MCResult ReadToken(TMCStream& inStream, Buffer& outBuffer, bool keepQuotes = false);
// What stands next, behind blanks and comments; the stream is left in front of it.
Kind PeekKind(TMCStream& inStream);
// True in front of the `}` of the current group, false in front of anything else. The end of the stream throws.
bool IsAtEnd(TMCStream& inStream);

// The id of the first four bytes, blanks in the place of those that are missing; `'` stands for a NUL.
MCID MakeToken(const char* inText) noexcept;
// A short id is padded with blanks. Of what ends it a blank is taken and a comma is left. A comma in its place is
// reported and left, the id being all blanks: whoever reads on must take it.
MCID ReadTokenId(TMCStream& inStream);
// A NUL is written as `'`. With `dropBlanks` the first blank ends the id.
void WriteTokenId(TMCStream& inStream, MCID inID, bool dropBlanks = false);

// ---- groups ----

// Answers with `wantPosition` where the stream stood after the id, else 0.
int32 BeginToken(TMCStream& inStream, MCID inID, bool wantPosition = false);
void BeginSection(TMCStream& inStream);
void EndToken(TMCStream& inStream);
void ReadBegin(TMCStream& inStream);
void ReadEnd(TMCStream& inStream);
// Skips one token or, in front of a group, all of it. So of a value made of two tokens it skips the first alone.
void SkipToken(TMCStream& inStream);
// Skips what is left of the current group, its `}` included. With `inside` false it is `SkipToken`.
void SkipToEnd(TMCStream& inStream, bool inside = true);

// Copies a token or a whole group as it stands, blanks in front included and comments and binary blocks left out, to a
// block that the caller frees with `MCfree`. Without memory the block is null and the size 0.
void CaptureGroup(TMCStream& inStream, uint8*& outData, uint32& outSize);
// Takes a group from its `{` on and gives it back as tokens with one blank after each.
void CaptureGroupText(TMCStream& inStream, TMCDynamicString& outText);

// ---- value lines ----

// With `translate` the text goes through `ExportTranslated` first.
void WriteString(TMCStream& inStream, MCID inID, const TMCString& inText, bool translate = false);
void WriteInt8(TMCStream& inStream, MCID inID, int8 inValue);
void WriteUInt8(TMCStream& inStream, MCID inID, uint8 inValue);
void WriteInt16(TMCStream& inStream, MCID inID, int16 inValue);
void WriteUInt16(TMCStream& inStream, MCID inID, uint16 inValue);
void WriteInt32(TMCStream& inStream, MCID inID, int32 inValue);
void WriteUInt32(TMCStream& inStream, MCID inID, uint32 inValue);
void WriteFloat(TMCStream& inStream, MCID inID, real32 inValue);
void WriteDouble(TMCStream& inStream, MCID inID, real64 inValue);
void WriteBool(TMCStream& inStream, MCID inID, bool inValue);
// First and second field.
void WritePoint(TMCStream& inStream, MCID inID, const MCPoint& inValue);
// The fields in the order second, first, fourth, third.
void WriteRect(TMCStream& inStream, MCID inID, const MCRect& inValue);
void WriteIdValue(TMCStream& inStream, MCID inID, MCID inValue);
void WriteUInt16Array(TMCStream& inStream, MCID inID, const uint16* inValues, uint32 inCount);
void WriteUInt32Array(TMCStream& inStream, MCID inID, const uint32* inValues, uint32 inCount);
// With an id of 0 it writes the values alone, without indentation and line end.
void WriteFloatArray(TMCStream& inStream, MCID inID, const real32* inValues, uint32 inCount);

// ---- values, read after their id ----

// Decoded with the stream's encoding, then `ImportTranslated`. At most 255 bytes; a longer text is cut.
void ReadString(TMCStream& inStream, TMCString& outText);
// Goes to the next quote and takes a text of any length, its bytes as they stand.
void ReadLongString(TMCStream& inStream, TMCDynamicString& outText, bool translate = false);
int8 ReadInt8(TMCStream& inStream);
uint8 ReadUInt8(TMCStream& inStream);
int16 ReadInt16(TMCStream& inStream);
uint16 ReadUInt16(TMCStream& inStream);
int32 ReadInt32(TMCStream& inStream);
uint32 ReadUInt32(TMCStream& inStream);
real32 ReadFloat(TMCStream& inStream);
real64 ReadDouble(TMCStream& inStream);
bool ReadBool(TMCStream& inStream);  // anything but 0 is true
MCPoint ReadPoint(TMCStream& inStream);
MCRect ReadRect(TMCStream& inStream);
MCID ReadIdValue(TMCStream& inStream);
void ReadUInt16Array(TMCStream& inStream, uint16* outValues, uint32 inCount);
void ReadUInt32Array(TMCStream& inStream, uint32* outValues, uint32 inCount);
void ReadFloatArray(TMCStream& inStream, real32* outValues, uint32 inCount);

// ---- bytes ----

// Lines of at most 64 bytes; each further line has the id 'MORE'.
void WriteHexData(TMCStream& inStream, MCID inID, uint32 inCount, const void* inData);
void ReadHexData(TMCStream& inStream, uint32 inCount, void* outData);

// The data of the given length is written in between. `kUnknownLength` says that it has no `$` in it and that a reader
// finds its end by looking for one.
void BeginBinaryBlock(TMCStream& inStream, MCID inID, uint32 inLength);
void EndBinaryBlock(TMCStream& inStream);
// Takes the header up to the first byte of the data, and answers the length. A length is what the data says of itself:
// check it before you allocate.
uint32 ReadBinaryBlock(TMCStream& inStream);
// Passes everything up to the closing `$`.
void ReadBinaryBlockEnd(TMCStream& inStream);

// Data inside a block, as it is, or each byte as two hex digits.
void WriteRawHex(TMCStream& inStream, const void* inData, uint32 inCount, bool asBytes);
void ReadRawHex(TMCStream& inStream, void* outData, uint32 inCount, bool asBytes);

// Data as text without `$` and braces: three bytes are four characters from '0' on. `ioState` keeps what is left
// between calls and starts as 0; a stream has room for it in `MCTokenState::pending`. Data that was written in pieces
// may be read in other pieces, and needs `FlushPacked` at its end alone.
void WritePacked(TMCStream& inStream, const void* inData, uint32 inCount, uint32& ioState);
void FlushPacked(TMCStream& inStream, uint32& ioState);
void ReadPacked(TMCStream& inStream, void* outData, uint32 inCount, uint32& ioState);

}  // namespace MCToken
}  // namespace qlx
