#include "shell/windows/command_input.h"

#include <QApplication>
#include <QHeaderView>
#include <QScreen>
#include <QScrollBar>
#include <QStatusTipEvent>
#include <QTreeView>

#include "shell/actions/action_dispatch.h"
#include "shell/actions/action_ids.h"
#include "shell/actions/action_info.h"
#include "shell/windows/completion_model.h"

namespace {

constexpr int MAX_VISIBLE_ROWS = 12;
constexpr int COLUMN_GAP = 16;       // pixels between the texts of the list and their notes
constexpr int MAX_LIST_WIDTH = 900;  // pixels

}  // namespace

CCommandInput::CCommandInput(QWidget* pParent)
    : QLineEdit(pParent),
      m_pCompleter(new QCompleter(this)),
      m_pModel(new CCompletionModel(this)),
      m_pList(new QTreeView) {
  setFrame(false);
  CreatePopup();
  connect(this, &QLineEdit::textEdited, this, [this] { ShowCompletions(false); });
  connect(this, &QLineEdit::textChanged, this, &CCommandInput::UpdateSynopsis);
  connect(this, &QLineEdit::cursorPositionChanged, this, &CCommandInput::UpdateSynopsis);
}

void CCommandInput::CreatePopup() {
  m_pList->setRootIsDecorated(false);
  m_pList->setHeaderHidden(true);
  m_pList->setUniformRowHeights(true);
  m_pList->setSelectionBehavior(QAbstractItemView::SelectRows);
  m_pList->setEditTriggers(QAbstractItemView::NoEditTriggers);
  m_pList->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
  m_pList->setTextElideMode(Qt::ElideRight);
  m_pCompleter->setWidget(this);
  m_pCompleter->setModel(m_pModel);
  m_pCompleter->setPopup(m_pList);
  m_pCompleter->setCompletionMode(QCompleter::UnfilteredPopupCompletion);
  m_pCompleter->setMaxVisibleItems(MAX_VISIBLE_ROWS);
  m_pList->header()->setStretchLastSection(true);
  connect(m_pCompleter, qOverload<const QModelIndex&>(&QCompleter::activated), this, [this](const QModelIndex& Index) {
    if (Index.row() >= m_pModel->rowCount()) return;
    const COMPLETION_ITEM Item = m_pModel->ItemAt(Index.row());
    Insert(Item.sInsert, Item.bContinues);
  });
}

U32 CCommandInput::Command() const {
  const QString sLine = text().trimmed();
  static const QRegularExpression NameEnd(QStringLiteral("[ (;]"));
  return FindCommand(sLine.left(sLine.indexOf(NameEnd)));
}

void CCommandInput::ApplyFont(const QFont& Font) {
  setFont(Font);
  m_pList->setFont(Font);
}

bool CCommandInput::IsListOpen() const {
  return m_pList->isVisible();
}

bool CCommandInput::IsEntryChosen() const {
  return IsListOpen() && m_pList->currentIndex().isValid();
}

void CCommandInput::ShowCompletions(bool bAsked) {
  const COMMAND_PART Typed = Part();
  const bool bWanted = bAsked || !Typed.sTyped.isEmpty();
  const QList<COMPLETION_ITEM> Items = bWanted ? FindCompletions(Typed, m_Sources) : QList<COMPLETION_ITEM>();
  const bool bTypedOut = Items.size() == 1 && Items.first().sText.compare(Typed.sTyped, Qt::CaseInsensitive) == 0;
  if (Items.isEmpty() || bTypedOut) {
    m_pList->hide();
    return;
  }
  m_pModel->SetItems(Items);
  m_pList->setCurrentIndex(QModelIndex());
  m_pList->resizeColumnToContents(CCompletionModel::COLUMN_TEXT);
  const int TextWidth = m_pList->columnWidth(CCompletionModel::COLUMN_TEXT) + COLUMN_GAP;
  m_pList->setColumnWidth(CCompletionModel::COLUMN_TEXT, TextWidth);
  const int NoteWidth =
      static_cast<const QAbstractItemView*>(m_pList)->sizeHintForColumn(CCompletionModel::COLUMN_NOTE);
  const int BarWidth = m_pList->verticalScrollBar()->sizeHint().width();
  const int Width = std::min(TextWidth + NoteWidth + BarWidth + 2 * m_pList->frameWidth(), MAX_LIST_WIDTH);
  const int Left = fontMetrics().horizontalAdvance(text().left(Typed.Start));
  m_pCompleter->complete(QRect(std::min(Left, width() / 2), 0, Width, height()));
  m_pList->setCurrentIndex(QModelIndex());
  // Above the line where there is room, for the status bar below shows the synopsis.
  const int Top = mapToGlobal(QPoint(0, 0)).y() - m_pList->height();
  if (Top >= screen()->availableGeometry().top()) m_pList->move(m_pList->x(), Top);
}

void CCommandInput::Complete() {
  if (IsEntryChosen()) {
    const COMPLETION_ITEM Item = m_pModel->ItemAt(m_pList->currentIndex().row());
    return Insert(Item.sInsert, Item.bContinues);
  }
  const COMMAND_PART Typed = Part();
  const QList<COMPLETION_ITEM> Items = FindCompletions(Typed, m_Sources);
  if (Items.size() == 1) return Insert(Items.first().sInsert, Items.first().bContinues);
  const QString sPrefix = CommonPrefix(Items);
  const bool bLonger = sPrefix.size() > Typed.sTyped.size() && sPrefix.startsWith(Typed.sTyped, Qt::CaseInsensitive);
  if (bLonger) {
    const bool bQuote = Typed.bQuoted || (Typed.Argument >= 0 && sPrefix.contains(QLatin1Char(' ')));
    return Insert((bQuote ? QStringLiteral("\"") : QString()) + sPrefix, true);
  }
  ShowCompletions(true);
}

void CCommandInput::Insert(const QString& sText, bool bContinues) {
  const int Start = Part().Start;
  const int End = cursorPosition();
  m_pList->hide();
  setText(text().left(Start) + sText + text().mid(End));
  setCursorPosition(Start + static_cast<int>(sText.size()));
  if (bContinues) ShowCompletions(true);
}

void CCommandInput::Enter() {
  m_pList->hide();
  const QString sCommand = text();
  m_History.Add(sCommand);
  clear();
  Q_EMIT CommandEntered(sCommand);
}

void CCommandInput::Browse(bool bUp) {
  const QString sEntry = bUp ? m_History.Up() : m_History.Down();
  if (!sEntry.isNull()) setText(sEntry);
}

// The open list keeps the keys of commands from reaching their actions.
bool CCommandInput::RunFunctionKey(const QKeyEvent* pEvent) {
  if (!IsListOpen() || pEvent->key() < Qt::Key_F1 || pEvent->key() > Qt::Key_F35) return false;
  const QKeySequence Keys(pEvent->keyCombination());
  for (const U32 ID : GetCommandIDs()) {
    const QAction* const pAction = GetAction(ID);
    if (!pAction || !pAction->isEnabled() || !pAction->shortcuts().contains(Keys)) continue;
    m_pList->hide();
    ClearActionArgs(ID);
    TriggerAction(ID);
    return true;
  }
  return false;
}

bool CCommandInput::event(QEvent* pEvent) {
  if (pEvent->type() == QEvent::KeyPress) {
    auto* const pKey = static_cast<QKeyEvent*>(pEvent);
    if (pKey->key() == Qt::Key_Tab && pKey->modifiers() == Qt::NoModifier) {
      Complete();
      pKey->accept();
      return true;
    }
  }
  return QLineEdit::event(pEvent);
}

void CCommandInput::keyPressEvent(QKeyEvent* pEvent) {
  switch (pEvent->key()) {
    case Qt::Key_Return:
    case Qt::Key_Enter:
      // The completer takes the entry.
      if (IsEntryChosen()) return pEvent->ignore();
      Enter();
      break;
    case Qt::Key_Up:
    case Qt::Key_Down:
      Browse(pEvent->key() == Qt::Key_Up);
      break;
    default:
      if (!RunFunctionKey(pEvent)) return QLineEdit::keyPressEvent(pEvent);
  }
  pEvent->accept();
}

void CCommandInput::focusInEvent(QFocusEvent* pEvent) {
  QLineEdit::focusInEvent(pEvent);
  UpdateSynopsis();
}

// The list and other programs take the keyboard only for a while.
void CCommandInput::focusOutEvent(QFocusEvent* pEvent) {
  QLineEdit::focusOutEvent(pEvent);
  if (pEvent->reason() != Qt::PopupFocusReason && pEvent->reason() != Qt::ActiveWindowFocusReason) ShowSynopsis({});
}

void CCommandInput::UpdateSynopsis() {
  ShowSynopsis(CommandSynopsis(Part()));
}

void CCommandInput::ShowSynopsis(const QString& sSynopsis) {
  if (sSynopsis == m_sSynopsis) return;
  m_sSynopsis = sSynopsis;
  QStatusTipEvent Tip(sSynopsis);
  QApplication::sendEvent(this, &Tip);
}
