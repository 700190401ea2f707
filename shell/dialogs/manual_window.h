#pragma once

#include <QHash>
#include <QList>
#include <QUrl>

#include "ui/dialog.h"

class QLineEdit;
class QTextBrowser;
class QTextDocument;
class QToolButton;
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
  QString CurrentPage() const { return m_sPage; }
  QString CurrentHeading() const;

protected:
  void keyPressEvent(QKeyEvent* pEvent) override;

private:
  // Where the reader was.
  struct PLACE {
    QString sPage;
    int Position;  // of the cursor, in characters
    int Scroll;    // pixels
  };

  void CreateWidgets();
  void ReadContents();
  void AddHeadings(QTreeWidgetItem* pPage, const QString& sPage);
  // The page's document, read and laid out when it is first asked for; an empty one for a missing page.
  QTextDocument* Document(const QString& sPage);
  void ShowPage(const QString& sPage);
  void OnLinkClicked(const QUrl& Link);
  void Go(int Step);
  void Remember();
  void UpdateButtons();
  QString FilePath(const QString& sPage) const;

  QString m_sDirectory;
  QString m_sPage;
  QStringList m_Pages;  // file names in reading order
  QHash<QString, QTextDocument*> m_Documents;
  QList<PLACE> m_History;
  int m_HistoryIndex = -1;
  QTextBrowser* m_pBrowser = nullptr;
  QTreeWidget* m_pContents = nullptr;
  QLineEdit* m_pSearch = nullptr;
  QToolButton* m_pBack = nullptr;
  QToolButton* m_pForward = nullptr;
};
