// The token form of a link's private data.
//
//   pset 1
//   cpsl "self,amet,TRAN,ROTA,RotX"
//   sobj "05000000"
//   bobj ""
//   cpst 1
//   spar "GlbX"
//   decy { dlin dqua dcub dqut dcut dmax dmin }    one value line each
//   grow { glin gqua gcub gqut gcut gmax gmin }
//   oscl { osin ocos opho osca omax omin ospd }
//
// An object reference is one text of hex digits, two a byte: it has no length of its own that data could lie about.
// There is no version: old data is known by the tokens that it lacks.
#pragma once

#include "HostExtensions.h"
#include "QLXModifierData.h"

namespace qlx {

// A reference that claims bytes and has none is left out. A stream that fails is left failed.
void WriteTokens(TMCStream& ioStream, const QLXPrivateData& inData);

// Reads one level of tokens, its braces included. The controller's reference is cleared first; all else that has no
// token keeps what it held. A key that is not known goes to `inFallback`, or is skipped with its value where that is
// null. Each of the three blocks has exactly seven tokens, in any order; one that is not known is skipped and counts.
//
// Throws `TMCException` with the codes of MCToken.h; what was read before stays.
void ReadTokens(TMCStream& ioStream, QLXPrivateData& ioData, IExStreamIO::Fallback inFallback, void* inContext);

}  // namespace qlx
