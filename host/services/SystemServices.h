// What the machine offers, and answers about the host itself.
#pragma once

#include <memory>

#include "HostServices.h"
#include "MCAsciiTranslation.h"
#include "model/HostObject.h"

namespace qlx::host {

class SafeUtilities final : public HostObject<IShSafeUtilities> {
 public:
  void MC_CALL GetProcessorFeatures(ProcessorFeatures& outFeatures) override;
  // Every byte stands for itself: texts of this host are UTF-8 on every system. Made when it is first asked for.
  const TMCAsciiTranslationTable* MC_CALL GetAsciiTranslationTable() override;
  // Ends the table, while there is still a memory service for it.
  void EndTable() { fTable.reset(); }

 private:
  std::unique_ptr<TMCAsciiTranslationTable> fTable;
};

class MultiProcessing final : public HostObject<IMultiProcessing> {
 public:
  uint32 MC_CALL GetProcessorCount() override;
  void* MC_CALL GetMainJobQueue() override { return &fQueue; }

 private:
  struct JobQueue {};  // nothing runs in it: a plug-in asks whether there is one
  JobQueue fQueue;
};

// A question that is answered with no: this host is none of the special cases that plug-ins ask for.
class HostQuestion final : public HostObject<IHostQuestion> {
 public:
  explicit HostQuestion(const MCGuid& inID) : fID(inID) {}
  bool MC_CALL Answer() override { return false; }

 protected:
  MCResult FindPart(const MCGuid& inID, void** outObject) override;

 private:
  MCGuid fID;  // the interface has one in each group
};

}  // namespace qlx::host
