#include "core/vcore.h"

namespace VCore {

namespace {

constexpr U32 EXTERNAL_IRQ = 16;  // exception number of the first external interrupt
constexpr U32 LABEL_NUMBER_MASK = 0x3F;

constexpr const char* aName[] = {
    "Thread", "Reset", "NMI",    "HardFault",    "MemManage", "BusFault",   "UsageFault", "SecureFault", "",
    "",       "",      "SVCall", "DebugMonitor", "",          "PendSVCall", "SysTick",    "ExternalIRQ"};

}  // namespace

QString GetExceptionName(U32 Number) {
  return Number < std::size(aName) ? QString::fromLatin1(aName[Number]) : QString();
}

int GetExceptionLabel(const VCORE_REGS& Regs, QString& sText) {
  if (Regs.aStatus[VCORE_REG_PSR] != 0) return -1;
  const U32 Number = std::min(Regs.aValue[VCORE_REG_PSR] & LABEL_NUMBER_MASK, EXTERNAL_IRQ);
  sText = QLatin1Char('<') + GetExceptionName(Number) + QStringLiteral(" Exception>");
  return 0;
}

}  // namespace VCore
