#pragma once

#include <QObject>
#include <QPointer>
#include <QWidget>

// While a script runs, the user's input is limited to stopping it and to ending the program: window and timer events
// are delivered, other keys and clicks are dropped, whoever turns the event loop. Dialogs that open meanwhile get their
// input. Main thread.
class CInputGate : public QObject {
public:
  // A script begins to run, or has ended.
  static void SetScriptRunning(bool bRunning);
  static bool IsScriptRunning();
  // One turn of the event loop, limited in the same way.
  static void ProcessEvents();

protected:
  bool eventFilter(QObject* pWatched, QEvent* pEvent) override;

private:
  CInputGate();

  QPointer<QWidget> m_pModalBefore;  // stays as deaf as the main window
};
