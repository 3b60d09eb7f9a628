// What something that fails says, for tests that expect it.
#pragma once

#include <exception>
#include <string>

namespace qlx::test {

// The text of the exception that comes out; nothing when none does.
template <class Body>
std::string ProblemOf(const Body& inBody) {
  try {
    inBody();
  } catch (const std::exception& problem) {
    return problem.what();
  }
  return {};
}

}  // namespace qlx::test
