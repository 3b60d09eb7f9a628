#include "ParameterIDs.h"

#include <algorithm>
#include <array>

namespace qlx::host {

namespace {

constexpr std::string_view kLetters = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz";
constexpr std::string_view kSigns = "0123456789ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz";

// What a path's last key means whatever it belongs to, and what property trees hide.
constexpr std::array kReserved{"GlbX"_id, "GlbY"_id, "GlbZ"_id, "RotX"_id, "RotY"_id, "RotZ"_id, "SCAL"_id,
                               "ScaX"_id, "ScaY"_id, "ScaZ"_id, "XCOO"_id, "YCOO"_id, "ZCOO"_id, "redV"_id,
                               "grnV"_id, "bluV"_id, "alpV"_id, "vecX"_id, "vecY"_id, "vecZ"_id, "fiOp"_id,
                               "acLL"_id, "HOTP"_id, "LINK"_id, "ascL"_id, "fleF"_id, "fraF"_id, "mimc"_id};

constexpr std::size_t kLength = 4;

MCID Pack(std::string_view inText) {
  MCID id = 0;
  for (std::size_t i = 0; i < kLength; ++i) {
    id = id << 8 | static_cast<uint8>(inText[i]);
  }
  return id;
}

bool IsItsOwnID(std::string_view inName) {
  return inName.size() == kLength && kLetters.find(inName[0]) != std::string_view::npos &&
         inName.find_first_not_of(kSigns) == std::string_view::npos;
}

// FNV-1a: the same on every system.
uint32 HashOf(std::string_view inName) {
  uint32 hash = 2166136261U;
  for (const char each : inName) {
    hash = (hash ^ static_cast<uint8>(each)) * 16777619U;
  }
  return hash;
}

MCID MakeFromHash(std::string_view inName, uint32 inHash) {
  const std::size_t letter = inName.find_first_of(kLetters);
  std::array<char, kLength> id{letter == std::string_view::npos ? 'x' : inName[letter]};
  for (std::size_t i = 1; i < kLength; ++i, inHash /= static_cast<uint32>(kSigns.size())) {
    id[i] = kSigns[inHash % kSigns.size()];
  }
  return Pack({id.data(), id.size()});
}

}  // namespace

MCID ParameterIDs::Make(std::string_view inName) {
  const auto isFree = [this](MCID id) {
    return std::ranges::find(kReserved, id) == kReserved.end() && !fTaken.contains(id);
  };
  uint32 hash = HashOf(inName);
  MCID id = IsItsOwnID(inName) ? Pack(inName) : MakeFromHash(inName, hash);
  while (!isFree(id)) {
    id = MakeFromHash(inName, ++hash);
  }
  fTaken.insert(id);
  return id;
}

}  // namespace qlx::host
