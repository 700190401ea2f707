#include "shell/window_registry.h"

#include "ui/dock_window.h"
#include "ui/item_window.h"
#include "ui/window.h"

namespace {

const QLatin1String MEMORY("Memory");

// Other names that users may know a window by.
struct WINDOW_ALIAS {
  const char* sAlias;
  const char* sName;
};
constexpr WINDOW_ALIAS ALIASES[] = {{"Threads", "Tasks"}};

bool IsNamed(const CWindow& Window, const QString& sName) {
  return Window.GetName().compare(sName, Qt::CaseInsensitive) == 0 ||
         Window.GetDisplayName().compare(sName, Qt::CaseInsensitive) == 0;
}

// "Memory" and one digit: "Memory Usage" is another window.
bool IsMemoryWindow(const CWindow& Window) {
  const QString sName = Window.GetName();
  return sName.size() == MEMORY.size() + 1 && sName.startsWith(MEMORY) && sName.back().isDigit();
}

}  // namespace

void CWindowRegistry::Add(CWindow* pWindow) {
  m_Windows << pWindow;
}

QList<CDockWindow*> CWindowRegistry::Docks() const {
  QList<CDockWindow*> Docks;
  for (const CWindow* const pWindow : m_Windows) {
    if (pWindow->GetDock()) Docks << pWindow->GetDock();
  }
  return Docks;
}

CWindow* CWindowRegistry::Find(QString sName, bool bVisibleOnly) const {
  sName.remove(QLatin1Char('"'));
  const auto FindNamed = [&](const QString& sWanted) -> CWindow* {
    for (CWindow* const pWindow : m_Windows) {
      if (IsNamed(*pWindow, sWanted) && (!bVisibleOnly || pWindow->IsVisible())) return pWindow;
    }
    return nullptr;
  };
  if (CWindow* const pWindow = FindNamed(sName)) return pWindow;
  for (const WINDOW_ALIAS& Alias : ALIASES) {
    if (sName.compare(QLatin1String(Alias.sAlias), Qt::CaseInsensitive) == 0) {
      return FindNamed(QLatin1String(Alias.sName));
    }
  }
  return nullptr;
}

CWindow* CWindowRegistry::FindToShow(const QString& sName) const {
  CWindow* const pWindow = Find(sName, false);
  return pWindow ? pWindow : FindMemoryWindow(sName);
}

CWindow* CWindowRegistry::FindMemoryWindow(const QString& sName) const {
  const QString sWindow = QString(sName).remove(QLatin1Char('"')).section(QLatin1Char('@'), 0, 0).trimmed();
  const QString sAddr = sName.section(QLatin1Char('@'), 1).remove(QLatin1Char('"')).trimmed();
  CWindow* pFound = nullptr;
  if (sWindow.compare(MEMORY, Qt::CaseInsensitive) == 0) {
    for (CWindow* const pWindow : m_Windows) {
      if (!IsMemoryWindow(*pWindow)) continue;
      if (pFound == nullptr) pFound = pWindow;
      if (pWindow->GetDock() && pWindow->GetDock()->isHidden()) {
        pFound = pWindow;
        break;
      }
    }
  } else if (CWindow* const pNamed = Find(sWindow, false); pNamed && IsMemoryWindow(*pNamed)) {
    pFound = pNamed;
  }
  bool bAddr = false;
  const U32 Addr = sAddr.toUInt(&bAddr, 16);
  auto* const pView = dynamic_cast<IAddressWindow*>(pFound);
  if (bAddr && pView) pView->ShowAddress(Addr);
  return pFound;
}
