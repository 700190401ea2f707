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

  void namesFindWindows_data() {
    QTest::addColumn<int>("NumOpen");  // memory windows, from the first
    QTest::addColumn<QString>("Name");
    QTest::addColumn<QString>("Found");
    QTest::addColumn<U32>("Addr");
    const auto Row = [](int NumOpen, const char* sName, const char* sFound, U32 Addr = NOT_SENT) {
      QTest::addRow("%d open, %s", NumOpen, sName)
          << NumOpen << QString::fromLatin1(sName) << QString::fromLatin1(sFound) << Addr;
    };
    Row(0, "memory2", "Memory2");
    Row(0, "Memory", "Memory1");
    Row(1, "Memory", "Memory2");
    Row(3, "\"MEMORY\"", "Memory4");
    Row(4, "Memory", "Memory1");
    Row(0, "Memory@20000000", "Memory1", 0x20000000);
    Row(2, "\"Memory@0x2000F000\"", "Memory3", 0x2000F000);
    Row(4, "Memory2@8", "Memory2", 8);
    Row(0, "Memory1@nowhere", "Memory1");
    Row(0, "Memory1@123456789", "Memory1");
    Row(0, "Memory Usage", "Memory Usage");
    Row(0, "Memory Usage@8", "");
    Row(0, "Memory5", "");
    Row(0, "threads", "Tasks");
    Row(0, "Mem", "");
    Row(0, "", "");
  }

  void namesFindWindows() {
    QFETCH(int, NumOpen);
    QFETCH(QString, Name);
    QFETCH(QString, Found);
    QFETCH(U32, Addr);
    for (int i = 1; i <= 4; ++i) m_Registry.Docks()[i]->setVisible(i <= NumOpen);
    for (CWindow* const pWindow : m_Registry.Windows()) static_cast<CMemoryView*>(pWindow)->m_Addr = NOT_SENT;
    const CWindow* const pWindow = m_Registry.FindToShow(Name);
    QCOMPARE(pWindow ? pWindow->GetName() : QString(), Found);
    for (const CWindow* const pOther : m_Registry.Windows()) {
      QCOMPARE(static_cast<const CMemoryView*>(pOther)->m_Addr, pOther == pWindow ? Addr : NOT_SENT);
    }
  }

  void onlyVisibleWindowsCountWhenAsked() {
    m_Registry.Docks()[1]->hide();
    QVERIFY(m_Registry.Find(u"Memory1"_s, false));
    QVERIFY(!m_Registry.Find(u"Memory1"_s, true));
    m_Registry.Docks()[1]->show();
    QTRY_VERIFY(m_Registry.Find(u"Memory1"_s, true));
  }

private:
  QMainWindow m_Main;
  CWindowRegistry m_Registry;
};

QTEST_MAIN(CWindowRegistryTest)
#include "window_registry_test.moc"
