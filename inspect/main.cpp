// vexor-inspect: a program file as text, for scripts.

#include <cstdio>

#include "inspect/inspect.h"

namespace {

constexpr INSPECT_COMMAND aCommands[] = {
    {"disasm", "address, code in hexadecimal digits, instruction or data directive", InspectDisasm},
    {"frames", "start, end, canonical frame address, where the caller's registers are", InspectFrames},
    {"functions", "start, end, name, declaration file, line", InspectFunctions},
    {"inlines", "start, end, name, file and line of the call, function or instance around it", InspectInlines},
    {"lines", "address, file, line, column, flags (S statement, E end of a sequence, P end of a prologue)",
     InspectLines},
    {"segments", "load address, run-time address, bytes in the file, bytes in memory, flags", InspectSegments},
    {"stack",
     "address, own frame in bytes, deepest use, flags (R recursion, I indirect call, U unknown frame), name, "
     "calls of the deepest use",
     InspectStack},
    {"symbols", "value, size, type, binding, section, name", InspectSymbols},
    {"types", "kind, name, size, type, offset (value of an enumerator), first bit, bits", InspectTypes},
    {"variables",
     "address or place, size, type, name, file, line; with --from or --to those of functions: also function, "
     "start, end",
     InspectVariables},
};

int Usage(const QString& sProblem) {
  if (!sProblem.isEmpty()) std::fprintf(stderr, "vexor-inspect: %s\n", qPrintable(sProblem));
  std::fputs("usage: vexor-inspect WHAT FILE [--from ADDR] [--to ADDR] [--core NAME] [--base ADDR] [--arm]\n", stderr);
  std::fputs("WHAT is one of these, and prints rows of tab-separated text:\n", stderr);
  for (const INSPECT_COMMAND& Command : aCommands) std::fprintf(stderr, "  %-10s %s\n", Command.sName, Command.sRow);
  return 1;
}

// Takes the value of an option. False if it is missing or no address.
bool TakeAddress(QStringList& aArguments, U32& Addr) {
  if (aArguments.isEmpty()) return false;
  bool bOk = false;
  Addr = aArguments.takeFirst().toUInt(&bOk, 0);
  return bOk;
}

// The option's value; null for an option that is no address.
U32* AddressOption(const QString& sName, INSPECT_OPTIONS& Options) {
  if (sName == QLatin1String("--from")) return &Options.From;
  if (sName == QLatin1String("--to")) return &Options.To;
  return sName == QLatin1String("--base") ? &Options.Base : nullptr;
}

QString ParseOptions(QStringList aArguments, INSPECT_OPTIONS& Options) {
  while (!aArguments.isEmpty()) {
    const QString sArgument = aArguments.takeFirst();
    if (U32* pAddr = AddressOption(sArgument, Options)) {
      if (!TakeAddress(aArguments, *pAddr)) return sArgument + QStringLiteral(" wants an address");
      if (pAddr == &Options.Base) Options.bRaw = true;
    } else if (sArgument == QLatin1String("--arm")) {
      Options.bArm = true;
    } else if (sArgument == QLatin1String("--core")) {
      if (aArguments.isEmpty()) return QStringLiteral("--core wants a name");
      Options.sCore = aArguments.takeFirst();
    } else if (sArgument.startsWith(QLatin1String("--"))) {
      return QStringLiteral("unknown option ") + sArgument;
    } else if (Options.sFile.isEmpty()) {
      Options.sFile = sArgument;
    } else {
      return QStringLiteral("one file at a time");
    }
  }
  return Options.sFile.isEmpty() ? QStringLiteral("no file given") : QString();
}

}  // namespace

int main(int NumArguments, char** ppArguments) {
  QStringList aArguments;
  for (int i = 1; i < NumArguments; ++i) aArguments.append(QString::fromLocal8Bit(ppArguments[i]));
  if (aArguments.isEmpty()) return Usage(QString());
  const QString sWhat = aArguments.takeFirst();
  INSPECT_OPTIONS Options;
  const QString sProblem = ParseOptions(aArguments, Options);
  if (!sProblem.isEmpty()) return Usage(sProblem);
  if (Options.bRaw && sWhat != QLatin1String("disasm")) return Usage(QStringLiteral("--base is for disasm alone"));
  for (const INSPECT_COMMAND& Command : aCommands) {
    if (sWhat != QLatin1String(Command.sName)) continue;
    const char* sError = Command.pfRun(Options);
    if (!sError && std::fflush(stdout) != 0) sError = "could not write the rows";
    if (sError) std::fprintf(stderr, "vexor-inspect: %s: %s\n", qPrintable(Options.sFile), sError);
    return sError ? 1 : 0;
  }
  return Usage(QStringLiteral("unknown sub-command ") + sWhat);
}
