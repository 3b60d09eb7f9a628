#include "ClosestNames.h"

#include <fmt/format.h>

#include <algorithm>
#include <numeric>
#include <utility>

#include "Diagnostics.h"
#include "Scene.h"

namespace qlx::host {

namespace {

constexpr std::size_t kMostShown = 3;

std::string LowerCase(std::string_view inText) {
  std::string text(inText);
  for (char& character : text) {
    character = character >= 'A' && character <= 'Z' ? static_cast<char>(character - 'A' + 'a') : character;
  }
  return text;
}

// Letters to change, add, leave out or swap with their neighbour; at most one more than `inMost`.
std::size_t FindDistance(const std::string& inA, const std::string& inB, std::size_t inMost) {
  const std::size_t lengths = inA.size() > inB.size() ? inA.size() - inB.size() : inB.size() - inA.size();
  if (lengths > inMost) {
    return inMost + 1;
  }
  std::vector<std::size_t> before;
  std::vector<std::size_t> last(inB.size() + 1);
  std::vector<std::size_t> row(inB.size() + 1);
  std::iota(last.begin(), last.end(), std::size_t{0});
  for (std::size_t i = 1; i <= inA.size(); ++i) {
    row[0] = i;
    for (std::size_t k = 1; k <= inB.size(); ++k) {
      row[k] = std::min({last[k] + 1, row[k - 1] + 1, last[k - 1] + (inA[i - 1] != inB[k - 1])});
      if (i > 1 && k > 1 && inA[i - 1] == inB[k - 2] && inA[i - 2] == inB[k - 1]) {
        row[k] = std::min(row[k], before[k - 2] + 1);
      }
    }
    before = std::exchange(last, row);
  }
  return last.back();
}

}  // namespace

std::vector<std::string> FindClosest(std::string_view inName, const std::vector<std::string>& inNames) {
  constexpr std::size_t kLongest = 255;
  const std::string wanted = LowerCase(inName.substr(0, kLongest));
  const std::size_t most = std::max<std::size_t>(1, wanted.size() / 3);
  std::vector<std::pair<std::size_t, const std::string*>> found;
  for (const std::string& name : inNames) {
    const std::string lower = LowerCase(std::string_view(name).substr(0, kLongest));
    const bool holds = wanted.size() > 1 && lower.find(wanted) != std::string::npos;
    const std::size_t distance = FindDistance(wanted, lower, most);
    if (distance <= most || holds) {
      found.emplace_back(std::min(distance, most + 1), &name);
    }
  }
  std::ranges::stable_sort(found, {}, &decltype(found)::value_type::first);
  std::vector<std::string> closest;
  for (const auto& [distance, name] : found) {
    if (closest.size() < kMostShown && std::ranges::find(closest, *name) == closest.end()) {
      closest.push_back(*name);
    }
  }
  return closest;
}

std::string ClosestText(std::string_view inName, const std::vector<std::string>& inNames) {
  const std::vector<std::string> closest = FindClosest(inName, inNames);
  if (closest.empty()) {
    return "";
  }
  std::string text = closest.size() == 1 ? "; the closest is " : "; the closest are ";
  for (std::size_t i = 0; i < closest.size(); ++i) {
    const char* const between = i == 0 ? "" : i + 1 == closest.size() ? " and " : ", ";
    text += fmt::format("{}\"{}\"", between, closest[i]);
  }
  return text;
}

Element& NeedElement(const Scene& inScene, const std::string& inName, const std::string& inPlace) {
  if (Element* const element = inScene.FindByName(inName)) {
    return *element;
  }
  std::vector<std::string> names;
  for (const Element* element : inScene.GetTreeOrder()) {
    if (element != &inScene.GetRootElement()) {
      names.push_back(element->GetNameText());
    }
  }
  const std::string closest = ClosestText(inName, names);
  throw UserError(inPlace, fmt::format("the scene has no element \"{}\"{}", inName,
                                       closest.empty() ? " (see: qlx tree)" : closest));
}

}  // namespace qlx::host
