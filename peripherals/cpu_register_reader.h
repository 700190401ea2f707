#pragma once

#include <QByteArray>
#include <QList>
#include <QString>

#include "peripherals/cpu_register_file.h"

// Reads the registers of a processor register file: an XML text whose root is "cpu" (in any case), with
// groups/group/registers/register. Values that a register does not state come from its group. Empty, or the reason why
// the text was refused.
QString ReadCpuRegisters(const QByteArray& Text, QList<CPU_REGISTER>& aRegister);
// A number as these files write it: decimal, 0x, octal, "#" binary, a final k, m, g or t as a decimal factor; 0 and
// false for anything else.
U64 ParseSvdNumber(QString sText, bool* pOk = nullptr);
