// decoder_compare: our decoder held against other disassemblers, word by word.
#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <fstream>
#include <map>
#include <random>

#include "bench/long/decoder_compare/reasons.h"
#include "bench/long/decoder_compare/spelling.h"
#include "core/decoder/disasm.h"

namespace {

struct OPTIONS {
  bool bArm = false;
  bool bHalfwords = false;
  bool bMProfile = false;
  U32 ArchVersion = 7;
  U32 NumWords = 100'000;
  U32 Seed = 1;
  U32 Fixed = 0;      // bits that every word has
  U32 FixedMask = 0;  // and which those are
  int MaxShown = 3;
  std::string sPeer = "all";
  std::string sRows;  // file with rows of a disassembly; empty for random words
};

READING ReadOurs(const OPTIONS& Options, const ENCODING& Encoding) {
  DISASM_CONTEXT Context;
  Context.ArchVersion = Options.ArchVersion;
  Context.bMProfile = Options.bMProfile;
  DISASM_SetMode(Context, Options.bArm ? DISASM_ARM : DISASM_THUMB);
  const std::vector<U8> aByte = BytesOf(Encoding);
  char sText[128];
  const int Length = Context.pfDecode(Context, COMPARE_ADDR, aByte.data(), static_cast<U32>(aByte.size()), sText,
                                      sizeof(sText), nullptr);
  return {Length > 0 ? static_cast<U32>(Length) : 0, sText};
}

std::vector<ENCODING> MakeWords(const OPTIONS& Options, std::mt19937& Random, U32 Count) {
  std::vector<ENCODING> aEncoding;
  while (aEncoding.size() < Count) {
    ENCODING Encoding;
    Encoding.bArm = Options.bArm;
    Encoding.Word = Random();
    if (Options.bArm && Random() % 4 != 0 && Encoding.Word >> 28 != 15)
      Encoding.Word = (Encoding.Word & 0x0FFFFFFF) | 0xE0000000;
    if (!Options.bArm) Encoding.Word |= 0xE0000000;
    Encoding.Word = (Encoding.Word & ~Options.FixedMask) | Options.Fixed;
    if (!Options.bArm && (Encoding.Word & 0x18000000) == 0) continue;
    aEncoding.push_back(Encoding);
  }
  return aEncoding;
}

std::vector<ENCODING> AllHalfwords() {
  std::vector<ENCODING> aEncoding;
  for (U32 Word = 0; Word < 0xE800; ++Word) aEncoding.push_back({Word, 2, false});
  return aEncoding;
}

// The instructions in a listing of rows "address, code, text": code of one word is ARM, of halfwords Thumb.
std::vector<ENCODING> EncodingsOf(const OPTIONS& Options) {
  std::vector<ENCODING> aEncoding;
  std::ifstream File(Options.sRows);
  std::string sLine;
  while (std::getline(File, sLine)) {
    const size_t Tab = sLine.find('\t');
    const size_t End = sLine.find('\t', Tab + 1);
    if (End == std::string::npos || sLine.compare(End + 1, 2, "DC") == 0) continue;
    const std::string sCode = sLine.substr(Tab + 1, End - Tab - 1);
    const U32 First = static_cast<U32>(std::strtoul(sCode.c_str(), nullptr, 16));
    const U32 Second = sCode.size() > 5 ? static_cast<U32>(std::strtoul(sCode.c_str() + 5, nullptr, 16)) : 0;
    const bool bArm = sCode.size() == 8;
    if (bArm != Options.bArm) continue;
    if (sCode.size() == 9) {
      aEncoding.push_back({First << 16 | Second, 4, false});
    } else {
      aEncoding.push_back({First, bArm ? 4u : 2u, bArm});
    }
  }
  return aEncoding;
}

struct CLASS {
  U32 Count = 0;
  std::vector<std::string> aShown;
};

// How our reading of an encoding stands to a peer's; empty when they are the same.
std::string DifferenceOf(const ENCODING& Encoding, const READING& Ours, const READING& Theirs, const std::string& sOurs,
                         const std::string& sTheirs) {
  if (Ours.Length == 0 && Theirs.Length == 0) return "";
  if (Theirs.Length == 0) return "only here: " + MnemonicOf(sOurs, Encoding);
  if (Ours.Length == 0) return "only there: " + MnemonicOf(sTheirs, Encoding);
  if (Ours.Length != Theirs.Length) return "length: " + MnemonicOf(sOurs, Encoding);
  if (sOurs == sTheirs) return "";
  if (MnemonicOf(sOurs, Encoding) != MnemonicOf(sTheirs, Encoding))
    return "mnemonic: " + MnemonicOf(sOurs, Encoding) + " / " + MnemonicOf(sTheirs, Encoding);
  return "operands: " + MnemonicOf(sOurs, Encoding);
}

class CComparison {
public:
  explicit CComparison(const OPTIONS& TheOptions) : Options(TheOptions) {}

  // True when the readings are the same, or when this isn't the last peer that may confirm ours.
  bool Compare(const ENCODING& Encoding, const READING& Theirs, bool bLast, const std::string& sBefore) {
    const READING Ours = ReadOurs(Options, Encoding);
    const std::string sOurs = CommonSpelling(Ours.sText, Encoding, true);
    const std::string sTheirs = CommonSpelling(Theirs.sText, Encoding, false);
    const std::string sDifference = DifferenceOf(Encoding, Ours, Theirs, sOurs, sTheirs);
    if (sDifference.empty()) {
      ++(Ours.Length == 0 ? NumNeither : NumSame);
      return true;
    }
    if (bLast) Add(sDifference, Encoding, sOurs, sTheirs, sBefore);
    return false;
  }
  void CountConfirmed(U32 Count) { NumConfirmed += Count; }

  // 1 when there is a difference that nothing explains.
  int Report() const {
    U32 NumUnexplained = 0;
    U32 NumExplained = 0;
    for (const auto& [sReason, Count] : Explained) NumExplained += Count;
    for (const auto& [sName, Class] : Unexplained) NumUnexplained += Class.Count;
    std::printf("%u the same (%u of them with another peer than the first), %u in neither\n", NumSame + NumNeither,
                NumConfirmed, NumNeither);
    std::printf("%u differ for a known reason:\n", NumExplained);
    for (const auto& [sReason, Count] : Explained) std::printf("%8u  %s\n", Count, sReason.c_str());
    std::printf("%u differ for no known reason\n", NumUnexplained);
    for (const auto& [sName, Class] : Unexplained) {
      std::printf("%8u  %s\n", Class.Count, sName.c_str());
      for (const std::string& sShown : Class.aShown) std::printf("          %s\n", sShown.c_str());
    }
    return NumUnexplained == 0 ? 0 : 1;
  }

private:
  void Add(const std::string& sName, const ENCODING& Encoding, const std::string& sOurs, const std::string& sTheirs,
           const std::string& sBefore) {
    const char* sReason =
        ReasonFor(Encoding, {Options.ArchVersion, Options.bMProfile, Options.sPeer == "light"}, sName);
    if (sReason != nullptr) {
      ++Explained[sReason];
      return;
    }
    CLASS& Class = Unexplained[sName];
    ++Class.Count;
    if (static_cast<int>(Class.aShown.size()) >= Options.MaxShown) return;
    char sWord[16];
    std::snprintf(sWord, sizeof(sWord), "%08x", Encoding.Word);
    Class.aShown.push_back(std::string(sWord) + "  [" + sOurs + "]  [" + sTheirs + "]  [" + sBefore + "]");
  }

  OPTIONS Options;
  U32 NumSame = 0;
  U32 NumConfirmed = 0;
  U32 NumNeither = 0;
  std::map<std::string, U32> Explained;
  std::map<std::string, CLASS> Unexplained;
};

// Asks the first peer about all, and the others about what is left.
void CompareBatch(CComparison& Comparison, const std::vector<std::unique_ptr<CPeer>>& aPeer,
                  std::vector<ENCODING> aEncoding) {
  std::vector<std::string> aBefore(aEncoding.size());
  for (size_t Peer = 0; Peer < aPeer.size(); ++Peer) {
    const std::vector<READING> aReading = aPeer[Peer]->Read(aEncoding);
    std::vector<ENCODING> aLeft;
    std::vector<std::string> aLeftBefore;
    for (size_t i = 0; i < aEncoding.size(); ++i) {
      if (Comparison.Compare(aEncoding[i], aReading[i], Peer + 1 == aPeer.size(), aBefore[i])) continue;
      aLeft.push_back(aEncoding[i]);
      aLeftBefore.push_back(aReading[i].sText);
    }
    if (Peer > 0) Comparison.CountConfirmed(static_cast<U32>(aEncoding.size() - aLeft.size()));
    aEncoding = aLeft;
    aBefore = aLeftBefore;
  }
}

bool ParseOptions(int NumArguments, char** ppArguments, OPTIONS& Options) {
  for (int i = 1; i < NumArguments; ++i) {
    const std::string sName = ppArguments[i];
    if (sName == "arm") {
      Options.bArm = true;
    } else if (sName == "halfwords") {
      Options.bHalfwords = true;
    } else if (sName == "m") {
      Options.bMProfile = true;
    } else if (sName == "first" || sName == "light") {
      Options.sPeer = sName;
    } else if (sName.starts_with("arch=")) {
      Options.ArchVersion = static_cast<U32>(std::atoi(sName.c_str() + 5));
    } else if (sName.starts_with("words=")) {
      Options.NumWords = static_cast<U32>(std::atoi(sName.c_str() + 6));
    } else if (sName.starts_with("rows=")) {
      Options.sRows = sName.substr(5);
    } else if (sName.starts_with("seed=")) {
      Options.Seed = static_cast<U32>(std::atoi(sName.c_str() + 5));
    } else if (sName.starts_with("show=")) {
      Options.MaxShown = std::atoi(sName.c_str() + 5);
    } else if (sName.starts_with("fixed=")) {
      char* pEnd = nullptr;
      Options.Fixed = static_cast<U32>(std::strtoul(sName.c_str() + 6, &pEnd, 16));
      Options.FixedMask = *pEnd == '/' ? static_cast<U32>(std::strtoul(pEnd + 1, nullptr, 16)) : 0;
    } else {
      return false;
    }
  }
  return true;
}

}  // namespace

int main(int NumArguments, char** ppArguments) {
  constexpr U32 BATCH = 200'000;
  OPTIONS Options;
  if (!ParseOptions(NumArguments, ppArguments, Options)) return 2;
  std::vector<std::unique_ptr<CPeer>> aPeer;
  for (const bool bMProfile : {false, true}) {
    if (bMProfile ? Options.bArm || Options.ArchVersion < 6 : Options.bMProfile) continue;
    aPeer.push_back(Options.sPeer == "light" ? MakeCapstonePeer(Options.bArm, Options.ArchVersion, bMProfile)
                                             : MakeLLVMPeer(Options.bArm, Options.ArchVersion, bMProfile));
    aPeer.push_back(MakeObjdumpPeer(Options.bArm, Options.ArchVersion, bMProfile));
  }
  std::erase(aPeer, nullptr);
  if (Options.sPeer == "first") aPeer.resize(1);
  if (aPeer.empty()) {
    std::printf("skipped: no peer is installed\n");
    return 77;
  }
  CComparison Comparison(Options);
  std::mt19937 Random(Options.Seed);
  if (Options.bHalfwords) {
    CompareBatch(Comparison, aPeer, AllHalfwords());
  } else if (!Options.sRows.empty()) {
    CompareBatch(Comparison, aPeer, EncodingsOf(Options));
  } else {
    for (U32 Done = 0; Done < Options.NumWords; Done += BATCH) {
      CompareBatch(Comparison, aPeer, MakeWords(Options, Random, std::min(BATCH, Options.NumWords - Done)));
    }
  }
  return Comparison.Report();
}
