#pragma once

#include <QStringList>

#include "ui/dialog.h"

class QPushButton;

// The question with which the program starts: what to begin with. Return presses the focused button; every other key
// that would close a dialog is ignored, for one of the choices has to be taken.
class CWelcomeScreen : public CDialog {
  Q_OBJECT

public:
  enum CHOICES : int { EMPTY_PROJECT = 0, NEW_PROJECT = 1, OPEN_PROJECT = 2, RECENT_PROJECT = 3 };

  // RecentProjects: paths, the latest first.
  CWelcomeScreen(QWidget* pParent, const QStringList& RecentProjects);

  CHOICES Choice() const { return m_Choice; }
  // Path of the project that was chosen with RECENT_PROJECT.
  QString Path() const { return m_sPath; }

protected:
  void keyPressEvent(QKeyEvent* pEvent) override;

private:
  QPushButton* AddButton(const char* sText, CHOICES Choice);
  QWidget* MakeRecentRow(QPushButton* pRecent);
  void ShowRecentMenu(const QPushButton* pRecent);
  void Take(CHOICES Choice, const QString& sPath = QString());

  QStringList m_RecentProjects;
  CHOICES m_Choice = EMPTY_PROJECT;
  QString m_sPath;
};
