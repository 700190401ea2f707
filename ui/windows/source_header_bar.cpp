#include "ui/windows/source_header_bar.h"

#include <QAbstractItemView>
#include <QComboBox>
#include <QHBoxLayout>

#include "program/database/elfapi.h"
#include "shell/look/look.h"

namespace {

constexpr int UPDATE_DELAY_MS = 150;
constexpr const char* ICON_FILE = "document-text.png";
constexpr const char* ICON_FUNCTION = "function-single.png";
constexpr const char* ICON_INLINED = "arrow-curve.png";
constexpr const char* ICON_BRACKETS = "brackets.png";

const char* IconOf(ELF_SYM_HANDLE hSymbol) {
  if (ELFAPI_IsInlined(hSymbol)) return ICON_INLINED;
  return ELFAPI_IsFunction(hSymbol) ? ICON_FUNCTION : ICON_BRACKETS;
}

// Where it is written: of an inlined instance its call.
CSrcLoc PlaceOf(ELF_SYM_HANDLE hSymbol) {
  return ELFAPI_GetLoc(hSymbol);
}

QComboBox* MakeBox(QWidget* pParent, const char* sName) {
  auto* const pBox = new QComboBox(pParent);
  pBox->setObjectName(QLatin1String(sName));
  pBox->setFocusPolicy(Qt::ClickFocus);
  pBox->setSizeAdjustPolicy(QComboBox::AdjustToMinimumContentsLengthWithIcon);
  pBox->setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
  return pBox;
}

}  // namespace

CSourceHeaderBar::CSourceHeaderBar(QWidget* pParent)
    : QWidget(pParent), m_pScopes(MakeBox(this, "comboBoxScope")), m_pSymbols(MakeBox(this, "comboBoxSymbols")) {
  auto* const pLayout = new QHBoxLayout(this);
  pLayout->setContentsMargins(0, 0, 0, 0);
  pLayout->setSpacing(0);
  pLayout->addWidget(m_pScopes, 1);
  pLayout->addWidget(m_pSymbols, 1);
  m_UpdateTimer.setSingleShot(true);
  m_UpdateTimer.setInterval(UPDATE_DELAY_MS);
  connect(&m_UpdateTimer, &QTimer::timeout, this, &CSourceHeaderBar::OnHeaderBarUpdateTimerTimeout);
  connect(m_pScopes, &QComboBox::activated, this, &CSourceHeaderBar::OnComboBoxScopeIndexChanged);
  connect(m_pSymbols, &QComboBox::activated, this, &CSourceHeaderBar::OnComboBoxSymbolsIndexChanged);
}

void CSourceHeaderBar::AddScope(const SCOPE& Scope, const QString& sText, const char* sIcon) {
  m_Scopes << Scope;
  m_pScopes->addItem(GetIcon(QLatin1String(sIcon)), sText);
}

void CSourceHeaderBar::Init(U32 FileNo) {
  m_pScopes->clear();
  m_Scopes.clear();
  m_Symbols.clear();
  m_Variables.clear();
  AddScope({}, QStringLiteral("File Scope"), ICON_FILE);
  if (FileNo != INVALID_FILE_ID) {
    m_Symbols = ELFAPI_GetFileFunctions(FileNo);
    m_Symbols.removeIf([FileNo](ELF_SYM_HANDLE h) { return PlaceOf(h).File != FileNo; });
    std::stable_sort(m_Symbols.begin(), m_Symbols.end(),
                     [](ELF_SYM_HANDLE a, ELF_SYM_HANDLE b) { return PlaceOf(a).Line < PlaceOf(b).Line; });
    for (const ELF_SYM_HANDLE hVar : ELFAPI_GetGlobalVars()) {
      if (ELFAPI_GetDeclLoc(hVar).File == FileNo) m_Variables << hVar;
    }
  }
  QSet<QString> Classes;
  for (const ELF_SYM_HANDLE hSymbol : m_Symbols) {
    const QString sClass = ELFAPI_GetScopeName(hSymbol);
    if (ELFAPI_IsInlined(hSymbol) || sClass.isEmpty() || Classes.contains(sClass)) continue;
    Classes.insert(sClass);
    AddScope({sClass, 0}, sClass, ICON_BRACKETS);
  }
  for (const ELF_SYM_HANDLE hSymbol : m_Symbols) {
    if (!ELFAPI_IsInlined(hSymbol)) AddScope({{}, hSymbol}, ELFAPI_GetQualifiedName(hSymbol), ICON_FUNCTION);
  }
  FillMembers();
}

bool CSourceHeaderBar::IsMember(const SCOPE& Scope, ELF_SYM_HANDLE hSymbol) const {
  if (Scope.hFunc) return hSymbol == Scope.hFunc || ELFAPI_GetFunctionOf(hSymbol) == Scope.hFunc;
  return !ELFAPI_IsInlined(hSymbol) && ELFAPI_GetScopeName(hSymbol) == Scope.sClass;
}

void CSourceHeaderBar::AddMember(ELF_SYM_HANDLE hSymbol) {
  m_Members << hSymbol;
  m_pSymbols->addItem(GetIcon(QLatin1String(IconOf(hSymbol))), ELFAPI_GetName(hSymbol));
}

void CSourceHeaderBar::FillMembers() {
  m_pSymbols->clear();
  m_Members.clear();
  const SCOPE Scope = m_Scopes.value(m_pScopes->currentIndex());
  for (const ELF_SYM_HANDLE hSymbol : m_Symbols) {
    if (IsMember(Scope, hSymbol)) AddMember(hSymbol);
  }
  for (const ELF_SYM_HANDLE hVar : m_Variables) {
    if (Scope.hFunc == 0 && ELFAPI_GetScopeName(hVar) == Scope.sClass) AddMember(hVar);
  }
}

void CSourceHeaderBar::SetSelection(ELF_SYM_HANDLE hSymbol) {
  if (m_bLocked) return;
  const ELF_SYM_HANDLE hFunc = ELFAPI_IsInlined(hSymbol) ? ELFAPI_GetFunctionOf(hSymbol) : hSymbol;
  int Index = 0;
  for (int i = 1; i < m_Scopes.size() && hFunc; ++i) {
    if (m_Scopes[i].hFunc == hFunc) Index = i;
  }
  if (Index != m_pScopes->currentIndex()) {
    m_pScopes->setCurrentIndex(Index);
    FillMembers();
  }
  m_pSymbols->setCurrentIndex(std::max(0, static_cast<int>(m_Members.indexOf(hSymbol))));
}

void CSourceHeaderBar::RequestUpdate() {
  if (!m_bLocked) m_UpdateTimer.start();
}

void CSourceHeaderBar::OnHeaderBarUpdateTimerTimeout() {
  // The lists are not changed under the user's hand.
  if (m_pScopes->view()->isVisible() || m_pSymbols->view()->isVisible()) return m_UpdateTimer.start();
  Q_EMIT UpdateRequested();
}

void CSourceHeaderBar::OnComboBoxScopeIndexChanged(int Index) {
  FillMembers();
  if (m_Scopes.value(Index).hFunc) Q_EMIT SymbolChosen(PlaceOf(m_Scopes[Index].hFunc));
}

void CSourceHeaderBar::OnComboBoxSymbolsIndexChanged(int Index) {
  if (Index >= 0 && Index < m_Members.size()) Q_EMIT SymbolChosen(PlaceOf(m_Members[Index]));
}
