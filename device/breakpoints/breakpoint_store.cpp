#include "device/breakpoints/breakpoint_store.h"

#include <QHash>
#include <QUrl>

#include "base/text.h"
#include "device/breakpoint_list.h"

namespace {

constexpr U32 MAX_LINE = 10'000'000;
constexpr int MAX_TEXT = 4096;  // characters of one value

const QString SOURCE = QStringLiteral("Breakpoint");
const QString ADDRESS = QStringLiteral("AddressBreakpoint");
const QString DERIVED = QStringLiteral("DerivedBreakpoint");
const QString LINE = QStringLiteral("Line");
const QString LINE_TEXT = QStringLiteral("Text");
const QString STATE = QStringLiteral("State");
const QString TYPE = QStringLiteral("Type");
const QString CONDITION = QStringLiteral("Condition");
const QString ON_CHANGE = QStringLiteral("TriggerOnChange");
const QString SKIP = QStringLiteral("SkipCount");
const QString TASK = QStringLiteral("Task");
const QString CONSOLE = QStringLiteral("ConsoleText");
const QString MSG_BOX = QStringLiteral("MsgBoxText");

using FIELDS = QHash<QString, QString>;

// In quotes, with "%" codes for what would end the value or the line.
QString TextField(const QString& sKey, const QString& sText) {
  if (sText.isEmpty()) return {};
  static const QByteArray Plain = " !$&'()*+-./:;<=>?@[]^_`{|}~\\";
  const QByteArray Encoded = QUrl::toPercentEncoding(sText.left(MAX_TEXT), Plain);
  return QStringLiteral(", %1=\"%2\"").arg(sKey, QString::fromLatin1(Encoded));
}

QString NumberField(const QString& sKey, U32 Value) {
  return QStringLiteral(", %1=%2").arg(sKey).arg(Value);
}

QString SettingFields(const BP_SETTING& Setting) {
  const CBreakpointProps& Props = Setting.Props;
  QString sText = NumberField(STATE, Setting.State) + NumberField(TYPE, Setting.Type);
  sText += TextField(CONDITION, Props.Condition);
  if (Props.DoTriggerOnChange) sText += NumberField(ON_CHANGE, 1);
  if (Props.SkipCount > 0) sText += NumberField(SKIP, Props.SkipCount);
  return sText + TextField(TASK, Props.FilterTaskID) + TextField(CONSOLE, Props.ExtraActionConsoleText) +
         TextField(MSG_BOX, Props.ExtraActionMsgBoxText);
}

QString TextOf(const STORED_BREAKPOINT& Stored) {
  if (Stored.Settings.isEmpty()) return {};
  if (Stored.sPath.isEmpty()) {
    return QStringLiteral("%1=%2%3\n").arg(ADDRESS, HexText(Stored.Addr), SettingFields(Stored.Settings.first()));
  }
  QString sText = TextField(SOURCE, Stored.sPath).mid(2) + NumberField(LINE, Stored.Line) +
                  TextField(LINE_TEXT, Stored.sLineText) + SettingFields(Stored.Settings.first()) + QLatin1Char('\n');
  for (qsizetype i = 1; i < Stored.Settings.size(); ++i) {
    sText += QStringLiteral("%1=%2%3\n").arg(DERIVED).arg(i).arg(SettingFields(Stored.Settings[i]));
  }
  return sText;
}

// The keys of a line; the first one names its kind.
FIELDS FieldsOf(const QString& sLine, QString* psKind) {
  FIELDS Fields;
  for (const QString& sField : sLine.split(QLatin1Char(','))) {
    const qsizetype Equals = sField.indexOf(QLatin1Char('='));
    if (Equals < 0) continue;
    const QString sKey = sField.left(Equals).trimmed();
    const QByteArray Value = Unquoted(sField.mid(Equals + 1).trimmed()).toUtf8();
    if (psKind->isEmpty()) *psKind = sKey;
    if (!Fields.contains(sKey)) Fields.insert(sKey, QUrl::fromPercentEncoding(Value).left(MAX_TEXT));
  }
  return Fields;
}

// A number up to a limit; Default for what is none.
U32 NumberOf(const FIELDS& Fields, const QString& sKey, U32 Max, U32 Default) {
  bool bOk = false;
  const U32 Value = Fields.value(sKey).toUInt(&bOk, 0);
  return bOk && Value <= Max ? Value : Default;
}

BP_SETTING SettingOf(const FIELDS& Fields) {
  BP_SETTING Setting;
  Setting.State = NumberOf(Fields, STATE, BP_STATE_DISABLED, BP_STATE_ENABLED) == BP_STATE_DISABLED ? BP_STATE_DISABLED
                                                                                                    : BP_STATE_ENABLED;
  Setting.Type = NumberOf(Fields, TYPE, BP_TYPE_SOFT, BP_TYPE_ANY);
  Setting.Props.Condition = Fields.value(CONDITION);
  Setting.Props.DoTriggerOnChange = NumberOf(Fields, ON_CHANGE, 1, 0) != 0;
  Setting.Props.SkipCount = NumberOf(Fields, SKIP, 0xFFFFFFFF, 0);
  Setting.Props.FilterTaskID = Fields.value(TASK);
  Setting.Props.ExtraActionConsoleText = Fields.value(CONSOLE);
  Setting.Props.ExtraActionMsgBoxText = Fields.value(MSG_BOX);
  return Setting;
}

bool TakeLine(const QString& sKind, const FIELDS& Fields, STORED_BREAKPOINT& Stored) {
  Stored.Settings = {SettingOf(Fields)};
  if (sKind == ADDRESS) {
    bool bOk = false;
    Stored.Addr = Fields.value(ADDRESS).toUInt(&bOk, 0);
    return bOk;
  }
  Stored.sPath = Fields.value(SOURCE);
  Stored.Line = NumberOf(Fields, LINE, MAX_LINE, 0);
  Stored.sLineText = Fields.value(LINE_TEXT);
  return !Stored.sPath.isEmpty() && Stored.Line > 0;
}

}  // namespace

QString MakeBreakpointText(const QList<STORED_BREAKPOINT>& Breakpoints) {
  QString sText;
  for (const STORED_BREAKPOINT& Stored : Breakpoints) sText += TextOf(Stored);
  return sText;
}

QList<STORED_BREAKPOINT> ParseBreakpointText(const QString& sText) {
  QList<STORED_BREAKPOINT> Breakpoints;
  bool bContinues = false;  // the line above belongs to a source breakpoint
  for (const QString& sLine : WithUnixLineEnds(sText).split(QLatin1Char('\n'))) {
    QString sKind;
    const FIELDS Fields = FieldsOf(sLine, &sKind);
    if (sKind == DERIVED) {
      if (bContinues && Breakpoints.last().Settings.size() < CBreakpointList::MAX_BREAKPOINTS) {
        Breakpoints.last().Settings << SettingOf(Fields);
      }
      continue;
    }
    STORED_BREAKPOINT Stored;
    const bool bTaken = (sKind == SOURCE || sKind == ADDRESS) && TakeLine(sKind, Fields, Stored) &&
                        Breakpoints.size() < CBreakpointList::MAX_BREAKPOINTS;
    if (bTaken) Breakpoints << Stored;
    bContinues = bTaken && sKind == SOURCE;
  }
  return Breakpoints;
}
