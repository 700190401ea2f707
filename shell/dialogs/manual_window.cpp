#include "shell/dialogs/manual_window.h"

#include <QAbstractTextDocumentLayout>
#include <QDir>
#include <QFile>
#include <QHBoxLayout>
#include <QKeyEvent>
#include <QLineEdit>
#include <QRegularExpression>
#include <QScrollBar>
#include <QSplitter>
#include <QTextBlock>
#include <QTextBrowser>
#include <QTextTable>
#include <QToolButton>
#include <QTreeWidget>
#include <QVBoxLayout>

#include "shell/look/look.h"
#include "shell/settings/fonts.h"

namespace {

constexpr int START_WIDTH = 900;     // pixels
constexpr int START_HEIGHT = 640;    // pixels
constexpr int CONTENTS_WIDTH = 240;  // pixels
constexpr int PAGE_MARGIN = 12;      // pixels
constexpr int CELL_PADDING = 4;      // pixels
constexpr int LINE_SPACING_PERCENT = 115;
constexpr int MAX_CONTENTS_LEVEL = 3;  // headings deeper than this are not listed
const QLatin1String FIRST_PAGE("index.md");

enum ITEM_ROLES : int { PAGE_ROLE = Qt::UserRole + 1, HEADING_ROLE };

QString ReadPage(const QString& sPath) {
  QFile File(sPath);
  return File.open(QIODevice::ReadOnly) ? QString::fromUtf8(File.readAll()) : QString();
}

QToolButton* MakeButton(Qt::ArrowType Arrow, const QString& sTip, QWidget* pParent) {
  auto* const pButton = new QToolButton(pParent);
  pButton->setArrowType(Arrow);
  pButton->setAutoRaise(true);
  pButton->setToolTip(sTip);
  return pButton;
}

// Plain Markdown tables have no lines and no room.
void StyleDocument(QTextDocument& Document, const QColor& Lines) {
  for (QTextFrame* const pFrame : Document.rootFrame()->childFrames()) {
    auto* const pTable = qobject_cast<QTextTable*>(pFrame);
    if (pTable == nullptr) continue;
    QTextTableFormat Format = pTable->format();
    Format.setBorderCollapse(true);
    Format.setBorder(1);
    Format.setBorderBrush(Lines);
    Format.setBorderStyle(QTextFrameFormat::BorderStyle_Solid);
    Format.setCellPadding(CELL_PADDING);
    pTable->setFormat(Format);
  }
  QTextBlockFormat Spacing;
  Spacing.setLineHeight(LINE_SPACING_PERCENT, QTextBlockFormat::ProportionalHeight);
  QTextCursor Cursor(&Document);
  Cursor.select(QTextCursor::Document);
  Cursor.mergeBlockFormat(Spacing);
}

// The desktop's colour of links is not made for every ground.
void ColorLinks(QTextDocument& Document, const QColor& Color) {
  QTextCharFormat Format;
  Format.setForeground(Color);
  for (QTextBlock Block = Document.begin(); Block.isValid(); Block = Block.next()) {
    for (auto It = Block.begin(); !It.atEnd(); ++It) {
      if (!It.fragment().charFormat().isAnchor()) continue;
      QTextCursor Cursor(&Document);
      Cursor.setPosition(It.fragment().position());
      Cursor.setPosition(It.fragment().position() + It.fragment().length(), QTextCursor::KeepAnchor);
      Cursor.mergeCharFormat(Format);
    }
  }
}

}  // namespace

CManualWindow::CManualWindow(QWidget* pParent, const QString& sDirectory)
    : CDialog(pParent, QStringLiteral("ManualWindow"), QStringLiteral("User Guide")), m_sDirectory(sDirectory) {
  setWindowFlag(Qt::WindowMaximizeButtonHint);
  resize(START_WIDTH, START_HEIGHT);
  CreateWidgets();
  ReadContents();
  ShowTopic(FIRST_PAGE);
  m_pBrowser->setFocus();
}

void CManualWindow::CreateWidgets() {
  auto* const pLayout = new QVBoxLayout(this);
  auto* const pBar = new QHBoxLayout;
  m_pBack = MakeButton(Qt::LeftArrow, QStringLiteral("Back (Alt+Left)"), this);
  m_pForward = MakeButton(Qt::RightArrow, QStringLiteral("Forward (Alt+Right)"), this);
  m_pSearch = new QLineEdit;
  m_pSearch->setPlaceholderText(QStringLiteral("Search the guide"));
  m_pSearch->setClearButtonEnabled(true);
  pBar->addWidget(m_pBack);
  pBar->addWidget(m_pForward);
  pBar->addWidget(m_pSearch, 1);
  pLayout->addLayout(pBar);
  auto* const pSplitter = new QSplitter;
  m_pContents = new QTreeWidget;
  m_pContents->setHeaderHidden(true);
  m_pBrowser = new QTextBrowser;
  m_pBrowser->setOpenLinks(false);
  pSplitter->addWidget(m_pContents);
  pSplitter->addWidget(m_pBrowser);
  pSplitter->setStretchFactor(1, 1);
  pSplitter->setSizes({CONTENTS_WIDTH, START_WIDTH - CONTENTS_WIDTH});
  pLayout->addWidget(pSplitter, 1);
  connect(m_pBack, &QToolButton::clicked, this, [this] { Go(-1); });
  connect(m_pForward, &QToolButton::clicked, this, [this] { Go(1); });
  connect(m_pBrowser, &QTextBrowser::anchorClicked, this, &CManualWindow::OnLinkClicked);
  const auto OnItem = [this](const QTreeWidgetItem* pItem) {
    ShowTopic(pItem->data(0, PAGE_ROLE).toString(), pItem->data(0, HEADING_ROLE).toString());
  };
  connect(m_pContents, &QTreeWidget::itemClicked, this, OnItem);
  connect(m_pContents, &QTreeWidget::itemActivated, this, OnItem);
}

QString CManualWindow::FilePath(const QString& sPage) const {
  return QDir(m_sDirectory).filePath(sPage);
}

// The first page's links give the order.
void CManualWindow::ReadContents() {
  static const QRegularExpression Link(QStringLiteral("\\[([^\\]]+)\\]\\(([\\w.-]+\\.md)\\)"));
  m_Pages << FIRST_PAGE;
  auto Match = Link.globalMatch(ReadPage(FilePath(FIRST_PAGE)));
  while (Match.hasNext()) {
    const QRegularExpressionMatch Found = Match.next();
    const QString sPage = Found.captured(2);
    if (m_Pages.contains(sPage) || !QFile::exists(FilePath(sPage))) continue;
    m_Pages << sPage;
    auto* const pItem = new QTreeWidgetItem(m_pContents, {Found.captured(1)});
    pItem->setData(0, PAGE_ROLE, sPage);
    AddHeadings(pItem, sPage);
  }
}

void CManualWindow::AddHeadings(QTreeWidgetItem* pPage, const QString& sPage) {
  QList<QTreeWidgetItem*> Parents{nullptr, pPage};  // by level
  for (QTextBlock Block = Document(sPage)->begin(); Block.isValid(); Block = Block.next()) {
    const int Level = Block.blockFormat().headingLevel();
    if (Level < 2 || Level > MAX_CONTENTS_LEVEL) continue;
    while (Parents.size() > Level) Parents.removeLast();
    auto* const pItem = new QTreeWidgetItem(Parents.last(), {Block.text()});
    pItem->setData(0, PAGE_ROLE, sPage);
    pItem->setData(0, HEADING_ROLE, Block.text());
    Parents << pItem;
  }
}

QString CManualWindow::CurrentHeading() const {
  for (QTextBlock Block = m_pBrowser->textCursor().block(); Block.isValid(); Block = Block.previous()) {
    if (Block.blockFormat().headingLevel() > 0) return Block.text();
  }
  return {};
}

// A document of its own: the browser's would be laid out anew with every paragraph that is read into it.
QTextDocument* CManualWindow::Document(const QString& sPage) {
  QTextDocument*& pDocument = m_Documents[sPage];
  if (pDocument) return pDocument;
  pDocument = new QTextDocument(this);
  pDocument->setBaseUrl(QUrl::fromLocalFile(FilePath(sPage)));
  pDocument->setDefaultFont(GetFont(FONT_APP));
  const QString sText = ReadPage(FilePath(sPage));
  pDocument->setMarkdown(sText.isNull() ? QStringLiteral("The page was not found: `%1`").arg(FilePath(sPage)) : sText);
  pDocument->setDocumentMargin(PAGE_MARGIN);
  StyleDocument(*pDocument, palette().color(QPalette::Mid));
  ColorLinks(*pDocument, ReadableColor(palette().color(QPalette::Link)));
  pDocument->setUndoRedoEnabled(false);
  return pDocument;
}

void CManualWindow::ShowPage(const QString& sPage) {
  if (sPage == m_sPage) return;
  m_sPage = sPage;
  m_pBrowser->setDocument(Document(sPage));
  for (int i = 0; i < m_pContents->topLevelItemCount(); ++i) {
    QTreeWidgetItem* const pItem = m_pContents->topLevelItem(i);
    if (pItem->data(0, PAGE_ROLE).toString() == sPage) m_pContents->setCurrentItem(pItem);
  }
}

void CManualWindow::ShowTopic(const QString& sPage, const QString& sHeading) {
  Remember();
  ShowPage(sPage);
  QTextBlock Target = m_pBrowser->document()->begin();
  for (QTextBlock Block = Target; Block.isValid() && !sHeading.isEmpty(); Block = Block.next()) {
    const bool bHeading = Block.blockFormat().headingLevel() > 0;
    if (bHeading && Block.text().compare(sHeading, Qt::CaseInsensitive) == 0) {
      Target = Block;
      break;
    }
  }
  m_pBrowser->setTextCursor(QTextCursor(Target));
  const QRectF Rect = m_pBrowser->document()->documentLayout()->blockBoundingRect(Target);
  m_pBrowser->verticalScrollBar()->setValue(static_cast<int>(Rect.top()) - PAGE_MARGIN);
  m_History.resize(m_HistoryIndex + 1);
  m_History.append({sPage, Target.position(), m_pBrowser->verticalScrollBar()->value()});
  m_HistoryIndex = static_cast<int>(m_History.size()) - 1;
  UpdateButtons();
}

// The place that is being left may have been scrolled.
void CManualWindow::Remember() {
  if (m_HistoryIndex < 0) return;
  m_History[m_HistoryIndex] = {m_sPage, m_pBrowser->textCursor().position(), m_pBrowser->verticalScrollBar()->value()};
}

void CManualWindow::Go(int Step) {
  const int Index = m_HistoryIndex + Step;
  if (Index < 0 || Index >= m_History.size()) return;
  Remember();
  m_HistoryIndex = Index;
  const PLACE Place = m_History[Index];
  ShowPage(Place.sPage);
  QTextCursor Cursor(m_pBrowser->document());
  Cursor.setPosition(Place.Position);
  m_pBrowser->setTextCursor(Cursor);
  m_pBrowser->verticalScrollBar()->setValue(Place.Scroll);
  UpdateButtons();
}

void CManualWindow::UpdateButtons() {
  m_pBack->setEnabled(m_HistoryIndex > 0);
  m_pForward->setEnabled(m_HistoryIndex + 1 < m_History.size());
}

// Pages of the guide only: nothing here leads to the network.
void CManualWindow::OnLinkClicked(const QUrl& Link) {
  const QString sPage = Link.fileName();
  if (m_Pages.contains(sPage)) ShowTopic(sPage, Link.fragment());
}

bool CManualWindow::FindNext(const QString& sText) {
  if (sText.isEmpty()) return false;
  if (m_pBrowser->find(sText)) return true;
  const QTextCursor Start = m_pBrowser->textCursor();
  const QString sStartPage = CurrentPage();
  const qsizetype First = m_Pages.indexOf(sStartPage);
  for (qsizetype i = 1; i <= m_Pages.size(); ++i) {
    const QString& sPage = m_Pages[(First + i) % m_Pages.size()];
    if (!ReadPage(FilePath(sPage)).contains(sText, Qt::CaseInsensitive)) continue;
    ShowTopic(sPage);
    if (m_pBrowser->find(sText)) return true;
  }
  ShowTopic(sStartPage);
  m_pBrowser->setTextCursor(Start);
  return false;
}

void CManualWindow::keyPressEvent(QKeyEvent* pEvent) {
  const bool bReturn = pEvent->key() == Qt::Key_Return || pEvent->key() == Qt::Key_Enter;
  if (pEvent->matches(QKeySequence::Find)) {
    m_pSearch->setFocus();
    m_pSearch->selectAll();
  } else if (pEvent->key() == Qt::Key_F3 || (bReturn && m_pSearch->hasFocus())) {
    FindNext(m_pSearch->text());
  } else if (pEvent->matches(QKeySequence::Back)) {
    Go(-1);
  } else if (pEvent->matches(QKeySequence::Forward)) {
    Go(1);
  } else if (!bReturn) {
    CDialog::keyPressEvent(pEvent);
  }
}
