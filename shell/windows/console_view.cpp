#include "shell/windows/console_view.h"

#include <QScrollBar>

#include "shell/log/console_print.h"
#include "shell/look/look.h"
#include "shell/settings/color_ids.h"
#include "shell/settings/fonts.h"

namespace {

constexpr U64 NO_STAMP = ~U64{0};

// What a message asked for, kept with its text so that the text can follow the settings.
enum MSG_PROPERTY : int {
  MSG_PROPERTY_COLOR_ID = QTextFormat::UserProperty,
  MSG_PROPERTY_RGBA,
  MSG_PROPERTY_MONO,
};

// The size, weight and slant are those of the pane.
void SetMonoFamily(QTextCharFormat& Format, const QString& sFamily) {
  Format.setFontFamilies({sFamily});
}

void SetForeground(QTextCharFormat& Format) {
  if (Format.hasProperty(MSG_PROPERTY_COLOR_ID)) {
    const int ID = Format.intProperty(MSG_PROPERTY_COLOR_ID);
    const bool bKnown = ID < static_cast<int>(NUM_COLORS);
    Format.setForeground(bKnown ? GetTextColor(static_cast<U32>(ID)) : ReadableColor(Qt::black));
  } else if (Format.hasProperty(MSG_PROPERTY_RGBA)) {
    Format.setForeground(ReadableColor(QColor::fromRgba(Format.property(MSG_PROPERTY_RGBA).toUInt())));
  }
}

QTextCharFormat FormatOf(const CONSOLE_MSG& Msg, const QString& sMonoFamily) {
  QTextCharFormat Format;
  if (Msg.ColorID >= 0) {
    Format.setProperty(MSG_PROPERTY_COLOR_ID, Msg.ColorID);
  } else if (Msg.Rgba != CONSOLE_RGBA_DEFAULT) {
    Format.setProperty(MSG_PROPERTY_RGBA, Msg.Rgba);
  }
  if (Msg.UseMonoFont) {
    Format.setProperty(MSG_PROPERTY_MONO, true);
    SetMonoFamily(Format, sMonoFamily);
  }
  SetForeground(Format);
  return Format;
}

QString MonoFamily() {
  return MonospacedForm(GetFont(FONT_CONSOLE)).family();
}

}  // namespace

CConsoleView::CConsoleView(QWidget* pParent) : QPlainTextEdit(pParent) {
  setReadOnly(true);
  setUndoRedoEnabled(false);
  setLineWrapMode(QPlainTextEdit::NoWrap);
  setFrameShape(QFrame::NoFrame);
  setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
  setContextMenuPolicy(Qt::CustomContextMenu);
  m_RecolorTimer.setSingleShot(true);
  m_RecolorTimer.setInterval(0);
  connect(&m_RecolorTimer, &QTimer::timeout, this, &CConsoleView::Reformat);
  ApplyFont();
}

void CConsoleView::Append(std::span<const CONSOLE_MSG> Messages) {
  QTextCursor Cursor(document());
  Cursor.movePosition(QTextCursor::End);
  Cursor.beginEditBlock();
  for (const CONSOLE_MSG& Msg : Messages) Append(Cursor, Msg);
  Cursor.endEditBlock();
}

void CConsoleView::Append(QTextCursor& Cursor, const CONSOLE_MSG& Msg) {
  const size_t NumBefore = m_Stamps.size();
  const QTextCharFormat Format = FormatOf(Msg, m_sMonoFamily);
  if (HasText() && Msg.StartNewLine) Cursor.insertBlock();
  Cursor.insertText(QString::fromUtf8(Msg.Text), Format);
  m_Stamps.resize(static_cast<size_t>(document()->blockCount()), NO_STAMP);
  if (m_Stamps.size() > NumBefore) m_Stamps[NumBefore] = Msg.TimeStamp;
}

void CConsoleView::Clear() {
  m_Stamps.clear();
  clear();
}

void CConsoleView::ApplyFont() {
  setFont(GetFont(FONT_CONSOLE));
  const QString sFamily = MonoFamily();
  if (sFamily != m_sMonoFamily) ScheduleRecolor();
  m_sMonoFamily = sFamily;
}

void CConsoleView::Reformat() {
  struct CHANGE {
    int Start;
    int End;
    QTextCharFormat Format;
  };
  std::vector<CHANGE> Changes;
  for (QTextBlock Block = document()->begin(); Block.isValid(); Block = Block.next()) {
    for (auto It = Block.begin(); !It.atEnd(); ++It) {
      const QTextFragment Fragment = It.fragment();
      QTextCharFormat Format = Fragment.charFormat();
      SetForeground(Format);
      if (Format.boolProperty(MSG_PROPERTY_MONO)) SetMonoFamily(Format, m_sMonoFamily);
      if (Format == Fragment.charFormat()) continue;
      const int Start = Fragment.position();
      const int End = Start + Fragment.length();
      // Lines that follow each other, a line end between them, change together.
      if (!Changes.empty() && Start <= Changes.back().End + 1 && Format == Changes.back().Format) {
        Changes.back().End = End;
      } else {
        Changes.push_back({Start, End, Format});
      }
    }
  }
  QTextCursor Cursor(document());
  Cursor.beginEditBlock();
  for (const CHANGE& Change : Changes) {
    Cursor.setPosition(Change.Start);
    Cursor.setPosition(Change.End, QTextCursor::KeepAnchor);
    Cursor.setCharFormat(Change.Format);
  }
  Cursor.endEditBlock();
}

bool CConsoleView::HasTimeStamp(int Line) const {
  const size_t Index = static_cast<size_t>(Line);
  return Line >= 0 && Index < m_Stamps.size() && m_Stamps[Index] != NO_STAMP;
}

void CConsoleView::VisitVisibleLines(const std::function<void(int, const QRectF&)>& Visit) const {
  const qreal Bottom = viewport()->height();
  for (QTextBlock Block = firstVisibleBlock(); Block.isValid(); Block = Block.next()) {
    const QRectF Rect = blockBoundingGeometry(Block).translated(contentOffset());
    if (Rect.top() >= Bottom) return;
    // The block's own place contains the margins of the document. While fonts change a block may have lost its lines.
    const QTextLayout* pLayout = Block.layout();
    const QRectF Text = pLayout->lineCount() > 0 ? pLayout->lineAt(0).rect() : QRectF();
    Visit(Block.blockNumber(), Text.translated(Rect.topLeft()));
  }
}

void CConsoleView::changeEvent(QEvent* pEvent) {
  QPlainTextEdit::changeEvent(pEvent);
  if (pEvent->type() == QEvent::PaletteChange) ScheduleRecolor();
}
