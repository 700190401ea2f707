#include "ui/windows/source_tips.h"

#include <QElapsedTimer>
#include <QFileInfo>

#include "shell/log/log.h"
#include "shell/settings/fonts.h"
#include "ui/syntax/syntax_highlighter.h"
#include "ui/tool_tip.h"
#include "ui/windows/source_editor.h"

namespace {

constexpr int TIP_DELAY_MS = 200;
constexpr int NEXT_TIP_DELAY_MS = 50;  // while one is shown
constexpr int SAME_PLACE = 6;          // pixels
constexpr const char* OUT_OF_SCOPE = "<outofscope>";

}  // namespace

CSourceTips::CSourceTips(CSourceEditor* pEditor) : QObject(pEditor), m_pEditor(pEditor) {
  m_Timer.setSingleShot(true);
  connect(&m_Timer, &QTimer::timeout, this, &CSourceTips::OnTooltipRequested);
  connect(pEditor, &CSourceEditor::MousePressed, this, &CSourceTips::OnMousePressed);
  connect(pEditor, &CSourceEditor::MouseMoved, this, &CSourceTips::OnMouseMoved);
  connect(pEditor, &CSourceEditor::MouseLeft, &m_Timer, &QTimer::stop);
}

void CSourceTips::SetEnabled(bool bEnabled) {
  m_bEnabled = bEnabled;
  if (!bEnabled) m_Timer.stop();
}

void CSourceTips::OnMousePressed(const QPoint& Pos) {
  CToolTip::_GetSingleton()->HideNow();
  m_Timer.stop();
  m_PressPos = Pos;
}

void CSourceTips::OnMouseMoved(const QPoint& Pos) {
  if (!m_bEnabled || !m_Evaluate) return;
  m_Pos = Pos;
  const QPoint Way = Pos - m_PressPos;
  if (std::max(std::abs(Way.x()), std::abs(Way.y())) < SAME_PLACE) return m_Timer.stop();
  m_Timer.start(CToolTip::_GetSingleton()->isVisible() ? NEXT_TIP_DELAY_MS : TIP_DELAY_MS);
}

// Once for each text that is asked about.
QString CSourceTips::CodeLine(int Line) {
  if (!m_bCodeValid) {
    QElapsedTimer Clock;
    Clock.start();
    QString sCode = m_pEditor->GetText();
    const QString sSuffix = QFileInfo(m_pEditor->GetFilePath()).suffix().toLower();
    CSyntaxHighlighter::EraseCommentsAndStrings(CSyntaxHighlighter::GetLanguage(sSuffix), sCode, QLatin1Char(' '));
    m_Code = sCode.split(QLatin1Char('\n'));
    m_bCodeValid = true;
    LogMsg(QStringLiteral("Erased comments within source file in: %1 ms").arg(Clock.elapsed()),
           MSG_INFO | MSG_TO_STDOUT | MSG_TO_FILE);
  }
  return m_Code.value(Line);
}

QString CSourceTips::CodeWordAt(const QPoint& Point) {
  TEXT_POS Pos;
  const QString sWord = m_pEditor->IsOnText(Point) ? m_pEditor->WordAt(Point, &Pos) : QString();
  if (sWord.isEmpty() || !m_pEditor->Rows().IsSource(Pos.y())) return {};
  const QString sLine = CodeLine(static_cast<int>(m_pEditor->Rows().LineOfRow(Pos.y())) - 1);
  return QStringView(sLine).mid(Pos.x(), sWord.size()) == sWord ? sWord : QString();
}

QString CSourceTips::ExpressionOf(const QString& sWord) const {
  QStringList Expressions = {sWord};
  if (sWord != QLatin1String("this")) Expressions << QStringLiteral("this->") + sWord;
  for (const QString& sExpression : Expressions) {
    const QString sText = m_Evaluate(sExpression);
    if (!sText.isNull() && sText != QLatin1String(OUT_OF_SCOPE)) return sExpression;
  }
  return {};
}

void CSourceTips::OnTooltipRequested() {
  const QString sWord = CodeWordAt(m_Pos);
  const QString sExpression = sWord.isEmpty() || !m_Evaluate ? QString() : ExpressionOf(sWord);
  if (sExpression.isEmpty()) {
    CToolTip::_GetSingleton()->Hide();
  } else {
    Q_EMIT SymbolTooltipRequest(m_pEditor->viewport()->mapToGlobal(m_Pos), sExpression, FONT_SRC_CODE);
  }
}
