#pragma once

#include <string>

#include "bench/long/decoder_compare/peer.h"

// What an encoding was read as. bLight tells that the peer of the first word is the lenient one.
struct COMPARED_AS {
  U32 ArchVersion;
  bool bMProfile;
  bool bLight;
};

// Why we read an encoding differently from all peers, on purpose; null for a difference that nothing explains.
// sClass is "only here: ...", "only there: ...", "mnemonic: ..." or "operands: ...".
const char* ReasonFor(const ENCODING& Encoding, const COMPARED_AS& As, const std::string& sClass);
