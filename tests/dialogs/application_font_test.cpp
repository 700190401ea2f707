// A new application font is seen at once, in everything that is open and in what is opened next.

#include <QAbstractScrollArea>
#include <QLabel>
#include <QMenuBar>
#include <QToolBar>
#include <QToolButton>
#include <QToolTip>

#include "session.h"
#include "shell/actions/command_console.h"
#include "shell/look/look.h"
#include "shell/settings/fonts.h"
#include "ui/dialog.h"
#include "ui/dock_window.h"
#include "ui/popup_menu.h"

namespace {

constexpr int TITLE_WIDTH = 60;  // pixels, of a title's beginning
constexpr int DARK_LIGHTNESS = 100;

// A dialog with a label that has no font of its own.
class CPlainDialog : public CDialog {
public:
  explicit CPlainDialog(QWidget* pParent)
      : CDialog(pParent, QStringLiteral("PlainDialog"), QStringLiteral("Plain")), pLabel(new QLabel(this)) {}
  QLabel* pLabel;
};

}  // namespace

class CApplicationFontTest : public QObject {
  Q_OBJECT

private:
  CSession m_Session;

private Q_SLOTS:
  void initTestCase() { m_Session.Start(); }
  void cleanupTestCase() { m_Session.End(); }
  void whatIsOpenFollows();
  void whatHasAFontOfItsOwnKeepsIt();
  void theTitleOfADockGrows();
};

void CApplicationFontTest::whatIsOpenFollows() {
  CMainWindow* const pWindow = m_Session.Window();
  CPlainDialog Open(pWindow);
  Open.show();
  QVERIFY(pWindow->findChild<QToolBar*>());
  QVERIFY(!pWindow->styleSheet().isEmpty());
  for (const int Points : {17, 9}) {
    ExecuteCommand(QStringLiteral("Edit.Font (FONT_APP, \"DejaVu Serif, %1pt, Bold\")").arg(Points));
    QCoreApplication::processEvents();
    CPlainDialog Next(pWindow);
    Next.show();
    CPopupMenu Menu(pWindow);
    const QList<QWidget*> Widgets = {pWindow->menuBar(),
                                     pWindow->menuBar()->actions().first()->menu(),
                                     pWindow->findChild<QToolBar*>(),
                                     pWindow->findChild<QToolBar*>()->findChild<QToolButton*>(),
                                     &Open,
                                     Open.pLabel,
                                     &Next,
                                     Next.pLabel,
                                     &Menu};
    for (const QWidget* const pWidget : Widgets) {
      QVERIFY2(pWidget->font().family() == QLatin1String("DejaVu Serif") && pWidget->font().pointSize() == Points &&
                   pWidget->font().bold(),
               qPrintable(QLatin1String(pWidget->metaObject()->className()) + QLatin1Char(' ') +
                          pWidget->font().toString()));
    }
    QCOMPARE(QToolTip::font().pointSize(), Points);
  }
}

void CApplicationFontTest::whatHasAFontOfItsOwnKeepsIt() {
  ExecuteCommand(QStringLiteral("Edit.Font (FONT_CONSOLE, \"DejaVu Sans, 21pt, Normal\")"));
  ExecuteCommand(QStringLiteral("Edit.Font (FONT_APP, \"DejaVu Serif, 10pt, Normal\")"));
  const auto* const pView = m_Session.Window()->Console().findChild<QAbstractScrollArea*>();
  QVERIFY(pView);
  QCOMPARE(pView->font().pointSize(), 21);
}

void CApplicationFontTest::theTitleOfADockGrows() {
  m_Session.Window()->setFocus();
  CDockWindow* const pDock = m_Session.Window()->Console().GetDock();
  // Rows of pixels in which something is painted above the contents.
  const auto TitleHeight = [&] {
    QCoreApplication::processEvents();
    const QImage Title = pDock->grab(QRect(0, 0, TITLE_WIDTH, pDock->widget()->y())).toImage();
    int Rows = 0;
    for (int y = 0; y < Title.height(); ++y) {
      bool bPainted = false;
      for (int x = 0; x < Title.width(); ++x) bPainted |= Title.pixelColor(x, y).lightness() < DARK_LIGHTNESS;
      Rows += bPainted;
    }
    return Rows;
  };
  ExecuteCommand(QStringLiteral("Edit.Font (FONT_APP, \"DejaVu Sans, 8pt, Normal\")"));
  const int Small = TitleHeight();
  QVERIFY(Small > 0);
  ExecuteCommand(QStringLiteral("Edit.Font (FONT_APP, \"DejaVu Sans, 30pt, Normal\")"));
  QVERIFY2(TitleHeight() > Small + 10, qPrintable(QString::number(TitleHeight()) + u' ' + QString::number(Small)));
}

QTEST_MAIN(CApplicationFontTest)
#include "application_font_test.moc"
