#pragma once

#include <QObject>
#include <QPointer>
#include <QWidget>

// While it lives, the user's input is limited to cancelling a long operation: with the status bar's Cancel button, with
// Esc, or by closing the main window, which is then closed as soon as the gate has gone. Window and timer events are
// delivered, and so is the input of a dialog that opens meanwhile. Main thread.
class CCancelGate : public QObject {
public:
  explicit CCancelGate(QWidget* pMainWindow);
  ~CCancelGate() override;

  bool IsCancelled() const;

protected:
  bool eventFilter(QObject* pWatched, QEvent* pEvent) override;

private:
  bool IsMainWindow(const QObject* pObject) const;

  QPointer<QWidget> m_pMainWindow;
  QPointer<QWidget> m_pModalBefore;  // stays as deaf as the main window
  bool m_bEscape = false;
  bool m_bCloseWanted = false;
};
