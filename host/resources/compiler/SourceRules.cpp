#include <fmt/format.h>

#include <functional>
#include <map>

#include "Source.h"
#include "resources/ControlKinds.h"
#include "resources/ResourceCodec.h"
#include "resources/ResourceError.h"

namespace qlx::host {

namespace {

// In bytes. A label stands in front of a value or on a button, a help below the panel.
constexpr std::size_t kLongestLabel = 63;
constexpr std::size_t kLongestHelp = 255;

const char* KindWord(MCID inKind) {
  return inKind == kPanelType ? "panel" : "dialog";
}

// Remembers where each key was seen, and refuses it the second time.
template <class Key>
class UniqueKeys {
 public:
  void Add(const Key& inKey, const SourcePlace& inPlace, const std::string& inWhat) {
    const auto [found, isNew] = fPlaces.emplace(inKey, inPlace);
    if (!isNew) {
      FailAt(inPlace,
             fmt::format("{} is there already, in {} line {}", inWhat, found->second.fFile, found->second.fLine));
    }
  }
  bool Has(const Key& inKey) const { return fPlaces.contains(inKey); }

 private:
  std::map<Key, SourcePlace> fPlaces;
};

void CheckLength(const std::string& inText, std::size_t inLongest, const char* inWhat, const SourcePlace& inPlace) {
  if (inText.size() > inLongest) {
    FailAt(inPlace, fmt::format("the {} has {} bytes, and {} are the most", inWhat, inText.size(), inLongest));
  }
}

// The controls of a part by themselves.
class PartRules {
 public:
  explicit PartRules(const PartSource& inPart) : fPart(inPart) {}

  void Check() {
    CheckLength(fPart.fPart.fLabel, kLongestLabel, "label", fPart.fPlace);
    ForEach(fPart.fPart.fRoot,
            [this](const ControlDescription& control, const ControlSource& source) { CheckOne(control, source); });
    for (const auto& [id, group] : fGroups) {
      if (group.fMembers < 2) {
        FailAt(group.fPlace, fmt::format("the radio group {} has this one member alone", QuotedID(id)));
      }
    }
    for (const auto& [id, place] : fWantedLists) {
      if (!fLists.contains(id)) {
        FailAt(place, fmt::format("this pane's list {} is not in this {}", QuotedID(id), KindWord(fPart.fPart.fKind)));
      }
    }
  }

 private:
  using Visit = std::function<void(const ControlDescription&, const ControlSource&)>;

  void ForEach(const ControlDescription& inControl, const Visit& inVisit) {
    inVisit(inControl, fPart.fControls[fNext++]);
    for (const ControlDescription& child : inControl.fChildren) {
      ForEach(child, inVisit);
    }
  }

  void CheckOne(const ControlDescription& inControl, const ControlSource& inSource) {
    const ControlKindInfo& info = GetKindInfo(inControl.fKind);
    const SourcePlace& place = inSource.fPlace;
    if (inControl.fID != 0) {
      fIDs.Add(inControl.fID, place, fmt::format("a control {}", QuotedID(inControl.fID)));
    } else if (info.fValue != ControlValue::kNone || !(info.fHasChildren || info.fKind == ControlKind::kLabel) ||
               info.fKind == ControlKind::kPane) {
      FailAt(place, fmt::format("a {} needs an id in single quotes", info.fName));
    }
    CheckLength(inControl.fLabel, info.fKind == ControlKind::kLabel ? kLongestHelp : kLongestLabel, "label", place);
    CheckLength(inControl.fHelp, kLongestHelp, "help", place);
    for (const std::string& item : inControl.fItems) {
      CheckLength(item, kLongestLabel, "item", place);
    }
    CheckGroups(inControl, place);
  }

  void CheckGroups(const ControlDescription& inControl, const SourcePlace& inPlace) {
    if (inControl.fKind == ControlKind::kRadio) {
      if (inControl.fRadioGroup == 0) {
        FailAt(inPlace, "a radio names its group, as in: of 'comb'");
      }
      Group& group = fGroups[inControl.fRadioGroup];
      group.fPlace = group.fMembers == 0 ? inPlace : group.fPlace;
      ++group.fMembers;
    } else if (inControl.fKind == ControlKind::kList) {
      fLists[inControl.fID] = inPlace;
    } else if (inControl.fKind == ControlKind::kPane) {
      if (inControl.fPaneList == 0) {
        FailAt(inPlace, "a pane names the list whose row it is, as in: of 'clis' row 0");
      }
      fWantedLists.emplace(inControl.fPaneList, inPlace);
    }
  }

  struct Group {
    int fMembers = 0;
    SourcePlace fPlace;
  };

  const PartSource& fPart;
  std::size_t fNext = 0;
  UniqueKeys<MCID> fIDs;
  std::map<MCID, Group> fGroups;
  std::map<MCID, SourcePlace> fLists;
  std::map<MCID, SourcePlace> fWantedLists;
};

// What the sources say of each other.
class SourceRules {
 public:
  explicit SourceRules(Source& ioSource) : fSource(ioSource) {}

  void Check() {
    for (PartSource& part : fSource.fParts) {
      fPartIDs.Add({part.fPart.fKind, part.fPart.fResourceId}, part.fPlace,
                   fmt::format("a {} {}", KindWord(part.fPart.fKind), part.fPart.fResourceId));
      PartRules(part).Check();
    }
    for (const ExtensionSource& extension : fSource.fExtensions) {
      CheckExtension(extension);
    }
    CheckMaps();
    for (PartSource& part : fSource.fParts) {
      FindCode(part);
      Bind(part);
    }
    CheckAllAreShown();
  }

 private:
  void CheckExtension(const ExtensionSource& inExtension) {
    const ExtensionRecord& record = inExtension.fRecord;
    const SourcePlace& place = inExtension.fPlace;
    if (record.fClassID == MCGuid{}) {
      FailAt(place, record.fName + " has no class id");
    }
    if (record.fLabel.empty() || record.fHelp.empty()) {
      FailAt(place, record.fName + " has no label or no help");
    }
    CheckLength(record.fName, kLongestLabel, "name", place);
    CheckLength(record.fLabel, kLongestLabel, "label", place);
    CheckLength(record.fHelp, kLongestHelp, "help", place);
    fNames.Add(record.fName, place, fmt::format("a class {}", record.fName));
    fClassIDs.Add(record.fID, place, fmt::format("a class {}", QuotedID(record.fID)));
    for (const ExtensionSource& other : fSource.fExtensions) {
      if (&other < &inExtension && other.fRecord.fClassID == record.fClassID) {
        FailAt(place, fmt::format("{} has the class id of {}", record.fName, other.fRecord.fName));
      }
    }
    if (record.fResourceId != 0 && !fPartIDs.Has({kPanelType, record.fResourceId}) &&
        !fPartIDs.Has({kDialogType, record.fResourceId})) {
      FailAt(place, fmt::format("no panel or dialog {} is there for {}", record.fResourceId, record.fName));
    }
  }

  void CheckMaps() {
    for (const ParameterMapSource& map : fSource.fMaps) {
      const MCID id = map.fMap.fClass;
      fMapIDs.Add(id, map.fPlace, fmt::format("a parameter map for {}", QuotedID(id)));
      if (!fClassIDs.Has(id)) {
        FailAt(map.fPlace, fmt::format("no class {} is there", QuotedID(id)));
      }
      UniqueKeys<std::string> names;
      for (std::size_t i = 0; i < map.fFields.size(); ++i) {
        const std::string& name = map.fMap.fFields[i].fName;
        CheckLength(name, kLongestLabel, "name", map.fFields[i].fPlace);
        names.Add(name, map.fFields[i].fPlace, fmt::format("a field {}", name));
      }
    }
  }

  void FindCode(PartSource& ioPart) {
    if (ioPart.fCode.empty()) {
      return;
    }
    for (const ExtensionSource& extension : fSource.fExtensions) {
      if (extension.fRecord.fName == ioPart.fCode && extension.fRecord.fFamily == "part"_id) {
        ioPart.fPart.fExtension = extension.fRecord.fClassID;
        return;
      }
    }
    FailAt(ioPart.fCodePlace, fmt::format("no part {} is among the classes", ioPart.fCode));
  }

  // The map of the class whose panel this is.
  ParameterMapSource* FindMap(const PartSource& inPart) {
    for (const ExtensionSource& extension : fSource.fExtensions) {
      const ExtensionRecord& record = extension.fRecord;
      if (inPart.fPart.fKind != kPanelType || record.fResourceId != inPart.fPart.fResourceId) {
        continue;
      }
      for (ParameterMapSource& map : fSource.fMaps) {
        if (map.fMap.fClass == record.fID) {
          return &map;
        }
      }
    }
    return nullptr;
  }

  void Bind(const PartSource& inPart) {
    ParameterMapSource* const map = FindMap(inPart);
    std::size_t next = 0;
    BindControl(inPart.fPart.fRoot, inPart, map, next);
  }

  void BindControl(const ControlDescription& inControl, const PartSource& inPart, ParameterMapSource* ioMap,
                   std::size_t& ioNext) {
    const ControlSource& source = inPart.fControls[ioNext++];
    if (!source.fField.empty()) {
      BindField(inControl, source, inPart, ioMap);
    }
    for (const ControlDescription& child : inControl.fChildren) {
      BindControl(child, inPart, ioMap, ioNext);
    }
  }

  void BindField(const ControlDescription& inControl, const ControlSource& inSource, const PartSource& inPart,
                 ParameterMapSource* ioMap) {
    const SourcePlace& place = inSource.fFieldPlace;
    if (ioMap == nullptr) {
      FailAt(place, fmt::format("{} {} shows no fields: no class with a parameter map has it",
                                KindWord(inPart.fPart.fKind), inPart.fPart.fResourceId));
    }
    for (FieldDescription& field : ioMap->fMap.fFields) {
      if (field.fName != inSource.fField) {
        continue;
      }
      if (GetFieldValue(field.fType) != GetKindInfo(inControl.fKind).fValue) {
        FailAt(place, fmt::format("the field {} is {}, which a {} does not show", field.fName, QuotedID(field.fType),
                                  GetKindInfo(inControl.fKind).fName));
      }
      if (field.fControl != 0) {
        FailAt(place, fmt::format("the control {} shows {} already", QuotedID(field.fControl), field.fName));
      }
      field.fControl = inControl.fID;
      return;
    }
    FailAt(place, fmt::format("{} has no field {}", QuotedID(ioMap->fMap.fClass), inSource.fField));
  }

  void CheckAllAreShown() {
    for (const ParameterMapSource& map : fSource.fMaps) {
      for (std::size_t i = 0; i < map.fFields.size(); ++i) {
        const FieldDescription& field = map.fMap.fFields[i];
        if ((field.fControl != 0) == map.fFields[i].fIsHidden) {
          FailAt(map.fFields[i].fPlace,
                 field.fControl == 0
                     ? fmt::format("no control shows {}: bind one, or write: hidden", field.fName)
                     : fmt::format("{} is said to be hidden, and {} shows it", field.fName, QuotedID(field.fControl)));
        }
      }
    }
  }

  Source& fSource;
  UniqueKeys<std::pair<MCID, int16>> fPartIDs;
  UniqueKeys<std::string> fNames;
  UniqueKeys<MCID> fClassIDs;
  UniqueKeys<MCID> fMapIDs;
};

}  // namespace

void CheckSource(Source& ioSource) {
  SourceRules(ioSource).Check();
}

}  // namespace qlx::host
