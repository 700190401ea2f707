// The trace settings: opened by their key, driven by keys, stored in a project.

#include <QLabel>

#include "device/device_context.h"
#include "settings_drive.h"
#include "shell/dialogs/trace_settings_dialog.h"
#include "shell/settings/named_constants.h"
#include "shell/settings/sys_vars.h"

using namespace Qt::StringLiterals;

namespace {

const QStringList PROJECT = {u"Project.SetTIFSpeed (\"4 MHz\");"_s};
const QString QUESTION = u"Trace Settings Modified: Do you want to save the configuration to the project?"_s;

TRACE_SETTINGS Pins(U32 Width, std::array<I32, NUM_TRACE_DELAYS> Delays) {
  TRACE_SETTINGS Settings;
  Settings.Source = TRACE_SOURCE_ETM;
  Settings.PortWidth = Width;
  Settings.aDelay = Delays;
  return Settings;
}

bool IsChecked(const QWidget& Dialog, const char* sName) {
  return Dialog.findChild<QCheckBox*>(QLatin1String(sName))->isChecked();
}

}  // namespace

class CTraceSettingsDialogTest : public QObject {
  Q_OBJECT

private Q_SLOTS:
  void initTestCase() { m_Session.Start(); }
  void init() {
    ResetVars();
    m_Project.Open(PROJECT);
    m_Session.ClearConsole();
  }

  // Each of these begins with what the one before has stored.
  void changesAreStoredAndTaken() {
    const std::tuple<QList<INPUT>, QStringList, QStringList> aCases[] = {
        {{{"TraceSource", u"Trace Pins"_s}, {"TracePortWidth", u"2 Bit"_s}},
         {u"Project.SetTraceSource (\"Trace Pins\");"_s, u"Project.SetTracePortWidth (2);"_s},
         {u"Project.SetTraceSource (\"Trace Pins\");"_s, u"Project.SetTracePortWidth (2);"_s}},
        {{{"OverrideTimings", u"on"_s}, {"Delay0", u"-0.05 ns"_s}},
         {u"Project.SetTraceSource (\"Trace Pins\");"_s, u"Project.SetTracePortWidth (2);"_s,
          u"Project.SetTraceTiming (-50, -50, -50, -50);"_s},
         {u"Project.SetTraceTiming (-50, -50, -50, -50);"_s}},
        {{{"IdenticalDelays", u"off"_s}, {"Delay1", u"+2.00 ns"_s}},
         {u"Project.SetTraceSource (\"Trace Pins\");"_s, u"Project.SetTracePortWidth (2);"_s,
          u"Project.SetTraceTiming (-50, 2000, -50, -50);"_s},
         {u"Project.SetTraceTiming (-50, 2000, -50, -50);"_s}},
        {{{"TraceSource", u"SWO"_s},
          {"CPUClockAuto", u"off"_s},
          {"CPUClock", u"64000000"_s},
          {"SWOClockAuto", u"off"_s},
          {"SWOClock", u"2000000"_s}},
         {u"Project.SetTraceSource (\"SWO\");"_s, u"Project.ConfigSWO (\"2 MHz\", \"64000000 Hz\");"_s},
         {u"Project.SetTraceSource (\"SWO\");"_s, u"Project.ConfigSWO (\"2 MHz\", \"64000000 Hz\");"_s}},
        {{{"TraceSource", u"None"_s}},
         {u"Project.SetTraceSource (\"None\");"_s},
         {u"Project.SetTraceSource (\"None\");"_s}},
    };
    for (const auto& [Inputs, Stored, Shown] : aCases) {
      m_Session.ClearConsole();
      const CStoreQuestion Question(true);
      Run(Inputs);
      QCOMPARE(Question.Asked(), QStringList{QUESTION});
      QCOMPARE(m_Project.Commands(), PROJECT + Stored);
      QStringList Lines;
      for (const QString& sLine : ConsoleText(*m_Session.Window()).split(u'\n')) {
        if (sLine.contains("Project.")) Lines << sLine.mid(sLine.indexOf("Project."));
      }
      QCOMPARE(Lines, Shown);
    }
  }

  void withoutOverrideTheDelaysAreTheDefault() {
    const CStoreQuestion Question(false);
    SetVarValue(GetVarInfo(VAR_TRACE_SOURCE), TRACE_SOURCE_ETM, 0);
    SetVarValue(GetVarInfo(VAR_TRACE_PORT_DELAY_2), 1000, 0);
    Run({{"OverrideTimings", u"off"_s}});
    QCOMPARE(GetVarValue(VAR_TRACE_PORT_DELAY_2), 2000u);
    QCOMPARE(m_Project.Commands(), PROJECT);
  }

  // Which rows there are, and what is checked, follows from the settings.
  void rowsFollowTheSettings() {
    struct CASE {
      TRACE_SETTINGS Settings;
      bool bTiming, bOverride, bIdentical;
      int NumRows;
      bool bSecondEnabled;
    };
    const CASE aCases[] = {{Pins(1, {2000, 1, 2, 3}), false, false, true, 1, false},
                           {Pins(2, {2000, 2000, 50, 50}), false, false, true, 2, false},
                           {Pins(2, {50, 2000, 50, 50}), false, true, false, 2, true},
                           {Pins(4, {2000, 2000, 2000, 50}), false, true, false, 4, true}};
    for (CASE Case : aCases) {
      Case.Settings.bTiming = Case.bTiming;
      CTraceSettingsDialog Dialog(nullptr, Case.Settings);
      Dialog.show();
      int NumRows = 0;
      for (int i = 0; i < 4; ++i) NumRows += Dialog.findChild<QComboBox*>(u"Delay%1"_s.arg(i))->isVisible();
      QCOMPARE(NumRows, Case.NumRows);
      QCOMPARE(IsChecked(Dialog, "OverrideTimings"), Case.bOverride);
      QCOMPARE(IsChecked(Dialog, "IdenticalDelays"), Case.bIdentical);
      QCOMPARE(Dialog.findChild<QWidget*>(u"IdenticalDelays"_s)->isVisible(), Case.NumRows > 1);
      QCOMPARE(Dialog.findChild<QWidget*>(u"Delay1"_s)->isEnabled(), Case.bSecondEnabled);
      CheckMnemonics(&Dialog);
    }
  }

  void wrongClocksCannotBeTaken() {
    TRACE_SETTINGS Settings;
    Settings.Source = TRACE_SOURCE_SWO;
    const std::pair<QList<INPUT>, bool> aCases[] = {
        {{{"SWOClockAuto", u"off"_s}, {"SWOClock", u"0"_s}}, false},
        {{{"SWOClockAuto", u"off"_s}, {"SWOClock", u"2000000001"_s}}, false},
        {{{"SWOClockAuto", u"off"_s}, {"SWOClock", u"2000000000"_s}}, true},
        {{{"CPUClockAuto", u"off"_s}, {"CPUClock", u"2100000000"_s}}, false}};
    for (const auto& [Inputs, bValid] : aCases) {
      CTraceSettingsDialog Dialog(nullptr, Settings);
      Dialog.show();
      QVERIFY(OkButton(&Dialog)->isEnabled());
      for (const INPUT& Input : Inputs) SetInput(&Dialog, Input);
      QVERIFY2(OkButton(&Dialog)->isEnabled() == bValid, qPrintable(Inputs.last().second));
      // The clocks do not count for another source.
      SetInput(&Dialog, {"TraceSource", u"Trace Buffer"_s});
      QVERIFY(OkButton(&Dialog)->isEnabled() && Dialog.IsModified());
    }
  }

  void possibleSpeedsFillTheList() {
    TRACE_SETTINGS Settings;
    Settings.Source = TRACE_SOURCE_SWO;
    Settings.SWOSpeed = 1'000'000;
    CTraceSettingsDialog Dialog(nullptr, Settings);
    Dialog.show();
    U32 aSpeeds[10] = {4'000'000, 2'000'000, 500'000};
    Dialog.OnDeviceGetSWOSpeedsDone(64'000'000, 10, aSpeeds);
    const auto* const pClock = Dialog.findChild<QComboBox*>(u"SWOClock"_s);
    QCOMPARE(pClock->count(), 3);
    QCOMPARE(pClock->currentText(), "1000000");  // it stays, although it isn't possible any more
    QVERIFY(!Dialog.IsModified());
    SetInput(&Dialog, {"SWOClockAuto", u"on"_s});
    QCOMPARE(pClock->currentText(), "4000000");
    Dialog.OnDeviceMeasureCoreSpeedDone(72'000'000);
    QCOMPARE(Dialog.findChild<QAbstractSpinBox*>(u"CPUClock"_s)->text(), "72000000");
    QCOMPARE(Dialog.Settings().CPUSpeed, 0u);
  }

  void withoutSwoItsSettingsStay() {
    TRACE_SETTINGS Settings;
    Settings.Source = TRACE_SOURCE_SWO;
    Settings.CPUSpeed = 8'000'000;
    auto& bCapable = CDevice::Get().Context().State.aCapability[HW_CAP_SWO];
    bCapable = false;
    CTraceSettingsDialog Dialog(nullptr, Settings);
    bCapable = true;
    Dialog.show();
    for (const char* const sName : {"CPUClock", "CPUClockAuto", "SWOClock", "SWOClockAuto"})
      QVERIFY2(!Dialog.findChild<QWidget*>(QLatin1String(sName))->isEnabled(), sName);
    QVERIFY(OkButton(&Dialog)->isEnabled());
    QCOMPARE(Dialog.Settings().CPUSpeed, 8'000'000u);
  }

  void nothingHappensWithoutAChange() {
    const CStoreQuestion Question(true);
    Run({});
    Run({{"TraceSource", u"SWO"_s}, {"TraceSource", u"None"_s}});
    QCOMPARE(Question.Asked(), QStringList());
    QVERIFY(!ConsoleText(*m_Session.Window()).contains("Project."));
  }

private:
  void Run(const QList<INPUT>& Inputs) {
    m_Session.RunDialog(Qt::Key_T, [&Inputs](QWidget* pDialog) {
      for (const INPUT& Input : Inputs) SetInput(pDialog, Input);
      QTest::mouseClick(OkButton(pDialog), Qt::LeftButton);
      QVERIFY(!pDialog->isVisible());
    });
  }

  CSession m_Session;
  CSavedProject m_Project;
};

QTEST_MAIN(CTraceSettingsDialogTest)
#include "trace_settings_dialog_test.moc"
