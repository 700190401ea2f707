#include "bench/long/decoder_compare/reasons.h"

namespace {

enum SET : U8 {
  ARM = 1,
  THUMB = 2,
  BOTH = 3,
  LIGHT = 4,
  LIGHT_ARM = 5,
  LIGHT_THUMB = 6,
  LIGHT_BOTH = 7,
  M = 8,
  M_THUMB = 10
};

struct REASON {
  SET Set;
  const char* sClass;  // beginning of the class
  U32 Mask;            // of an ARM word without its condition, unless that is 15
  U32 Value;
  U32 MaxArch;  // last architecture version for which it holds
  U32 MinArch;
  const char* sReason;
};

constexpr REASON aReason[] = {
    {BOTH, "only there", 0xFE000E00, 0xFC000A00, 8, 4,
     "coprocessors 10 and 11 are floating point, which has no such unconditional form; LLVM takes it for any "
     "coprocessor's"},
    {ARM, "only there: v", 0xFF100000, 0xF4000000, 8, 7, "a list that runs past the last register"},
    {ARM, "only there: v", 0xFFB00C00, 0xF3B00800, 8, 7, "a list that runs past the last register"},
    {THUMB, "only there: v", 0xFF100000, 0xF9000000, 8, 7, "a list that runs past the last register"},
    {THUMB, "only there: v", 0xFFB00C00, 0xFFB00800, 8, 7, "a list that runs past the last register"},
    {ARM, "only there: v", 0xFE000000, 0xF2000000, 6, 4, "Advanced SIMD came with version 7; objdump does not gate it"},
    {ARM, "only there: v", 0xFF100000, 0xF4000000, 6, 4, "Advanced SIMD came with version 7; objdump does not gate it"},
    {ARM, "only there", 0x0FF000F0, 0x01200020, 4, 4, "BXJ came with version 5; objdump reads another instruction"},
    {ARM, "only there", 0x0E000000, 0x02000000, 8, 8, "half precision and other extensions after version 8.0"},
    {BOTH, "only there", 0x0FBA0ED0, 0x0EBA0A40, 8, 4, "fixed point number of 16 bits with a fraction of more"},
    {BOTH, "only there", 0x0FBA0E50, 0x0EBA0A40, 6, 4,
     "fixed point conversion came with version 7; objdump does not gate"},
    {BOTH, "only there", 0x0F000E00, 0x0E000A00, 6, 4, "floating point of version 7; objdump does not gate it"},
    {BOTH, "only there", 0x0C000E00, 0x0C000A00, 4, 4, "floating point came with version 5; objdump does not gate it"},
    {ARM, "only there", 0x0F200090, 0x00200090, 6, 4,
     "halfword loads with user rights came with version 7; LLVM does not gate them"},
    {ARM, "mnemonic: t", 0x0D90F000, 0x0110F000, 5, 4, "an old form of the comparison: the flags come from the result"},
    {ARM, "mnemonic: c", 0x0D90F000, 0x0110F000, 5, 4, "an old form of the comparison: the flags come from the result"},
    {ARM, "operands", 0x0E2F0090, 0x002F0090, 8, 4, "write-back to the PC is unpredictable; objdump drops its mark"},
    {ARM, "mnemonic: mcrr", 0x0FF00000, 0x0C400000, 8, 4,
     "objdump reads instructions of coprocessors that no longer exist"},
    {ARM, "mnemonic: mrrc", 0x0FF00000, 0x0C500000, 8, 4,
     "objdump reads instructions of coprocessors that no longer exist"},
    {BOTH, "mnemonic: ", 0x0E000000, 0x0C000000, 8, 4,
     "objdump reads instructions of coprocessors that no longer exist"},
    {BOTH, "mnemonic: ", 0x0F000000, 0x0E000000, 8, 4,
     "objdump reads instructions of coprocessors that no longer exist"},
    {BOTH, "only here", 0x0E000000, 0x0C000000, 8, 8,
     "LLVM's version 8 keeps coprocessors 8, 9, 14 and 15 for later extensions"},
    {BOTH, "only here", 0x0F000000, 0x0E000000, 8, 8,
     "LLVM's version 8 keeps coprocessors 8, 9, 14 and 15 for later extensions"},
    {BOTH, "operands", 0x0E000000, 0x0C000000, 8, 8,
     "objdump takes coprocessor 9 for half precision and halves the offset"},
    {BOTH, "operands", 0x0F000000, 0x0E000000, 8, 8, "objdump takes coprocessor 9 for half precision"},
    {ARM, "operands", 0x0FE00FF0, 0x01A00F90, 8, 6, "an odd first register is unpredictable; objdump names it alone"},
    {ARM, "operands", 0x0FE00EF0, 0x01A00E90, 8, 8, "an odd first register is unpredictable; objdump names it alone"},
    {ARM, "operands", 0x0FA00FF0, 0x06A00050, 8, 6, "objdump prints a shift by 32 as one by 0"},
    {ARM, "operands", 0x0E4F0FFF, 0x044F0000, 8, 4, "objdump and LLVM print an offset of minus 0 from the PC"},
    {ARM, "operands", 0x0F5F0FFF, 0x051F0000, 8, 4, "the offset from the PC is 0, which LLVM prints as minus 0"},
    {ARM, "operands", 0x0F6F0F0F, 0x014F0000, 8, 4, "the offset from the PC is 0, which LLVM prints as minus 0"},
    {BOTH, "operands", 0x0F1F0EFF, 0x0D1F0A00, 8, 4,
     "the offset from the PC is 0, which LLVM leaves out or prints as minus 0"},
    {BOTH, "operands", 0x0F3F0E00, 0x0D1F0A00, 8, 4,
     "distance from the PC of a double word at the edge of the address space"},
    {ARM, "only here", 0x0FF000F0, 0x01600060, 8, 7,
     "return from an exception, which objdump has for version 7 with virtualization alone"},
    {ARM, "only here: m", 0xFFE00000, 0xFC400000, 8, 6,
     "unpredictable registers, which LLVM refuses; objdump reads an extension of version 8.2"},
    {ARM, "only there", 0x0FA00000, 0x0C000000, 4, 4,
     "MCRR and MRRC came with version 5; the peers read a load or store"},
    {ARM, "only there", 0xFC000000, 0xFC000000, 4, 4, "coprocessor instructions without condition came with version 5"},
    {ARM, "only there", 0x0F900010, 0x01000010, 4, 4, "came with version 5; objdump reads a comparison without flags"},
    {ARM, "only there", 0xFFE00000, 0xFC400000, 5, 4,
     "MCRR2 and MRRC2 came with version 6; objdump reads a load or store"},
    {ARM, "", 0x0F900DF0, 0x01000040, 8, 8, "a checksum under a condition is unpredictable"},
    {THUMB, "operands", 0xFF6000FF, 0xE9600000, 8, 7, "objdump drops the mark of a write-back by 0"},
    {THUMB, "operands", 0xFE1F0FFF, 0xF81F0000, 8, 7,
     "the offset from the PC is 0, which the peers leave out or print as minus 0"},
    {THUMB, "mnemonic: nop", 0xFF30F000, 0xF930F000, 8, 7, "a reserved hint, which runs as NOP"},
    {THUMB, "mnemonic: bx", 0xFFFFFF07, 0x00004704, 7, 4, "BXNS came with version 8; before, the bit should be zero"},
    {THUMB, "mnemonic: strex", 0xFFF0F03F, 0xE840F000, 7, 7, "TT came with version 8; before, a store from the PC"},
    {THUMB, "operands: msr", 0xFFE0D000, 0xF3808000, 8, 6, "a register number without a name is shown as a number"},
    {THUMB, "operands: mrs", 0xFFE0D000, 0xF3E08000, 8, 6, "a register number without a name is shown as a number"},
    {THUMB, "operands: ldrd", 0xFE5F0000, 0xE85F0000, 8, 7,
     "write-back to the PC is unpredictable; objdump drops its mark"},
    {THUMB, "operands", 0xFFF0F0F0, 0xFA90F080, 8, 7,
     "the register stands in the word twice and differs, which is unpredictable"},
    {THUMB, "operands", 0xFFF0F0C0, 0xFA90F080, 8, 7,
     "the register stands in the word twice and differs, which is unpredictable"},
    {THUMB, "operands", 0xFFF0F0F0, 0xFAB0F080, 8, 7,
     "the register stands in the word twice and differs, which is unpredictable"},
    {THUMB, "mnemonic: smm", 0xFFC0F000, 0xFB40F000, 8, 7, "pointer authentication, an extension of version 8.1"},
    {THUMB, "mnemonic: smm", 0xFF8000E0, 0xFB000000, 8, 7, "pointer authentication, an extension of version 8.1"},
    {THUMB, "mnemonic: ldr", 0xFE10F000, 0xF810F000, 8, 7, "a load to the PC in the place of a hint is unpredictable"},
    {ARM, "operands: msr", 0x0FBFF000, 0x0120F000, 8, 4,
     "a write to no byte of the register; LLVM prints an empty suffix"},
    {THUMB, "operands: crc32", 0xFFE0F0C0, 0xFAC0F080, 8, 8, "a register that may not be PC is; LLVM reads another"},
    {M_THUMB, "only there: vm", 0xFFE00FFF, 0xEEE00A10, 8, 7,
     "a register of the A profile's floating point; objdump does not gate it"},
    {THUMB, "mnemonic: nop", 0xFFFFFFCF, 0xF3AF800D, 7, 7, "pointer authentication came with version 8, a NOP before"},
    {THUMB, "mnemonic: nop", 0xFFFFFFFF, 0xF3AF800F, 7, 7, "pointer authentication came with version 8, a NOP before"},
    {THUMB, "operands", 0xFE000FFF, 0xF8000C00, 8, 7,
     "objdump leaves out an offset of minus 0; LLVM refuses the register"},
    {M_THUMB, "operands: vmov", 0xFFF00FF0, 0xEEF00B00, 8, 7,
     "registers above D15, which LLVM refuses; objdump prints a number's encoding"},
    {M_THUMB, "only there: bf", 0xF800D001, 0xF000C001, 8, 8, "branches of the future, which no compiler makes"},
    {THUMB, "mnemonic: c", 0xFFF08000, 0xEA508000, 8, 8, "selecting SP is unpredictable; objdump reads a long shift"},
    {THUMB, "only here: cs", 0xFFF08000, 0xEA508000, 8, 8, "selecting SP is unpredictable"},
    {THUMB, "operands: c", 0xFFF08000, 0xEA508000, 8, 8,
     "SP and PC in a selection are unpredictable; LLVM prints nothing"},
    {THUMB, "mnemonic: ", 0xFFF08000, 0xEA500000, 8, 8,
     "objdump reads a long shift of the vector extension, where SP and PC are unpredictable"},
    {LIGHT_THUMB, "only there: it", 0xFFF0, 0xBFF0, 8, 7, "there is no condition 15 for a block"},
    {LIGHT_THUMB, "only there: bf", 0xFBF08000, 0xF3600000, 8, 7, "a bit field that ends below its start"},
    {LIGHT_ARM, "only there: bf", 0x0FE00070, 0x07C00010, 8, 7, "a bit field that ends below its start"},
    {LIGHT_BOTH, "only there", 0x0E000E00, 0x0C000A00, 8, 4, "a list that runs past the last register"},
    {LIGHT_ARM, "only there", 0x0FE000F0, 0x00000090, 8, 4, "bits are set that should be zero; Capstone does not mind"},
    {LIGHT_ARM, "only there", 0x0E400090, 0x00000090, 8, 4, "bits are set that should be zero; Capstone does not mind"},
    {LIGHT_ARM, "only there", 0x0F900000, 0x01000000, 8, 4,
     "bits are set that should be zero; objdump reads a comparison"},
    {LIGHT_ARM, "only there: cps", 0xFFF00020, 0xF1000000, 8, 6,
     "bits are set that should be zero; objdump does not mind"},
    {LIGHT_ARM, "only there", 0x0FB00000, 0x03200000, 8, 4, "bits are set that should be zero"},
    {LIGHT_THUMB, "only there: msr", 0xFFE0D000, 0xF3808000, 8, 6, "bits are set that should be zero"},
};

}  // namespace

const char* ReasonFor(const ENCODING& Encoding, const COMPARED_AS& As, const std::string& sClass) {
  const U32 Word = Encoding.Word;
  for (const REASON& Reason : aReason) {
    if (((Reason.Set & LIGHT) != 0 && !As.bLight) || ((Reason.Set & M) != 0 && !As.bMProfile)) continue;
    if ((Reason.Set & (Encoding.bArm ? ARM : THUMB)) == 0 || !sClass.starts_with(Reason.sClass)) continue;
    if (As.ArchVersion < Reason.MinArch || As.ArchVersion > Reason.MaxArch) continue;
    if ((Word & Reason.Mask) == Reason.Value) return Reason.sReason;
  }
  return nullptr;
}
