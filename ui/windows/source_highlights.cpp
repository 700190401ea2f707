#include "ui/windows/source_highlights.h"

#include "shell/settings/color_ids.h"

void CSourceHighlights::Remove(U32 ColorID) {
  const auto HasColor = [ColorID](const QHash<U32, U32>::iterator& Entry) { return Entry.value() == ColorID; };
  m_Lines.removeIf(HasColor);
  m_Addrs.removeIf(HasColor);
}

void CSourceHighlights::Clear() {
  m_Lines.clear();
  m_Addrs.clear();
}

void CSourceHighlights::MoveLines(U32 First, int NumLines) {
  QHash<U32, U32> Moved;
  for (auto Entry = m_Lines.cbegin(); Entry != m_Lines.cend(); ++Entry) {
    const U32 NewLine = Entry.key() >= First ? Entry.key() + static_cast<U32>(NumLines) : Entry.key();
    const bool bGone = Entry.key() < First && NumLines < 0 && Entry.key() >= First + static_cast<U32>(NumLines);
    if (!bGone) Moved[NewLine] = Entry.value();
  }
  m_Lines = Moved;
}

// Where the instruction that a colour is for is shown below its line, the line itself takes the weaker one.
std::optional<ROW_COLOR> CSourceHighlights::SourceColor(const ROW_GROUND& Row) const {
  const auto Given = m_Lines.constFind(Row.Line);
  if (Given == m_Lines.constEnd()) return std::nullopt;
  if (Row.bExpanded && Row.bColorBelow) {
    if (*Given == COLOR_PC_ACTIVE) return ROW_COLOR{COLOR_PC_INACTIVE};
    if (*Given == COLOR_CALL_SITE_ACTIVE && Row.bOneInstruction) return ROW_COLOR{COLOR_CALL_SITE_INACTIVE};
  }
  return ROW_COLOR{*Given};
}

std::optional<ROW_COLOR> CSourceHighlights::ColorOf(const ROW_GROUND& Row) const {
  if (Row.bEmpty) return std::nullopt;
  const bool bOddGroup = Row.bInstruction && Row.Group % 2 != 0;
  if (Row.bHoldsCursor && m_bBacktrace) return ROW_COLOR{COLOR_PC_BACKTRACE};
  if (Row.bMarksCursor) return ROW_COLOR{COLOR_HIGHLIGHT_LIGHT, bOddGroup};
  if (!Row.bInstruction) return SourceColor(Row);
  const auto Given = m_Addrs.constFind(Row.Addr);
  if (Given != m_Addrs.constEnd()) return ROW_COLOR{*Given};
  return ROW_COLOR{bOddGroup ? COLOR_INLINE_ASM_BACKG_ALTERNATE : COLOR_INLINE_ASM_BACKG};
}
