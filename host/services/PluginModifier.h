// A modifier that a plug-in's component works: the outer object that aggregates it.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "ComponentCall.h"
#include "HostExtensions.h"
#include "PluginCatalog.h"
#include "model/Element.h"
#include "model/Modifier.h"

namespace qlx::host {

class Host;

// The component asks this object for every interface that is not its own, and this object asks the component: a flag
// keeps the two from asking each other without end. All references to the component count this object. When this
// object goes it answers `kEndInner` to the release that ends the component.
//
// Failures of the component are warnings of the host, once for each operation and code while the modifier sits on one
// element; the scene goes on.
class PluginModifier final : public Modifier {
 public:
  // Null, with a warning, when the plug-in does not make the class.
  static TMCCountedPtr<PluginModifier> Create(Host& inHost, MCID inClass);
  ~PluginModifier() override;

  void Apply(Element& inElement) override;
  ModifierWork GetWork() override;
  void ListWorkMemory(WorkLines& ioLines) override;
  // Takes over what the component's own copy holds where it makes one, else its public block. Both go field by field
  // through the parameter map, never byte by byte: a class without a map cannot be copied.
  TMCCountedPtr<Modifier> Copy() override;
  TMCCountedPtr<Modifier> CopyToLookAt() override;
  std::string DescribeProblem(const LinkTrace& inTrace) override;
  void Detach() override;
  // The fields of the public block and the private text. A component that cannot write or read its text keeps it.
  std::string SaveState() override;
  void RestoreState(const std::string& inState) override;

  MCID MC_CALL GetModifierClass() override { return fPluginClass.fID; }
  // "PinModifier"
  const char* GetClassName() const;
  // The public block by fields. Null where the class has no map, and where the component has no block of the map's
  // size (told once, by a warning): a field is never written past the block.
  const ParameterMap* GetParameterMap() const { return fBlock ? fMap : nullptr; }
  // The field must be of the modifier's map.
  ParameterValue GetField(const ParameterField& inField) const;
  // False, with nothing changed, for a value of another type or one that is not finite.
  bool SetField(const ParameterField& inField, const ParameterValue& inValue);

  // The component's persistence, null where it has none. It counts this modifier.
  TMCCountedPtr<IExStreamIO> GetStreamIO();
  // The component's private data as token text, as its persistence writes it; nothing where it has none. Throws
  // `UserError` when the component fails.
  std::optional<std::string> WritePrivate();
  // Reads such a text: the level that persistence reads from is put around it. Answers what is wrong, with its line
  // ("line 3, byte 40: this { is never closed"), or nothing. What stands in front of a wrong place may have been taken.
  std::optional<std::string> ReadPrivate(const std::string& inText);
  // The number of its panel in the resources, 0 for none.
  int16 GetPanelNumber();
  // As a person who resets the record does.
  void Reset();
  // Sends a message as the panel does; `inSource` is the control that was used. A failure's code is the answer.
  MCResult SendEvent(uint32 inMessage, IMCUnknown* inSource);

  uint32 MC_CALL Release() override;

 protected:
  MCResult FindPart(const MCGuid& inID, void** outObject) override;

 private:
  PluginModifier(Host& inHost, const ExtensionRecord& inClass);
  bool MakeInner();
  void EndInner() noexcept;
  void FindBlock();
  void FindWorkCall();
  // Without reading the modifier, but to report a failure.
  static void RunStep(const EvaluationStep& inStep);
  static std::optional<ComponentFailure> Work(WorkCall inCall, Element& inElement);
  template <class Interface>
  Interface* AskInner();
  template <class Body>
  MCResult Call(const char* inOperation, Body&& inBody);
  void ReportFailure(const char* inOperation, const ComponentFailure& inFailure);
  bool GiveAndEnd(IExDataExchanger& ioClone, IExDataExchanger& ioReceiver);
  bool CopyFields(IExDataExchanger& inSource, PluginModifier& outCopy);

  I3DExModifier* fModifier = nullptr;  // the component's, not counted: it counts this object
  Host& fHost;
  std::shared_ptr<const PluginCatalog> fCatalog;  // holds the two that follow
  const ExtensionRecord& fPluginClass;
  const ParameterMap* fMap;
  IMCUnknown* fInner = nullptr;            // the component's own view, likewise not counted
  IExDataExchanger* fExchanger = nullptr;  // likewise
  IModifierWork* fWork = nullptr;          // likewise; null where the component has none
  WorkCall fWorkCall{};
  void* fBlock = nullptr;  // the component's, as large as the map says
  bool fAskingInner = false;
  bool fEnding = false;

  struct Reported {
    const char* fOperation;
    MCResult fCode;
  };
  std::vector<Reported> fReported;
};

}  // namespace qlx::host
