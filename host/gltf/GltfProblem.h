// What is wrong in a glTF file, and where. Thrown inside this folder; `GltfDocument` adds the file's name and hands it
// to its caller as a `UserError`.
#pragma once

#include <stdexcept>
#include <string>
#include <string_view>

namespace qlx::host {

class GltfProblem : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

// A place in the document, "nodes[3].translation". Places are a chain on the stack: each refers to the one that it was
// made from, and to the name given, and must not outlive them. Text is made for an error alone.
class Place {
 public:
  Place() = default;  // the document itself
  Place Member(std::string_view inName) const { return Place(this, inName, 0); }
  Place At(std::size_t inIndex) const { return Place(this, {}, inIndex); }
  std::string GetText() const;

 private:
  Place(const Place* inParent, std::string_view inName, std::size_t inIndex)
      : fParent(inParent), fName(inName), fIndex(inIndex) {}

  const Place* fParent = nullptr;
  std::string_view fName;
  std::size_t fIndex = 0;
};

[[noreturn]] void Fail(const Place& inPlace, const std::string& inProblem);

// Text of a user's file for a message: quoted, on one line, cut when it is long.
std::string Quoted(std::string_view inText);

}  // namespace qlx::host
