#include "PluginModifier.h"

#include <fmt/format.h>

#include <algorithm>
#include <iterator>

#include "Host.h"
#include "LinkProblems.h"
#include "PluginLook.h"
#include "PrivateText.h"

namespace qlx::host {

namespace {

// The address of a component's block; null when it is not as large as the map says.
void* UsableBlock(IExDataExchanger& inExchanger, const ParameterMap& inMap) {
  return inExchanger.GetExtensionDataSize() == inMap.GetSize() ? inExchanger.GetExtensionDataBuffer() : nullptr;
}

MCResult MC_CALL SetTreeElementOf(void* inModifier, TreeElement* inTree) {
  return static_cast<I3DExModifier*>(inModifier)->SetTreeElement(inTree);
}

}  // namespace

TMCCountedPtr<PluginModifier> PluginModifier::Create(Host& inHost, MCID inClass) {
  const ExtensionRecord* pluginClass = inHost.GetCatalog()->FindClass("modi"_id, inClass);
  if (!pluginClass || !inHost.GetPlugin()) {
    inHost.GetDiagnostics().Warn(pluginClass ? fmt::format("{}: no plug-in is loaded", pluginClass->fName)
                                             : "a modifier of a class that no plug-in offers cannot be made");
    return nullptr;
  }
  auto modifier = MCAdopt(new PluginModifier(inHost, *pluginClass));
  if (!modifier->MakeInner()) {
    return nullptr;
  }
  modifier->FindBlock();
  modifier->FindWorkCall();
  return modifier;
}

PluginModifier::PluginModifier(Host& inHost, const ExtensionRecord& inClass)
    : fHost(inHost), fCatalog(inHost.GetCatalog()), fPluginClass(inClass), fMap(fCatalog->FindMap(inClass.fID)) {}

PluginModifier::~PluginModifier() {
  EndInner();
}

// Everything that the component is asked for counts this object. Those references are given back at once: the
// component lives as long as this object does, and a reference of its own would keep both alive for ever.
template <class Interface>
Interface* PluginModifier::AskInner() {
  void* view = nullptr;
  const bool found = fInner->QueryInterface(Interface::kInterfaceID, &view) == MC_S_OK && view;
  if (found) {
    GiveBackReference();
  }
  return found ? static_cast<Interface*>(view) : nullptr;
}

bool PluginModifier::MakeInner() {
  void* inner = nullptr;
  const MCResult result = fHost.GetPlugin()->Create(fPluginClass.fClassID, static_cast<I3DShModifier*>(this),
                                                    IMCUnknown::kInterfaceID, &inner);
  if (result != MC_S_OK || !inner) {
    fHost.GetDiagnostics().Warn(
        fmt::format("the plug-in does not make {} (0x{:08X})", GetClassName(), static_cast<uint32>(result)));
    return false;
  }
  fInner = static_cast<IMCUnknown*>(inner);
  fAskingInner = true;  // what the component lacks is not to be found here
  const MCResult asked = Call("QueryInterface", [&] {
    fModifier = AskInner<I3DExModifier>();
    fExchanger = AskInner<IExDataExchanger>();
    fWork = AskInner<IModifierWork>();
    return MC_S_OK;
  });
  fAskingInner = false;
  if (asked == MC_S_OK && !(fModifier && fExchanger)) {
    fHost.GetDiagnostics().Warn(fmt::format("{} is no modifier: it lacks an interface of one", GetClassName()));
  }
  return fModifier && fExchanger;
}

void PluginModifier::EndInner() noexcept {
  if (!fInner) {
    return;
  }
  AddRef();  // what the component asks and gives back on its way out does not end this object again
  IMCUnknown* const inner = fInner;
  fInner = nullptr;
  fEnding = true;
  if (const auto failure = CallComponent("Release", [&] { inner->Release(); })) {
    ReportFailure("Release", *failure);
  }
}

uint32 PluginModifier::Release() {
  if (fEnding) {
    fEnding = false;
    return kEndInner;
  }
  return Modifier::Release();
}

MCResult PluginModifier::FindPart(const MCGuid& inID, void** outObject) {
  if (!fInner || fAskingInner) {
    return MCStoreNone(outObject);
  }
  fAskingInner = true;
  const MCResult result = Call("QueryInterface", [&] { return fInner->QueryInterface(inID, outObject); });
  fAskingInner = false;
  return result == MC_S_OK ? MC_S_OK : (MCStoreNone(outObject), result);
}

void PluginModifier::FindBlock() {
  if (!fMap) {
    return;
  }
  Call("GetExtensionDataBuffer", [&] {
    fBlock = UsableBlock(*fExchanger, *fMap);
    return MC_S_OK;
  });
  if (!fBlock) {
    fHost.GetDiagnostics().Warn(
        fmt::format("{}: its parameters cannot be used, the block is not the one that the host knows", GetClassName()));
  }
}

void PluginModifier::FindWorkCall() {
  if (fWork) {
    Call("GetWorkCall", [&] {
      fWork->GetWorkCall(fWorkCall);
      return MC_S_OK;
    });
  }
  if (!fWorkCall.fRun) {
    fWorkCall = {SetTreeElementOf, fModifier};
  }
}

// Runs an operation of the component and answers its result, or the code of what it threw. A failure that was not
// reported yet is.
template <class Body>
MCResult PluginModifier::Call(const char* inOperation, Body&& inBody) {
  MCResult result = MC_S_OK;
  const auto failure = CallComponent(inOperation, [&] { result = inBody(); });
  if (failure) {
    ReportFailure(inOperation, *failure);
    return failure->fCode;
  }
  return result;
}

void PluginModifier::ReportFailure(const char* inOperation, const ComponentFailure& inFailure) {
  for (const Reported& reported : fReported) {
    if (reported.fOperation == inOperation && reported.fCode == inFailure.fCode) {
      return;
    }
  }
  fReported.push_back({inOperation, inFailure.fCode});
  const std::string place = GetElement() ? fmt::format("element \"{}\": ", GetElement()->GetNameText()) : "";
  fHost.GetDiagnostics().Warn(fmt::format("{}{}::{}", place, GetClassName(), inFailure.GetText()));
}

void PluginModifier::Apply(Element& inElement) {
  if (const auto failure = Work(fWorkCall, inElement)) {
    ReportFailure("SetTreeElement", *failure);
  }
}

ModifierWork PluginModifier::GetWork() {
  return {.fRun = RunStep, .fCall = fWorkCall};
}

void PluginModifier::RunStep(const EvaluationStep& inStep) {
  if (const auto failure = Work(inStep.fWork.fCall, *inStep.fElement)) {
    static_cast<PluginModifier&>(*inStep.fModifier).ReportFailure("SetTreeElement", *failure);
  }
}

std::optional<ComponentFailure> PluginModifier::Work(WorkCall inCall, Element& inElement) {
  MCResult result = MC_S_OK;
  auto failure = CallComponent("SetTreeElement", [&] { result = inCall.fRun(inCall.fModifier, &inElement); });
  if (!failure && result != MC_S_OK && result != MC_E_NOTIMPLEMENTED) {
    failure = ComponentFailure{.fOperation = "SetTreeElement", .fCode = result};
  }
  return failure;
}

void PluginModifier::ListWorkMemory(WorkLines& ioLines) {
  if (!fWork) {
    return;
  }
  WorkMemory ranges[16] = {};
  uint32 count = 0;
  Call("ListWorkMemory", [&] {
    count = fWork->ListWorkMemory(ranges, std::size(ranges));
    return MC_S_OK;
  });
  constexpr MCSize kMostBytes = 4096;  // of a range, whatever a component says
  for (uint32 i = 0; i < std::min<uint32>(count, std::size(ranges)); ++i) {
    ioLines.Add(ranges[i].fStart, std::min(ranges[i].fBytes, kMostBytes));
  }
}

TMCCountedPtr<Modifier> PluginModifier::Copy() {
  auto copy = Create(fHost, GetModifierClass());
  if (!copy) {
    return nullptr;
  }
  IExDataExchanger* clone = nullptr;
  const MCResult cloned = Call("Clone", [&] {
    fExchanger->Clone(&clone, nullptr);
    return MC_S_OK;
  });
  const bool hasFields = CopyFields(clone ? *clone : *fExchanger, *copy);
  const bool isGiven = !clone || GiveAndEnd(*clone, *copy->fExchanger);
  const bool isWhole = cloned == MC_S_OK && isGiven;
  if (!hasFields || !isWhole) {
    fHost.GetDiagnostics().Warn(
        fmt::format("{} cannot be copied: {}", GetClassName(),
                    isWhole ? "its parameters are not known" : "its private data is not whole"));
    return nullptr;
  }
  copy->SetEnabled(IsEnabled());
  return copy;
}

// A component's own copy is not aggregated and cannot become so. It gives what it holds to one that is.
bool PluginModifier::GiveAndEnd(IExDataExchanger& ioClone, IExDataExchanger& ioReceiver) {
  const MCResult given = Call("CopyDataTo", [&] { return ioClone.CopyDataTo(&ioReceiver); });
  Call("Release", [&] {
    ioClone.Release();
    return MC_S_OK;
  });
  return given == MC_S_OK || given == MC_E_NOTVALID || given == MC_E_NOTIMPLEMENTED;  // or it has nothing to give
}

TMCCountedPtr<Modifier> PluginModifier::CopyToLookAt() {
  if (!GetParameterMap()) {
    return nullptr;
  }
  IExDataExchanger* clone = nullptr;
  Call("Clone", [&] {
    fExchanger->Clone(&clone, nullptr);
    return MC_S_OK;
  });
  if (!clone) {
    return Copy();
  }
  void* block = nullptr;
  Call("GetExtensionDataBuffer", [&] {
    block = UsableBlock(*clone, *fMap);
    return MC_S_OK;
  });
  if (block) {
    OpenForLook(GetModifierClass(), *fMap, block);
  }
  return PluginLook::Create(GetModifierClass(), clone);
}

std::string PluginModifier::DescribeProblem(const LinkTrace& inTrace) {
  const std::string own = GetModifierClass() == "fQLX"_id ? DescribeLinkProblem(*this, inTrace) : "";
  return own.empty() ? Modifier::DescribeProblem(inTrace) : own;
}

bool PluginModifier::CopyFields(IExDataExchanger& inSource, PluginModifier& outCopy) {
  if (!outCopy.GetParameterMap()) {
    return false;
  }
  const void* block = nullptr;
  Call("GetExtensionDataBuffer", [&] {
    block = UsableBlock(inSource, *fMap);
    return MC_S_OK;
  });
  if (!block) {
    return false;
  }
  for (const ParameterField& field : fMap->GetFields()) {
    ParameterMap::Copy(field, block, outCopy.fBlock);
  }
  return true;
}

void PluginModifier::Detach() {
  fReported.clear();  // on another element it is another story
  Modifier::Detach();
}

const char* PluginModifier::GetClassName() const {
  return fPluginClass.fName.c_str();
}

ParameterValue PluginModifier::GetField(const ParameterField& inField) const {
  return fBlock ? ParameterMap::Read(inField, fBlock) : ParameterValue();
}

bool PluginModifier::SetField(const ParameterField& inField, const ParameterValue& inValue) {
  LinksChanged();
  return fBlock && ParameterMap::Write(inField, inValue, fBlock);
}

TMCCountedPtr<IExStreamIO> PluginModifier::GetStreamIO() {
  return MCQuery<IExStreamIO>(static_cast<I3DShModifier*>(this));
}

std::optional<std::string> PluginModifier::WritePrivate() {
  const auto streamIO = GetStreamIO();
  if (!streamIO) {
    return std::nullopt;
  }
  std::optional<std::string> text;
  MCResult result = MC_S_OK;
  const MCResult called = Call("Write", [&] {
    text = WritePrivateText(*streamIO, result);
    return MC_S_OK;
  });
  if (!text) {
    throw UserError(fmt::format("the private data of a {}", GetClassName()),
                    fmt::format("cannot be written (0x{:08X})", static_cast<uint32>(called ? called : result)));
  }
  return text;
}

std::optional<std::string> PluginModifier::ReadPrivate(const std::string& inText) {
  const auto streamIO = GetStreamIO();
  LinksChanged();
  return streamIO ? ReadPrivateText(*streamIO, inText) : std::optional<std::string>("the class has no private data");
}

int16 PluginModifier::GetPanelNumber() {
  int16 number = 0;
  Call("GetResourceId", [&] {
    number = fExchanger->GetResourceId();
    return MC_S_OK;
  });
  return number;
}

void PluginModifier::Reset() {
  LinksChanged();
  const MCResult result = Call("ExtensionDataChanged", [&] { return fExchanger->ExtensionDataChanged(); });
  if (result != MC_S_OK && result != MC_E_NOTVALID) {
    ReportFailure("ExtensionDataChanged", {.fOperation = "ExtensionDataChanged", .fCode = result});
  }
}

MCResult PluginModifier::SendEvent(uint32 inMessage, IMCUnknown* inSource) {
  LinksChanged();
  return Call("HandleEvent", [&] { return fExchanger->HandleEvent(inMessage, inSource, nullptr); });
}

}  // namespace qlx::host
