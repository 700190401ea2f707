#pragma once

#include <QDockWidget>

// The frame around one CWindow. Its title shows whether the window has the focus; its close button asks for the window
// to be closed by command, so that a click is seen in the console.
class CDockWindow : public QDockWidget {
  Q_OBJECT

public:
  CDockWindow(const QString& sName, const QString& sTitle, QWidget* pParent);
  ~CDockWindow() override;

  // Called by the window when the focus comes or goes.
  void SetHighlighted(bool bOn);
  bool HasFocus() const { return bHasFocus; }
  // Takes the application's font, and its colours, as they are now.
  void ApplyFont();
  void UpdateStyle();

protected:
  void closeEvent(QCloseEvent* pEvent) override;
  void keyPressEvent(QKeyEvent* pEvent) override;
  void changeEvent(QEvent* pEvent) override;

private:
  bool bHasFocus = false;
};
