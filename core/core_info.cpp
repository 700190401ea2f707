#include "core/core_info.h"

namespace {

constexpr U32 MAX_REG_SIZE = 8;  // bytes

struct CHECK {
  bool (*pfFails)(const VCORE_INFO& Info);
  const char* sText;
};

// In the order in which the fields are checked.
constexpr CHECK aCheck[] = {
    {[](const VCORE_INFO& I) { return I.MinInstLen == 0 || I.MinInstLen > I.MaxInstLen; },
     "invalid minimum instruction length."},
    {[](const VCORE_INFO& I) { return I.MaxInstLen == 0; }, "invalid maximum instruction length"},
    {[](const VCORE_INFO& I) { return I.MaxMnemonicLen == 0; }, "invalid maximum mnemonic length"},
    {[](const VCORE_INFO& I) { return I.InstAlign == 0; }, "invalid instruction alignment"},
    {[](const VCORE_INFO& I) { return I.NumRegs == 0; }, "invalid register count"},
    {[](const VCORE_INFO& I) { return I.RegSize == 0; }, "invalid register size"},
    {[](const VCORE_INFO& I) { return I.RegSize > MAX_REG_SIZE; },
     "Warning: register sizes > 64 bit are not yet supported"},
    {[](const VCORE_INFO& I) { return I.SPSize > MAX_REG_SIZE; },
     "Error: SP register is larger than 64 bit. This is not supported. Check core plugin compatibility."},
    {[](const VCORE_INFO& I) { return I.PCSize > MAX_REG_SIZE; },
     "Warning: PC register is larger than 64 bit. This is not yet supported"},
    {[](const VCORE_INFO& I) { return I.SPReg >= I.NumRegs; }, "invalid SP register index"},
    {[](const VCORE_INFO& I) { return I.PCReg >= I.NumRegs; }, "invalid PC register index"},
    {[](const VCORE_INFO& I) { return I.LRReg >= I.NumRegs; }, "invalid LR register index"},
    {[](const VCORE_INFO& I) { return I.CFAReg >= I.NumRegs; }, "invalid CFA register index"},
    {[](const VCORE_INFO& I) { return I.RAReg >= I.NumRegs; }, "invalid RA register index"},
    {[](const VCORE_INFO& I) { return I.MaxUnwindReg >= I.NumRegs; }, "invalid maximum unwindable register index"},
};

}  // namespace

const char* FirstInvalidField(const VCORE_INFO& Info) {
  for (const CHECK& Check : aCheck) {
    if (Check.pfFails(Info)) return Check.sText;
  }
  return nullptr;
}
