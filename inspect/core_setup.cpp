#include "inspect/core_setup.h"

#include "core/core_table.h"
#include "core/vcore.h"
#include "program/elf/elf.h"

namespace {

constexpr U32 CPSR_T = 1u << 5;
// The core for a file that names none. Its instructions include those of all others on the M profile.
constexpr U32 CORE_ID_CORTEX_M33 = 0x0E0200FF;
// The same for ARM code.
constexpr U32 CORE_ID_CORTEX_A8 = 0x080000FF;

// 0 for a name that is no core's.
U32 CoreIdOf(const INSPECT_OPTIONS& Options) {
  if (Options.sCore.isEmpty()) return Options.bArm ? CORE_ID_CORTEX_A8 : CORE_ID_CORTEX_M33;
  for (const U32 CoreId : VCore::GetKnownCores()) {
    QString sName;
    VCore::GetCoreName(VCore::GetFamily(CoreId), VCore::GetSubFamily(CoreId), sName);
    if (sName.compare(Options.sCore, Qt::CaseInsensitive) == 0) return CoreId;
  }
  return 0;
}

}  // namespace

bool InitCore(const INSPECT_OPTIONS& Options, U32 DataEncoding, U32 CodeEncoding) {
  VCORE_API API;
  API.pfReadProbeRegs = [bArm = Options.bArm](const U32*, U32* paValue, U8* paStatus, U32) {
    paValue[0] = bArm ? 0 : CPSR_T;
    paStatus[0] = 0;
    return 0;
  };
  const auto Endianness = [](U32 Encoding) { return Encoding == ELF_ENCODING_BIG ? 1u : 0u; };
  return VCore::Init({CoreIdOf(Options), Endianness(DataEncoding), Endianness(CodeEncoding)}, API) == 0;
}

const char* AttachCore(const INSPECT_OPTIONS& Options, const ELF_FILE* pConstFile) {
  ELF_FILE* pFile = const_cast<ELF_FILE*>(pConstFile);
  if (!InitCore(Options, ELF_GetEncoding(pFile), ELF_GetCodeEncoding(pFile))) return NO_SUCH_CORE;
  VCore::AttachElf(pFile);
  VCore::BuildMappingSymbols();
  return nullptr;
}
