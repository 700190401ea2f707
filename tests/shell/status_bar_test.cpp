#include <QTest>

#include "ui/status_bar.h"

namespace {
constexpr int REFRESH_MS = 200;
constexpr int LINGER_MS = 250;
}  // namespace

// The one status bar, shown by itself.
class CStatusBarTest : public QObject {
  Q_OBJECT

private Q_SLOTS:
  void initTestCase() { Bar().show(); }
  void init();
  void startsWithItsTexts();
  void theMostUrgentTextIsShown_data();
  void theMostUrgentTextIsShown();
  void settersOnlyStore();
  void progressLingers();
  void aNewOperationTakesTheBarOver();

private:
  static CStatusBar& Bar() { return *CStatusBar::_GetSingleton(); }
  static QString Text(const char* sField) { return Bar().findChild<QLabel*>(QLatin1String(sField))->text(); }
  static QProgressBar& Progress() { return *Bar().findChild<QProgressBar*>(); }
  bool m_bFirst = true;
};

void CStatusBarTest::init() {
  if (std::exchange(m_bFirst, false)) return;
  Bar().EndProgress();
  QTRY_VERIFY(!Progress().isVisible());
}

void CStatusBarTest::startsWithItsTexts() {
  QCOMPARE(Text("StatusMessage"), QStringLiteral("Ready"));
  QCOMPARE(Text("ConnectionInfo"), QStringLiteral("Disconnected"));
  QCOMPARE(Text("WindowStatus"), QStringLiteral("Ln 0  Ch 0"));
  QVERIFY(!Progress().isVisible());
}

void CStatusBarTest::theMostUrgentTextIsShown_data() {
  QTest::addColumn<bool>("Running");
  QTest::addColumn<QString>("ProgressText");
  QTest::addColumn<QString>("TipText");
  QTest::addColumn<QString>("Shown");
  const QString sProgress = QStringLiteral("Writing"), sTip = QStringLiteral("Steps"), sNone;
  const QString sStatus = QStringLiteral("CPU halted");
  QTest::newRow("all") << true << sProgress << sTip << sProgress;
  QTest::newRow("progress without text") << true << sNone << sTip << sTip;
  QTest::newRow("progress not begun") << false << sProgress << sTip << sTip;
  QTest::newRow("progress alone") << true << sProgress << sNone << sProgress;
  QTest::newRow("none") << false << sNone << sNone << sStatus;
  QTest::newRow("only an old progress text") << false << sProgress << sNone << sStatus;
}

void CStatusBarTest::theMostUrgentTextIsShown() {
  QFETCH(bool, Running);
  QFETCH(QString, ProgressText);
  QFETCH(QString, TipText);
  QFETCH(QString, Shown);
  Bar().SetStatusMessage(QStringLiteral("CPU halted"));
  Bar().SetProgressMessage(ProgressText);
  Bar().OnTempStatusMsgChanged(TipText);
  if (Running) Bar().StartProgress(0, 100);
  QTest::qWait(REFRESH_MS + 50);
  QCOMPARE(Text("StatusMessage"), Shown);
  QCOMPARE(Progress().isVisible(), Running);
}

void CStatusBarTest::settersOnlyStore() {
  Bar().SetConnectionInfo(QStringLiteral("Connected @ 1 MHz"));
  Bar().SetConnectionInfo(QStringLiteral("Connected @ 4 MHz"));
  Bar().SetActiveWindowStatus(QStringLiteral("Ln 7  Ch 2"));
  QVERIFY(Text("ConnectionInfo") != QStringLiteral("Connected @ 4 MHz"));
  QTRY_COMPARE(Text("ConnectionInfo"), QStringLiteral("Connected @ 4 MHz"));
  QCOMPARE(Text("WindowStatus"), QStringLiteral("Ln 7  Ch 2"));
}

void CStatusBarTest::progressLingers() {
  Bar().OnTempStatusMsgChanged(QString());
  Bar().SetProgressMessage(QStringLiteral("Reading"));
  Bar().StartProgress(10, 20);
  Bar().SetProgressValue(15);
  QTRY_VERIFY(Progress().isVisible());
  QCOMPARE(Progress().minimum(), 10);
  QCOMPARE(Progress().maximum(), 20);
  QCOMPARE(Progress().value(), 15);
  QElapsedTimer Time;
  Time.start();
  Bar().EndProgress();
  QTRY_VERIFY(!Progress().isVisible());
  QVERIFY2(Time.elapsed() > LINGER_MS, qPrintable(QString::number(Time.elapsed())));
  QCOMPARE(Text("StatusMessage"), QStringLiteral("CPU halted"));
}

void CStatusBarTest::aNewOperationTakesTheBarOver() {
  Bar().StartProgress(0, 10);
  Bar().EndProgress();
  Bar().StartProgress(0, 0);
  QTest::qWait(LINGER_MS + 2 * REFRESH_MS);
  QVERIFY(Progress().isVisible());
  QCOMPARE(Progress().maximum(), 0);
}

QTEST_MAIN(CStatusBarTest)
#include "status_bar_test.moc"
