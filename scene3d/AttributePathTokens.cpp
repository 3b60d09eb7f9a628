// The token form of attribute paths.
#include "AttributePath.h"
#include "MCException.h"
#include "MCToken.h"

namespace qlx {

namespace {

[[noreturn]] void Fail(MCResult inCode, int32 inLine) {
  throw TMCException(inCode, "AttributePath", inLine);
}

int32 ReadInteger(TMCStream& ioStream) {
  const int32 value = MCToken::ReadInt32(ioStream);
  if (ioStream.fail()) {
    Fail(MC_E_BADTOKEN, __LINE__);
  }
  return value;
}

void WriteNode(TMCStream& ioStream, const AttributePathNode& inNode) {
  MCToken::BeginSection(ioStream);
  MCToken::WriteInt32(ioStream, "type"_id, inNode.fType);
  // The index stands there twice: older readers look for one of the two.
  MCToken::WriteInt32(ioStream, "inde"_id, inNode.fIndex);
  MCToken::WriteInt32(ioStream, "id  "_id, inNode.fIndex);
  MCToken::WriteString(ioStream, "name"_id, inNode.fName);
  MCToken::EndToken(ioStream);
}

AttributePathNode ReadNode(TMCStream& ioStream) {
  AttributePathNode node;
  MCToken::ReadBegin(ioStream);
  while (!MCToken::IsAtEnd(ioStream)) {
    switch (MCToken::ReadTokenId(ioStream)) {
      case "type"_id: {
        const int32 type = ReadInteger(ioStream);
        node.fType = type == static_cast<int8>(type) ? static_cast<int8>(type) : int8{kNoNode};
        break;
      }
      case "inde"_id:
      case "id  "_id:
        node.fIndex = ReadInteger(ioStream);  // the later one wins
        break;
      case "name"_id:
        MCToken::ReadString(ioStream, node.fName);
        break;
      default:
        MCToken::SkipToken(ioStream);
    }
  }
  MCToken::ReadEnd(ioStream);
  return node;
}

// The steps by which an array grows on its own are bounded, which would make a long list cost the square of its length.
bool AddNode(TMCClassArray<AttributePathNode>& ioNodes, const AttributePathNode& inNode) {
  const uint32 space = ioNodes.GetElemSpace();
  return (ioNodes.GetElemCount() < space || ioNodes.SetElemSpace(space + space / 2 + 8)) && ioNodes.AddElem(inNode);
}

void ReadNodes(TMCStream& ioStream, TMCClassArray<AttributePathNode>& outNodes) {
  outNodes.SetElemCount(0);
  MCToken::ReadBegin(ioStream);
  while (!MCToken::IsAtEnd(ioStream)) {
    if (!AddNode(outNodes, ReadNode(ioStream))) {
      Fail(MC_E_OUTOFMEMORY, __LINE__);
    }
  }
  MCToken::ReadEnd(ioStream);
}

}  // namespace

void AttributePath::WriteTo(TMCStream& ioStream, MCID inKey) const {
  if (inKey) {
    MCToken::BeginToken(ioStream, inKey);
  } else {
    MCToken::BeginSection(ioStream);
  }
  MCToken::WriteInt32(ioStream, "vers"_id, fVersion);
  MCToken::BeginToken(ioStream, "path"_id);
  for (const AttributePathNode& node : fNodes) {
    WriteNode(ioStream, node);
  }
  MCToken::EndToken(ioStream);
  MCToken::EndToken(ioStream);
}

void AttributePath::ReadFrom(TMCStream& ioStream) {
  AttributePath path;
  path.fVersion = 0;
  MCToken::ReadBegin(ioStream);
  while (!MCToken::IsAtEnd(ioStream)) {
    switch (MCToken::ReadTokenId(ioStream)) {
      case "vers"_id:
        path.fVersion = ReadInteger(ioStream);
        break;
      case "path"_id:
        ReadNodes(ioStream, path.fNodes);
        break;
      default:
        MCToken::SkipToken(ioStream);
    }
  }
  MCToken::ReadEnd(ioStream);
  *this = path;
}

}  // namespace qlx
