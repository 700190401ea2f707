#include <capstone/capstone.h>

#include "bench/long/decoder_compare/peer.h"

namespace {

class CCapstonePeer : public CPeer {
public:
  explicit CCapstonePeer(int Mode) : bOpen(cs_open(CS_ARCH_ARM, static_cast<cs_mode>(Mode), &Handle) == CS_ERR_OK) {}
  ~CCapstonePeer() override {
    if (bOpen) cs_close(&Handle);
  }
  bool IsThere() const { return bOpen; }

  std::vector<READING> Read(const std::vector<ENCODING>& aEncoding) override {
    std::vector<READING> aReading(aEncoding.size());
    for (size_t i = 0; i < aEncoding.size(); ++i) {
      const std::vector<U8> aByte = BytesOf(aEncoding[i]);
      cs_insn* pInst = nullptr;
      const size_t Count = cs_disasm(Handle, aByte.data(), aByte.size(), COMPARE_ADDR, 1, &pInst);
      if (Count == 0) continue;
      aReading[i] = {pInst->size, std::string(pInst->mnemonic) + "\t" + pInst->op_str};
      cs_free(pInst, Count);
    }
    return aReading;
  }

private:
  csh Handle = 0;
  bool bOpen;
};

}  // namespace

std::unique_ptr<CPeer> MakeCapstonePeer(bool bArm, U32 ArchVersion, bool bMProfile) {
  int Mode = bArm ? CS_MODE_ARM : CS_MODE_THUMB;
  if (bMProfile) Mode |= CS_MODE_MCLASS;
  if (ArchVersion >= 8) Mode |= CS_MODE_V8;
  auto pPeer = std::make_unique<CCapstonePeer>(Mode);
  return pPeer->IsThere() ? std::move(pPeer) : nullptr;
}
