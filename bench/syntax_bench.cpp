// Highlights each file line by line, gaps filled, as the windows do, and prints the median of many runs: a row
// "milliseconds characters spans" for each. The language is that of the suffix. Usage: syntax_bench FILE...
#include <QElapsedTimer>
#include <QFile>
#include <QFileInfo>
#include <algorithm>
#include <cstdio>

#include "ui/syntax/syntax_highlighter.h"

namespace {

constexpr int NUM_RUNS = 21;
constexpr double NS_PER_MS = 1e6;

size_t HighlightLines(SYNTAX_LANGUAGE Language, QStringView sText) {
  const CSyntaxHighlighter Highlighter;
  std::vector<TextSpan> Spans;
  std::vector<SYNTAX_KIND> Kinds;
  I32 State = SYNTAX_IDLE;
  size_t NumSpans = 0;
  for (qsizetype Start = 0; Start < sText.size();) {
    const qsizetype LineFeed = sText.indexOf(u'\n', Start);
    const qsizetype End = LineFeed < 0 ? sText.size() : LineFeed;
    Highlighter.Highlight(Language, sText.mid(Start, End - Start), Spans, Kinds, State);
    CSyntaxHighlighter::FillGaps(Spans, Kinds, static_cast<I32>(End - Start));
    NumSpans += Spans.size();
    Start = End + 1;
  }
  return NumSpans;
}

bool MeasureFile(const QString& sPath) {
  QFile File(sPath);
  if (!File.open(QIODevice::ReadOnly)) {
    std::fprintf(stderr, "cannot read %s\n", qPrintable(sPath));
    return false;
  }
  const QString sText = QString::fromUtf8(File.readAll());
  const SYNTAX_LANGUAGE Language = CSyntaxHighlighter::GetLanguage(QFileInfo(sPath).suffix());
  std::vector<qint64> aDuration;
  size_t NumSpans = 0;
  for (int i = 0; i < NUM_RUNS; ++i) {
    QElapsedTimer Timer;
    Timer.start();
    NumSpans = HighlightLines(Language, sText);
    aDuration.push_back(Timer.nsecsElapsed());
  }
  std::ranges::nth_element(aDuration, aDuration.begin() + NUM_RUNS / 2);
  std::printf("%.3f %lld %zu\n", aDuration[NUM_RUNS / 2] / NS_PER_MS, static_cast<long long>(sText.size()), NumSpans);
  return true;
}

}  // namespace

int main(int NumArgs, char** pArgs) {
  bool bRead = true;
  for (int i = 1; i < NumArgs; ++i) bRead = MeasureFile(QFile::decodeName(pArgs[i])) && bRead;
  return bRead ? 0 : 1;
}
