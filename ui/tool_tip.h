#pragma once

#include <QFrame>
#include <QList>
#include <QPair>
#include <QPointer>
#include <QTimer>

class QGridLayout;

// The tool tip that all windows share: a text, or a title over pairs of a name and a value. It comes a moment after it
// was asked for, stays inside the screen, and goes with a key, a click, the pointer or its owner. Nothing is shown
// while PREF_SHOW_TOOLTIPS is off. One instance, main thread.
class CToolTip : public QFrame {
  Q_OBJECT

public:
  using PAIRS = QList<QPair<QString, QString>>;

  static CToolTip* _GetSingleton();

  // Shows a tip for pOwner, the widget under the pointer, at a point of the screen. The same contents for a pointer
  // that has hardly moved change nothing; an empty text or an empty title without pairs hides the tip.
  void ShowText(QWidget* pOwner, const QPoint& GlobalPos, const QString& sText);
  void ShowPairs(QWidget* pOwner, const QPoint& GlobalPos, const QString& sTitle, const PAIRS& Pairs);
  // Hides it a moment later, unless a new one is asked for until then; HideNow at once.
  void Hide();
  void HideNow();

  // Where a tip of a size belongs for a pointer: right below it, or on the other side of it where the screen ends.
  static QPoint PlaceFor(const QPoint& Pointer, const QSize& Size, const QRect& Screen);

public Q_SLOTS:
  void OnShowTimerTimeout();
  void OnWatchdogTimerTimeout();

protected:
  bool eventFilter(QObject* pWatched, QEvent* pEvent) override;

private:
  struct CONTENTS {
    QString sTitle;
    PAIRS Pairs;
    bool operator==(const CONTENTS&) const = default;
    bool IsEmpty() const { return sTitle.isEmpty() && Pairs.isEmpty(); }
  };

  CToolTip();
  void Request(QWidget* pOwner, const QPoint& GlobalPos, const CONTENTS& Contents);
  void LayOut(int MaxWidth);
  void Start(bool bHide, int DelayMS);

  CONTENTS m_Contents;
  QPoint m_Pointer;
  QPointer<QWidget> m_pOwner;
  QTimer m_ShowTimer;
  QTimer m_WatchdogTimer;
  QGridLayout* m_pLayout;
  bool m_bHiding = false;  // what the show timer is to do
};
