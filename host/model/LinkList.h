// Every link of a scene, as people look at them: what follows what, and whether it does.
#pragma once

#include <string>
#include <vector>

#include "LinkValue.h"

namespace qlx::host {

class Modifier;
class Scene;

enum class LinkRowState : uint8 { kOk, kBroken, kCycle, kOff };

// One value that a modifier writes, or a modifier of which no write is known.
struct LinkRow {
  Element* fElement = nullptr;  // that the modifier sits on
  Modifier* fModifier = nullptr;
  std::size_t fIndex = 0;  // in the element's list
  bool fHasTarget = false;
  LinkValue fTarget;
  std::vector<LinkValue> fSources;  // none for a link that drives itself, or sets a value
  LinkRowState fState = LinkRowState::kOk;
  std::string fWhy;  // of one that is broken
};

struct LinkList {
  std::vector<LinkRow> fRows;        // elements in tree order, modifiers in list order
  std::vector<std::string> fCycles;  // one way round each
};

// Looks at every modifier, those that are switched off too. Modifiers that tie nothing, and tell no problem, have no
// row.
LinkList ListLinks(Scene& ioScene);

// "ok", "broken", "cycle", "off"
const char* NameOfState(LinkRowState inState);

// A picture for Graphviz: values in a box for each owner, an arrow from source to target, those of cycles and broken
// ones in colours of their own.
std::string DrawLinks(const LinkList& inLinks);

}  // namespace qlx::host
