// The services of a host: asked for by interface id from its root, once, at start-up, and held until clean-up.
//
// A host offers them in twenty-one rows of a first group, four of a second and three of a third. The foundation's own
// four (shell, debug, memory, safe utilities) are declared in MCHostUtilities.h. Of the rows without a name, these
// carry the services that the plug-in asks for by role:
//
//   row  2  IFileService          row 12  IAlertService
//   row  5  IMultiProcessing      row 13  IDialogFactory
//   row 10  ParamTypeRegistry     row 14  IResourceManager
//   row 11  IComponentFactory     row 15  IUpdateService
//
// The other rows are asked for and held, and nothing calls them. All are implemented by the host; all operations are
// for the main thread. A service that a host lacks stays null: what needs it asserts with its name and goes on.
#pragma once

#include "MCHostUtilities.h"

namespace qlx {

class IMFPart;
class ISceneMaster;
class TMCString;
class TreeElement;

// Lets a person choose a file (row 2).
class IFileService : public IMCUnknown {
 public:
  static constexpr MCGuid kInterfaceID = "F7010D64-AB27-11D2-8B64-0060970BC521"_guid;

  // True with a UTF-8 path in `outPath`; false, with `outPath` as it was, when the person cancelled.
  virtual bool MC_CALL ChooseFileToOpen(TMCString& outPath, MCID inCreator, MCID inType) = 0;
  virtual bool MC_CALL ChooseFileToSave(TMCString& outPath, MCID inCreator, MCID inType) = 0;

 protected:
  ~IFileService() = default;
};

// Processors for the start of multi-processing (row 5).
class IMultiProcessing : public IMCUnknown {
 public:
  static constexpr MCGuid kInterfaceID = "900B69F1-701B-11D0-B2B5-00AA004B60E7"_guid;

  virtual uint32 MC_CALL GetProcessorCount() = 0;
  // An object that lives as long as the service, not counted. Null is reported.
  virtual void* MC_CALL GetMainJobQueue() = 0;

 protected:
  ~IMultiProcessing() = default;
};

// Builds components of any family: the host's own, and those of the plug-ins that it has loaded (row 11).
class IComponentFactory : public IMCUnknown {
 public:
  static constexpr MCGuid kInterfaceID = "9AB72E25-D94F-11D1-A0D5-00AA00D307EB"_guid;

  // Builds the component with the host's wrapper around it: a modifier answers `I3DShModifier`. Null when the host
  // does not know the family and class.
  virtual MCResult MC_CALL CreateComponent(MCID inFamily, MCID inClass, IMCUnknown** outComponent) = 0;

 protected:
  ~IComponentFactory() = default;
};

// Message boxes (row 12).
class IAlertService : public IMCUnknown {
 public:
  static constexpr MCGuid kInterfaceID = "5FF1E1C2-63C3-11D2-B89E-00104B2C9011"_guid;

  // `inKind` 0 is a plain message. The three texts after the message, and the two after the first button, may be
  // empty. Answers the number of the button that was used, from 1.
  virtual int32 MC_CALL ShowAlert(int32 inKind, const char* inMessage, const char* inDetail1, const char* inDetail2,
                                  const char* inDetail3, int32 inDefaultButton, const char* inButton1,
                                  const char* inButton2, const char* inButton3) = 0;

 protected:
  ~IAlertService() = default;
};

// Builds dialogs from the resources that are current (row 13).
class IDialogFactory : public IMCUnknown {
 public:
  static constexpr MCGuid kInterfaceID = "5FF1E1C1-63C3-11D2-B89E-00104B2C9011"_guid;

  // The dialog answers `IMFPart` and `IModalDialog`, and the class id of its extension where the resource names one.
  // Null when there is no such resource.
  virtual MCResult MC_CALL CreateDialog(IMFPart** outDialog, MCID inKind, int32 inResourceId) = 0;

 protected:
  ~IDialogFactory() = default;
};

// Which resource file is current (row 14).
class IResourceManager : public IMCUnknown {
 public:
  static constexpr MCGuid kInterfaceID = "04BC77A0-2E52-11D2-817B-006008965392"_guid;

  // Makes the resource file of the plug-in that offers this class current, until the token is popped. Contexts nest.
  virtual MCResult MC_CALL PushResourceContext(MCID inFamily, MCID inClass, uint32& outToken) = 0;
  virtual MCResult MC_CALL PopResourceContext(uint32 inToken) = 0;

 protected:
  ~IResourceManager() = default;
};

// Told when an element was changed during an evaluation (row 15). It marks; it never evaluates again.
class IUpdateService : public IMCUnknown {
 public:
  static constexpr MCGuid kInterfaceID = "EFE46A00-0712-11D2-A0DE-00AA00D307EB"_guid;

  // `inNotifier` is what `I3DShScene::GetSceneMaster` gave.
  virtual void MC_CALL ElementUpdated(ISceneMaster* inNotifier, TreeElement* inElement) = 0;

 protected:
  ~IUpdateService() = default;
};

// A service that answers one yes/no question about the host: the fourth of the second group and the first of the
// third. What the answer means is the host's; the plug-in stores it.
class IHostQuestion : public IMCUnknown {
 public:
  static constexpr MCGuid kSecondGroupID = "36389BF8-B5E3-4B73-AC92-4FB5B99EB607"_guid;
  static constexpr MCGuid kThirdGroupID = "031DD1DC-024E-11D2-8F2E-00609798E77D"_guid;

  virtual bool MC_CALL Answer() = 0;

 protected:
  ~IHostQuestion() = default;
};

}  // namespace qlx
