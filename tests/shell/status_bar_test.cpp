#include <QTest>

#include "ui/status_bar.h"

using namespace Qt::StringLiterals;

namespace {
constexpr int REFRESH_MS = 200;
constexpr int LINGER_MS = 250;
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

  void progressLingers() {
    Bar().OnTempStatusMsgChanged(QString());
    Bar().SetProgressMessage(u"Reading"_s);
    Bar().StartProgress(10, 20);
    Bar().SetProgressValue(15);
    QTRY_VERIFY(Progress().isVisible());
    QCOMPARE((QList{Progress().minimum(), Progress().value(), Progress().maximum()}), (QList{10, 15, 20}));
    QElapsedTimer Time;
    Time.start();
    Bar().EndProgress();
    QTRY_VERIFY(!Progress().isVisible());
    QVERIFY2(Time.elapsed() > LINGER_MS, qPrintable(QString::number(Time.elapsed())));
    QCOMPARE(Text("StatusMessage"), u"CPU halted"_s);
  }

  void aNewOperationTakesTheBarOver() {
    Bar().StartProgress(0, 10);
    Bar().EndProgress();
    Bar().StartProgress(0, 0);
    QTest::qWait(LINGER_MS + 2 * REFRESH_MS);
    QVERIFY(Progress().isVisible());
    QCOMPARE(Progress().maximum(), 0);
  }

private:
  static CStatusBar& Bar() { return *CStatusBar::_GetSingleton(); }
  static QString Text(const char* sField) { return Bar().findChild<QLabel*>(QLatin1String(sField))->text(); }
  static QProgressBar& Progress() { return *Bar().findChild<QProgressBar*>(); }
};

QTEST_MAIN(CStatusBarTest)
#include "status_bar_test.moc"
