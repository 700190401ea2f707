#pragma once
// Many random sequences in one image, so that a peer that can only run images can be compared, too.

#include "tests/sim/sequence.h"

namespace sim_test {

// Runs an image on one of QEMU's machines, in a directory that may be written to; the words of the file that the image
// writes. Empty when that fails.
std::vector<U32> RunOnQemu(const std::vector<U8>& Image, const char* sMachine, const std::string& sDir);
// Runs it on our core up to its first BKPT; so many words of what it leaves at Results.
std::vector<U32> RunOnOurs(const CORE& Core, const std::vector<U8>& Image, U64 MaxInsts, U32 Results, size_t NumWords);

class CBatch {
public:
  CBatch(const CORE& Core, U32 Seed, U32 NumSequences);

  const std::vector<U8>& Image() const { return m_Image; }
  U64 NumInsts() const { return m_NumInsts; }

  // Runs the image on our core; the results, a fixed number of words for each sequence.
  std::vector<U32> RunOurs() const;
  // Runs it on QEMU in a directory that may be written to. Empty when that fails.
  std::vector<U32> RunQemu(const std::string& sDir) const;
  // What differs, for each sequence that differs first in something: at most MaxTexts of them.
  std::vector<std::string> Compare(const std::vector<U32>& aOurs, const std::vector<U32>& aTheirs,
                                   size_t MaxTexts) const;
  // QEMU's name of a machine with this core; null when it has none.
  static const char* MachineOf(const CORE& Core);
  // Whether there is such a machine, and QEMU itself.
  static bool HasQemu(const CORE& Core);

private:
  U32 AppendWords(const U32* paWords, size_t Num);
  U32 AppendCode(const std::vector<U16>& aOps);
  size_t WordsPerResult() const;

  const CORE& m_Core;
  std::vector<SEQUENCE> m_Sequences;
  std::vector<U8> m_Image;
  U64 m_NumInsts = 0;
};

}  // namespace sim_test
