#include "device/breakpoints/breakpoint_manager.h"

#include <algorithm>

#include "base/text.h"
#include "device/breakpoint_ops.h"
#include "device/device.h"
#include "device/device_context.h"
#include "device/device_ops.h"
#include "program/database/elfapi.h"

namespace {

const QString NO_CODE = QStringLiteral("No code at this line");
const QString NOT_SET = QStringLiteral("Not set: %1");

CDevice& Device() {
  return CDevice::Get();
}

QString FuncText(U32 Addr) {
  const ELF_SYM_HANDLE Outer = ELFAPI_GetFuncAt(Addr, true);
  if (Outer == 0) return {};
  const ELF_SYM_HANDLE Inner = ELFAPI_GetFuncAt(Addr);
  const QString sOuter = ELFAPI_GetQualifiedName(Outer);
  return Inner == Outer ? sOuter : QStringLiteral("%1 in %2").arg(ELFAPI_GetQualifiedName(Inner), sOuter);
}

// What the probe library made of a breakpoint; empty while it has none of it.
QString ActualImpAt(U32 Addr) {
  U32 ImpFlags = 0;
  if (!Device().Ops().Breakpoints.GetImplementation(Addr, ImpFlags)) return {};
  const QString sText = QLatin1String(BreakpointImpText(ImpFlags));
  return sText == QLatin1String("Pending") ? QString() : sText;
}

}  // namespace

CBreakpointManager& CBreakpointManager::Get() {
  static CBreakpointManager* const pManager = new CBreakpointManager;
  return *pManager;
}

CBreakpointManager::CBreakpointManager() : m_Entries(CDevice::Get()) {}

// ---- What there is

bool CBreakpointManager::GetAt(U32 Addr, BP& Entry) const {
  if (m_Entries.Get(Addr, Entry)) return true;
  const auto Problem = m_Problems.constFind(Addr);
  if (Problem == m_Problems.cend() || Problem->bListed) return false;
  Entry = BP();
  Entry.Addr = Addr;
  Entry.Type = Problem->Type;
  return true;
}

// In the order of addresses as far as they could not be set.
QList<BP> CBreakpointManager::AllEntries() const {
  QList<BP> Entries = m_Entries.All();
  QAddrList Failed = m_Problems.keys();
  std::sort(Failed.begin(), Failed.end());
  for (const U32 Addr : Failed) {
    BP Entry;
    if (!m_Entries.Get(Addr, Entry) && GetAt(Addr, Entry)) Entries << Entry;
  }
  return Entries;
}

BP_SETTING CBreakpointManager::SettingAt(U32 Addr) const {
  BP_SETTING Setting;
  BP Entry;
  Setting.State = BP_STATE_CLEARED;
  if (GetAt(Addr, Entry)) {
    Setting.State = Entry.State;
    Setting.Type = Entry.Type;
  }
  Setting.Props = m_Props.value(Addr);
  return Setting;
}

QList<BP_SETTING> CBreakpointManager::SettingsOf(const SOURCE_BREAKPOINT& Source) const {
  if (Source.Addrs.isEmpty()) return {Source.Pending};
  QList<BP_SETTING> Settings;
  for (const U32 Addr : Source.Addrs) Settings << SettingAt(Addr);
  return Settings;
}

bool CBreakpointManager::GetOnSrc(const CSrcLoc& Loc, BP_SETTING& Setting) const {
  const SOURCE_BREAKPOINT* const pSource = m_Sources.Find(Loc);
  if (pSource == nullptr) return false;
  const QList<BP_SETTING> Settings = SettingsOf(*pSource);
  Setting = Settings.first();
  for (const BP_SETTING& Other : Settings) {
    if (Other.State != Settings.first().State) Setting.State = BP_STATE_MIXED;
    if (Other.Type != Settings.first().Type) Setting.Type = BP_TYPE_MIXED;
  }
  return true;
}

bool CBreakpointManager::FindOnSrc(CSrcLoc* pLoc, BP_SETTING& Setting) const {
  if (GetOnSrc(*pLoc, Setting)) return true;
  const CSrcLoc Instead = LineWithCode(*pLoc);
  if (!GetOnSrc(Instead, Setting)) return false;
  *pLoc = Instead;
  return true;
}

bool CBreakpointManager::DoPropsDiffer(const CSrcLoc& Loc) const {
  const QAddrList Addrs = AddrsOf({Loc, INVALID_ADDR});
  return std::any_of(Addrs.cbegin(), Addrs.cend(),
                     [&](U32 Addr) { return !m_Props.value(Addr).IsSame(m_Props.value(Addrs.first())); });
}

CSrcLoc CBreakpointManager::FindByText(const QString& sText) const {
  for (const SOURCE_BREAKPOINT& Source : m_Sources.All()) {
    if (sText == QStringLiteral("%1:%2").arg(Source.sPath).arg(Source.Loc.Line)) return Source.Loc;
  }
  if (!IsLineText(sText)) return {};
  const CSrcLoc Loc = ELFAPI_ParseSrcLoc(sText);
  if (Loc.IsValid()) return m_Sources.Find(Loc) ? Loc : CSrcLoc();
  for (const SOURCE_BREAKPOINT& Source : m_Sources.All()) {
    if (sText == LineText(Source.sPath, Source.Loc.Line)) return Source.Loc;
  }
  return {};
}

QString CBreakpointManager::PathOf(const CSrcLoc& Loc) const {
  const SOURCE_BREAKPOINT* const pSource = m_Sources.Find(Loc);
  return pSource ? pSource->sPath : QString();
}

QAddrList CBreakpointManager::AddrsOf(const BREAKPOINT_LOCATION& Location) const {
  BP Entry;
  if (!Location.IsSource()) return GetAt(Location.Addr, Entry) ? QAddrList{Location.Addr} : QAddrList();
  const SOURCE_BREAKPOINT* const pSource = m_Sources.Find(Location.Loc);
  return pSource ? pSource->Addrs : QAddrList();
}

bool CBreakpointManager::GetProps(const BREAKPOINT_LOCATION& Location, CBreakpointProps& Props) const {
  const QAddrList Addrs = AddrsOf(Location);
  const SOURCE_BREAKPOINT* const pSource = m_Sources.Find(Location.Loc);
  if (Addrs.isEmpty() && pSource == nullptr) return false;
  Props = Addrs.isEmpty() ? pSource->Pending.Props : m_Props.value(Addrs.first());
  return true;
}

QString CBreakpointManager::PlaceText(U32 Addr) const {
  const SOURCE_BREAKPOINT* const pSource = m_Sources.FindAt(Addr);
  const QString sAddr = HexText(Addr);
  return pSource ? QStringLiteral("%1 @ %2").arg(LineText(pSource->sPath, pSource->Loc.Line), sAddr)
                 : QStringLiteral("@ %1").arg(sAddr);
}

CBreakpointRec CBreakpointManager::RecordAt(U32 Addr) const {
  CBreakpointRec Record;
  const BP_SETTING Setting = SettingAt(Addr);
  BP Entry;
  Record.Addr = Addr;
  Record.State = Setting.State;
  Record.Type = Setting.Type;
  if (GetAt(Addr, Entry)) Record.HitCount = Entry.HitCount;
  Record.Props = Setting.Props;
  if (Record.State == BP_STATE_ENABLED) Record.ActualImp = ActualImpAt(Addr);
  Record.sProblem = m_Problems.value(Addr).sReason;
  Record.Loc = ELFAPI_GetFirstSrcLoc(Addr);
  Record.sLocation = HexText(Addr);
  Record.Context = Record.sProblem.isEmpty() ? FuncText(Addr) : NOT_SET.arg(Record.sProblem);
  return Record;
}

CBreakpointRec CBreakpointManager::RecordOf(const SOURCE_BREAKPOINT& Source) const {
  CBreakpointRec Record;
  BP_SETTING Setting;
  GetOnSrc(Source.Loc, Setting);
  Record.bIsSource = true;
  Record.Addr = Source.Addrs.value(0, INVALID_ADDR);
  Record.State = Setting.State;
  Record.Type = Setting.Type;
  Record.Props = Setting.Props;
  Record.Loc = Source.Loc;
  Record.sLocation = LineText(Source.sPath, Source.Loc.Line);
  QStringList Functions, Implementations;
  int NumProblems = 0;
  for (const U32 Addr : Source.Addrs) {
    CBreakpointRec Child = RecordAt(Addr);
    Child.bIsDerived = true;
    Record.HitCount += Child.HitCount;
    Record.bPropsDiffer |= !Child.Props.IsSame(Setting.Props);
    if (Record.sProblem.isEmpty()) Record.sProblem = Child.sProblem;
    if (!Child.sProblem.isEmpty()) ++NumProblems;
    if (!Child.Context.isEmpty() && !Functions.contains(Child.Context)) Functions << Child.Context;
    if (Child.State == BP_STATE_ENABLED && !Implementations.contains(Child.ActualImp))
      Implementations << Child.ActualImp;
    Record.Children << Child;
  }
  Record.ActualImp = Implementations.size() > 1 ? MULTIPLE_TEXT : Implementations.value(0);
  Record.Context = Source.Addrs.isEmpty() ? NO_CODE : Functions.join(QLatin1String(", "));
  if (NumProblems > 0 && NumProblems == Source.Addrs.size()) {
    Record.Context = NOT_SET.arg(Record.sProblem);
  } else if (NumProblems > 0) {
    Record.Context =
        QStringLiteral("%1 of %2 not set: %3").arg(NumProblems).arg(Source.Addrs.size()).arg(Record.sProblem);
  }
  return Record;
}

QList<CBreakpointRec> CBreakpointManager::Rows() const {
  QList<CBreakpointRec> Rows;
  for (const SOURCE_BREAKPOINT& Source : m_Sources.All()) Rows << RecordOf(Source);
  for (const BP& Entry : AllEntries()) {
    if (Entry.State == BP_STATE_HIDDEN || IsDerived(Entry.Addr)) continue;
    CBreakpointRec Record = RecordAt(Entry.Addr);
    const QString sLoc = ELFAPI_GetSrcLocText({Record.Loc.File, Record.Loc.Line, 0});
    if (!sLoc.isEmpty() && Record.sProblem.isEmpty())
      Record.Context += (Record.Context.isEmpty() ? QString() : QStringLiteral(", ")) + sLoc;
    Rows << Record;
  }
  return Rows;
}

// ---- Changes

void CBreakpointManager::SetProps(U32 Addr, const CBreakpointProps& Props) {
  if (Props.IsSame({})) {
    m_Props.remove(Addr);
  } else {
    m_Props.insert(Addr, Props);
  }
  Device().Context().Breakpoints.SetConditional(Addr, Props.IsConditional());
}

void CBreakpointManager::DropProps(const QAddrList& Addrs) {
  for (const U32 Addr : Addrs) {
    SetProps(Addr, {});
    m_Problems.remove(Addr);
  }
}

void CBreakpointManager::Set(U32 Addr, BP_STATES State, BP_TYPES Type) {
  m_Problems.remove(Addr);
  m_Entries.Set({Addr}, State, Type);
  NoteEmpty();
}

void CBreakpointManager::NoteEmpty() {
  if (IsEmpty() == m_bEmpty) return;
  m_bEmpty = !m_bEmpty;
  Q_EMIT EmptyChanged();
}

// One setting for each address, or the first for all. One job for all addresses that are set alike.
void CBreakpointManager::Apply(SOURCE_BREAKPOINT& Source, const QList<BP_SETTING>& Settings) {
  Source.Pending = Settings.first();
  if (Source.Addrs.isEmpty()) {
    Device().ScheduleEditBreakpoint();
    return NoteEmpty();
  }
  const bool bEach = Settings.size() == Source.Addrs.size();
  QHash<std::pair<U32, U32>, QAddrList> Alike;
  for (qsizetype i = 0; i < Source.Addrs.size(); ++i) {
    BP_SETTING Setting = Settings[bEach ? i : 0];
    if (Setting.State == BP_STATE_CLEARED) Setting.State = BP_STATE_ENABLED;  // could not be set before
    SetProps(Source.Addrs[i], Setting.Props);
    m_Problems.remove(Source.Addrs[i]);
    Alike[{Setting.State, Setting.Type}] << Source.Addrs[i];
  }
  for (auto It = Alike.cbegin(); It != Alike.cend(); ++It) {
    m_Entries.Set(*It, static_cast<BP_STATES>(It.key().first), static_cast<BP_TYPES>(It.key().second));
  }
  NoteEmpty();
}

// In the text that the user sees.
QString CBreakpointManager::TextOfLine(const SOURCE_BREAKPOINT& Source) const {
  const std::optional<QString> sEdited = m_EditedText ? m_EditedText(Source.sPath) : std::nullopt;
  return sEdited ? sEdited->split(QLatin1Char('\n')).value(Source.Loc.Line - 1).trimmed()
                 : SourceLineText(Source.sPath, Source.Loc.Line);
}

bool CBreakpointManager::SetOnSrc(const CSrcLoc& Loc, U32 State, U32 Type) {
  const QAddrList Addrs = ELFAPI_GetAddrsOfLoc(Loc);
  if (Addrs.size() > CBreakpointList::MAX_BREAKPOINTS) return false;
  SOURCE_BREAKPOINT& Source = m_Sources.Add(Loc, ELFAPI_GetFilePathOf(Loc.File));
  Source.Addrs = Addrs;
  if (Source.sLineText.isEmpty()) Source.sLineText = TextOfLine(Source);
  QList<BP_SETTING> Settings = SettingsOf(Source);
  for (BP_SETTING& Setting : Settings) {
    if (State != BP_STATE_MIXED) Setting.State = State;
    if (Type != BP_TYPE_MIXED) Setting.Type = Type;
  }
  Apply(Source, Settings);
  return true;
}

void CBreakpointManager::Clear(U32 Addr) {
  DropProps({Addr});
  m_Entries.Clear({Addr});
  NoteEmpty();
}

void CBreakpointManager::ClearOnSrc(const CSrcLoc& Loc) {
  const SOURCE_BREAKPOINT* const pSource = m_Sources.Find(Loc);
  if (pSource == nullptr) return;
  const QAddrList Addrs = pSource->Addrs;
  m_Sources.Remove(Loc);
  DropProps(Addrs);
  m_Entries.Clear(Addrs);
  if (Addrs.isEmpty()) Device().ScheduleEditBreakpoint();
  NoteEmpty();
}

void CBreakpointManager::ClearAll() {
  m_Sources.Clear();
  DropProps(m_Props.keys());
  m_Problems.clear();
  m_Entries.ClearAll();
  NoteEmpty();
}

bool CBreakpointManager::Edit(const BREAKPOINT_LOCATION& Location, const CBreakpointProps& Props) {
  CBreakpointProps Before;
  if (!GetProps(Location, Before)) return false;
  CBreakpointProps After = Props;
  if (After.Condition == Before.Condition) After.LastValue = Before.LastValue;
  for (const U32 Addr : AddrsOf(Location)) SetProps(Addr, After);
  if (SOURCE_BREAKPOINT* const pSource = m_Sources.Find(Location.Loc)) pSource->Pending.Props = After;
  Device().ScheduleEditBreakpoint();
  return true;
}
