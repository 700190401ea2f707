#include "core/decoder/names.h"

#include <iterator>

namespace {

constexpr std::string_view aReg[] = {"R0", "R1", "R2",  "R3",  "R4",  "R5", "R6", "R7",
                                     "R8", "R9", "R10", "R11", "R12", "SP", "LR", "PC"};
constexpr std::string_view aCond[] = {"EQ", "NE", "CS", "CC", "MI", "PL", "VS", "VC",
                                      "HI", "LS", "GE", "LT", "GT", "LE", "",   ""};
constexpr std::string_view aBarrier[] = {"0", "1", "OSHST", "OSH", "4",  "5",  "NSHST", "NSH",
                                         "8", "9", "ISHST", "ISH", "12", "13", "ST",    ""};
constexpr std::string_view aInterruptFlags[] = {"", "f", "i", "if", "a", "af", "ai", "aif"};
constexpr std::string_view aShift[] = {"LSL", "LSR", "ASR", "ROR"};

constexpr std::string_view aCPSR[] = {"CPSR",    "CPSR_c",   "CPSR_x",   "CPSR_xc",  "CPSR_s",  "CPSR_sc",
                                      "CPSR_sx", "CPSR_sxc", "CPSR_f",   "CPSR_fc",  "CPSR_fx", "CPSR_fxc",
                                      "CPSR_fs", "CPSR_fsc", "CPSR_fsx", "CPSR_fsxc"};
constexpr std::string_view aSPSR[] = {"SPSR",    "SPSR_c",   "SPSR_x",   "SPSR_xc",  "SPSR_s",  "SPSR_sc",
                                      "SPSR_sx", "SPSR_sxc", "SPSR_f",   "SPSR_fc",  "SPSR_fx", "SPSR_fxc",
                                      "SPSR_fs", "SPSR_fsc", "SPSR_fsx", "SPSR_fsxc"};

constexpr const char* aBanked[] = {"R8_usr", "R9_usr", "R10_usr", "R11_usr", "R12_usr", "SP_usr", "LR_usr",  nullptr,
                                   "R8_fiq", "R9_fiq", "R10_fiq", "R11_fiq", "R12_fiq", "SP_fiq", "LR_fiq",  nullptr,
                                   "LR_irq", "SP_irq", "LR_svc",  "SP_svc",  "LR_abt",  "SP_abt", "LR_und",  "SP_und",
                                   nullptr,  nullptr,  nullptr,   nullptr,   "LR_mon",  "SP_mon", "ELR_hyp", "SP_hyp"};
constexpr const char* aBankedSPSR[32] = {nullptr,    nullptr,    nullptr,    nullptr, nullptr,    nullptr, nullptr,
                                         nullptr,    nullptr,    nullptr,    nullptr, nullptr,    nullptr, nullptr,
                                         "SPSR_fiq", nullptr,    "SPSR_irq", nullptr, "SPSR_svc", nullptr, "SPSR_abt",
                                         nullptr,    "SPSR_und", nullptr,    nullptr, nullptr,    nullptr, nullptr,
                                         "SPSR_mon", nullptr,    "SPSR_hyp", nullptr};
static_assert(std::size(aBanked) == 32);

constexpr const char* aFloatSystem[16] = {nullptr, "FPSCR", "FPSCR_nzcvqc", nullptr, nullptr, nullptr,
                                          nullptr, nullptr, nullptr,        nullptr, nullptr, nullptr,
                                          "VPR",   "P0",    "FPCXTNS",      "FPCXTS"};

struct SYS_REG {
  U32 SYSm;
  U32 MinArch;
  const char* sName;
};

constexpr SYS_REG aSysReg[] = {
    {0, 6, "APSR"},         {1, 6, "IAPSR"},        {2, 6, "EAPSR"},          {3, 6, "XPSR"},
    {5, 6, "IPSR"},         {6, 6, "EPSR"},         {7, 6, "IEPSR"},          {8, 6, "MSP"},
    {9, 6, "PSP"},          {10, 6, "MSPLIM"},      {11, 6, "PSPLIM"},        {16, 6, "PRIMASK"},
    {17, 6, "BASEPRI"},     {18, 6, "BASEPRI_MAX"}, {19, 6, "FAULTMASK"},     {20, 6, "CONTROL"},
    {136, 8, "MSP_NS"},     {137, 8, "PSP_NS"},     {138, 8, "MSPLIM_NS"},    {139, 8, "PSPLIM_NS"},
    {144, 8, "PRIMASK_NS"}, {145, 8, "BASEPRI_NS"}, {147, 8, "FAULTMASK_NS"}, {148, 8, "CONTROL_NS"},
    {152, 8, "SP_NS"},
};

}  // namespace

std::string_view RegName(U32 Reg) {
  return aReg[Reg & 15];
}
std::string_view CondName(U32 Cond) {
  return aCond[Cond & 15];
}
std::string_view BarrierName(U32 Option) {
  return aBarrier[Option & 15];
}
std::string_view InterruptFlagsName(U32 Flags) {
  return aInterruptFlags[Flags & 7];
}
std::string_view ShiftName(U32 Type) {
  return Type < std::size(aShift) ? aShift[Type] : "??";
}
std::string_view StatusRegName(bool bSaved, U32 FieldMask) {
  return (bSaved ? aSPSR : aCPSR)[FieldMask & 15];
}

const char* BankedRegName(bool bSaved, U32 Index) {
  return (bSaved ? aBankedSPSR : aBanked)[Index & 31];
}

const char* SysRegName(U32 SYSm, U32 ArchVersion) {
  for (const SYS_REG& Reg : aSysReg) {
    if (Reg.SYSm == SYSm) return ArchVersion >= Reg.MinArch ? Reg.sName : nullptr;
  }
  return nullptr;
}

const char* FloatSystemRegName(U32 Index) {
  return aFloatSystem[Index & 15];
}
