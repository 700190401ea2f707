#pragma once

#include <QCompleter>
#include <QLineEdit>

#include "shell/actions/command_history.h"
#include "shell/windows/command_completion.h"

class CCompletionModel;
class QTreeView;

// The line in which commands are typed: keeps their history, completes them and shows their synopsis in the status bar.
// While the list of completions is open the arrow keys move in it, and Return takes the entry that has been chosen;
// otherwise they browse the history, and Return enters the command.
class CCommandInput : public QLineEdit {
  Q_OBJECT

public:
  explicit CCommandInput(QWidget* pParent);
  void SetSources(const COMPLETION_SOURCES& Sources) { m_Sources = Sources; }
  // The row of the command whose name stands in the line; NUM_ACTIONS if there is none.
  U32 Command() const;
  // What the status bar shows about the command and the argument at the cursor.
  const QString& Synopsis() const { return m_sSynopsis; }
  // The list takes the font of now.
  void ApplyFont(const QFont& Font);

Q_SIGNALS:
  // Return was pressed; the line has been emptied and put into the history.
  void CommandEntered(const QString& sCommand);

protected:
  bool event(QEvent* pEvent) override;
  void keyPressEvent(QKeyEvent* pEvent) override;
  void focusInEvent(QFocusEvent* pEvent) override;
  void focusOutEvent(QFocusEvent* pEvent) override;

private:
  void CreatePopup();
  COMMAND_PART Part() const { return FindCommandPart(text(), cursorPosition()); }
  bool IsListOpen() const;
  bool IsEntryChosen() const;
  void ShowCompletions(bool bAsked);
  void Complete();
  void Insert(const QString& sText, bool bContinues);
  void Enter();
  void Browse(bool bUp);
  bool RunFunctionKey(const QKeyEvent* pEvent);
  void UpdateSynopsis();
  void ShowSynopsis(const QString& sSynopsis);

  COMPLETION_SOURCES m_Sources;
  CCommandHistory m_History;
  QCompleter* m_pCompleter;
  CCompletionModel* m_pModel;
  QTreeView* m_pList;
  QString m_sSynopsis;  // not the widget's status tip, which the mouse pointer would take away with it
};
