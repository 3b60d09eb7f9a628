// What a scene command works on: its context and the selection. All are implemented by the host, for its main thread.
#pragma once

#include "MCUnknown.h"

namespace qlx {

class I3DShScene;

// The selection, entries in the order in which they were selected.
class ISceneSelection : public IMCUnknown {
 public:
  static constexpr MCGuid kInterfaceID = "9AA06A2F-44E5-4578-96EB-152F9D8052D8"_guid;

  virtual uint32 MC_CALL GetEntryCount() = 0;
  // The entry's list of type ids, owned by the selection, its length in `outCount`; the last one is the entry's type,
  // 'Tree' for a tree element. Null past the end.
  virtual const MCID* MC_CALL GetEntry(uint32 inIndex, uint32& outCount) = 0;
  // May be null.
  virtual IMCUnknown* MC_CALL GetEntryObject(uint32 inIndex, int32 inZero) = 0;

 protected:
  ~ISceneSelection() = default;
};

class ISceneSelectionOwner : public IMCUnknown {
 public:
  static constexpr MCGuid kInterfaceID = "0B2C439C-3DFA-48C1-A650-27E82B2B0456"_guid;

  virtual void MC_CALL GetSelection(ISceneSelection** outSelection) = 0;

 protected:
  ~ISceneSelectionOwner() = default;
};

// What the host gives a command; lives at least as long as the command.
class ISceneCommandContext : public IMCUnknown {
 public:
  static constexpr MCGuid kInterfaceID = "F45C588E-92E1-4DB0-A834-6973FDCAD253"_guid;

  virtual void MC_CALL GetScene(I3DShScene** outScene) = 0;
  virtual void MC_CALL GetSelectionOwner(ISceneSelectionOwner** outOwner) = 0;
  virtual void MC_CALL GetDocument(IMCUnknown** outDocument) = 0;

 protected:
  ~ISceneCommandContext() = default;
};

}  // namespace qlx
