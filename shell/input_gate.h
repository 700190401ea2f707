#pragma once

#include <QObject>

// Turns the event loop while a script or a command waits, with the user's input limited to ending the session and the
// program: window and timer events are delivered, keys and clicks are dropped. Main thread.
class CInputGate : public QObject {
public:
  // One turn of the event loop.
  static void ProcessEvents();

protected:
  bool eventFilter(QObject* pWatched, QEvent* pEvent) override;
};
