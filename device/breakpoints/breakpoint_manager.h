#pragma once

#include <QHash>
#include <QObject>
#include <QStringList>

#include "device/breakpoints/breakpoint_entries.h"
#include "device/breakpoints/breakpoint_evaluator.h"
#include "device/breakpoints/breakpoint_location.h"
#include "device/breakpoints/breakpoint_rec.h"
#include "device/breakpoints/source_breakpoints.h"
#include "device/device_event_listener.h"

// The user's breakpoints: on top of the device's list of addresses the breakpoints on source lines, each of which
// stands for all the addresses of its line, and what every one has beside its address. Keeps them over reloads of the
// program, evaluates halts at those that have a condition, and says which could not be set and why. Main thread.
//
// Changes are scheduled; what was asked for is seen at once, and what became of it when Changed is emitted.
class CBreakpointManager : public QObject, public CDeviceEventListener {
  Q_OBJECT

public:
  // The only instance, made on first use.
  static CBreakpointManager& Get();

  // --- What there is
  // False when the address has no breakpoint. One that could not be set has BP_STATE_CLEARED; the device doesn't know
  // it.
  bool GetAt(U32 Addr, BP& Entry) const;
  // How a source line is set (state may be BP_STATE_MIXED, type BP_TYPE_MIXED); false when it has no breakpoint. The
  // state is BP_STATE_CLEARED when it could not be set.
  bool GetOnSrc(const CSrcLoc& Loc, BP_SETTING& Setting) const;
  // The same of a line or, where that has none, of the line with code that stands in for it, which pLoc names then.
  bool FindOnSrc(CSrcLoc* pLoc, BP_SETTING& Setting) const;
  // The addresses of a source breakpoint have different properties.
  bool DoPropsDiffer(const CSrcLoc& Loc) const;
  // The line of the source breakpoint that a text names as windows and the user file do: the only way to one whose file
  // the program no longer has. All-zero if there is none.
  CSrcLoc FindByText(const QString& sText) const;
  // The file of a source breakpoint as the program named it; empty if there is none.
  QString PathOf(const CSrcLoc& Loc) const;
  // The address belongs to a source breakpoint.
  bool IsDerived(U32 Addr) const { return m_Sources.FindAt(Addr) != nullptr; }
  bool IsEmpty() const { return m_Sources.All().isEmpty() && AllEntries().isEmpty(); }
  // Source breakpoints in the order in which they were set, then the addresses that belong to none.
  QList<CBreakpointRec> Rows() const;
  // What a location has beside its address; false when there is no breakpoint.
  bool GetProps(const BREAKPOINT_LOCATION& Location, CBreakpointProps& Props) const;

  // --- Changes
  void Set(U32 Addr, BP_STATES State, BP_TYPES Type);
  // Sets all addresses of the line. With BP_STATE_MIXED each keeps its own state, with BP_TYPE_MIXED its own type.
  // False, and nothing is set, when the line has more addresses than the device's list holds.
  bool SetOnSrc(const CSrcLoc& Loc, U32 State, U32 Type);
  void Clear(U32 Addr);
  void ClearOnSrc(const CSrcLoc& Loc);
  void ClearAll();
  // Gives a location, and with it all its addresses, its properties. False when there is no breakpoint.
  bool Edit(const BREAKPOINT_LOCATION& Location, const CBreakpointProps& Props);
  // The source file was edited: the lines from FirstLine on move by NumLines. Breakpoints on lines that go, ahead of
  // FirstLine, go with them.
  void ShiftLines(U32 FileId, U32 FirstLine, int NumLines);

  // --- Reload and user file
  // The program is about to be read anew: puts all breakpoints aside.
  void BackupState();
  // Sets what was put aside again, by source location, after the same program was read.
  void RestoreState();
  // Another program was opened, or with bUnloaded none: its breakpoints are others. The device's own list is cleared by
  // whoever opened the program.
  void ForgetState(bool bUnloaded);
  // Nothing that was put aside is wanted any more.
  void ClearStateBackup() { m_Backup.clear(); }
  // The breakpoints as lines of the user file; while no program is open those of the last one.
  QString GetUserConfigStr() const;
  void SetUserConfigStr(const QString& sConfig);

  // The text, with unsaved changes, of a source file that is being edited; nothing for any other. Breakpoints are set
  // on its lines.
  using EDITED_TEXT = std::function<std::optional<QString>(const QString& sPath)>;
  void SetEditedText(const EDITED_TEXT& EditedText) { m_EditedText = EditedText; }
  void SetEvaluator(const BREAKPOINT_EVALUATOR& Evaluator) { m_Evaluator = Evaluator; }
  const BREAKPOINT_EVALUATOR& Evaluator() const { return m_Evaluator; }

  // --- Device events
  void OnDeviceBPStateChanged() override;
  void OnDeviceConnectDone(CONNECT_MODES Mode) override;
  void OnDeviceDisconnectDone() override;
  void OnDeviceConnectionLost() override;
  void OnDeviceResetDone(U32 PC, RESET_MODES Mode) override;
  void OnDeviceResetBPsDone() override { Q_EMIT Changed(); }
  void OnDeviceHaltDone(U32 PC, HALT_REASONS Reason) override;
  void OnDeviceEvalBPCondition(U32 Addr) override;
  void OnDeviceLogMsg(const char* sText, MSG_INFO_FLAGS Flags) override;

Q_SIGNALS:
  // Windows show something else now.
  void Changed();
  // There are breakpoints, or none any more; told as soon as that is asked for.
  void EmptyChanged();
  // The target has halted at a breakpoint that has more to do; either text may be empty.
  void Triggered(const QString& sConsoleText, const QString& sMsgBoxText);

private:
  // What could not be set, or not again after a connect.
  struct PROBLEM {
    QString sReason;
    BP_TYPES Type = BP_TYPE_ANY;
    bool bListed = false;  // the device has an entry nevertheless
  };

  CBreakpointManager();
  QList<BP> AllEntries() const;
  QAddrList AddrsOf(const BREAKPOINT_LOCATION& Location) const;
  BP_SETTING SettingAt(U32 Addr) const;
  QList<BP_SETTING> SettingsOf(const SOURCE_BREAKPOINT& Source) const;
  CBreakpointRec RecordAt(U32 Addr) const;
  CBreakpointRec RecordOf(const SOURCE_BREAKPOINT& Source) const;
  QString PlaceText(U32 Addr) const;
  void SetProps(U32 Addr, const CBreakpointProps& Props);
  void DropProps(const QAddrList& Addrs);
  QString TextOfLine(const SOURCE_BREAKPOINT& Source) const;
  void Apply(SOURCE_BREAKPOINT& Source, const QList<BP_SETTING>& Settings);
  QList<STORED_BREAKPOINT> Store() const;
  void Restore(const QList<STORED_BREAKPOINT>& Stored);
  void RestoreOnSrc(const STORED_BREAKPOINT& Stored);
  void CheckOutcome();
  void CheckOutcomeLater();
  void CheckImplementations();
  void ReportFailure(U32 Addr, BP_TYPES Type, bool bListed);
  void SetFailedAgain();
  void NoteEmpty();

  CBreakpointEntries m_Entries;
  CSourceBreakpoints m_Sources;
  QHash<U32, CBreakpointProps> m_Props;  // by address
  QHash<U32, PROBLEM> m_Problems;        // by address
  QList<STORED_BREAKPOINT> m_Backup;
  BREAKPOINT_EVALUATOR m_Evaluator;
  EDITED_TEXT m_EditedText;
  QStringList m_Reasons;  // why something failed lately
  bool m_bEmpty = true;   // as told last
  bool m_bCheckWaits = false;
};
