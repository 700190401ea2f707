#pragma once

#include <QElapsedTimer>
#include <QLabel>
#include <QProgressBar>
#include <QPushButton>
#include <QStatusBar>
#include <QTimer>

// The main window's status bar. Setters only store, so that they may be called at any rate; what has changed is shown a
// fifth of a second later. One instance, main thread.
class CStatusBar : public QStatusBar {
  Q_OBJECT

public:
  static CStatusBar* _GetSingleton();

  void SetStatusMessage(const QString& sText);
  void SetProgressMessage(const QString& sText);
  void SetConnectionInfo(const QString& sText);
  void SetActiveWindowStatus(const QString& sText);
  // Both 0: a bar that pulses. What can be cancelled has a button for it beside the bar.
  void StartProgress(int Minimum, int Maximum, bool bCancelable = false);
  // The user has pressed Cancel since the progress was started.
  bool WasCanceled() const { return m_bCanceled; }
  const QWidget* CancelButton() const { return m_pCancel; }
  void SetProgressValue(int Value);
  int GetProgressValue() const { return m_Value; }
  // The bar goes in the first refresh more than a quarter of a second later.
  void EndProgress();
  void SetFont(const QFont& Font);
  const QString& GetStatusMessage() const { return m_sStatus; }

public Q_SLOTS:
  void OnTempStatusMsgChanged(const QString& sText);

private:
  CStatusBar();
  void Refresh();
  void MarkDirty();

  QString m_sStatus, m_sProgress, m_sTemp, m_sConnection, m_sWindow;
  int m_Minimum = 0, m_Maximum = 0, m_Value = 0;
  bool m_bProgressRunning = false;
  bool m_bEndPending = false;
  bool m_bCancelable = false;
  bool m_bCanceled = false;
  QElapsedTimer m_EndTime;
  QTimer m_Timer;
  QLabel* m_pMessage;
  QProgressBar* m_pProgress;
  QPushButton* m_pCancel;
  QLabel* m_pConnection;
  QLabel* m_pWindow;
};
