// Messages of a link's panel, and what presets need: files, read and written at a person's wish.
#include "COMSafeUtilities.h"
#include "HostInterface.h"
#include "MCException.h"
#include "MCFileStream.h"
#include "MCMemoryStream.h"
#include "OperationGuard.h"
#include "QLXModifier.h"
#include "QLXPanel.h"
#include "QLXPreset.h"

namespace qlx {

namespace {

constexpr MCID kAnyCreator = "****"_id;
constexpr MCID kTextFile = "text"_id;
constexpr int32 kBufferSize = 0x7F00;

// The button that a message is of: the control that was used, or the message itself. 0 for none.
MCID FindCommand(uint32 inMessage, IMCUnknown* inSource) {
  if (inMessage != kPanelControlUsed) {
    return inMessage;
  }
  if (!inSource) {
    return 0;
  }
  const auto part = MCQuery<IMFPart>(inSource);
  if (!part) {
    throw TMCException(MC_E_INVALIDARG, "QLXModifier", __LINE__);
  }
  return part->GetPartId();
}

// "file, line 3: what is wrong"; a line of 0 is left out.
void TellProblem(const TMCString& inFile, int32 inLine, const char* inProblem) {
  IAlertService* const alerts = GetAlertService();
  if (!alerts) {
    return;
  }
  TMCDynamicString text(inFile);
  if (inLine > 0) {
    TMCString15 number;
    number.FromInt(inLine);
    text += ", line ";
    text += number;
  }
  text += ": ";
  text += inProblem;
  alerts->ShowAlert(0, text.CStr(), "", "", "", 1, "OK", "", "");
}

bool ChooseFile(bool (MC_CALL IFileService::*inChoose)(TMCString&, MCID, MCID), TMCDynamicString& outFile) {
  IFileService* const files = GetFileService();
  TMCDynamicString chosen;
  if (!files || !(files->*inChoose)(chosen, kAnyCreator, kTextFile) || chosen.IsEmpty()) {
    return false;
  }
  outFile = chosen;
  return true;
}

}  // namespace

MCResult QLXModifier::HandleEvent(uint32 inMessage, IMCUnknown* inSource, void* /*inData*/) {
  return GuardOperation([&] {
    IShellUtilities* const shell = GetShellUtilities();
    if (shell && shell->IsEventHandlingSuspended()) {
      return MC_S_OK;
    }
    const MCID command = FindCommand(inMessage, inSource);
    const auto source = MCQuery<IMFPart>(inSource);
    QLXPanel panel(*this, source.Get());
    panel.SetUp();
    panel.Handle(command);
    HandlePreset(command);
    return MC_S_OK;
  });
}

void QLXModifier::HandlePreset(MCID inCommand) {
  TMCDynamicString file;
  switch (inCommand) {
    case "LOAD"_id:
      if (ChooseFile(&IFileService::ChooseFileToOpen, file)) {
        LoadPreset(file);
      }
      break;
    case "SAVE"_id:
      if (ChooseFile(&IFileService::ChooseFileToSave, file)) {
        SavePreset(file);
      }
      break;
    case "SAVF"_id:
      file = fPresetFile;
      if (!file.IsEmpty() || ChooseFile(&IFileService::ChooseFileToSave, file)) {
        SavePreset(file);
      }
      break;
    default:
      break;
  }
}

void QLXModifier::LoadPreset(const TMCString& inFile) {
  TMCFileStream stream;
  if (stream.Open(inFile, kStreamReadable, kBufferSize, nullptr) != MC_S_OK) {
    TellProblem(inFile, 0, "the preset cannot be opened");
    return;
  }
  QLXModifierData data = fData;
  QLXPrivateData priv = fPrivate;
  int32 line = 0;
  if (!ReadPreset(stream, data, priv, line)) {
    TellProblem(inFile, line, "the preset is damaged");
    return;
  }
  fLookups.Forget();
  fData = data;
  fPrivate = priv;
  fPresetFile = inFile;
}

// Made in memory first: a file is only touched when there is something to write.
void QLXModifier::SavePreset(const TMCString& inFile) {
  TMCMemoryStream text;
  WritePreset(text, fData, fPrivate);
  TMCFileStream stream;
  const bool isOpen = !text.fail() && stream.Open(inFile, kStreamWritable, kBufferSize, nullptr) == MC_S_OK;
  if (isOpen) {
    stream.Write(text.GetData(), text.GetSize());
    stream.Close();
  }
  if (!isOpen || stream.fail()) {
    TellProblem(inFile, 0, "the preset cannot be written");
    return;
  }
  fPresetFile = inFile;
}

}  // namespace qlx
