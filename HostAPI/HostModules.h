// Modules, clients of the host's properties, and preferences: what such extensions ask the host for, and what the host
// asks of them.
#pragma once

#include "MCUnknown.h"

namespace qlx {

class TMCString;

// What a module works in; the host's own. A module only passes it on.
class IModuleContext : public IMCUnknown {
 public:
  static constexpr MCGuid kInterfaceID = "722D8382-DE04-4EF0-882A-AA82BE52930A"_guid;

 protected:
  ~IModuleContext() = default;
};

// Answered by the shell service (row 1) of a host that runs modules.
class IModuleContextSource : public IMCUnknown {
 public:
  static constexpr MCGuid kInterfaceID = "CF3B5ED5-AE4F-47AE-ADBB-73E36E78B49C"_guid;

  // Null when there is none at this time.
  virtual void MC_CALL GetModuleContext(IModuleContext** outContext) = 0;

 protected:
  ~IModuleContextSource() = default;
};

// Implemented by a module.
class IExModule : public IMCUnknown {
 public:
  static constexpr MCGuid kInterfaceID = "8F2EDE2A-2D9D-43B1-949E-E79A59012860"_guid;

  // The context that the module works in. Throws `TMCException` with `MC_E_INVALIDARG` where the host has none.
  virtual void MC_CALL PassContext(IModuleContext** outContext) = 0;

 protected:
  ~IExModule() = default;
};

// Implemented by what lets go of everything at once, ahead of its last reference.
class IExReleasable : public IMCUnknown {
 public:
  static constexpr MCGuid kInterfaceID = "481F6BC6-DD29-4478-B570-5D3395BB8E0C"_guid;

  virtual void MC_CALL StandardRelease() = 0;

 protected:
  ~IExReleasable() = default;
};

// Where the preferences of one context are kept.
class IPreferenceStore : public IMCUnknown {
 public:
  static constexpr MCGuid kInterfaceID = "2109893D-0513-44E6-8721-70C4A51B8136"_guid;

  // Empty for a component that needs none.
  virtual void MC_CALL SetContextName(const TMCString& inName) = 0;

 protected:
  ~IPreferenceStore() = default;
};

// Answered by a resource manager (row 14) that reads the string tables of the current resource file.
class IStringTables : public IMCUnknown {
 public:
  static constexpr MCGuid kInterfaceID = "806F25D8-5BA7-4A55-AA0A-065C4D7299E8"_guid;

  // Empty when there is no such table or string.
  virtual void MC_CALL GetIndexedString(TMCString& outText, uint16 inTable, uint16 inIndex) = 0;

 protected:
  ~IStringTables() = default;
};

}  // namespace qlx
