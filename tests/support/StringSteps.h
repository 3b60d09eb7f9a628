// Runs operations that a source of bytes chooses on every form of the string family and on its model, and says where
// the two differ.
#pragma once

#include <array>
#include <cmath>
#include <limits>
#include <string>

#include "MCString.h"
#include "PlatformTextGuard.h"
#include "StringModel.h"

namespace qlx::test {

template <class NextByte>
class StringSteps {
 public:
  explicit StringSteps(NextByte inNext) : fNext(inNext) {
    fPlatform.UseUtf8CodePage();
    fPlatform.UseDecimalSeparator<'.'>();
  }

  // One operation on one form. What differs after it, or nothing.
  std::string Step() {
    Form form = fForms[Below(static_cast<uint32>(fForms.size()))];
    fWhat = "size";
    if (form.fModel.Size() > 3000 && Below(4) == 0) {
      form.fText = "";
      form.fModel.Assign("");
    }
    const uint32 group = Below(4);
    group == 0 ? Change(form) : group == 1 ? Edit(form) : group == 2 ? Numbers(form) : Read(form);
    Compare(form);
    return std::exchange(fDifference, {});
  }

 private:
  struct Form {
    TMCString& fText;
    StringModel& fModel;
  };

  uint32 Below(uint32 inCount) { return static_cast<uint32>(fNext()) % inCount; }
  // Around the ends of the text more often than elsewhere.
  int32 Index(const StringModel& inModel) {
    const uint32 kind = Below(8);
    return static_cast<int32>(kind < 4   ? Below(256)
                              : kind < 6 ? inModel.Length()
                                         : inModel.Size()) -
           (kind < 4 ? 2 : static_cast<int32>(Below(4)));
  }
  std::string Piece() {
    static const char* const kPieces[] = {
        "a", "bc", "\u00E9", "\u20AC", "\U0001F600", "\xFF", "\x80",  "\xC3", "^0",     "^1", "\r", "\n",  "\r\n", ".",
        ",", "-",  "0",      "000",    "9",          "99",   "12.50", "x",    "1,234.", "-7", " ",  "1e3", "",
    };
    return kPieces[Below(static_cast<uint32>(std::size(kPieces)))];
  }
  std::string Text() {
    std::string text;
    for (uint32 i = Below(6); i > 0; --i) {
      text += Piece();
    }
    if (Below(256) == 0 && Below(8) == 0) {
      text += std::string(40000, 'q');  // past the limits of 16 bits
    }
    return text;
  }
  uint16 Char() {
    static constexpr uint16 kChars[] = {'a', '0', 0xE9, 0x20AC, 0xF600, 0xC0, 'x', '^', 0};
    return kChars[Below(static_cast<uint32>(std::size(kChars)))];
  }

  // Operations that bear the same names.
  template <class Operation>
  static void Both(Form& ioForm, Operation&& inOperation) {
    inOperation(ioForm.fText);
    inOperation(ioForm.fModel);
  }

  void Change(Form& ioForm) {
    auto& [text, model] = ioForm;
    const uint32 operation = Below(9);
    fWhat = "change " + std::to_string(operation);
    const std::string bytes = Text();
    const TMCDynamicString operand(bytes.data(), bytes.size());
    switch (operation) {
      case 0:
        text.Assign(bytes.data(), bytes.size());
        return model.Assign(bytes);
      case 1:
        text = static_cast<const TMCString&>(operand);
        return model.Assign(bytes);
      case 2:
        text += operand;
        return model.Append(bytes);
      case 3:
        text += text;
        return model.Append(model.Bytes());
      case 4: {
        const char byte = static_cast<char>(fNext());
        text += byte;
        return model.AppendChar(byte);
      }
      case 5: {
        const int32 index = Index(model);
        text.Insert(operand, index);
        return model.Insert(bytes, index);
      }
      case 6: {
        std::vector<uint16> units(Below(12));
        std::generate(units.begin(), units.end(), [&] { return static_cast<uint16>(Char() | 1); });
        model.FromUnicode(units);
        units.push_back(0);
        return text.FromUnicode(units.data());
      }
      case 7:
        return Both(ioForm, [room = 1 + Below(64)](auto& form) { form.SetMaxLength(room); });
      default: {
        const std::string part = bytes.substr(0, 255);
        const std::string pascal = static_cast<char>(part.size()) + part;
        text.FromPascalString(reinterpret_cast<const uint8*>(pascal.data()));
        return model.Assign(part);
      }
    }
  }

  void Edit(Form& ioForm) {
    auto& [text, model] = ioForm;
    const uint32 operation = Below(9);
    fWhat = "edit " + std::to_string(operation);
    const int32 index = Index(model);
    const int32 count = Index(model);
    switch (operation) {
      case 0:
        return Same(text.Delete(index, count), model.Delete(index, count));
      case 1:
        return Same(text.DeleteBytes(index, count), model.DeleteBytes(index, count));
      case 2:
        return Both(ioForm, [&](auto& form) { form.SetLength(static_cast<uint32>(count)); });
      case 3:
        return Both(ioForm, [&](auto& form) { form.Extract(index, count); });
      case 4:
        return Both(ioForm, [&, character = Char()](auto& form) { form.SetChar(character, index); });
      case 5:
        return Both(ioForm, [&, byte = static_cast<char>(fNext())](auto& form) { form.SetByte(byte, index); });
      case 6: {
        const std::string find = Piece();
        const std::string replacement = Piece();
        return Same(text.Replace(TMCString15(find.c_str()), TMCString15(replacement.c_str()), index),
                    model.Replace(find, replacement, index));
      }
      case 7:
        return Both(ioForm, [mode = static_cast<int32>(Below(3))](auto& form) { form.NormalizeLineEnds(mode); });
      default: {
        const std::string value = Text().substr(0, 60);
        if (value.find('^') == std::string::npos) {
          const auto number = static_cast<int32>(Below(2));
          SubstituteParam(text, TMCString63(value.c_str()), number);
          model.Substitute(value, number);
        }
      }
    }
  }

  void Numbers(Form& ioForm) {
    auto& [text, model] = ioForm;
    const uint32 operation = Below(8);
    fWhat = "numbers " + std::to_string(operation);
    uint64 bits = 0;
    for (int i = 0; i < 8; ++i) {
      bits = bits << 8 | fNext();
    }
    real64 value = static_cast<real64>(static_cast<int64>(bits)) / 1048576;
    if (bits & 1) {
      std::memcpy(&value, &bits, sizeof value);
      value = std::isnan(value) ? std::numeric_limits<real64>::quiet_NaN() : value;  // C libraries differ in its sign
    }
    const uint32 precision = Below(40);
    char scratch[512];
    switch (operation) {
      case 0:
        text.FromInt(static_cast<int32>(bits));
        return model.Assign(std::to_string(static_cast<int32>(bits)));
      case 1:
        text.FromDouble(value, precision);
        std::snprintf(scratch, sizeof scratch, "%.*G", static_cast<int>(precision), value);
        return model.Assign(scratch);
      case 2: {
        const auto single = static_cast<real32>(std::clamp(value, -3e38, 3e38));
        text.FromFloat(single, precision);
        std::snprintf(scratch, sizeof scratch, "%.*f", static_cast<int>(precision), static_cast<real64>(single));
        return model.Assign(scratch);
      }
      case 3:
        text.FromMoney(value);
        std::snprintf(scratch, sizeof scratch, "%.2f", value);
        return model.Assign(scratch);
      case 4:
        return Both(ioForm, [](auto& form) { form.TrimZeros(); });
      case 5:
        text.IncrementNumber(text);
        return model.Increment();
      case 6:
        text.FromID(static_cast<MCID>(bits), true);
        return model.Assign({static_cast<char>(bits >> 24), static_cast<char>(bits >> 16), static_cast<char>(bits >> 8),
                             static_cast<char>(bits)});
      default:
        Same(text.ToInt(), model.ToInt());
        Same(text.ToFloat(), model.ToFloat());
        Same(text.IsNumeric(), model.IsNumeric());
        const real64 mine = text.ToDouble();
        return Same(std::isnan(mine) ? 0 : mine, std::isnan(model.ToDouble()) ? 0 : model.ToDouble());
    }
  }

  void Read(const Form& inForm) {
    const auto& [text, model] = inForm;
    fWhat = "read";
    const int32 index = Index(model);
    const int32 length = Index(model);
    const std::string piece = Piece();
    const TMCString31 wanted(piece.c_str());
    Same(text.Find(wanted, index), model.Find(piece, index));
    Same(text.FindBytes(wanted, index), model.FindBytes(piece, index));
    const uint16 character = Char();
    Same(text.FindChar(character, index), model.FindChar(character, index));
    Same(text.ReverseFindChar(character, index), model.ReverseFindChar(character, index));
    Same(text.FindByte(static_cast<char>(character), index), model.FindBytes({static_cast<char>(character)}, index));
    Same(text.GetChar(index), model.GetChar(index));
    Same(text.GetSubStringByteLength(index, static_cast<uint32>(length)),
         model.SubStringBytes(index, static_cast<uint32>(length)));
    const TMCDynamicString part(text, index, length);
    Same(std::string(part.CStr(), part.ByteLength()) == model.SubString(index, length), true);
    Same(text == part, std::strcmp(model.Bytes().c_str(), part.CStr()) == 0);
    std::vector<uint16> units(Below(40));
    const auto room = static_cast<uint32>(units.size());
    text.ToUnicode(units.data(), room);
    const std::vector<uint16> expected = model.ToUnicode(room);
    Same(std::equal(expected.begin(), expected.end(), units.begin()), true);
  }

  template <class Value>
  void Same(const Value& inReal, const Value& inModel) {
    // Also where both are 0 with different signs.
    if (!(inReal == inModel)) {
      fDifference += fWhat + ": " + std::to_string(inReal) + " is not " + std::to_string(inModel) + "; ";
    }
  }
  void Compare(const Form& inForm) {
    const auto& [text, model] = inForm;
    Same(text.ByteLength(), model.Size());
    Same(text.Length(), model.Length());
    Same(text.MaxLength(), model.MaxLength());
    Same(text.CStr()[text.ByteLength()], '\0');
    if (std::string_view(text.CStr(), text.ByteLength()) != model.Bytes()) {
      fDifference += fWhat + ": other bytes; ";
    }
  }

  NextByte fNext;
  PlatformTextGuard fPlatform;
  TMCString15 f15;
  TMCString31 f31;
  TMCString63 f63;
  TMCString255 f255;
  TMCString1023 f1023;
  TMCDynamicString fDynamic;
  StringModel fModels[6] = {{15, false}, {31, false}, {63, false}, {255, false}, {1023, false}, {0, true}};
  std::array<Form, 6> fForms = {{{f15, fModels[0]},
                                 {f31, fModels[1]},
                                 {f63, fModels[2]},
                                 {f255, fModels[3]},
                                 {f1023, fModels[4]},
                                 {fDynamic, fModels[5]}}};
  std::string fWhat;
  std::string fDifference;
};

}  // namespace qlx::test
