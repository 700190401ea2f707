#include "shell/dialogs/welcome_screen.h"

#include <QHBoxLayout>
#include <QKeyEvent>
#include <QLabel>
#include <QPushButton>
#include <QTimer>
#include <QToolButton>
#include <QVBoxLayout>

#include "base/text.h"
#include "shell/look/look.h"
#include "shell/settings/fonts.h"
#include "ui/popup_menu.h"

namespace {

constexpr int BUTTON_LINES = 3;       // height of a button, in lines of text
constexpr double WIDTH_FACTOR = 1.1;  // of the preferred width
constexpr int CLICK_DURATION_MS = 100;
constexpr int MENU_OFFSET = 50;            // pixels from a button's left edge
constexpr double MENU_HEIGHT_PART = 0.75;  // of the button's height
constexpr int HEADING_SCALE_PERCENT = 130;

}  // namespace

CWelcomeScreen::CWelcomeScreen(QWidget* pParent, const QStringList& RecentProjects)
    : CDialog(pParent, QStringLiteral("WelcomeScreen"), QStringLiteral("Vexor - The V-Node Debugger")),
      m_RecentProjects(RecentProjects) {
  auto* const pLayout = new QVBoxLayout(this);
  auto* const pHeading = new QLabel(QStringLiteral("Welcome to Vexor - The V-Node Debugger"));
  QFont HeadingFont = GetFont(FONT_APP);
  HeadingFont.setPointSize(HeadingFont.pointSize() * HEADING_SCALE_PERCENT / 100);
  HeadingFont.setBold(true);
  pHeading->setFont(HeadingFont);
  pLayout->addWidget(pHeading);
  pLayout->addWidget(new QLabel(QStringLiteral("What do you want to do?")));
  pLayout->addSpacing(GetFontHeight(FONT_APP) / 2);
  pLayout->addWidget(AddButton("  Start with &Empty Project ", EMPTY_PROJECT));
  pLayout->addWidget(AddButton("  Create &New Project ", NEW_PROJECT));
  pLayout->addWidget(AddButton("  &Open Existing Project ", OPEN_PROJECT));
  QPushButton* const pRecent = AddButton("  Open &Recent Project ", RECENT_PROJECT);
  pLayout->addWidget(MakeRecentRow(pRecent));
  (RecentProjects.isEmpty() ? findChild<QPushButton*>() : pRecent)->setFocus();
  pLayout->addItem(new QSpacerItem(static_cast<int>(sizeHint().width() * WIDTH_FACTOR), 0));
  SetFixedToContents();
}

QPushButton* CWelcomeScreen::AddButton(const char* sText, CHOICES Choice) {
  auto* const pButton = new QPushButton(QLatin1String(sText), this);
  pButton->setMinimumHeight(BUTTON_LINES * GetFontHeight(FONT_APP));
  pButton->setAutoDefault(false);
  connect(pButton, &QPushButton::clicked, this, [this, Choice] { Take(Choice); });
  return pButton;
}

QWidget* CWelcomeScreen::MakeRecentRow(QPushButton* pRecent) {
  auto* const pRow = new QWidget(this);
  auto* const pLayout = new QHBoxLayout(pRow);
  pLayout->setContentsMargins(0, 0, 0, 0);
  pLayout->setSpacing(0);
  pLayout->addWidget(pRecent, 1);
  auto* const pArrow = new QToolButton(pRow);
  pArrow->setArrowType(Qt::DownArrow);
  pArrow->setMinimumHeight(pRecent->minimumHeight());
  pArrow->setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Expanding);
  pArrow->setEnabled(!m_RecentProjects.isEmpty());
  pArrow->setToolTip(QStringLiteral("Recent projects"));
  pArrow->setFocusPolicy(Qt::StrongFocus);
  connect(pArrow, &QToolButton::clicked, this, [this, pRecent] { ShowRecentMenu(pRecent); });
  pLayout->addWidget(pArrow);
  return pRow;
}

void CWelcomeScreen::ShowRecentMenu(const QPushButton* pRecent) {
  CPopupMenu Menu(this);
  for (const QString& sPath : std::as_const(m_RecentProjects)) Menu.addAction(MenuText(sPath))->setData(sPath);
  const QPoint Pos(MENU_OFFSET, static_cast<int>(pRecent->height() * MENU_HEIGHT_PART));
  if (const QAction* const pAction = Menu.Run(pRecent->mapToGlobal(Pos))) {
    Take(RECENT_PROJECT, pAction->data().toString());
  }
}

void CWelcomeScreen::Take(CHOICES Choice, const QString& sPath) {
  m_Choice = Choice;
  m_sPath = sPath;
  if (Choice == RECENT_PROJECT && sPath.isEmpty()) {
    m_Choice = m_RecentProjects.isEmpty() ? EMPTY_PROJECT : RECENT_PROJECT;
    m_sPath = m_RecentProjects.value(0);
  }
  accept();
}

void CWelcomeScreen::keyPressEvent(QKeyEvent* pEvent) {
  if (pEvent->key() != Qt::Key_Return && pEvent->key() != Qt::Key_Enter) return;
  auto* const pButton = qobject_cast<QAbstractButton*>(focusWidget());
  if (pButton == nullptr) return;
  pButton->setDown(true);
  QTimer::singleShot(CLICK_DURATION_MS, pButton, [pButton] {
    pButton->setDown(false);
    pButton->click();
  });
}
