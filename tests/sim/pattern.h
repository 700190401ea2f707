#pragma once
// What a random instruction is drawn from.

#include "probe/sim/machine.h"

namespace sim_test {

enum RULE {
  ANY,
  FIELD_FITS,   // extraction: position plus width within a word
  FIELD_ORDER,  // insertion: highest bit not below the lowest
  LIST_OF_TWO,  // at least two registers in the list
  EXPANDABLE,   // the constant is not one of the unpredictable ones
  SHIFT_NOT_0,
  FIXED_FITS,  // fraction bits of a 16-bit number
  PAIR_FITS,   // not the last single precision register
  FP_LIST,     // single precision registers from the first one on
  FP_LIST_D,
};

enum IT_RULE { ANYWHERE, NOT_IN_BLOCK };
// What the emulation library does otherwise. OLD_ROUNDING: it rounds as FPSCR says, where the architecture always
// rounds to nearest. EARLY_OVERFLOW: it sets Q when a sum overflows on the way to a result that does not. PROFILE: in
// double precision it stands for another family of cores, which shows its mode there.
enum class PEER_RULE { SAME, OLD_ROUNDING, EARLY_OVERFLOW, PROFILE };

// Encodings: 0 and 1 are fixed; '.' is any bit; letters are register fields of three or four bits: d and e are written
// (and differ), n, m and a are read, s and t are stored, b is a base, x an index, h a written high register; l are bits
// of a register list. Blanks do not count.
struct PATTERN {
  const char* sName;
  const char* sBits;
  sim::ARCH Needs;  // at least
  RULE Rule = ANY;
  sim::FPU NeedsFpu = sim::FPU::NONE;  // at least
  IT_RULE ItRule = ANYWHERE;
  PEER_RULE PeerRule = PEER_RULE::SAME;
};

}  // namespace sim_test
