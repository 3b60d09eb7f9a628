#include "QLXPreset.h"

#include <cmath>

namespace qlx {

namespace {

constexpr int32 kDecimals = 15;  // more than a 32-bit real needs, unless it is very small

// Every field of a preset, in the order of the file.
template <class Data, class Visit>
void VisitBlock(Data& ioData, Visit& ioVisit) {
  const auto visit = [&ioVisit](auto&... fields) { (ioVisit(fields), ...); };
  Data& d = ioData;
  visit(d.fTargetLabel, d.fControllerName, d.fControllerLabel, d.fListAllProperties, d.fListReserved);
  visit(d.fCombineReplace, d.fCombineSelf, d.fCombineAdd, d.fCombineSubtract, d.fCombineMultiply, d.fCombineDivide);
  visit(d.fModifyAdd, d.fModifySubtract, d.fModifyMultiply, d.fModifyDivide, d.fModifySet, d.fModifyValue);
  visit(d.fDecayOn, d.fGrowOn, d.fOscillateOn);
  visit(d.fStartOn, d.fStartFrame, d.fEndOn, d.fEndFrame, d.fDelayOn, d.fDelayFrames);
  visit(d.fModifyUnit, d.fMirrorTransform, d.fSourceName);
  visit(d.fPositionAll, d.fPositionNone, d.fPositionCustom, d.fPositionX, d.fPositionY, d.fPositionZ);
  visit(d.fPositionInvertX, d.fPositionInvertY, d.fPositionInvertZ);
  visit(d.fRotationAll, d.fRotationNone, d.fRotationCustom, d.fRotationX, d.fRotationY, d.fRotationZ);
  visit(d.fRotationInvertX, d.fRotationInvertY, d.fRotationInvertZ);
  visit(d.fScaleUniform, d.fScaleX, d.fScaleY, d.fScaleZ, d.fAttributeMode);
  visit(d.fLowerLimitOn, d.fLowerLimit, d.fUpperLimitOn, d.fUpperLimit);
  visit(d.fName, d.fAbsolute, d.fRelative, d.fLimitUnit, d.fBakeKeyframes);
  visit(d.fFindControllerByName, d.fFindSourceByName);
}

template <class Private, class Visit>
void VisitPrivate(Private& ioPrivate, Visit& ioVisit) {
  const auto visit = [&ioVisit](auto&... fields) { (ioVisit(fields), ...); };
  Private& p = ioPrivate;
  visit(p.fTargetPathSet, p.fTargetPath, p.fControllerPathSet, p.fControllerPath);
  auto& decay = p.fCurves.fDecay;
  visit(decay.fDecayLinear, decay.fDecayQuadratic, decay.fDecayCubic, decay.fDecayQuadraticOnly, decay.fDecayCubicOnly);
  visit(decay.fDecayMax, decay.fDecayMin);
  auto& growth = p.fCurves.fGrowth;
  visit(growth.fGrowLinear, growth.fGrowQuadratic, growth.fGrowCubic, growth.fGrowQuadraticOnly, growth.fGrowCubicOnly);
  visit(growth.fGrowMax, growth.fGrowMin);
  auto& oscillator = p.fCurves.fOscillator;
  visit(oscillator.fOscillatorSine, oscillator.fOscillatorCosine, oscillator.fOscillatorPhase);
  visit(oscillator.fOscillatorScale, oscillator.fOscillatorMax, oscillator.fOscillatorMin);
  visit(oscillator.fOscillatorSpeed);
}

class PresetWriter {
 public:
  explicit PresetWriter(TMCStream& ioStream) : fStream(ioStream) { ioStream.precision(kDecimals); }

  void operator()(const TMCString& inText) { fStream.WriteMCString(inText).Apply(endl); }
  void operator()(const bool& inSwitch) { fStream.WriteInt32(inSwitch ? 1 : 0).Apply(endl); }
  void operator()(const int32& inNumber) { fStream.WriteInt32(inNumber).Apply(endl); }
  void operator()(const real32& inNumber) {
    fStream.WriteDouble(std::isfinite(inNumber) ? static_cast<real64>(inNumber) : 0).Apply(endl);
  }

 private:
  TMCStream& fStream;
};

// Reads up to the first value that is missing or another, and no further.
class PresetReader {
 public:
  explicit PresetReader(TMCStream& ioStream) : fStream(ioStream) {}
  bool HasFailed() const { return fHasFailed; }
  // Of the last value that was looked at.
  int32 GetPlace() const { return fPlace; }

  void operator()(TMCString255& outText) { ReadText(outText, outText.MaxLength()); }
  void operator()(TMCDynamicString& outPath) { ReadText(outPath, kLongestQLXPath); }
  void operator()(bool& outSwitch) {
    int32 number = 0;
    (*this)(number);
    outSwitch = fHasFailed ? outSwitch : number != 0;
  }
  void operator()(int32& outNumber) { ReadNumberWith(&TMCStream::ReadInt32, outNumber); }
  void operator()(real32& outNumber) { ReadNumberWith(&TMCStream::ReadFloat, outNumber); }

 private:
  void ReadText(TMCString& outText, uint32 inLongest) {
    if (!GoToValue() || !StartsText()) {
      fHasFailed = true;
      return;
    }
    TMCDynamicString text;
    fStream.ReadMCString(text);
    fHasFailed = fStream.fail() || text.ByteLength() > inLongest;
    if (!fHasFailed) {
      outText.Assign(text.CStr(), text.ByteLength());
      fHasFailed = outText.ByteLength() != text.ByteLength();  // without memory
    }
  }

  template <class Number>
  void ReadNumberWith(TMCStream& (TMCStream::*inRead)(Number&), Number& outNumber) {
    Number number = 0;
    if (!GoToValue() || (fStream.*inRead)(number).fail()) {
      fHasFailed = true;
      return;
    }
    outNumber = number;
  }

  // In front of the next value, so that a failure stands on its line. False once something failed.
  bool GoToValue() {
    uint8 byte = ' ';
    while (!fHasFailed && byte <= ' ') {
      fPlace = fStream.Tell();
      fHasFailed = fStream.GetByte(byte).gcount() != 1;
    }
    if (!fHasFailed) {
      fStream.PutBack(byte);
    }
    return !fHasFailed;
  }

  bool StartsText() {
    uint8 byte = 0;
    fStream.GetByte(byte);
    fStream.PutBack(byte);
    return byte == '"';
  }

  TMCStream& fStream;
  int32 fPlace = 0;
  bool fHasFailed = false;
};

int32 LineOf(TMCStream& ioStream, int32 inPosition) {
  int32 line = 1;
  ioStream.Seek(0, kFromStart);
  uint8 byte = 0;
  for (int32 i = 0; i < inPosition && ioStream.GetByte(byte).gcount() == 1; ++i) {
    line += byte == '\n' ? 1 : 0;
  }
  return line;
}

}  // namespace

void WritePreset(TMCStream& ioStream, const QLXModifierData& inData, const QLXPrivateData& inPrivate) {
  PresetWriter writer(ioStream);
  VisitBlock(inData, writer);
  VisitPrivate(inPrivate, writer);
}

bool ReadPreset(TMCStream& ioStream, QLXModifierData& ioData, QLXPrivateData& ioPrivate, int32& outLine) {
  PresetReader reader(ioStream);
  VisitBlock(ioData, reader);
  VisitPrivate(ioPrivate, reader);
  if (reader.HasFailed()) {
    outLine = LineOf(ioStream, reader.GetPlace());
  }
  return !reader.HasFailed();
}

}  // namespace qlx
