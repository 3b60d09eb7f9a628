#include "QLXModifierTokens.h"

#include <algorithm>

#include "MCException.h"
#include "MCToken.h"

namespace qlx {

namespace {

[[noreturn]] void FailTokens(MCResult inCode, int32 inLine) {
  throw TMCException(inCode, "QLXModifier", inLine);
}

// The fields of the three blocks in the order in which they are written. A block has switches first and numbers behind.
template <class Block>
struct QLXTokenField {
  MCID fKey;
  bool Block::*fSwitch;
  real32 Block::*fNumber;
};

template <class Block>
constexpr QLXTokenField<Block> Switch(MCID inKey, bool Block::*inField) {
  return {inKey, inField, nullptr};
}

template <class Block>
constexpr QLXTokenField<Block> Number(MCID inKey, real32 Block::*inField) {
  return {inKey, nullptr, inField};
}

constexpr uint32 kBlockTokens = 7;

constexpr QLXTokenField<QLXDecay> kDecayTokens[kBlockTokens] = {
    Switch("dlin"_id, &QLXDecay::fDecayLinear),    Switch("dqua"_id, &QLXDecay::fDecayQuadratic),
    Switch("dcub"_id, &QLXDecay::fDecayCubic),     Switch("dqut"_id, &QLXDecay::fDecayQuadraticOnly),
    Switch("dcut"_id, &QLXDecay::fDecayCubicOnly), Number("dmax"_id, &QLXDecay::fDecayMax),
    Number("dmin"_id, &QLXDecay::fDecayMin),
};

constexpr QLXTokenField<QLXGrowth> kGrowthTokens[kBlockTokens] = {
    Switch("glin"_id, &QLXGrowth::fGrowLinear),    Switch("gqua"_id, &QLXGrowth::fGrowQuadratic),
    Switch("gcub"_id, &QLXGrowth::fGrowCubic),     Switch("gqut"_id, &QLXGrowth::fGrowQuadraticOnly),
    Switch("gcut"_id, &QLXGrowth::fGrowCubicOnly), Number("gmax"_id, &QLXGrowth::fGrowMax),
    Number("gmin"_id, &QLXGrowth::fGrowMin),
};

constexpr QLXTokenField<QLXOscillator> kOscillatorTokens[kBlockTokens] = {
    Switch("osin"_id, &QLXOscillator::fOscillatorSine),  Switch("ocos"_id, &QLXOscillator::fOscillatorCosine),
    Number("opho"_id, &QLXOscillator::fOscillatorPhase), Number("osca"_id, &QLXOscillator::fOscillatorScale),
    Number("omax"_id, &QLXOscillator::fOscillatorMax),   Number("omin"_id, &QLXOscillator::fOscillatorMin),
    Number("ospd"_id, &QLXOscillator::fOscillatorSpeed),
};

template <class Block>
void WriteBlock(TMCStream& ioStream, MCID inKey, const QLXTokenField<Block> (&inFields)[kBlockTokens],
                const Block& inBlock) {
  MCToken::BeginToken(ioStream, inKey);
  for (const QLXTokenField<Block>& field : inFields) {
    if (field.fSwitch) {
      MCToken::WriteBool(ioStream, field.fKey, inBlock.*field.fSwitch);
    } else {
      MCToken::WriteFloat(ioStream, field.fKey, inBlock.*field.fNumber);
    }
  }
  MCToken::EndToken(ioStream);
}

bool ReadSwitch(TMCStream& ioStream) {
  const bool value = MCToken::ReadBool(ioStream);
  if (ioStream.fail()) {
    FailTokens(MC_E_BADTOKEN, __LINE__);
  }
  return value;
}

real32 ReadNumber(TMCStream& ioStream) {
  const real32 value = MCToken::ReadFloat(ioStream);
  if (ioStream.fail()) {
    FailTokens(MC_E_BADTOKEN, __LINE__);
  }
  return value;
}

template <class Block>
void ReadBlock(TMCStream& ioStream, const QLXTokenField<Block> (&inFields)[kBlockTokens], Block& ioBlock) {
  MCToken::ReadBegin(ioStream);
  for (uint32 i = 0; i < kBlockTokens; ++i) {
    const MCID key = MCToken::ReadTokenId(ioStream);
    const auto* const field = std::ranges::find(inFields, key, &QLXTokenField<Block>::fKey);
    if (field == std::end(inFields)) {
      MCToken::SkipToken(ioStream);
    } else if (field->fSwitch) {
      ioBlock.*field->fSwitch = ReadSwitch(ioStream);
    } else {
      ioBlock.*field->fNumber = ReadNumber(ioStream);
    }
  }
  MCToken::ReadEnd(ioStream);
}

// A text of any length between quotes, or a bare word.
TMCDynamicString ReadText(TMCStream& ioStream) {
  TMCDynamicString text;
  if (MCToken::PeekKind(ioStream) == MCToken::Kind::kString) {
    MCToken::ReadLongString(ioStream, text);
  } else {
    MCToken::ReadString(ioStream, text);
  }
  return text;
}

void ReadPath(TMCStream& ioStream, TMCDynamicString& outPath) {
  const TMCDynamicString text = ReadText(ioStream);
  const uint32 length = std::min(text.ByteLength(), kLongestQLXPath);
  outPath = TMCDynamicString(text.CStr(), length);
  if (outPath.ByteLength() != length) {
    FailTokens(MC_E_OUTOFMEMORY, __LINE__);
  }
}

int HexValue(char inDigit) {
  if (inDigit >= '0' && inDigit <= '9') {
    return inDigit - '0';
  }
  return inDigit >= 'a' && inDigit <= 'f' ? inDigit - 'a' + 10 : -1;
}

void WriteReference(TMCStream& ioStream, MCID inKey, const ObjectReference& inReference) {
  const uint32 count = inReference.GetElemCount();
  if (count != 0 && !inReference.BaseAddress()) {
    return;
  }
  TMCDynamicString digits;
  digits.SetMaxLength(2 * count);
  for (const uint8 byte : inReference) {
    digits += "0123456789abcdef"[byte >> 4];
    digits += "0123456789abcdef"[byte & 15];
  }
  MCToken::WriteString(ioStream, inKey, digits);
}

void ReadReference(TMCStream& ioStream, ObjectReference& outReference) {
  const TMCDynamicString digits = ReadText(ioStream);
  const uint32 count = digits.ByteLength() / 2;
  ObjectReference reference;
  if (digits.ByteLength() % 2 != 0) {
    FailTokens(MC_E_BADTOKEN, __LINE__);
  }
  if (!reference.SetElemCount(count)) {
    FailTokens(MC_E_OUTOFMEMORY, __LINE__);
  }
  for (uint32 i = 0; i < count; ++i) {
    const int high = HexValue(digits.CStr()[2 * i]);
    const int low = HexValue(digits.CStr()[2 * i + 1]);
    if (high < 0 || low < 0) {
      FailTokens(MC_E_BADTOKEN, __LINE__);
    }
    reference[i] = static_cast<uint8>(high * 16 + low);
  }
  outReference = reference;
}

void ReadField(TMCStream& ioStream, QLXPrivateData& ioData, IExStreamIO::Fallback inFallback, void* inContext) {
  const MCID key = MCToken::ReadTokenId(ioStream);
  switch (key) {
    case "pset"_id:
      ioData.fTargetPathSet = ReadSwitch(ioStream);
      break;
    case "cpsl"_id:
      ReadPath(ioStream, ioData.fTargetPath);
      break;
    case "sobj"_id:
      ReadReference(ioStream, ioData.fControllerRef);
      break;
    case "bobj"_id:
      ReadReference(ioStream, ioData.fSourceRef);
      break;
    case "cpst"_id:
      ioData.fControllerPathSet = ReadSwitch(ioStream);
      break;
    case "spar"_id:
      ReadPath(ioStream, ioData.fControllerPath);
      break;
    case "decy"_id:
      ReadBlock(ioStream, kDecayTokens, ioData.fCurves.fDecay);
      break;
    case "grow"_id:
      ReadBlock(ioStream, kGrowthTokens, ioData.fCurves.fGrowth);
      break;
    case "oscl"_id:
      ReadBlock(ioStream, kOscillatorTokens, ioData.fCurves.fOscillator);
      break;
    default:
      if (inFallback) {
        inFallback(key, &ioStream, inContext);
      } else {
        MCToken::SkipToken(ioStream);
      }
  }
}

}  // namespace

void WriteTokens(TMCStream& ioStream, const QLXPrivateData& inData) {
  MCToken::WriteBool(ioStream, "pset"_id, inData.fTargetPathSet);
  MCToken::WriteString(ioStream, "cpsl"_id, inData.fTargetPath);
  WriteReference(ioStream, "sobj"_id, inData.fControllerRef);
  WriteReference(ioStream, "bobj"_id, inData.fSourceRef);
  MCToken::WriteBool(ioStream, "cpst"_id, inData.fControllerPathSet);
  MCToken::WriteString(ioStream, "spar"_id, inData.fControllerPath);
  WriteBlock(ioStream, "decy"_id, kDecayTokens, inData.fCurves.fDecay);
  WriteBlock(ioStream, "grow"_id, kGrowthTokens, inData.fCurves.fGrowth);
  WriteBlock(ioStream, "oscl"_id, kOscillatorTokens, inData.fCurves.fOscillator);
}

void ReadTokens(TMCStream& ioStream, QLXPrivateData& ioData, IExStreamIO::Fallback inFallback, void* inContext) {
  MCToken::ReadBegin(ioStream);
  bool atEnd = MCToken::IsAtEnd(ioStream);
  ioData.fControllerRef.SetElemCount(0);
  while (!atEnd) {
    ReadField(ioStream, ioData, inFallback, inContext);
    atEnd = MCToken::IsAtEnd(ioStream);
  }
  MCToken::ReadEnd(ioStream);
}

}  // namespace qlx
