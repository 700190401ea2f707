#include "shell/dialogs/preferences_dialog.h"

#include <QDialogButtonBox>
#include <QFrame>
#include <QHBoxLayout>
#include <QLabel>
#include <QPushButton>
#include <QStackedWidget>
#include <QTreeWidget>
#include <QVBoxLayout>

#include "shell/dialogs/color_box.h"
#include "shell/dialogs/font_box.h"
#include "shell/dialogs/preference_pages.h"
#include "shell/dialogs/variable_box.h"
#include "shell/look/look.h"
#include "shell/settings/fonts.h"
#include "shell/settings/settings_cache.h"
#include "shell/settings/sys_vars.h"
#include "shell/settings/var_ids.h"
#include "ui/message_box.h"

namespace {

constexpr int TREE_MARGIN = 90;          // pixels beside the widest text
constexpr double PAGE_TO_TREE = 2.2;     // widths
constexpr int SPACING = 10;              // pixels
constexpr double TITLE_FONT_SIZE = 1.2;  // of the application's font
constexpr int FIRST_PAGE = 1;
constexpr int NO_RECENT_PAGE = -1;
const QString RECENT_PAGE_KEY = QStringLiteral("RecentPageID");

QList<U32> ListOf(std::span<const U32> IDs) {
  return QList<U32>(IDs.begin(), IDs.end());
}

}  // namespace

CPreferencesDialog::CPreferencesDialog(QWidget* pParent)
    : CDialog(pParent, QStringLiteral("PreferencesDialog"), QStringLiteral("Preferences")),
      m_pTree(new QTreeWidget(this)),
      m_pPages(new QStackedWidget(this)),
      m_pTitle(new QLabel(this)) {
  m_pTree->setHeaderHidden(true);
  m_pTree->setFixedWidth(TreeWidth());
  m_pPages->setMinimumWidth(static_cast<int>(TreeWidth() * PAGE_TO_TREE));
  QFont TitleFont = font();
  TitleFont.setBold(true);
  TitleFont.setPointSizeF(TitleFont.pointSizeF() * TITLE_FONT_SIZE);
  m_pTitle->setFont(TitleFont);
  auto* const pLine = new QFrame(this);
  pLine->setFrameStyle(QFrame::HLine | QFrame::Plain);
  pLine->setForegroundRole(QPalette::Mid);
  // Made in the order in which Tab goes through the widgets.
  AddPages();
  auto* const pButtons = new QDialogButtonBox(QDialogButtonBox::Ok | QDialogButtonBox::Close, this);
  pButtons->button(QDialogButtonBox::Ok)->setDefault(true);

  auto* const pRight = new QVBoxLayout;
  pRight->setSpacing(SPACING);
  pRight->addWidget(m_pTitle);
  pRight->addWidget(pLine);
  pRight->addWidget(m_pPages, 1);
  auto* const pMiddle = new QHBoxLayout;
  pMiddle->setSpacing(2 * SPACING);
  pMiddle->addWidget(m_pTree);
  pMiddle->addLayout(pRight, 1);
  auto* const pLayout = new QVBoxLayout(this);
  pLayout->setSpacing(SPACING);
  pLayout->addLayout(pMiddle, 1);
  pLayout->addWidget(pButtons);

  connect(pButtons, &QDialogButtonBox::accepted, this, &QDialog::accept);
  connect(pButtons, &QDialogButtonBox::rejected, this, &QDialog::reject);
  connect(m_pTree, &QTreeWidget::currentItemChanged, this, &CPreferencesDialog::OnItemSelected);
  const int Recent = Setting(RECENT_PAGE_KEY, NO_RECENT_PAGE).toInt();
  SelectPage(Recent == NO_RECENT_PAGE ? FIRST_PAGE : Recent);
  m_pTree->setFocus();
}

void CPreferencesDialog::Run(QWidget* pParent) {
  bool bReopen = true;
  while (bReopen) {
    CPreferencesDialog Dialog(pParent);
    Dialog.exec();
    bReopen = Dialog.IsReopenWanted();
  }
  if (GetVarValue(PREF_RESET_DIALOG_DNSA) == 0) return;
  CMessageBox::ResetTimeouts();
  RemoveSetting(QStringLiteral("AppData/SourceEditor/DoNotShowInfoMsgAgain"));
  SetVarValue(GetVarInfo(PREF_RESET_DIALOG_DNSA), 0, 1);
}

int CPreferencesDialog::TreeWidth() const {
  int Width = 0;
  for (const PREFERENCE_PAGE& Page : PreferencePages()) {
    Width = std::max({Width, GetTextWidth(FONT_APP, QLatin1String(Page.sTitle)),
                      GetTextWidth(FONT_APP, QLatin1String(Page.sGroup))});
  }
  return Width + TREE_MARGIN;
}

void CPreferencesDialog::AddPages() {
  QTreeWidgetItem* pGroup = nullptr;
  for (const PREFERENCE_PAGE& Page : PreferencePages()) {
    const QString sGroup = QLatin1String(Page.sGroup);
    if (pGroup == nullptr || pGroup->text(0) != sGroup) pGroup = new QTreeWidgetItem(m_pTree, {sGroup});
    m_PageItems << new QTreeWidgetItem(pGroup, {QLatin1String(Page.sTitle)});
    m_pPages->addWidget(MakePage(Page));
  }
  m_pTree->expandAll();
}

QWidget* CPreferencesDialog::MakePage(const PREFERENCE_PAGE& Page) {
  auto* const pPage = new QWidget(m_pPages);
  auto* const pLayout = new QVBoxLayout(pPage);
  pLayout->setContentsMargins(0, 0, 0, 0);
  pLayout->setSpacing(SPACING);
  if (!Page.Variables.empty()) pLayout->addWidget(new CVariableBox(ListOf(Page.Variables), pPage));
  if (!Page.Fonts.empty()) pLayout->addWidget(new CFontBox(ListOf(Page.Fonts), pPage));
  if (!Page.Colors.empty()) pLayout->addWidget(new CColorBox(ListOf(Page.Colors), pPage));
  pLayout->addStretch();
  return pPage;
}

void CPreferencesDialog::SelectPage(int PageID) {
  const qsizetype Index = PageID >= FIRST_PAGE && PageID < FIRST_PAGE + m_PageItems.size() ? PageID - FIRST_PAGE : 0;
  m_pTree->setCurrentItem(m_PageItems[Index]);
}

int CPreferencesDialog::GetPageID() const {
  return m_pPages->currentIndex() + FIRST_PAGE;
}

void CPreferencesDialog::OnItemSelected() {
  const QTreeWidgetItem* pItem = m_pTree->currentItem();
  if (pItem == nullptr) return;
  // A group stands for its first page.
  if (pItem->childCount() > 0) pItem = pItem->child(0);
  const qsizetype Index = m_PageItems.indexOf(pItem);
  m_pPages->setCurrentIndex(static_cast<int>(Index));
  m_pTitle->setText(pItem->parent()->text(0) + QStringLiteral(" / ") + pItem->text(0));
  StoreSetting(RECENT_PAGE_KEY, GetPageID());
}

void CPreferencesDialog::OnApplicationFontChanged() {
  if (!isVisible()) return;
  m_bReopen = true;
  reject();
}

bool CPreferencesDialog::event(QEvent* pEvent) {
  if (pEvent->type() == QEvent::ApplicationFontChange) OnApplicationFontChanged();
  return CDialog::event(pEvent);
}
