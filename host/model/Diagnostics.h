// What a person is told: problems with their data, and failures of a plug-in. One line each, with the place.
#pragma once

#include <functional>
#include <stdexcept>
#include <string>
#include <unordered_set>
#include <vector>

namespace qlx::host {

// A problem that ends a command: `what()` is the whole line, "scene.gltf: nodes[3].translation: not a finite number".
class UserError : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
  UserError(const std::string& inPlace, const std::string& inProblem)
      : std::runtime_error(inPlace + ": " + inProblem) {}
};

// Collects warnings: things that went wrong and were lived with. The same text is kept once.
class Diagnostics {
 public:
  // Called for each new warning, as it comes. May be empty.
  using Listener = std::function<void(const std::string&)>;

  void SetListener(Listener inListener) { fListener = std::move(inListener); }
  void Warn(const std::string& inText);
  const std::vector<std::string>& GetWarnings() const { return fWarnings; }

  // While one lives, warnings are dropped.
  class Quiet {
   public:
    explicit Quiet(Diagnostics& inDiagnostics) : fDiagnostics(inDiagnostics) { ++fDiagnostics.fQuiet; }
    ~Quiet() { --fDiagnostics.fQuiet; }
    Quiet(const Quiet&) = delete;
    Quiet& operator=(const Quiet&) = delete;

   private:
    Diagnostics& fDiagnostics;
  };

 private:
  int fQuiet = 0;
  Listener fListener;
  std::vector<std::string> fWarnings;
  std::unordered_set<std::string> fSeen;
};

}  // namespace qlx::host
