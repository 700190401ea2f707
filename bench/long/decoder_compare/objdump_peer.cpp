#include <unistd.h>

#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>

#include "bench/long/decoder_compare/peer.h"

namespace {

constexpr U32 SLOT_SIZE = 12;  // bytes of file for one encoding: itself, then instructions that end an IT block
constexpr U32 NOP_THUMB = 0x46C0;

struct MACHINE {
  bool bArm;
  U32 ArchVersion;
  bool bMProfile;
  const char* sName;
};

constexpr MACHINE aMachine[] = {
    {true, 4, false, "armv4t"},         {true, 5, false, "armv5te"},  {true, 6, false, "armv6kz"},
    {true, 7, false, "armv7"},          {true, 8, false, "armv8-a"},  {false, 4, false, "armv4t"},
    {false, 5, false, "armv5te"},       {false, 6, false, "armv6"},   {false, 6, true, "armv6s-m"},
    {false, 7, false, "armv7"},         {false, 7, true, "armv7e-m"}, {false, 8, false, "armv8-a"},
    {false, 8, true, "armv8.1-m.main"},
};

// Reads the rows of one run: "   address:\tcode\ttext".
class CObjdumpPeer : public CPeer {
public:
  CObjdumpPeer(bool bIsArm, std::string sMachineName) : bArm(bIsArm), sMachine(std::move(sMachineName)) {}

  std::vector<READING> Read(const std::vector<ENCODING>& aEncoding) override {
    std::vector<READING> aReading;
    if (aEncoding.empty() || Run(aEncoding, aReading)) return aReading;
    // It ends at an assertion of its own in some words of the vector extension. Alone, such a word is none.
    if (aEncoding.size() == 1) return {READING()};
    const auto Middle = aEncoding.begin() + static_cast<std::ptrdiff_t>(aEncoding.size() / 2);
    aReading = Read({aEncoding.begin(), Middle});
    const std::vector<READING> aSecond = Read({Middle, aEncoding.end()});
    aReading.insert(aReading.end(), aSecond.begin(), aSecond.end());
    return aReading;
  }

private:
  // False when it did not end well.
  bool Run(const std::vector<ENCODING>& aEncoding, std::vector<READING>& aReading) const {
    const std::string sFile =
        std::filesystem::temp_directory_path() / ("decoder_compare_" + std::to_string(getpid()) + ".bin");
    WriteFile(sFile, aEncoding);
    const std::string sCommand = "arm-none-eabi-objdump -D -z -w -b binary -m " + sMachine + " -M reg-names-std" +
                                 (bArm ? "" : ",force-thumb") + " " + sFile + " 2> /dev/null";
    aReading.assign(aEncoding.size(), READING());
    FILE* pPipe = popen(sCommand.c_str(), "r");
    char sLine[512];
    while (pPipe != nullptr && std::fgets(sLine, sizeof(sLine), pPipe) != nullptr) TakeLine(sLine, aReading);
    const bool bEndedWell = pPipe != nullptr && pclose(pPipe) == 0;
    std::filesystem::remove(sFile);
    return bEndedWell;
  }

  U32 SlotSize() const { return bArm ? 4 : SLOT_SIZE; }

  void WriteFile(const std::string& sFile, const std::vector<ENCODING>& aEncoding) const {
    std::ofstream File(sFile, std::ios::binary);
    for (const ENCODING& Encoding : aEncoding) {
      std::vector<U8> aByte = BytesOf(Encoding);
      while (aByte.size() < SlotSize()) {
        aByte.push_back(static_cast<U8>(NOP_THUMB));
        aByte.push_back(static_cast<U8>(NOP_THUMB >> 8));
      }
      File.write(reinterpret_cast<const char*>(aByte.data()), static_cast<std::streamsize>(aByte.size()));
    }
  }

  void TakeLine(const std::string& sLine, std::vector<READING>& aReading) const {
    const size_t Colon = sLine.find(":\t");
    if (Colon == std::string::npos) return;
    const U32 Offset = static_cast<U32>(std::strtoul(sLine.c_str(), nullptr, 16));
    if (Offset % SlotSize() != 0 || Offset / SlotSize() >= aReading.size()) return;
    const size_t CodeEnd = sLine.find('\t', Colon + 2);
    if (CodeEnd == std::string::npos) return;
    std::string sText = sLine.substr(CodeEnd + 1);
    while (!sText.empty() && (sText.back() == '\n' || sText.back() == ' ')) sText.pop_back();
    READING& Reading = aReading[Offset / SlotSize()];
    Reading.sText = WithoutOffset(sText, Offset);
    if (IsInstruction(sText))
      Reading.Length = sLine.find(' ', Colon + 2) == Colon + 6 && !bArm ? CodeLength(sLine, Colon + 2) : 4;
    if (!bArm && Reading.Length != 0) Reading.Length = CodeLength(sLine, Colon + 2);
  }

  static U32 CodeLength(const std::string& sLine, size_t Pos) {
    return sLine.size() > Pos + 5 && std::isxdigit(static_cast<unsigned char>(sLine[Pos + 5])) != 0 ? 4 : 2;
  }

  static bool IsInstruction(const std::string& sText) {
    for (const char* sNot : {"undefined", "UNDEFINED", ".inst", "UNPREDICTABLE", ".word", ".short", "<illegal"}) {
      if (sText.find(sNot) == std::string::npos) continue;
      if (std::string(sNot) == "UNPREDICTABLE") continue;  // named, so an instruction
      return false;
    }
    return true;
  }

  // Branch targets are file offsets: moved to the common address.
  static std::string WithoutOffset(const std::string& sText, U32 Offset) {
    const size_t Pos = sText.rfind("0x");
    const size_t Tab = sText.find('\t');
    if (Pos == std::string::npos || Tab == std::string::npos || sText[0] == '.') return sText;
    const char Before = sText[Pos - 1];
    if (std::string("bcwl").find(sText[0]) == std::string::npos || (Before != '\t' && Before != ' ')) return sText;
    const size_t Comment = sText.find_first_of(";@");
    if (Comment != std::string::npos && Comment < Pos) return sText;
    const U32 Target = static_cast<U32>(std::strtoul(sText.c_str() + Pos, nullptr, 16)) - Offset + COMPARE_ADDR;
    char sTarget[16];
    std::snprintf(sTarget, sizeof(sTarget), "0x%08x", Target);
    return sText.substr(0, Pos) + sTarget;
  }

  bool bArm;
  std::string sMachine;
};

}  // namespace

std::unique_ptr<CPeer> MakeObjdumpPeer(bool bArm, U32 ArchVersion, bool bMProfile) {
  if (std::system("command -v arm-none-eabi-objdump > /dev/null") != 0) return nullptr;
  for (const MACHINE& Machine : aMachine) {
    if (Machine.bArm == bArm && Machine.ArchVersion == ArchVersion && Machine.bMProfile == bMProfile) {
      return std::make_unique<CObjdumpPeer>(bArm, Machine.sName);
    }
  }
  return nullptr;
}
