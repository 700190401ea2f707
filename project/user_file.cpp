#include "project/user_file.h"

#include <QHash>
#include <algorithm>

#include "base/text.h"

namespace {

constexpr int MAX_PIXELS = 32767;  // window systems count them in 16 bits
constexpr int MAX_COLUMNS = 256;
constexpr int MAX_RECORDS = 1000;  // of one kind

const QString NO_SORT_COL = QStringLiteral("None");
const QString EXEC_COUNTERS = QStringLiteral("ExecCountersShown");

constexpr struct {
  DOCK_AREA Area;
  const char* sName;
} AREA_NAMES[] = {
    {DOCK_AREA_BOTTOM, "BOTTOM"},
    {DOCK_AREA_LEFT, "LEFT"},
    {DOCK_AREA_RIGHT, "RIGHT"},
    {DOCK_AREA_FLOATING, "FLOATING"},
};

struct FIELD {
  QString sKey;
  QString sValue;
};
using FIELDS = QList<FIELD>;

// Length of the quoted text that begins at Pos, 0 if none does: a quote that is not closed is a character like others.
qsizetype QuotedLength(QStringView sText, qsizetype Pos) {
  if (sText[Pos] != u'"') return 0;
  const qsizetype End = sText.indexOf(u'"', Pos + 1);
  return End < 0 ? 0 : End + 1 - Pos;
}

// Parts between separators outside quotes, trimmed.
QStringList SplitOutsideQuotes(QStringView sText, QChar Separator) {
  QStringList Parts;
  qsizetype Begin = 0;
  for (qsizetype Pos = 0; Pos < sText.size(); ++Pos) {
    if (const qsizetype Length = QuotedLength(sText, Pos)) {
      Pos += Length - 1;
    } else if (sText[Pos] == Separator) {
      Parts << sText.mid(Begin, Pos - Begin).trimmed().toString();
      Begin = Pos + 1;
    }
  }
  Parts << sText.mid(Begin).trimmed().toString();
  return Parts;
}

qsizetype IndexOutsideQuotes(QStringView sText, QStringView sWanted) {
  for (qsizetype Pos = 0; Pos + sWanted.size() <= sText.size(); ++Pos) {
    if (const qsizetype Length = QuotedLength(sText, Pos)) {
      Pos += Length - 1;
    } else if (sText.mid(Pos, sWanted.size()) == sWanted) {
      return Pos;
    }
  }
  return -1;
}

QStringView WithoutComment(QStringView sLine) {
  qsizetype Comment = IndexOutsideQuotes(sLine, u"//");
  if (Comment < 0) Comment = IndexOutsideQuotes(sLine, u"#");
  return Comment < 0 ? sLine : sLine.left(Comment);
}

QString CleanName(const QString& sText) {
  QString sResult;
  for (const QChar c : sText) {
    if (c != u'"' && c.category() != QChar::Other_Control) sResult += c;
  }
  return sResult;
}

QString NameOf(const QString& sValue) {
  const bool bQuoted = sValue.size() >= 2 && sValue.startsWith(u'"') && sValue.endsWith(u'"');
  return bQuoted ? CleanName(sValue.mid(1, sValue.size() - 2)) : CleanName(sValue).trimmed();
}

QStringList ListOf(QString sValue) {
  if (sValue.startsWith(u'[')) sValue.remove(0, 1);
  if (sValue.endsWith(u']')) sValue.chop(1);
  if (sValue.trimmed().isEmpty()) return {};
  return SplitOutsideQuotes(sValue, u';').mid(0, MAX_COLUMNS);
}

FIELDS FieldsOf(QStringView sLine) {
  FIELDS Fields;
  for (const QString& sPart : SplitOutsideQuotes(WithoutComment(sLine), u',')) {
    const qsizetype Equals = IndexOutsideQuotes(sPart, u"=");
    if (Equals > 0) Fields << FIELD{sPart.left(Equals).trimmed(), sPart.mid(Equals + 1).trimmed()};
  }
  return Fields;
}

void TakePixels(const QString& sValue, int* pPixels) {
  bool bOk = false;
  const int Value = sValue.toInt(&bOk);
  if (bOk) *pPixels = std::clamp(Value, -MAX_PIXELS, MAX_PIXELS);
}

void TakeSize(const QString& sValue, int* pPixels) {
  TakePixels(sValue, pPixels);
  *pPixels = std::max(*pPixels, 0);
}

DOCK_AREA AreaOf(const QString& sValue) {
  for (const auto& Area : AREA_NAMES) {
    if (sValue.contains(QLatin1String(Area.sName), Qt::CaseInsensitive)) return Area.Area;
  }
  return DOCK_AREA_NONE;
}

// Nothing but 0 and 1 is a flag.
void TakeFlag(const QString& sValue, std::optional<bool>* pFlag) {
  if (sValue == u"0" || sValue == u"1") *pFlag = sValue == u"1";
}

void TakeField(const FIELD& Field, DOCK_RECORD& Dock) {
  if (Field.sKey == u"DockArea") Dock.Area = AreaOf(Field.sValue);
  if (Field.sKey == u"x") TakePixels(Field.sValue, &Dock.x);
  if (Field.sKey == u"y") TakePixels(Field.sValue, &Dock.y);
  if (Field.sKey == u"w") TakeSize(Field.sValue, &Dock.w);
  if (Field.sKey == u"h") TakeSize(Field.sValue, &Dock.h);
  if (Field.sKey == u"FilterBarShown") TakeFlag(Field.sValue, &Dock.FilterBarShown);
  if (Field.sKey == EXEC_COUNTERS) TakeFlag(Field.sValue, &Dock.ExecCountersShown);
}

void TakeField(const FIELD& Field, TOOL_BAR_RECORD& Bar) {
  if (Field.sKey == u"Floating") Bar.bFloating = Field.sValue == u"1";
  if (Field.sKey == u"x") TakePixels(Field.sValue, &Bar.x);
  if (Field.sKey == u"y") TakePixels(Field.sValue, &Bar.y);
}

void TakeField(const FIELD& Field, TABLE_HEADER_RECORD& Header) {
  if (Field.sKey == u"SortCol") Header.sSortCol = NameOf(Field.sValue);
  if (Field.sKey == u"SortOrder") {
    Header.bDescending = NameOf(Field.sValue).compare(u"DESCENDING", Qt::CaseInsensitive) == 0;
  }
  if (Field.sKey == u"VisibleCols") {
    Header.VisibleCols.clear();
    for (const QString& sTitle : ListOf(Field.sValue)) Header.VisibleCols << NameOf(sTitle);
  }
  if (Field.sKey == u"ColWidths") {
    Header.ColWidths.clear();
    for (const QString& sWidth : ListOf(Field.sValue)) {
      Header.ColWidths << 0;
      TakeSize(sWidth, &Header.ColWidths.last());
    }
  }
}

// Records of one kind, one for each name.
template <typename RECORD>
class CRecordReader {
public:
  explicit CRecordReader(QList<RECORD>& Records) : m_Records(Records) {}

  // bMerge: a further line of the same name adds to its record.
  void Take(const FIELDS& Fields, bool bMerge) {
    const QString sName = NameOf(Fields.first().sValue);
    const auto Known = m_Index.constFind(sName);
    if (sName.isEmpty() || (Known == m_Index.cend() ? m_Records.size() == MAX_RECORDS : !bMerge)) return;
    const qsizetype Index = Known == m_Index.cend() ? m_Records.size() : *Known;
    if (Known == m_Index.cend()) {
      m_Index.insert(sName, Index);
      m_Records.emplace_back().sName = sName;
    }
    for (const FIELD& Field : Fields.mid(1)) TakeField(Field, m_Records[Index]);
  }

private:
  QList<RECORD>& m_Records;
  QHash<QString, qsizetype> m_Index;
};

bool HasKey(const FIELDS& Fields, QStringView sKey) {
  return std::any_of(Fields.cbegin(), Fields.cend(), [sKey](const FIELD& Field) { return Field.sKey == sKey; });
}

QString Quoted(const QString& sText) {
  return u'"' + CleanName(sText) + u'"';
}

QString NumberField(const char* sKey, int Value) {
  return QLatin1String(sKey) + u'=' + QString::number(Value);
}

QString FlagText(bool bFlag) {
  return bFlag ? QStringLiteral("1") : QStringLiteral("0");
}

QString AreaText(DOCK_AREA Area) {
  for (const auto& Name : AREA_NAMES) {
    if (Name.Area == Area) return QLatin1String(Name.sName);
  }
  return {};
}

QString LineOf(const DOCK_RECORD& Dock) {
  const QStringList Fields = {
      QStringLiteral("OpenWindow=") + Quoted(Dock.sName),
      QStringLiteral("DockArea=") + AreaText(Dock.Area),
      NumberField("x", Dock.x),
      NumberField("y", Dock.y),
      NumberField("w", Dock.w),
      NumberField("h", Dock.h),
      QStringLiteral("FilterBarShown=") + FlagText(Dock.FilterBarShown.value_or(false)),
      Dock.ExecCountersShown ? EXEC_COUNTERS + u'=' + FlagText(*Dock.ExecCountersShown) : QString()};
  return Fields.join(QLatin1String(", "));
}

QString LineOf(const TOOL_BAR_RECORD& Bar) {
  return QStringList{QStringLiteral("OpenToolbar=") + Quoted(Bar.sName),
                     QStringLiteral("Floating=") + FlagText(Bar.bFloating), NumberField("x", Bar.x),
                     NumberField("y", Bar.y)}
      .join(QLatin1String(", "));
}

QString LineOf(const TABLE_HEADER_RECORD& Header) {
  QStringList Titles, Widths;
  for (const QString& sTitle : Header.VisibleCols) Titles << Quoted(sTitle);
  for (const int Width : Header.ColWidths) Widths << QString::number(Width);
  return QStringList{
      QStringLiteral("TableHeader=") + Quoted(Header.sName),
      QStringLiteral("SortCol=") + Quoted(Header.sSortCol.isEmpty() ? NO_SORT_COL : Header.sSortCol),
      QStringLiteral("SortOrder=") + Quoted(QLatin1String(Header.bDescending ? "DESCENDING" : "ASCENDING")),
      QStringLiteral("VisibleCols=[") + Titles.join(u';') + u']',
      QStringLiteral("ColWidths=[") + Widths.join(u';') + u']'}
      .join(QLatin1String(", "));
}

QStringList LinesOf(const QString& sText) {
  return WithUnixLineEnds(sText).split(u'\n', Qt::SkipEmptyParts);
}

}  // namespace

USER_FILE ParseUserFile(const QString& sText) {
  USER_FILE File;
  CRecordReader Docks(File.Docks);
  CRecordReader ToolBars(File.ToolBars);
  CRecordReader TableHeaders(File.TableHeaders);
  for (const QString& sLine : LinesOf(sText)) {
    const FIELDS Fields = FieldsOf(sLine);
    const QString sKind = Fields.isEmpty() ? QString() : Fields.first().sKey;
    if (sKind == u"OpenWindow") {
      Docks.Take(Fields, true);
      const bool bText = !HasKey(Fields, u"DockArea") && File.WindowTexts.size() < MAX_RECORDS;
      if (bText) File.WindowTexts << sLine.trimmed();
    } else if (sKind == u"OpenToolbar") {
      ToolBars.Take(Fields, true);
    } else if (sKind == u"TableHeader") {
      TableHeaders.Take(Fields, false);
    }
  }
  for (TABLE_HEADER_RECORD& Header : File.TableHeaders) {
    if (Header.sSortCol.isEmpty()) Header.sSortCol = NO_SORT_COL;
  }
  return File;
}

QString MakeUserFileText(const USER_FILE& File) {
  QStringList Lines;
  for (const DOCK_RECORD& Dock : File.Docks) {
    if (Dock.Area != DOCK_AREA_NONE) Lines << LineOf(Dock);
  }
  for (const QString& sWindowText : File.WindowTexts) Lines << LinesOf(sWindowText);
  for (const TOOL_BAR_RECORD& Bar : File.ToolBars) Lines << LineOf(Bar);
  for (const TABLE_HEADER_RECORD& Header : File.TableHeaders) Lines << LineOf(Header);
  return Lines.isEmpty() ? QString() : Lines.join(u'\n') + u'\n';
}

QString ExecCountersText(const QString& sWindow) {
  return QStringLiteral("OpenWindow=") + Quoted(sWindow) + QStringLiteral(", ") + EXEC_COUNTERS + QStringLiteral("=1");
}

std::optional<bool> FindExecCounters(const QString& sText, const QString& sWindow) {
  std::optional<bool> Shown;
  for (const QString& sLine : LinesOf(sText)) {
    const FIELDS Fields = FieldsOf(sLine);
    if (Fields.isEmpty() || Fields.first().sKey != u"OpenWindow" || NameOf(Fields.first().sValue) != sWindow) continue;
    for (const FIELD& Field : Fields) {
      if (Field.sKey == EXEC_COUNTERS) TakeFlag(Field.sValue, &Shown);
    }
  }
  return Shown;
}
