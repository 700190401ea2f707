#include "ui/windows/source_edits.h"

#include <QCoreApplication>
#include <QTextBlock>
#include <algorithm>

namespace {

QString WithLineFeeds(QString sText) {
  return sText.replace(QChar::ParagraphSeparator, QLatin1Char('\n'));
}

int SizeOf(const QTextDocument& Document) {
  return Document.characterCount() - 1;
}

void SetSelection(QPlainTextEdit& Field, const EDIT_SELECTION& Selection) {
  QTextCursor Cursor(Field.document());
  const int Size = SizeOf(*Field.document());
  Cursor.setPosition(std::clamp(Selection.Anchor, 0, Size));
  Cursor.setPosition(std::clamp(Selection.Pos, 0, Size), QTextCursor::KeepAnchor);
  Field.setTextCursor(Cursor);
}

EDIT_SELECTION SelectionOf(const QPlainTextEdit& Field) {
  return {Field.textCursor().anchor(), Field.textCursor().position()};
}

// A tab, or as many blanks as make one stop.
int LengthOfStop(const QString& sLine, int TabSpacing) {
  if (sLine.startsWith(QLatin1Char('\t'))) return 1;
  int Length = 0;
  while (Length < TabSpacing && Length < sLine.size() && sLine[Length] == QLatin1Char(' ')) ++Length;
  return Length;
}

constexpr QKeySequence::StandardKey EDIT_KEYS[] = {
    QKeySequence::Cut,
    QKeySequence::Paste,
    QKeySequence::Undo,
    QKeySequence::Redo,
    QKeySequence::Delete,
    QKeySequence::DeleteStartOfWord,
    QKeySequence::DeleteEndOfWord,
    QKeySequence::DeleteEndOfLine,
};

}  // namespace

CSourceEdits::DOCUMENT* CSourceEdits::Find(const QString& sPath) {
  const auto Found = m_Documents.find(sPath);
  return Found == m_Documents.end() ? nullptr : &Found->second;
}

void CSourceEdits::Open(const QString& sPath, const QString& sText) {
  if (Has(sPath)) return;
  DOCUMENT& Document = m_Documents[sPath];
  // Without a parent, for keys that it ignores would go there: to the editor that sent them.
  Document.pField = std::make_unique<QPlainTextEdit>();
  QPlainTextEdit& Field = *Document.pField;
  Field.hide();
  Field.setFocusPolicy(Qt::NoFocus);
  Field.setLineWrapMode(QPlainTextEdit::NoWrap);
  Field.setPlainText(sText);
  Field.document()->setModified(false);
  Document.Size = SizeOf(*Field.document());
  connect(Field.document(), &QTextDocument::contentsChange, this,
          [this, sPath](int Position, int NumRemoved, int NumAdded) {
            OnContentsChange(sPath, Position, NumRemoved, NumAdded);
          });
}

// The toolkit counts the separator behind the last block in, and with it more characters than there are.
void CSourceEdits::OnContentsChange(const QString& sPath, int Position, int NumRemoved, int NumAdded) {
  DOCUMENT& Document = *Find(sPath);
  QTextDocument* const pText = Document.pField->document();
  const int OldSize = std::exchange(Document.Size, SizeOf(*pText));
  NumRemoved = std::min(NumRemoved, OldSize - Position);
  NumAdded = std::min(NumAdded, Document.Size - Position);
  if (OldSize - NumRemoved + NumAdded != Document.Size) {
    Position = 0;
    NumRemoved = OldSize;
    NumAdded = Document.Size;
  }
  QTextCursor Cursor(pText);
  Cursor.setPosition(Position);
  Cursor.setPosition(Position + NumAdded, QTextCursor::KeepAnchor);
  Q_EMIT Changed(sPath, Position, NumRemoved, WithLineFeeds(Cursor.selectedText()));
}

// Not the plain text, in which the toolkit puts blanks in the place of those that don't break.
std::optional<QString> CSourceEdits::Text(const QString& sPath) const {
  const DOCUMENT* const pDocument = Find(sPath);
  if (pDocument == nullptr) return std::nullopt;
  return WithLineFeeds(pDocument->pField->document()->toRawText());
}

bool CSourceEdits::IsModified(const QString& sPath) const {
  const DOCUMENT* const pDocument = Find(sPath);
  return pDocument && pDocument->pField->document()->isModified();
}

void CSourceEdits::SetSaved(const QString& sPath) {
  DOCUMENT* const pDocument = Find(sPath);
  if (pDocument == nullptr) return;
  pDocument->pField->document()->setModified(false);
  pDocument->Moves.clear();
}

void CSourceEdits::NoteMove(const QString& sPath, const EDIT_EVENT& Move) {
  if (DOCUMENT* const pDocument = Find(sPath)) pDocument->Moves.push_back(Move);
}

std::vector<EDIT_EVENT> CSourceEdits::Drop(const QString& sPath) {
  const auto Dropped = m_Documents.extract(sPath);
  if (Dropped.empty()) return {};
  const std::vector<EDIT_EVENT>& Moves = Dropped.mapped().Moves;
  return {Moves.rbegin(), Moves.rend()};
}

bool CSourceEdits::CanUndo(const QString& sPath) const {
  const DOCUMENT* const pDocument = Find(sPath);
  return pDocument && pDocument->pField->document()->isUndoAvailable();
}

bool CSourceEdits::CanRedo(const QString& sPath) const {
  const DOCUMENT* const pDocument = Find(sPath);
  return pDocument && pDocument->pField->document()->isRedoAvailable();
}

bool CSourceEdits::IsEdit(const QKeyEvent& Event) {
  if (std::ranges::any_of(EDIT_KEYS, [&Event](QKeySequence::StandardKey Key) { return Event.matches(Key); })) {
    return true;
  }
  const bool bCommand = Event.modifiers() & (Qt::ControlModifier | Qt::AltModifier | Qt::MetaModifier);
  switch (Event.key()) {
    case Qt::Key_Y:
      if (Event.modifiers() == Qt::ControlModifier) return true;
      break;
    case Qt::Key_Return:
    case Qt::Key_Enter:
    case Qt::Key_Backspace:
    case Qt::Key_Tab:
    case Qt::Key_Backtab:
      return !bCommand;
    default:
      break;
  }
  return !bCommand && !Event.text().isEmpty() && (Event.text().front().isPrint() || Event.text().front().isSurrogate());
}

EDIT_SELECTION CSourceEdits::Press(const QString& sPath, const QKeyEvent& Event, EDIT_SELECTION Selection) {
  QPlainTextEdit& Field = *Find(sPath)->pField;
  SetSelection(Field, Selection);
  if (Event.key() == Qt::Key_Y && Event.modifiers() == Qt::ControlModifier) {
    Field.redo();
    return SelectionOf(Field);
  }
  // Shift and Return would make a line that ends with another separator.
  const bool bReturn = Event.key() == Qt::Key_Return || Event.key() == Qt::Key_Enter;
  QKeyEvent Press(QEvent::KeyPress, Event.key(), bReturn ? Qt::NoModifier : Event.modifiers(), Event.text());
  QCoreApplication::sendEvent(&Field, &Press);
  return SelectionOf(Field);
}

EDIT_SELECTION CSourceEdits::Insert(const QString& sPath, const QString& sText, EDIT_SELECTION Selection) {
  QPlainTextEdit& Field = *Find(sPath)->pField;
  SetSelection(Field, Selection);
  Field.insertPlainText(sText);
  return SelectionOf(Field);
}

EDIT_SELECTION CSourceEdits::Indent(const QString& sPath, EDIT_SELECTION Selection, bool bBack, int TabSpacing) {
  QTextDocument* const pText = Find(sPath)->pField->document();
  const int From = std::min(Selection.Anchor, Selection.Pos);
  const int To = std::max(Selection.Anchor, Selection.Pos);
  const QTextBlock First = pText->findBlock(From);
  QTextBlock Last = pText->findBlock(To);
  if (To == Last.position() && To > From) Last = Last.previous();
  const int LastNumber = Last.blockNumber();
  QTextCursor Cursor(pText);
  Cursor.beginEditBlock();
  for (QTextBlock Block = First; Block.isValid() && Block.blockNumber() <= LastNumber; Block = Block.next()) {
    Cursor.setPosition(Block.position());
    if (bBack) {
      const int Length = LengthOfStop(Block.text(), TabSpacing);
      Cursor.setPosition(Block.position() + Length, QTextCursor::KeepAnchor);
      Cursor.removeSelectedText();
    } else if (Block.length() > 1) {
      Cursor.insertText(QStringLiteral("\t"));
    }
  }
  Cursor.endEditBlock();
  const QTextBlock End = pText->findBlockByNumber(LastNumber);
  return {First.position(), std::min(End.position() + End.length(), SizeOf(*pText))};
}
