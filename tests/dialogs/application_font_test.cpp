// A new application font is seen at once, in everything that is open and in what is opened next.

#include <QLabel>
#include <QMenuBar>
#include <QToolBar>
#include <QToolButton>
#include <QToolTip>

#include "session.h"
#include "shell/actions/command_console.h"
#include "shell/look/look.h"
#include "ui/dock_window.h"
#include "ui/input_dialog.h"
#include "ui/popup_menu.h"

using namespace Qt::StringLiterals;

namespace {

// Rows of pixels that hold something dark.
int InkedRows(const QImage& Image) {
  QSet<int> Rows;
  for (int i = 0; i < Image.width() * Image.height(); ++i) {
    if (Image.pixelColor(i % Image.width(), i / Image.width()).lightness() < 100) Rows << i / Image.width();
  }
  return static_cast<int>(Rows.size());
}

}  // namespace

class CApplicationFontTest : public QObject {
  Q_OBJECT

private Q_SLOTS:
  void initTestCase() { m_Session.Start(); }

  void whatIsOpenFollows() {
    CMainWindow* const pWindow = m_Session.Window();
    CInputDialog Open(pWindow, "Open", QString(), "Label");
    Open.show();
    auto* const pBar = pWindow->findChild<QToolBar*>();
    QVERIFY(pBar && !pWindow->styleSheet().isEmpty());
    for (const int Points : {17, 9}) {
      ExecuteCommand(u"Edit.Font (FONT_APP, \"DejaVu Serif, %1pt, Bold\")"_s.arg(Points));
      QCoreApplication::processEvents();
      CInputDialog Next(pWindow, "Next", QString(), "Label");
      Next.show();
      CPopupMenu Menu(pWindow);
      for (const QWidget* const pWidget : QWidgetList{
               pWindow->menuBar(), pWindow->menuBar()->actions().first()->menu(), pBar, pBar->findChild<QToolButton*>(),
               &Open, Open.findChild<QLabel*>(), &Next, Next.findChild<QLabel*>(), &Menu}) {
        const QFont Font = pWidget->font();
        QVERIFY2(Font.family() == "DejaVu Serif" && Font.pointSize() == Points && Font.bold(),
                 qPrintable(pWidget->metaObject()->className() + u" "_s + Font.toString()));
      }
      QCOMPARE(QToolTip::font().pointSize(), Points);
    }
  }

  void theTitleOfADockGrows() {
    m_Session.Window()->setFocus();
    CDockWindow* const pDock = m_Session.Window()->Console().GetDock();
    const auto TitleHeight = [&](int Points) {
      ExecuteCommand(u"Edit.Font (FONT_APP, \"DejaVu Sans, %1pt, Normal\")"_s.arg(Points));
      QCoreApplication::processEvents();
      return InkedRows(pDock->grab(QRect(0, 0, 60, pDock->widget()->y())).toImage());
    };
    const int Small = TitleHeight(8);
    QCOMPARE_GT(Small, 0);
    QCOMPARE_GT(TitleHeight(30), Small + 10);
  }

private:
  CSession m_Session;
};

QTEST_MAIN(CApplicationFontTest)
#include "application_font_test.moc"
