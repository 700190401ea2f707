#include "bench/long/decoder_compare/peer.h"

#ifndef HAVE_LLVM

std::unique_ptr<CPeer> MakeLLVMPeer(bool, U32, bool) {
  return nullptr;
}

#else

#include <llvm-c/Disassembler.h>
#include <llvm-c/Target.h>

namespace {

class CLLVMPeer : public CPeer {
public:
  CLLVMPeer(const char* sTriple, const char* sFeatures)
      : pContext(LLVMCreateDisasmCPUFeatures(sTriple, "", sFeatures, nullptr, 0, nullptr, nullptr)) {}
  ~CLLVMPeer() override {
    if (pContext != nullptr) LLVMDisasmDispose(pContext);
  }
  bool IsThere() const { return pContext != nullptr; }

  std::vector<READING> Read(const std::vector<ENCODING>& aEncoding) override {
    std::vector<READING> aReading;
    aReading.reserve(aEncoding.size());
    for (const ENCODING& Encoding : aEncoding) {
      std::vector<U8> aByte = BytesOf(Encoding);
      char sText[256] = "";
      const size_t Length =
          LLVMDisasmInstruction(pContext, aByte.data(), aByte.size(), COMPARE_ADDR, sText, sizeof(sText));
      aReading.push_back({static_cast<U32>(Length), sText});
      if (!Encoding.bArm && Encoding.NumBytes == 2 && (Encoding.Word & 0xFF00) == 0xBF00) LeaveITBlock();
    }
    return aReading;
  }

private:
  void LeaveITBlock() {
    constexpr int MAX_BLOCK = 4;  // instructions
    U8 aNop[] = {0x00, 0xbf};
    char sText[64];
    for (int i = 0; i < MAX_BLOCK; ++i) {
      LLVMDisasmInstruction(pContext, aNop, sizeof(aNop), COMPARE_ADDR, sText, sizeof(sText));
    }
  }

  LLVMDisasmContextRef pContext;
};

struct TARGET {
  bool bArm;
  U32 ArchVersion;
  bool bMProfile;
  const char* sTriple;
  const char* sFeatures;
};

constexpr TARGET aTarget[] = {
    {true, 4, false, "armv4t-none-eabi", ""},
    {true, 5, false, "armv5tej-none-eabi", "+vfp2"},
    {true, 6, false, "armv6kz-none-eabi", "+vfp2,+trustzone"},
    {true, 7, false, "armv7a-none-eabi", "+vfp4,+neon,+fp16,+hwdiv,+hwdiv-arm,+mp,+trustzone,+virtualization"},
    {true, 8, false, "armv8a-none-eabi",
     "+fp-armv8,+fullfp16,+neon,+crypto,+crc,+hwdiv,+hwdiv-arm,+mp,+trustzone,+virtualization"},
    {false, 4, false, "thumbv4t-none-eabi", ""},
    {false, 5, false, "thumbv5tej-none-eabi", ""},
    {false, 6, false, "thumbv6-none-eabi", ""},
    {false, 6, true, "thumbv6m-none-eabi", ""},
    {false, 7, false, "thumbv7a-none-eabi", "+vfp4,+neon,+fp16,+hwdiv,+hwdiv-arm,+mp,+trustzone,+virtualization"},
    {false, 7, true, "thumbv7em-none-eabi", "+fp-armv8d16,+dsp"},
    {false, 8, false, "thumbv8a-none-eabi",
     "+fp-armv8,+fullfp16,+neon,+crypto,+crc,+hwdiv,+hwdiv-arm,+mp,+trustzone,+virtualization"},
    {false, 8, true, "thumbv8.1m.main-none-eabi", "+fp-armv8d16,+fp64,+fullfp16,+dsp,+lob,+8msecext,+pacbti"},
};

}  // namespace

std::unique_ptr<CPeer> MakeLLVMPeer(bool bArm, U32 ArchVersion, bool bMProfile) {
  LLVMInitializeARMTargetInfo();
  LLVMInitializeARMTargetMC();
  LLVMInitializeARMDisassembler();
  for (const TARGET& Target : aTarget) {
    if (Target.bArm != bArm || Target.ArchVersion != ArchVersion || Target.bMProfile != bMProfile) continue;
    auto pPeer = std::make_unique<CLLVMPeer>(Target.sTriple, Target.sFeatures);
    if (pPeer->IsThere()) return pPeer;
  }
  return nullptr;
}

#endif
