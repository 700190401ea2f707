// Breakpoints over a reload of the program, an edit of its sources, and from one session to the next.

#include <algorithm>

#include "base/stable_hash.h"
#include "device/breakpoints/breakpoint_manager.h"
#include "device/breakpoints/breakpoint_store.h"
#include "device/device.h"
#include "device/device_context.h"
#include "program/database/elfapi.h"
#include "program/database/file_table.h"
#include "shell/log/console_print.h"

namespace {

// The line in the program as it is now. A file that the program no longer has keeps a number that it hasn't, either.
CSrcLoc LocOf(const STORED_BREAKPOINT& Stored) {
  const U32 Id = ELFAPI_FileId(Stored.sPath);
  return {Id == INVALID_FILE_ID ? StableHash32(FilePathKey(Stored.sPath)) : Id, Stored.Line, 0};
}

// What could not be set is tried again.
void MakeWanted(QList<BP_SETTING>& Settings) {
  for (BP_SETTING& Setting : Settings) {
    if (Setting.State == BP_STATE_CLEARED) Setting.State = BP_STATE_ENABLED;
  }
}

}  // namespace

QList<STORED_BREAKPOINT> CBreakpointManager::Store() const {
  QList<STORED_BREAKPOINT> All;
  for (const SOURCE_BREAKPOINT& Source : m_Sources.All()) {
    STORED_BREAKPOINT Stored;
    Stored.sPath = Source.sPath;
    Stored.Line = Source.Loc.Line;
    Stored.sLineText = Source.sLineText;
    Stored.Settings = SettingsOf(Source);
    MakeWanted(Stored.Settings);
    const bool bAlike = std::all_of(Stored.Settings.cbegin(), Stored.Settings.cend(),
                                    [&](const BP_SETTING& One) { return One.IsSame(Stored.Settings.first()); });
    if (bAlike) Stored.Settings.resize(1);
    All << Stored;
  }
  for (const BP& Entry : AllEntries()) {
    if (Entry.State == BP_STATE_HIDDEN || IsDerived(Entry.Addr)) continue;
    STORED_BREAKPOINT Stored;
    Stored.Addr = Entry.Addr;
    Stored.Settings = {SettingAt(Entry.Addr)};
    MakeWanted(Stored.Settings);
    All << Stored;
  }
  return All;
}

void CBreakpointManager::RestoreOnSrc(const STORED_BREAKPOINT& Stored) {
  const CSrcLoc Wanted = LocOf(Stored);
  const CSrcLoc Loc = LineWithCode(Wanted);
  QAddrList Addrs = ELFAPI_GetAddrsOfLoc(Loc);
  const bool bTooMany = Addrs.size() > CBreakpointList::MAX_BREAKPOINTS;
  if (bTooMany) Addrs.clear();
  const QString sWanted = LineText(Stored.sPath, Wanted.Line);
  const QString sNow = LineText(Stored.sPath, Loc.Line);
  if (!(Loc == Wanted)) PrintConsole(MovedBreakpointText(sWanted, sNow));
  if (m_Sources.Find(Loc) && !(Loc == Wanted)) return;
  SOURCE_BREAKPOINT& Source = m_Sources.Add(Loc, Stored.sPath);
  Source.Addrs = Addrs;
  Source.sLineText = Stored.sLineText;
  QList<BP_SETTING> Settings = Stored.Settings;
  if (Addrs.isEmpty()) {
    if (bTooMany) {
      PrintConsoleError(QStringLiteral("Breakpoint %1 could not be set: %2").arg(sNow, QLatin1String(LIST_FULL_TEXT)));
    } else if (ELFAPI_IsLoaded()) {
      PrintConsole(QStringLiteral("Breakpoint %1: there is no code at this line any more.").arg(sWanted));
    }
  } else if (const QString sText = SourceLineText(Source.sPath, Loc.Line); !sText.isEmpty()) {
    if (!Stored.sLineText.isEmpty() && sText != Stored.sLineText) {
      for (BP_SETTING& Setting : Settings) Setting.State = BP_STATE_DISABLED;
      PrintConsole(QStringLiteral("Breakpoint %1 is disabled: the line has changed.").arg(sNow));
    }
    Source.sLineText = sText;
  }
  Apply(Source, Settings);
}

void CBreakpointManager::Restore(const QList<STORED_BREAKPOINT>& Stored) {
  for (const STORED_BREAKPOINT& One : Stored) {
    if (!One.sPath.isEmpty()) {
      RestoreOnSrc(One);
      continue;
    }
    SetProps(One.Addr, One.Settings.first().Props);
    m_Entries.Set({One.Addr}, static_cast<BP_STATES>(One.Settings.first().State),
                  static_cast<BP_TYPES>(One.Settings.first().Type));
  }
  NoteEmpty();
}

void CBreakpointManager::BackupState() {
  // Between two programs there is nothing that could take the place of what was put aside.
  if (IsEmpty() && !ELFAPI_IsLoaded()) return;
  m_Backup = Store();
}

void CBreakpointManager::RestoreState() {
  if (!IsEmpty()) ClearAll();
  Restore(std::exchange(m_Backup, {}));
}

void CBreakpointManager::ForgetState(bool bUnloaded) {
  m_Sources.Clear();
  DropProps(m_Props.keys());
  m_Problems.clear();
  m_Entries.NoteCleared();
  if (!bUnloaded) m_Backup.clear();
  NoteEmpty();
  Q_EMIT Changed();
}

QString CBreakpointManager::GetUserConfigStr() const {
  return MakeBreakpointText(IsEmpty() ? m_Backup : Store());
}

void CBreakpointManager::SetUserConfigStr(const QString& sConfig) {
  Restore(ParseBreakpointText(sConfig));
}

void CBreakpointManager::ShiftLines(U32 FileId, U32 FirstLine, int NumLines) {
  const I64 FirstGone = NumLines < 0 ? I64{FirstLine} + NumLines : I64{FirstLine};
  QList<STORED_BREAKPOINT> Moved;
  const QList<SOURCE_BREAKPOINT> Before = m_Sources.All();
  for (const SOURCE_BREAKPOINT& Source : Before) {
    if (Source.Loc.File != FileId || Source.Loc.Line < FirstGone) continue;
    if (Source.Loc.Line >= FirstLine) {
      Moved << STORED_BREAKPOINT{Source.sPath, static_cast<U32>(Source.Loc.Line + NumLines), Source.sLineText, 0,
                                 SettingsOf(Source)};
    }
    ClearOnSrc(Source.Loc);
  }
  for (const STORED_BREAKPOINT& Stored : Moved) {
    SOURCE_BREAKPOINT& Source = m_Sources.Add(LocOf(Stored), Stored.sPath);
    Source.Addrs = ELFAPI_GetAddrsOfLoc(Source.Loc);
    Source.sLineText = Stored.sLineText;
    Apply(Source, Stored.Settings);
  }
}
