#pragma once

#include <QHash>
#include <QTextBlock>

#include "ui/dialog.h"

class QLineEdit;
class QTextBrowser;
class QTreeWidget;
class QTreeWidgetItem;

// The user's guide: its contents at the left, the page at the right, and a search through all pages. Stays open beside
// the main window; one instance.
class CManualWindow : public CDialog {
  Q_OBJECT

public:
  // sDirectory holds the pages as Markdown, "index.md" among them with links to the others in their order.
  CManualWindow(QWidget* pParent, const QString& sDirectory);

  // Shows a page at the heading of that text, in any case; the page's start when there is none.
  void ShowTopic(const QString& sPage, const QString& sHeading = QString());
  // The next place of the text behind the present one, through all pages and round again; false if there is none.
  bool FindNext(const QString& sText);
  // File name of the page that is shown, and the heading at or above its cursor.
  QString CurrentPage() const;
  QString CurrentHeading() const;

protected:
  void keyPressEvent(QKeyEvent* pEvent) override;

private:
  void ReadContents();
  void AddHeadings(QTreeWidgetItem* pPage, const QString& sPage);
  void StyleDocument();
  void OnSourceChanged();
  QString FilePath(const QString& sPage) const;

  QString m_sDirectory;
  QStringList m_Pages;  // file names in reading order
  QTextBrowser* m_pBrowser = nullptr;
  QTreeWidget* m_pContents = nullptr;
  QLineEdit* m_pSearch = nullptr;
};
