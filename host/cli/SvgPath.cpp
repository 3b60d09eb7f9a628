#include "SvgPath.h"

#include <fmt/format.h>

#include <algorithm>
#include <cmath>
#include <iterator>

namespace qlx::host {

namespace {

real64 Fraction(real64 inValue, const ValueRange& inRange) {
  return inRange.GetSpan() > 0 ? (inValue - inRange.fLow) / inRange.GetSpan() : 0.5;
}

class PathText {
 public:
  explicit PathText(const ChartArea& inArea) : fArea(inArea) {}

  void Add(real64 inAcross, real64 inUp) {
    if (!std::isfinite(inUp)) {
      fPenUp = true;
      return;
    }
    fmt::format_to(std::back_inserter(fText), "{}{:.1f} {:.2f}", fPenUp ? 'M' : 'L', fArea.X(inAcross), fArea.Y(inUp));
    fPenUp = false;
  }

  std::string fText;

 private:
  const ChartArea& fArea;
  bool fPenUp = true;
};

// The places of the points that stand for `inFirst` to `inEnd`, in their order.
std::vector<std::size_t> Representatives(const std::vector<real64>& inUp, std::size_t inFirst, std::size_t inEnd) {
  const auto begin = inUp.begin() + static_cast<std::ptrdiff_t>(inFirst);
  const auto end = inUp.begin() + static_cast<std::ptrdiff_t>(inEnd);
  const auto [low, high] = std::minmax_element(begin, end);
  std::vector<std::size_t> places = {inFirst, static_cast<std::size_t>(low - inUp.begin()),
                                     static_cast<std::size_t>(high - inUp.begin()), inEnd - 1};
  std::sort(places.begin(), places.end());
  places.erase(std::unique(places.begin(), places.end()), places.end());
  return places;
}

}  // namespace

real64 ChartArea::X(real64 inValue) const {
  return fLeft + Fraction(inValue, fAcross) * fWidth;
}
real64 ChartArea::Y(real64 inValue) const {
  return fTop + (1 - Fraction(inValue, fUp)) * fHeight;
}

std::string PathOf(const std::vector<real64>& inAcross, const std::vector<real64>& inUp, const ChartArea& inArea) {
  PathText path(inArea);
  const std::size_t count = std::min(inAcross.size(), inUp.size());
  const std::size_t together =
      std::max<std::size_t>(1, static_cast<std::size_t>(static_cast<real64>(count) / (2 * inArea.fWidth)));
  for (std::size_t first = 0; first < count; first += together) {
    for (const std::size_t place : Representatives(inUp, first, std::min(first + together, count))) {
      path.Add(inAcross[place], inUp[place]);
    }
  }
  return path.fText;
}

std::string XmlText(std::string_view inText) {
  std::string text;
  for (const char character : inText) {
    switch (character) {
      case '&':
        text += "&amp;";
        break;
      case '<':
        text += "&lt;";
        break;
      case '>':
        text += "&gt;";
        break;
      case '"':
        text += "&quot;";
        break;
      default:
        if (static_cast<unsigned char>(character) < 0x20) {
          text += "\xEF\xBF\xBD";
        } else {
          text += character;
        }
    }
  }
  return text;
}

std::size_t LetterCount(std::string_view inText) {
  return static_cast<std::size_t>(std::count_if(inText.begin(), inText.end(), [](char character) {
    return (static_cast<unsigned char>(character) & 0xC0) != 0x80;
  }));
}

}  // namespace qlx::host
