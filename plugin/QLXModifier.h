// The modifier that makes one value follow another: each frame the target takes the controller's value through a chain
// of arithmetic, a time window, a delay, decay, growth, oscillation and limits.
//
//   QLXModifierData  what a panel and a host's parameter exchange see; saved by the host
//   QLXPrivateData   paths, references and curves; saved as tokens through `IExStreamIO`
//   QLXMemory        what evaluations leave behind for later ones; never saved, but copied by clones
#pragma once

#include "BasicMCFCOMImplementations.h"
#include "HostExtensions.h"
#include "HostScene.h"
#include "QLXLookups.h"
#include "QLXMemory.h"
#include "QLXModifierData.h"

namespace qlx {

class QLXModifier final : public TBasicTreeModifier, public IExStreamIO, public IModifierWork {
 public:
  static constexpr MCGuid kInterfaceID = "1F3AE15F-FDC2-001D-13E1-1FF121717497"_guid;

  // Answers the class id with the object itself.
  MCResult MC_CALL QueryInterface(const MCGuid& inID, void** outObject) override;
  uint32 MC_CALL AddRef() override { return TBasicTreeModifier::AddRef(); }
  uint32 MC_CALL Release() override { return TBasicTreeModifier::Release(); }

  // Brings the target up to date for the present time of the element's scene; a link that cannot work writes nothing.
  // Always 0.
  MCResult MC_CALL SetTreeElement(TreeElement* inTree) override;

  void* MC_CALL GetExtensionDataBuffer() override { return &fData; }
  uint32 MC_CALL GetExtensionDataSize() override { return sizeof fData; }
  int16 MC_CALL GetResourceId() override { return 150; }
  // Brings the panel up to date, and does what its buttons ask for, which come by their ids or as messages of their
  // own: those of QLXPanel.h, and
  //   'LOAD'  asks for a preset and takes it over, all or nothing
  //   'SAVE'  asks for a file and writes a preset
  //   'SAVF'  writes to the file that was loaded or saved last; asks where there is none
  // A choice that is cancelled changes nothing. A file that cannot be used, or is damaged, is told by the host's alert,
  // with the line of the damage, and changes nothing either. Throws `MC_E_INVALIDARG` when the source of a used control
  // is no UI part. Always 0 otherwise.
  MCResult MC_CALL HandleEvent(uint32 inMessage, IMCUnknown* inSource, void* inData) override;
  // A reset: unless the links are locked, target and controller count as not chosen (the paths stay, as the fields of
  // the block do), and the time of the last evaluation is forgotten. Always 0.
  MCResult MC_CALL ExtensionDataChanged() override;
  // A modifier that goes on exactly where this one stands. Without memory it throws `MC_E_OUTOFMEMORY`, and `*outCopy`
  // is null.
  void MC_CALL Clone(IExDataExchanger** outCopy, void* inAllocationContext) override;
  // Gives everything but the public block to another `QLXModifier`; does nothing to a component of any other class.
  // `MC_E_OUTOFMEMORY` when there was none for a path or a reference, which is empty then, or for what a delay holds
  // back; else 0.
  MCResult MC_CALL CopyDataTo(IExDataExchanger* inOther) override;

  // IExStreamIO. The tokens of the private data, without a level around them; `Read` expects one. Both answer the code
  // of what failed and throw nothing; what was read up to there stays.
  MCResult MC_CALL Read(TMCStream* inStream, Fallback inFallback, void* inContext) override;
  MCResult MC_CALL Write(TMCStream* inStream) override;
  MCResult MC_CALL StreamState(MCWord /*inValue*/) override { return MC_S_OK; }

  // IModifierWork
  void MC_CALL GetWorkCall(WorkCall& outCall) override;
  uint32 MC_CALL ListWorkMemory(WorkMemory* outRanges, uint32 inRoom) override;

  // The block and the private data, for whoever edits or lays a link.
  QLXModifierData& EditData() { return fData; }
  const QLXPrivateData& GetPrivateData() const { return fPrivate; }
  QLXCurves& EditCurves() { return fPrivate.fCurves; }
  // A path counts as chosen from then on.
  void SetTargetPath(const TMCString& inPath);
  void SetControllerPath(const TMCString& inPath);
  // What the object gave for itself; empty for none.
  void SetControllerRef(const ObjectReference& inReference);
  void SetSourceRef(const ObjectReference& inReference);
  // The element that the link sits on; null for none.
  TMCCountedPtr<TreeElement> FindElement();
  // While they are locked a reset leaves the links alone.
  void SetLinksLocked(bool inLocked) { fLinksLocked = inLocked; }
  // Takes over a link of a chain. The control element becomes the source where there is one that is used.
  void SetChainLink(const QLXChainLink& inLink);

 private:
  void HandlePreset(MCID inCommand);
  void LoadPreset(const TMCString& inFile);
  void SavePreset(const TMCString& inFile);

  // Of many links, the memory that each evaluation touches is what it costs: in this order a plain one touches six
  // cache lines on 64-bit targets, where the object begins with one.
  QLXModifier* fClonedFrom = nullptr;  // not counted, and never read: for whoever looks into the object
  bool fLinksLocked = false;
  QLXMemory fMemory;
  QLXLookups fLookups;           // forgotten with every change of the private data
  TMCDynamicString fPresetFile;  // loaded or saved last
  QLXModifierData fData;
  QLXPrivateData fPrivate;
};

}  // namespace qlx
