#include <QTest>

#include "ui/status_bar.h"

using namespace Qt::StringLiterals;

namespace {
constexpr int REFRESH_MS = 200;
}  // namespace

// The one status bar, shown by itself.
class CStatusBarTest : public QObject {
  Q_OBJECT

private Q_SLOTS:
  void initTestCase() { Bar().show(); }

  void init() {
    Bar().EndProgress();
    QTRY_VERIFY(!Progress().isVisible());
  }

  void theMostUrgentTextIsShown() {
    const QString sProgress = u"Writing"_s, sTip = u"Steps"_s, sStatus = u"CPU halted"_s, sNone;
    // Whether progress is running, its text, a tool tip's, and the text that is shown.
    const std::tuple<bool, QString, QString, QString> Rows[] = {
        {true, sProgress, sTip, sProgress},  {true, sNone, sTip, sTip},      {false, sProgress, sTip, sTip},
        {true, sProgress, sNone, sProgress}, {false, sNone, sNone, sStatus}, {false, sProgress, sNone, sStatus}};
    for (const auto& [bRunning, sProgressText, sTipText, sShown] : Rows) {
      init();
      Bar().SetStatusMessage(sStatus);
      Bar().SetProgressMessage(sProgressText);
      Bar().OnTempStatusMsgChanged(sTipText);
      if (bRunning) Bar().StartProgress(0, 100);
      QTest::qWait(REFRESH_MS + 50);
      QCOMPARE(Text("StatusMessage"), sShown);
      QCOMPARE(Progress().isVisible(), bRunning);
    }
  }

private:
  static CStatusBar& Bar() { return *CStatusBar::_GetSingleton(); }
  static QString Text(const char* sField) { return Bar().findChild<QLabel*>(QLatin1String(sField))->text(); }
  static QProgressBar& Progress() { return *Bar().findChild<QProgressBar*>(); }
};

QTEST_MAIN(CStatusBarTest)
#include "status_bar_test.moc"
