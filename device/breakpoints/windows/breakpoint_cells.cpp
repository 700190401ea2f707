#include "device/breakpoints/windows/breakpoint_cells.h"

#include <QStringList>

#include "base/text.h"
#include "shell/settings/named_constants.h"

namespace {

constexpr BREAKPOINT_COLUMN_INFO COLUMNS[NUM_BREAKPOINT_COLUMNS] = {
    {"State", 14},   {"Location", 20},    {"Permitted Impl.", 16}, {"Actual Impl.", 14},
    {"Context", 36}, {"Task Filter", 12}, {"Skip #", 8},           {"Condition", 30},
};

QString ConstText(const char* sPrefix, U32 Value) {
  const NAMED_CONST* const pConst = FindNamedConstByValue(QLatin1String(sPrefix), Value);
  return pConst ? QLatin1String(pConst->sDisplayText) : QString::number(Value);
}

QString PropsText(const CBreakpointProps& Props, int Column) {
  switch (Column) {
    case BREAKPOINT_TASK_FILTER:
      return Props.FilterTaskID;
    case BREAKPOINT_SKIP:
      return Props.SkipCount > 0 ? GroupedText(Props.SkipCount) : QString();
    default:
      return Props.DoTriggerOnChange && !Props.Condition.isEmpty() ? Props.Condition + QStringLiteral(" (on change)")
                                                                   : Props.Condition;
  }
}

}  // namespace

const BREAKPOINT_COLUMN_INFO& BreakpointColumnInfo(int Column) {
  return COLUMNS[Column];
}

QStringList BreakpointTypeNames() {
  QStringList Names;
  for (U32 Type = BP_TYPE_ANY; Type <= BP_TYPE_SOFT; ++Type) Names << ConstText("BP_TYPE_", Type);
  return Names;
}

QString BreakpointIcon(const CBreakpointRec& Record) {
  if (!Record.sProblem.isEmpty()) return QStringLiteral("message-warning.png");
  const bool bPending = Record.bIsSource && Record.Children.isEmpty();
  return Record.State == BP_STATE_ENABLED && !bPending ? QStringLiteral("breakpoint-17.png")
                                                       : QStringLiteral("breakpoint-disabled-17.png");
}

QString BreakpointText(const CBreakpointRec& Record, int Column) {
  switch (Column) {
    case BREAKPOINT_STATE:
      return Record.State == BP_STATE_MIXED ? MULTIPLE_TEXT : ConstText("BP_STATE_", Record.State);
    case BREAKPOINT_LOCATION_COLUMN:
      return Record.bIsDerived ? QStringLiteral("Derived %1").arg(Record.sLocation) : Record.sLocation;
    case BREAKPOINT_PERMITTED_IMP:
      return Record.Type == BP_TYPE_MIXED ? MULTIPLE_TEXT : ConstText("BP_TYPE_", Record.Type);
    case BREAKPOINT_ACTUAL_IMP:
      return Record.ActualImp;
    case BREAKPOINT_CONTEXT:
      return Record.Context;
    default:
      return Record.bPropsDiffer ? MULTIPLE_TEXT : PropsText(Record.Props, Column);
  }
}
