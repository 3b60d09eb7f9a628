// `qlx resources`: what is in a resource file.
#include <fmt/format.h>

#include <CLI/CLI.hpp>
#include <algorithm>

#include "Command.h"
#include "JsonText.h"
#include "MCFilePath.h"
#include "OutputFile.h"
#include "ResourceCheck.h"
#include "Text.h"
#include "model/IDText.h"
#include "services/Host.h"

namespace qlx::host {

namespace {

const char* const kResourcesExamples = R"(Examples:
  qlx resources panels.rsrc                      types, ids, names, attributes, sizes and places
  qlx resources panels.rsrc --dump STR 128       one resource as bytes and text
  qlx resources panels.rsrc --dump STR 128 -o text.bin

A file that is damaged is listed as far as it can be read, with what is wrong; the exit code is then 1.
)";

struct ResourcesOptions {
  std::string fFile;
  std::vector<std::string> fDump;  // type and id
  std::string fOutput;
  bool fJson = false;
};

constexpr std::size_t kDumpWidth = 16;

std::string AttributesText(uint32 inAttributes) {
  std::string text;
  const auto add = [&](const std::string& name) { text += (text.empty() ? "" : ",") + name; };
  if ((inAttributes & kResReplaceable) != 0) {
    add("replaceable");
  }
  if ((inAttributes & kResPreload) != 0) {
    add("preload");
  }
  if ((inAttributes & kResProtected) != 0) {
    add("protected");
  }
  const uint32 others = inAttributes & ~(kResReplaceable | kResPreload | kResProtected);
  if (others != 0) {
    add(fmt::format("0x{:02X}", others >> 24));
  }
  return text.empty() ? "-" : text;
}

// Where the length of the data stands in the file; nothing without data.
std::string PlaceText(const MCResourceFile& inFile, const MCResourceInfo& inInfo) {
  return inInfo.fHasData ? std::to_string(uint64{inFile.GetHeader().rDataOffset} + inInfo.fOffset) : "-";
}

std::string SizeText(const ListedResource& inResource) {
  return inResource.fProblem.empty() ? std::to_string(inResource.fSize) : "?";
}

void WriteList(std::ostream& ioOut, const MCResourceFile& inFile, const std::vector<ListedResource>& inResources) {
  const SResHeader header = inFile.GetHeader();
  ioOut << fmt::format("{}, {}; data at {}, map of {} at {}\n",
                       Counted(static_cast<std::size_t>(inFile.GetTypeCount()), "type"),
                       Counted(inResources.size(), "resource"), header.rDataOffset, Counted(header.rMapLength, "byte"),
                       header.rMapOffset);
  if (!inResources.empty()) {
    ioOut << fmt::format("{:<10}  {:>6}  {:>9}  {:>9}  {:<20}  name\n", "type", "id", "bytes", "at", "attributes");
  }
  for (const ListedResource& resource : inResources) {
    const MCResourceInfo& info = resource.fInfo;
    std::string line = fmt::format("{:<10}  {:>6}  {:>9}  {:>9}  {:<20}  {}", TextFromID(info.fType), info.fID,
                                   SizeText(resource), PlaceText(inFile, info), AttributesText(info.fAttributes),
                                   Printable({info.fName.CStr(), info.fName.ByteLength()}));
    line.erase(line.find_last_not_of(' ') + 1);
    ioOut << line << '\n';
  }
}

Json ResourceAsJson(const MCResourceFile& inFile, const ListedResource& inResource) {
  const MCResourceInfo& info = inResource.fInfo;
  Json json = {{"type", TextFromID(info.fType)},
               {"id", info.fID},
               {"name", Printable({info.fName.CStr(), info.fName.ByteLength()})},
               {"attributes", info.fAttributes >> 24},
               {"at", nullptr},
               {"bytes", nullptr}};
  if (info.fHasData) {
    json["at"] = uint64{inFile.GetHeader().rDataOffset} + info.fOffset;
  }
  if (inResource.fProblem.empty()) {
    json["bytes"] = inResource.fSize;
  }
  return json;
}

void WriteJson(std::ostream& ioOut, const std::string& inName, const MCResourceFile& inFile,
               const std::vector<ListedResource>& inResources, const std::vector<std::string>& inProblems) {
  const SResHeader header = inFile.GetHeader();
  Json list = Json::array();
  for (const ListedResource& resource : inResources) {
    list.push_back(ResourceAsJson(inFile, resource));
  }
  ioOut << JsonText({{"file", inName},
                     {"dataOffset", header.rDataOffset},
                     {"dataLength", header.rDataLength},
                     {"mapOffset", header.rMapOffset},
                     {"mapLength", header.rMapLength},
                     {"resources", std::move(list)},
                     {"problems", inProblems}});
}

// "STR" is 'STR '; an id that is no text is "0x00000001", as the list shows it.
MCID TypeFromText(const std::string& inText) {
  if (inText.size() == 10 && inText.rfind("0x", 0) == 0) {
    try {
      std::size_t used = 0;
      const unsigned long value = std::stoul(inText, &used, 16);
      if (used == inText.size()) {
        return static_cast<MCID>(value);
      }
    } catch (const std::exception&) {
      // said below
    }
  }
  if (inText.empty() || inText.size() > 4) {
    throw UserError("--dump", fmt::format("a type has four characters, and \"{}\" has not", inText));
  }
  MCID type = 0;
  for (std::size_t i = 0; i < 4; ++i) {
    type = type << 8 | (i < inText.size() ? static_cast<uint8>(inText[i]) : ' ');
  }
  return type;
}

int16 IDFromNumber(const std::string& inText) {
  try {
    std::size_t used = 0;
    const int value = std::stoi(inText, &used);
    if (used == inText.size() && value >= INT16_MIN && value <= INT16_MAX) {
      return static_cast<int16>(value);
    }
  } catch (const std::exception&) {
    // said below
  }
  throw UserError("--dump", fmt::format("an id is a number from -32768 to 32767, and \"{}\" is none", inText));
}

// 00000010  73 69 78 73 69 78 ...                             sixsix
void WriteDump(std::ostream& ioOut, std::string_view inData) {
  for (std::size_t start = 0; start < inData.size(); start += kDumpWidth) {
    std::string bytes;
    std::string text;
    for (const char byte : inData.substr(start, kDumpWidth)) {
      bytes += fmt::format(" {:02X}", static_cast<uint8>(byte));
      text += byte >= ' ' && byte <= '~' ? byte : '.';
    }
    ioOut << fmt::format("{:08X} {:<{}}  {}\n", start, bytes, 3 * kDumpWidth, text);
  }
}

void Dump(std::ostream& ioOut, MCResourceFile& inFile, const ResourcesOptions& inOptions) {
  MCSharedResource resource;
  if (resource.Load(inFile, TypeFromText(inOptions.fDump[0]), IDFromNumber(inOptions.fDump[1])) != MC_S_OK) {
    throw UserError(inOptions.fFile, inFile.GetProblem().CStr());
  }
  const std::string_view data(reinterpret_cast<const char*>(resource->GetData()), resource->GetSize());
  if (inOptions.fOutput.empty()) {
    WriteDump(ioOut, data);
  } else {
    OutputFile(PathOfText(inOptions.fOutput), data).PutInPlace();
  }
}

// All but the last stand on lines of their own; the last ends the command.
void FailForProblems(Console& inConsole, const std::string& inFile, const std::vector<std::string>& inProblems) {
  if (inProblems.empty()) {
    return;
  }
  for (std::size_t i = 0; i + 1 < inProblems.size(); ++i) {
    inConsole.fErr << "qlx: " << Printable(inFile + ": " + inProblems[i]) << '\n';
  }
  throw UserError(inFile, inProblems.back());
}

void RunResources(CommandContext& inContext, const ResourcesOptions& inOptions) {
  Diagnostics diagnostics;  // reports of the foundation say no more than the problems do
  const Host host(diagnostics);
  MCResourceFile file;
  if (file.Open(TMCDynamicString(inOptions.fFile.c_str())) != MC_S_OK) {
    throw UserError(inOptions.fFile, file.GetProblem().CStr());
  }
  std::ostream& out = inContext.fConsole.fOut;
  if (!inOptions.fDump.empty()) {
    return Dump(out, file, inOptions);
  }
  const std::vector<ListedResource> resources = ListResources(file);
  const std::vector<std::string> problems = CheckResources(file, resources);
  if (inOptions.fJson) {
    WriteJson(out, inOptions.fFile, file, resources, problems);
  } else {
    WriteList(out, file, resources);
  }
  FailForProblems(inContext.fConsole, inOptions.fFile, problems);
}

}  // namespace

void AddResourcesCommand(CLI::App& inProgram, CommandContext& inContext) {
  CLI::App* const command =
      inProgram.add_subcommand("resources", "List what a resource file holds, or print one resource");
  const auto options = std::make_shared<ResourcesOptions>();
  command->footer(kResourcesExamples);
  command->add_option("FILE", options->fFile, "A resource file")->required()->type_name("");
  auto* const dump = command->add_option("--dump", options->fDump, "Print this resource as bytes and text");
  dump->expected(2)->type_name("TYPE ID");
  command->add_option("-o,--output", options->fOutput, "Write its bytes to this file instead")
      ->type_name("FILE")
      ->needs(dump);
  command->add_flag("--json", options->fJson, "Print the list as JSON")->excludes(dump);
  command->callback(
      [options, &inContext] { inContext.fAction = [options, &inContext] { RunResources(inContext, *options); }; });
}

}  // namespace qlx::host
