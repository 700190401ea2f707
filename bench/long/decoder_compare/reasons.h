#pragma once

#include <string>

#include "bench/long/decoder_compare/peer.h"

// Why we read an encoding differently from all peers, on purpose; null for a difference that nothing explains.
// bLight tells that the peer of the first word is the lenient one. sClass is "only here: ...", "only there: ...",
// "mnemonic: ..." or "operands: ...".
const char* ReasonFor(const ENCODING& Encoding, U32 ArchVersion, bool bLight, const std::string& sClass);
