#include "ui/windows/source_search.h"

#include "ui/windows/source_cursor.h"

namespace {

bool IsWholeWord(const QString& sText, qsizetype Start, qsizetype Length) {
  const qsizetype End = Start + Length;
  return (Start == 0 || !IsWordChar(sText[Start - 1])) && (End == sText.size() || !IsWordChar(sText[End]));
}

}  // namespace

std::optional<int> FindText(const QString& sText, const QString& sWhat, int From, SEARCH_FLAGS Flags) {
  if (sWhat.isEmpty() || sWhat.size() > sText.size()) return std::nullopt;
  const Qt::CaseSensitivity Case = Flags & SEARCH_MATCH_CASE ? Qt::CaseSensitive : Qt::CaseInsensitive;
  const bool bBackward = Flags & SEARCH_BACKWARD;
  const qsizetype End = sText.size() - sWhat.size();
  qsizetype At = bBackward ? From - sWhat.size() : From;
  for (int Round = 0; Round < 2; ++Round) {
    while (At >= 0 && At <= End) {
      At = bBackward ? sText.lastIndexOf(sWhat, At, Case) : sText.indexOf(sWhat, At, Case);
      if (At < 0) break;
      if (!(Flags & SEARCH_WHOLE_WORD) || IsWholeWord(sText, At, sWhat.size())) return static_cast<int>(At);
      At += bBackward ? -1 : 1;
    }
    At = bBackward ? End : 0;
  }
  return std::nullopt;
}
