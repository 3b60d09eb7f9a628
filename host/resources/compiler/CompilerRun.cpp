#include <fmt/format.h>

#include <fstream>
#include <iterator>
#include <ostream>

#include "Compiler.h"
#include "MCFilePath.h"
#include "resources/ResourceError.h"

namespace qlx::host {

namespace {

constexpr const char* kUsage =
    "usage: qlx_rc [-o FILE] [--built-in FILE] SOURCE...\n"
    "  -o FILE         the resource file that is made\n"
    "  --built-in FILE the C++ source that is made of the records, for programs that cannot find the file\n";

std::string ReadSourceFile(const std::string& inFile) {
  std::ifstream stream(PathOfText(inFile), std::ios::binary);
  std::string text{std::istreambuf_iterator<char>(stream), std::istreambuf_iterator<char>()};
  if (!stream.is_open() || stream.bad()) {
    throw ResourceError(inFile + ": cannot be read");
  }
  return text;
}

void WriteTextFile(const std::string& inFile, const std::string& inText) {
  std::ofstream stream(PathOfText(inFile), std::ios::binary);
  stream << inText;
  stream.close();
  if (!stream) {
    throw ResourceError(inFile + ": cannot be written");
  }
}

struct CompilerJob {
  std::string fResourceFile;
  std::string fBuiltInFile;
  std::vector<std::string> fSources;
};

bool ReadArguments(const std::vector<std::string>& inArguments, CompilerJob& outJob) {
  for (std::size_t i = 0; i < inArguments.size(); ++i) {
    const std::string& argument = inArguments[i];
    if (argument == "-o" || argument == "--built-in") {
      if (++i == inArguments.size()) {
        return false;
      }
      (argument == "-o" ? outJob.fResourceFile : outJob.fBuiltInFile) = inArguments[i];
    } else if (argument.substr(0, 1) == "-") {
      return false;
    } else {
      outJob.fSources.push_back(argument);
    }
  }
  return !outJob.fSources.empty();
}

void RunJob(const CompilerJob& inJob) {
  Source source;
  for (const std::string& file : inJob.fSources) {
    ParseSource(file, ReadSourceFile(file), source);
  }
  CheckSource(source);
  const std::vector<CompiledResource> resources = CompileSource(source);
  if (!inJob.fBuiltInFile.empty()) {
    WriteTextFile(inJob.fBuiltInFile, MakeBuiltInSource(resources));
  }
  if (!inJob.fResourceFile.empty()) {
    WriteResourceFile(inJob.fResourceFile, resources);
  }
}

}  // namespace

int RunCompiler(const std::vector<std::string>& inArguments, std::ostream& inErrors) {
  CompilerJob job;
  if (!ReadArguments(inArguments, job)) {
    inErrors << kUsage;
    return 2;
  }
  try {
    RunJob(job);
  } catch (const ResourceError& error) {
    inErrors << error.what() << '\n';
    return 1;
  }
  return 0;
}

}  // namespace qlx::host
