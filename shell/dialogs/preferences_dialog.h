#pragma once

#include "ui/dialog.h"

class QLabel;
class QStackedWidget;
class QTreeWidget;
class QTreeWidgetItem;
struct PREFERENCE_PAGE;

// The user's preferences, colours and fonts, on pages beside a tree. What is changed applies at once, by command.
class CPreferencesDialog : public CDialog {
  Q_OBJECT

public:
  explicit CPreferencesDialog(QWidget* pParent);

  // Shows the dialog until the user closes it, again after a change of the application's font, and then forgets the
  // answers "Do not show again" if that was asked for. The command Edit.Preferences.
  static void Run(QWidget* pParent);

  // Pages are numbered from 1, in the order of PreferencePages().
  void SelectPage(int PageID);
  int GetPageID() const;
  bool IsReopenWanted() const { return m_bReopen; }

public Q_SLOTS:
  // Every size in the dialog follows from that font: it closes, to be opened anew on the same page.
  void OnApplicationFontChanged();
  void OnItemSelected();

protected:
  bool event(QEvent* pEvent) override;

private:
  void AddPages();
  QWidget* MakePage(const PREFERENCE_PAGE& Page);
  int TreeWidth() const;

  QTreeWidget* m_pTree;
  QStackedWidget* m_pPages;
  QLabel* m_pTitle;
  QList<QTreeWidgetItem*> m_PageItems;
  bool m_bReopen = false;
};
