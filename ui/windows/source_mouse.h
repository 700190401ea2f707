#pragma once

#include <QObject>
#include <QPoint>

class CSourceEditor;

// What a press in a source text means beside moving the cursor: a place that the user has looked at, the word that
// commands are to act on, and the begin of a drag.
class CSourceMouse : public QObject {
  Q_OBJECT

public:
  explicit CSourceMouse(CSourceEditor* pEditor);

Q_SIGNALS:
  // A press or double click on the text, ahead of what it does to the cursor; a point of the viewport.
  void Clicked(const QPoint& Pos);
  // The commands that act on a word have another one now, or none.
  void ArgumentOffered();

private:
  void OnPressed(const QPoint& Pos, Qt::MouseButton Button);
  void OnMoved(const QPoint& Pos, Qt::MouseButtons Buttons);
  void OfferWord(const QPoint& Pos, bool bSelection);
  bool IsOnSelectedWord(const QPoint& Pos) const;
  void StartDrag();

  CSourceEditor* m_pEditor;
  QPoint m_PressPos;
  bool m_bMayDrag = false;
};
