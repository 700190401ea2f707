#include "script/hook_table.h"

#include <QStringList>

namespace {

constexpr const char* EVENT_HANDLER = "Event handler routine. Optional.";

constexpr const char* RESET_NOTES =
    "This example demonstrates the usage when\n"
    "debugging a RAM program on a Cortex-M target device";

constexpr const char* INIT_NOTES =
    "This sample implementation demonstrates the application\n"
    "initialization on a Cortex-M target.\n"
    "If no initialization can be done, Target.Reset() may be called.";

constexpr const char* RESET_BODY =
    "  unsigned int SP;\n"
    "  unsigned int PC;\n"
    "  unsigned int VectorTableAddr;\n"
    "\n"
    "  Exec.Reset();\n"
    "  VectorTableAddr = Elf.GetBaseAddr();\n"
    "\n"
    "  if (VectorTableAddr != 0xFFFFFFFF) {\n"
    "    Util.Log(\"Resetting Program.\");\n"
    "    SP = Target.ReadU32(VectorTableAddr);\n"
    "    Target.SetReg(\"SP\", SP);\n"
    "    PC = Target.ReadU32(VectorTableAddr + 4);\n"
    "    Target.SetReg(\"PC\", PC);\n"
    "  }\n";

constexpr const char* INIT_BODY =
    "  unsigned int SP;\n"
    "  unsigned int PC;\n"
    "  unsigned int VectorTableAddr;\n"
    "\n"
    "  VectorTableAddr = Elf.GetBaseAddr();\n"
    "\n"
    "  if (VectorTableAddr != 0xFFFFFFFF) {\n"
    "    Util.Log(\"Initializing PC and SP.\");\n"
    "    SP = Target.ReadU32(VectorTableAddr);\n"
    "    Target.SetReg(\"SP\", SP);\n"
    "    PC = Target.ReadU32(VectorTableAddr + 4);\n"
    "    Target.SetReg(\"PC\", PC);\n"
    "  }\n";

constexpr HOOK_INFO HOOKS[NUM_HOOKS] = {
    {HOOK_ON_PROJECT_LOAD, "void OnProjectLoad (void);", "Project load routine. Required.", nullptr, nullptr},
    {HOOK_TARGET_RESET, "void TargetReset (void);", "Replaces the default target device reset routine. Optional.",
     RESET_NOTES, RESET_BODY},
    {HOOK_BEFORE_TARGET_RESET, "void BeforeTargetReset (void);", EVENT_HANDLER, nullptr, nullptr},
    {HOOK_AFTER_TARGET_RESET, "void AfterTargetReset (void);", EVENT_HANDLER, nullptr, nullptr},
    {HOOK_DEBUG_START, "void DebugStart (void);", "Replaces the default debug session startup routine. Optional.",
     nullptr, nullptr},
    {HOOK_TARGET_CONNECT, "void TargetConnect (void);", "Replaces the default target IF connection routine. Optional.",
     nullptr, nullptr},
    {HOOK_BEFORE_TARGET_CONNECT, "void BeforeTargetConnect (void);", EVENT_HANDLER, nullptr, nullptr},
    {HOOK_AFTER_TARGET_CONNECT, "void AfterTargetConnect (void);", EVENT_HANDLER, nullptr, nullptr},
    {HOOK_TARGET_DOWNLOAD, "void TargetDownload (void);", "Replaces the default program download routine. Optional.",
     nullptr, nullptr},
    {HOOK_BEFORE_TARGET_DOWNLOAD, "void BeforeTargetDownload (void);", EVENT_HANDLER, nullptr, nullptr},
    {HOOK_AFTER_TARGET_DOWNLOAD, "void AfterTargetDownload (void);", "Event handler routine.", INIT_NOTES, INIT_BODY},
    {HOOK_BEFORE_TARGET_DISCONNECT, "void BeforeTargetDisconnect (void);", EVENT_HANDLER, nullptr, nullptr},
    {HOOK_AFTER_TARGET_DISCONNECT, "void AfterTargetDisconnect (void);", EVENT_HANDLER, nullptr, nullptr},
    {HOOK_AFTER_TARGET_HALT, "void AfterTargetHalt (void);", EVENT_HANDLER, nullptr, nullptr},
    {HOOK_BEFORE_TARGET_RESUME, "void BeforeTargetResume (void);", EVENT_HANDLER, nullptr, nullptr},
};

constexpr int COMMENT_WIDTH = 70;  // characters

QString CommentLine(const QString& sText) {
  return sText.leftJustified(COMMENT_WIDTH) + QLatin1Char('\n');
}

QString CommentBlock(const HOOK_INFO& Hook) {
  const QString sStars(COMMENT_WIDTH - 1, QLatin1Char('*'));
  QString sText = QLatin1Char('/') + sStars + QLatin1Char('\n');
  sText += CommentLine(QStringLiteral("*"));
  sText += CommentLine(QStringLiteral("*      ") + GetHookName(Hook.FuncID));
  sText += CommentLine(QStringLiteral("*"));
  sText += CommentLine(QStringLiteral("* Function description"));
  sText += CommentLine(QStringLiteral("*   ") + QLatin1String(Hook.sComment));
  if (Hook.sNotes) {
    sText += CommentLine(QStringLiteral("*")) + CommentLine(QStringLiteral("* Notes"));
    for (const QString& sNote : QString::fromLatin1(Hook.sNotes).split(QLatin1Char('\n'))) {
      sText += CommentLine(QStringLiteral("*   ") + sNote);
    }
  }
  sText += CommentLine(QStringLiteral("*"));
  return sText + QLatin1Char('*') + sStars + QStringLiteral("\n*/\n");
}

QString LoadRoutine(const QStringList& Commands) {
  QString sSettings, sUser;
  for (const QString& sCommand : Commands) {
    const bool bOpens = sCommand.contains(QLatin1String("File.Open"));
    (bOpens ? sUser : sSettings) += QStringLiteral("  ") + StatementText(sCommand) + QLatin1Char('\n');
  }
  return QStringLiteral("void OnProjectLoad (void) {\n  //\n  // Dialog-generated settings\n  //\n") + sSettings +
         QStringLiteral("  //\n  // User settings\n  //\n") + sUser + QStringLiteral("}\n");
}

QString CommentedOut(const HOOK_INFO& Hook) {
  QString sPrototype = QString::fromLatin1(Hook.sPrototype);
  sPrototype.chop(1);
  const QString sText =
      sPrototype + QStringLiteral(" {\n") + QLatin1String(Hook.sBody ? Hook.sBody : "") + QLatin1Char('}');
  QString sResult;
  for (const QString& sLine : sText.split(QLatin1Char('\n')))
    sResult += QStringLiteral("//") + sLine + QLatin1Char('\n');
  return sResult;
}

}  // namespace

const HOOK_INFO* GetHookInfo(int FuncID) {
  return FuncID >= 1 && FuncID <= NUM_HOOKS ? &HOOKS[FuncID - 1] : nullptr;
}

QString GetHookName(int FuncID) {
  const HOOK_INFO* const pHook = GetHookInfo(FuncID);
  return pHook ? QString::fromLatin1(pHook->sPrototype).section(QLatin1Char(' '), 1, 1) : QString();
}

QString StatementText(const QString& sCommand) {
  return QString(sCommand).replace(QLatin1Char('\\'), QLatin1String("\\\\"));
}

QString MakeProjectText(const QStringList& Commands) {
  QStringList Parts;
  for (const HOOK_INFO& Hook : HOOKS) {
    Parts << CommentBlock(Hook) + (Hook.FuncID == HOOK_ON_PROJECT_LOAD ? LoadRoutine(Commands) : CommentedOut(Hook));
  }
  return Parts.join(QLatin1Char('\n'));
}
