// The state of a plug-in's modifier as bytes: its fields, each with its length, and its private text.
#include <bit>

#include "PluginModifier.h"
#include "model/Diagnostics.h"

namespace qlx::host {

namespace {

void AppendNumber(std::string& ioBytes, uint32 inNumber) {
  for (int shift = 0; shift < 32; shift += 8) {
    ioBytes.push_back(static_cast<char>(inNumber >> shift));
  }
}

uint32 TakeNumber(std::string_view& ioBytes) {
  uint32 number = 0;
  for (std::size_t i = 0; i < 4; ++i) {
    number |= uint32{static_cast<uint8>(ioBytes[i])} << (8 * i);
  }
  ioBytes.remove_prefix(4);
  return number;
}

// Numbers go by their bits, so that a state is like another only when it is the same.
struct AppendValueBytes {
  std::string& fBytes;

  void operator()(bool inValue) const { AppendNumber(fBytes, inValue ? 1 : 0); }
  void operator()(int32 inValue) const { AppendNumber(fBytes, static_cast<uint32>(inValue)); }
  void operator()(real32 inValue) const { AppendNumber(fBytes, std::bit_cast<uint32>(inValue)); }
  void operator()(const std::array<real32, 3>& inValue) const {
    for (const real32 number : inValue) {
      (*this)(number);
    }
  }
  void operator()(const std::string& inValue) const {
    AppendNumber(fBytes, static_cast<uint32>(inValue.size()));
    fBytes += inValue;
  }
};

// Puts what comes next into a value of the kind that it has already.
struct TakeValueBytes {
  std::string_view& fBytes;

  void operator()(bool& outValue) const { outValue = TakeNumber(fBytes) != 0; }
  void operator()(int32& outValue) const { outValue = static_cast<int32>(TakeNumber(fBytes)); }
  void operator()(real32& outValue) const { outValue = std::bit_cast<real32>(TakeNumber(fBytes)); }
  void operator()(std::array<real32, 3>& outValue) const {
    for (real32& number : outValue) {
      (*this)(number);
    }
  }
  void operator()(std::string& outValue) const {
    const uint32 length = TakeNumber(fBytes);
    outValue = fBytes.substr(0, length);
    fBytes.remove_prefix(length);
  }
};

}  // namespace

std::string PluginModifier::SaveState() {
  std::string bytes;
  if (const ParameterMap* const map = GetParameterMap()) {
    for (const ParameterField& field : map->GetFields()) {
      std::visit(AppendValueBytes{bytes}, GetField(field));
    }
  }
  try {
    if (const auto text = WritePrivate()) {
      bytes += *text;
    }
  } catch (const UserError&) {
    // The component failed, which was told; its text stays what it is.
  }
  return bytes;
}

void PluginModifier::RestoreState(const std::string& inState) {
  std::string_view bytes = inState;
  if (const ParameterMap* const map = GetParameterMap()) {
    for (const ParameterField& field : map->GetFields()) {
      ParameterValue value = GetField(field);
      std::visit(TakeValueBytes{bytes}, value);
      SetField(field, value);
    }
  }
  if (!bytes.empty()) {
    ReadPrivate(std::string(bytes));
  }
}

}  // namespace qlx::host
