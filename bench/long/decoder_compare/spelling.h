#pragma once

#include <string>

#include "bench/long/decoder_compare/peer.h"

// The text of an instruction in a spelling that all disassemblers share: lower case, numbers in decimal, registers by
// their number, lists written out, branch targets relative to the PC, no comment, no width suffix.
std::string CommonSpelling(const std::string& sText, const ENCODING& Encoding, bool bOurs);
// The mnemonic alone, without the condition of an ARM instruction.
std::string MnemonicOf(const std::string& sCommon, const ENCODING& Encoding);
