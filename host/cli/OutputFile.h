// A text file that is there whole or not at all: written beside its place, and renamed when everything went well.
#pragma once

#include <filesystem>
#include <string_view>

namespace qlx::host {

// Every failure is a `UserError` that names the file; what stood at its place before is then still there.
class OutputFile {
 public:
  OutputFile(std::filesystem::path inFile, std::string_view inContent);
  ~OutputFile();  // removes what was not put in place
  OutputFile(const OutputFile&) = delete;
  OutputFile& operator=(const OutputFile&) = delete;

  void PutInPlace();

 private:
  std::filesystem::path fFile;
  std::filesystem::path fBeside;
};

// Refuses a place where no file can be made, before long work is done for it.
void CheckOutputPlace(const std::filesystem::path& inFile);

}  // namespace qlx::host
