#include "ui/windows/source_mouse.h"

#include <QApplication>
#include <QDrag>
#include <QMimeData>
#include <QPainter>

#include "shell/actions/action_dispatch.h"
#include "shell/actions/action_ids.h"
#include "ui/windows/source_editor.h"

namespace {

constexpr U32 WORD_ACTIONS[] = {ACTION_WATCH, ACTION_TRACE_ADD, ACTION_VIEW_DATA, ACTION_VIEW_MEMORY_MAP,
                                ACTION_VIEW_SOURCE};
constexpr QSize DRAG_MARGINS(8, 3);  // pixels around the text

}  // namespace

CSourceMouse::CSourceMouse(CSourceEditor* pEditor) : QObject(pEditor), m_pEditor(pEditor) {
  connect(pEditor, &CSourceEditor::MousePressed, this, &CSourceMouse::OnPressed);
  connect(pEditor, &CSourceEditor::MouseDoubleClicked, this, &CSourceMouse::OnPressed);
  connect(pEditor, &CSourceEditor::MouseMoved, this, &CSourceMouse::OnMoved);
}

bool CSourceMouse::IsOnSelectedWord(const QPoint& Pos) const {
  return m_pEditor->HasSelection() && m_pEditor->WordAt(Pos) == m_pEditor->SelectedText();
}

void CSourceMouse::OnPressed(const QPoint& Pos, Qt::MouseButton Button) {
  m_PressPos = Pos;
  m_bMayDrag = Button == Qt::LeftButton && IsOnSelectedWord(Pos);
  if (!m_pEditor->IsOnText(Pos)) return;
  // A left press elsewhere takes the selection away.
  OfferWord(Pos, Button == Qt::RightButton || m_bMayDrag);
  Q_EMIT Clicked(Pos);
}

void CSourceMouse::OfferWord(const QPoint& Pos, bool bSelection) {
  QString sText = bSelection ? m_pEditor->SelectedText() : QString();
  if (sText.isEmpty() || sText.contains(QLatin1Char('\n'))) sText = m_pEditor->WordAt(Pos);
  for (const U32 ID : WORD_ACTIONS) {
    if (sText.isEmpty()) {
      ClearActionArgs(ID);
    } else {
      SetActionArgs(ID, QStringList{sText});
    }
  }
  Q_EMIT ArgumentOffered();
}

void CSourceMouse::OnMoved(const QPoint& Pos, Qt::MouseButtons Buttons) {
  if (!m_bMayDrag || !(Buttons & Qt::LeftButton)) return;
  if ((Pos - m_PressPos).manhattanLength() < QApplication::startDragDistance()) return;
  m_bMayDrag = false;
  StartDrag();
}

void CSourceMouse::StartDrag() {
  const QString sText = m_pEditor->SelectedText();
  const QFontMetrics Metrics(m_pEditor->font());
  QPixmap Picture(QSize(Metrics.horizontalAdvance(sText), Metrics.height()) + DRAG_MARGINS);
  Picture.fill(m_pEditor->palette().color(QPalette::Base));
  QPainter Painter(&Picture);
  Painter.setFont(m_pEditor->font());
  Painter.setPen(m_pEditor->palette().color(QPalette::Text));
  Painter.drawRect(Picture.rect().adjusted(0, 0, -1, -1));
  Painter.drawText(Picture.rect(), Qt::AlignCenter, sText);
  Painter.end();
  auto* const pData = new QMimeData;
  pData->setText(sText);
  auto* const pDrag = new QDrag(m_pEditor);
  pDrag->setMimeData(pData);
  pDrag->setPixmap(Picture);
  pDrag->setHotSpot(Picture.rect().center());
  m_pEditor->CancelClick();
  pDrag->exec(Qt::CopyAction);
}
