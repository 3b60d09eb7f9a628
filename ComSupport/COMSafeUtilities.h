// The service table: what the plug-in took from its host at start-up, and gives back at clean-up.
//
// Every service is asked for by interface id from the host's root. One that the host lacks stays null; what needs it
// then asserts with its name. The table is process-wide, filled and cleared on the host's main thread, without a lock.
#pragma once

#include "HostParameters.h"
#include "HostServices.h"

namespace qlx {

// Rows of the first group by the services that the plug-in calls; the numbers are the rows of HostServices.h, from 0.
enum class ServiceRow : uint8 {
  kShell = 0,
  kFiles = 1,
  kMultiProcessing = 4,
  kDebug = 6,
  kMemory = 7,
  kShSafe = 8,
  kParamTypes = 9,
  kComponentFactory = 10,
  kAlerts = 11,
  kDialogFactory = 12,
  kResourceManager = 13,
  kUpdates = 14,
};

inline constexpr std::size_t kFirstGroupSize = 21;
inline constexpr std::size_t kSecondGroupSize = 4;
inline constexpr std::size_t kThirdGroupSize = 3;

// Takes the first group from `inRoot` in the order of its rows, then the processor features, the start of
// multi-processing and the bookkeeping of counted objects. A null root is reported ("utilities") and gives no services;
// the other steps run all the same, each without the service that it lacks. A host operation that throws is taken as a
// service that is missing; nothing is thrown from here.
void StartUtilities(IMCUnknown* inRoot);
// Gives the first group back and forgets the bookkeeping. Clears each row before the next one goes.
void EndUtilities();

// The second and third group, with the answer of the one question that each of them puts to the host.
void StartExtensionServices(IMCUnknown* inRoot);
void EndExtensionServices();

// What the host answered to the two questions; false before start-up and where it lacks the service.
bool GetSecondGroupAnswer();
bool GetThirdGroupAnswer();

namespace detail {
void* GetServiceRow(ServiceRow inRow, const char* inName);
void* FindServiceRow(ServiceRow inRow) noexcept;
}  // namespace detail

// A service that the plug-in asks for by role. Null is reported with the accessor's name.
inline IFileService* GetFileService() {
  return static_cast<IFileService*>(detail::GetServiceRow(ServiceRow::kFiles, "gFileService"));
}
inline ParamTypeRegistry* GetParamTypeRegistry() {
  return static_cast<ParamTypeRegistry*>(detail::GetServiceRow(ServiceRow::kParamTypes, "gParamTypeRegistry"));
}
inline IComponentFactory* GetComponentFactory() {
  return static_cast<IComponentFactory*>(detail::GetServiceRow(ServiceRow::kComponentFactory, "gComponentFactory"));
}
inline IAlertService* GetAlertService() {
  return static_cast<IAlertService*>(detail::GetServiceRow(ServiceRow::kAlerts, "gAlertService"));
}
inline IDialogFactory* GetDialogFactory() {
  return static_cast<IDialogFactory*>(detail::GetServiceRow(ServiceRow::kDialogFactory, "gDialogFactory"));
}
inline IResourceManager* GetResourceManager() {
  return static_cast<IResourceManager*>(detail::GetServiceRow(ServiceRow::kResourceManager, "gResourceManager"));
}
// Null is not reported: an evaluation goes on without it, and would report it each frame.
inline IUpdateService* FindUpdateService() noexcept {
  return static_cast<IUpdateService*>(detail::FindServiceRow(ServiceRow::kUpdates));
}
// The four that the foundation holds itself, with the same report.
inline IShellUtilities* GetShellUtilities() {
  return static_cast<IShellUtilities*>(detail::GetServiceRow(ServiceRow::kShell, "gShellUtilities"));
}

}  // namespace qlx
