// Windows by the names that commands use.

#include "shell/window_registry.h"

#include <QTest>

#include "ui/dock_window.h"
#include "ui/item_window.h"
#include "ui/window.h"

using namespace Qt::StringLiterals;

namespace {

constexpr U32 NOT_SENT = 0xFFFFFFFF;

class CMemoryView : public CWindow, public IAddressWindow {
public:
  explicit CMemoryView(QWidget* pDock) : CWindow(pDock, u"View"_s) {}
  void ShowAddress(U32 Addr) override { m_Addr = Addr; }
  U32 m_Addr = NOT_SENT;
};

}  // namespace

class CWindowRegistryTest : public QObject {
  Q_OBJECT

private Q_SLOTS:
  void initTestCase() {
    for (const char* const sName : {"Memory Usage", "Memory1", "Memory2", "Memory3", "Memory4", "Tasks"}) {
      auto* const pDock = new CDockWindow(QLatin1String(sName), QLatin1String(sName), &m_Main);
      m_Main.addDockWidget(Qt::BottomDockWidgetArea, pDock);
      m_Registry.Add(new CMemoryView(pDock));
    }
    m_Main.show();
    QCOMPARE(m_Registry.Docks().size(), 6);
  }

  void namesFindWindows() {
    // Open memory windows, from the first; a name; the window that is found, and the address that it is sent to.
    const std::tuple<int, QString, QString, U32> Rows[] = {
        {0, u"memory2"_s, u"Memory2"_s, NOT_SENT},
        {0, u"Memory"_s, u"Memory1"_s, NOT_SENT},
        {3, u"\"MEMORY\""_s, u"Memory4"_s, NOT_SENT},
        {4, u"Memory"_s, u"Memory1"_s, NOT_SENT},
        {0, u"Memory@20000000"_s, u"Memory1"_s, 0x20000000},
        {2, u"\"Memory@0x2000F000\""_s, u"Memory3"_s, 0x2000F000},
        {4, u"Memory2@8"_s, u"Memory2"_s, 8},
        {0, u"Memory1@nowhere"_s, u"Memory1"_s, NOT_SENT},
        {0, u"Memory1@123456789"_s, u"Memory1"_s, NOT_SENT},
        {0, u"Memory Usage"_s, u"Memory Usage"_s, NOT_SENT},
        {0, u"Memory Usage@8"_s, QString(), NOT_SENT},
        {0, u"Memory5"_s, QString(), NOT_SENT},
        {0, u"threads"_s, u"Tasks"_s, NOT_SENT},
        {0, u"Mem"_s, QString(), NOT_SENT},
        {0, QString(), QString(), NOT_SENT},
    };
    for (const auto& [NumOpen, sName, sFound, Addr] : Rows) {
      for (int i = 1; i <= 4; ++i) m_Registry.Docks()[i]->setVisible(i <= NumOpen);
      for (CWindow* const pWindow : m_Registry.Windows()) static_cast<CMemoryView*>(pWindow)->m_Addr = NOT_SENT;
      const CWindow* const pWindow = m_Registry.FindToShow(sName);
      QVERIFY2((pWindow ? pWindow->GetName() : QString()) == sFound, qPrintable(sName));
      for (const CWindow* const pOther : m_Registry.Windows()) {
        QCOMPARE(static_cast<const CMemoryView*>(pOther)->m_Addr, pOther == pWindow ? Addr : NOT_SENT);
      }
    }
  }

private:
  QMainWindow m_Main;
  CWindowRegistry m_Registry;
};

QTEST_MAIN(CWindowRegistryTest)
#include "window_registry_test.moc"
