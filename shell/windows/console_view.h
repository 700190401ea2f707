#pragma once

#include <functional>
#include <span>
#include <vector>

#include <QPlainTextEdit>
#include <QTextBlock>
#include <QTextCharFormat>
#include <QTimer>

#include "shell/log/console_ring.h"

// The journal of the console: read-only lines, each message in its colour and font and with a time stamp. Appending
// takes the same time however many lines there are. Main thread.
class CConsoleView : public QPlainTextEdit {
  Q_OBJECT

public:
  explicit CConsoleView(QWidget* pParent);

  // Appends messages at the end, laid out together.
  void Append(std::span<const CONSOLE_MSG> Messages);
  void Clear();
  bool HasText() const { return !m_Stamps.empty(); }
  // Takes the console's font of now.
  void ApplyFont();
  // All lines take the colours of now, once the events that wait have been handled.
  void ScheduleRecolor() { m_RecolorTimer.start(); }

  // Whether a message begins in a line, counted from 0, and its time stamp in microseconds.
  bool HasTimeStamp(int Line) const;
  U64 GetTimeStamp(int Line) const { return m_Stamps[static_cast<size_t>(Line)]; }
  int FirstVisibleLine() const { return firstVisibleBlock().blockNumber(); }
  // Calls Visit with the number of each visible line and its place in the viewport.
  void VisitVisibleLines(const std::function<void(int Line, const QRectF& Rect)>& Visit) const;

protected:
  void changeEvent(QEvent* pEvent) override;

private:
  void Append(QTextCursor& Cursor, const CONSOLE_MSG& Msg);
  void Reformat();

  std::vector<U64> m_Stamps;  // of each line, NO_STAMP for a line that continues a message
  QString m_sMonoFamily;      // of the fixed-pitch texts
  QTimer m_RecolorTimer;
};
