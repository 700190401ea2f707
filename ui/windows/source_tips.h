#pragma once

#include <functional>

#include <QObject>
#include <QPoint>
#include <QStringList>
#include <QTimer>

class CSourceEditor;

// The tool tips of a source text: what the word under the resting pointer stands for. Knows the text without its
// comments and strings, so that a word in them stands for nothing.
class CSourceTips : public QObject {
  Q_OBJECT

public:
  // The value of an expression in the present scope as text: "<outofscope>" where it has none there, a null text where
  // it is no expression. Nothing is looked up until somebody has plugged in who knows.
  using EVALUATE = std::function<QString(const QString& sExpression)>;

  explicit CSourceTips(CSourceEditor* pEditor);

  void SetEvaluator(const EVALUATE& Evaluate) { m_Evaluate = Evaluate; }
  void SetEnabled(bool bEnabled);
  // Another text is shown, or the text was edited.
  void Invalidate() { m_bCodeValid = false; }
  // The word at a point of the editor's viewport, as code; empty where there is none.
  QString CodeWordAt(const QPoint& Point);

Q_SIGNALS:
  // What to show, at a point of the screen, in the font with that identifier.
  void SymbolTooltipRequest(const QPoint& GlobalPos, const QString& sExpression, int FontID);

private:
  void OnMousePressed(const QPoint& Pos);
  void OnMouseMoved(const QPoint& Pos);
  void OnTooltipRequested();
  QString CodeLine(int Line);
  // The expression that a word stands for in the present scope, empty if it stands for nothing.
  QString ExpressionOf(const QString& sWord) const;

  CSourceEditor* m_pEditor;
  EVALUATE m_Evaluate;
  QTimer m_Timer{this};
  QPoint m_Pos;                   // of the pointer
  QPoint m_PressPos{-100, -100};  // of the last press: no tip comes up right there
  QStringList m_Code;
  bool m_bCodeValid = false;
  bool m_bEnabled = true;
};
