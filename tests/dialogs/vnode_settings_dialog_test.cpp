// The settings of probe and target: opened by their key, driven by keys and clicks, stored in a project.

#include <QAbstractItemModelTester>
#include <QHeaderView>
#include <QLabel>
#include <QTreeView>

#include "device/device_context.h"
#include "settings_drive.h"
#include "shell/actions/command_console.h"
#include "shell/dialogs/vnode_settings_dialog.h"

using namespace Qt::StringLiterals;

namespace {

const QStringList PROJECT = {u"Project.SetDevice (\"STM32F407VG\");"_s, u"Project.SetHostIF (\"USB\", \"\");"_s,
                             u"Project.SetTargetIF (\"SWD\");"_s, u"Project.SetTIFSpeed (\"4 MHz\");"_s};
const QString QUESTION = u"V-Node Settings Modified: Do you want to save the configuration to the project?"_s;

CDeviceConfig& Config() {
  return CDevice::Get().Context().Config;
}

// What a column of the table shows, from the first row down.
QStringList Column(const QWidget* pDialog, int Index) {
  const QAbstractItemModel* const pModel = pDialog->findChild<QTreeView*>()->model();
  QStringList Texts;
  for (int Row = 0; Row < pModel->rowCount(); ++Row) Texts << pModel->index(Row, Index).data().toString();
  return Texts;
}
QStringList Devices(const QWidget* pDialog) {
  return Column(pDialog, 1);
}

// Filters in the order of the columns.
void Filter(QWidget* pDialog, const QStringList& Texts) {
  for (qsizetype i = 0; i < Texts.size(); ++i) {
    const QString sTitle =
        pDialog->findChild<QTreeView*>()->model()->headerData(static_cast<int>(i), Qt::Horizontal).toString();
    for (QLineEdit* const pLine : pDialog->findChildren<QLineEdit*>()) {
      if (pLine->accessibleName() != u"Filter of "_s + sTitle) continue;
      QTest::keyClick(pLine, Qt::Key_A, Qt::ControlModifier);
      QTest::keyClick(pLine, Qt::Key_Delete);
      QTest::keyClicks(pLine, Texts[i]);
    }
  }
}

QString Chosen(const QWidget* pDialog) {
  return pDialog->findChild<QLabel*>(u"ChosenDevice"_s)->text();
}

}  // namespace

class CVNodeSettingsDialogTest : public QObject {
  Q_OBJECT

private Q_SLOTS:
  void initTestCase() {
    m_Session.Start();
    CheckTheProjectless();
  }
  void init() {
    m_Project.Open(PROJECT);
    m_Session.ClearConsole();
  }

  // What is changed becomes commands in the project and the device's configuration.
  void changesAreStoredAndTaken() {
    // Inputs, commands that take the place of the project's at the same index, a parameter and its value.
    const std::tuple<QList<INPUT>, QStringList, DEV_CONFIG_PARAMS, I32> aCases[] = {
        {{{"HostInterface", u"IP"_s}, {"HostName", u"192.168.0.7:2331"_s}},
         {{}, u"Project.SetHostIF (\"IP\", \"192.168.0.7:2331\");"_s},
         DCP_CONNECT_MODE,
         HOST_IF_IP},
        {{{"UseSerialNo", u"on"_s}, {"SerialNo", u"4000000000"_s}},
         {{}, u"Project.SetHostIF (\"USB\", \"4000000000\");"_s},
         DCP_USB_SERIAL_NO,
         static_cast<I32>(4000000000u)},
        {{{"TargetInterface", u"JTAG"_s}, {"MultipleTargets", u"on"_s}, {"DRPre", u"1"_s}, {"IRPre", u"4"_s}},
         {{}, {}, u"Project.SetTargetIF (\"JTAG\");"_s, {}, u"Project.SetJTAGConfig (1, 4);"_s},
         DCP_IR_PRE,
         4},
        {{{"Speed", u"1500"_s}}, {{}, {}, {}, u"Project.SetTIFSpeed (\"1500000 Hz\");"_s}, DCP_SPEED, 1'500'000},
        {{{"Speed", u"auto"_s}}, {{}, {}, {}, u"Project.SetTIFSpeed (\"Auto\");"_s}, DCP_USE_MAX_SPEED, 1},
        {{{"Endian", u"Big"_s}}, {{}, {}, {}, {}, u"Target.SetEndianess (1);"_s}, DCP_ENDIAN, ENDIAN_BIG},
    };
    for (const auto& [Inputs, Commands, Param, Value] : aCases) {
      init();
      Config().SetValue(DCP_ENDIAN, ENDIAN_LITTLE);
      const CStoreQuestion Question(true);
      Run(Inputs);
      QStringList Wanted = PROJECT;
      for (qsizetype i = 0; i < Commands.size(); ++i) {
        if (i >= Wanted.size()) Wanted << Commands[i];
        if (!Commands[i].isEmpty()) Wanted[i] = Commands[i];
      }
      QCOMPARE(m_Project.Commands(), Wanted);
      QCOMPARE(Question.Asked(), QStringList{QUESTION});
      QCOMPARE(Config().Value(Param), Value);
      // The project brings back what was stored.
      CDeviceConfig& Device = Config();
      Device.SetValue(Param, 0);
      CProject::Get().Open(m_Project.Path());
      QTRY_COMPARE(Device.Value(Param), Value);
    }
  }

  void aDeviceIsFoundByFilters() {
    const CStoreQuestion Question(false);
    QString sChosen;
    InDialog([&sChosen](QWidget* pDialog) {
      QTRY_COMPARE(QApplication::focusWidget()->accessibleName(), "Filter of Device");
      const QAbstractItemModelTester Tester(pDialog->findChild<QTreeView*>()->model());
      const QStringList All = Devices(pDialog);
      QVERIFY(All.size() > 40 && !All.contains(u"Unspecified"_s));
      const std::pair<QStringList, QStringList> aCases[] = {
          {{u"silicon"_s, u""_s, u""_s, u""_s, u""_s}, All.filter(u"EFM"_s)},
          {{u""_s, u"*f4*i*"_s}, All.filter(QRegularExpression(u"(?i)f4.*i"_s))},
          {{u""_s, u"stm32f7"_s, u"m7"_s, u"1"_s, u"1 MB"_s}, {u"STM32F746NG"_s}},
          {{u""_s, u"["_s, u""_s, u""_s, u""_s}, {}}};
      for (const auto& [Texts, Found] : aCases) {
        Filter(pDialog, Texts);
        QCOMPARE(Devices(pDialog), Found);
        // A filter hides rows, but chooses nothing.
        QCOMPARE(Chosen(pDialog), "Chosen: STM32F407VG, Cortex-M4");
      }
      QVERIFY(pDialog->findChild<QTreeView*>()->viewport()->findChild<QLabel*>()->isVisible());
      Filter(pDialog, {u""_s, u"nrf5283"_s});
      const QStringList Nordic = Devices(pDialog);
      QVERIFY(Nordic.size() > 1);
      QTest::keyClick(QApplication::focusWidget(), Qt::Key_Return);
      QCOMPARE(Chosen(pDialog), "Chosen: " + Nordic[0] + ", Cortex-M4");
      QTest::keyClick(QApplication::focusWidget(), Qt::Key_Down);
      QCOMPARE(Chosen(pDialog), "Chosen: " + Nordic[1] + ", Cortex-M4");
      sChosen = Nordic[1];
      QTest::keyClick(QApplication::focusWidget(), Qt::Key_Return);
      QVERIFY(!pDialog->isVisible());
    });
    QTRY_COMPARE(QString::fromUtf8(Config().Text(DCP_DEVICE_NAME)), sChosen);
    QCOMPARE(Question.Asked(), QStringList{QUESTION});
    QCOMPARE(m_Project.Commands(), PROJECT);  // it was not to be stored
  }

  void columnsSortByTheirValues() {
    InDialog([](QWidget* pDialog) {
      QTreeView* const pTable = pDialog->findChild<QTreeView*>();
      QHeaderView* const pHeader = pTable->header();
      Filter(pDialog, {u"stm"_s});
      const QPoint Flash(pHeader->sectionViewportPosition(4) + 20, pHeader->height() / 2);
      QTest::mouseClick(pHeader->viewport(), Qt::LeftButton, {}, Flash);
      QTest::mouseClick(pHeader->viewport(), Qt::LeftButton, {}, Flash);
      QList<QPair<int, QString>> Rows;
      const QStringList Sizes = Column(pDialog, 4);
      for (qsizetype i = 0; i < Sizes.size(); ++i) {
        Rows.append({Sizes[i].section(' ', 0, 0).toInt() * (Sizes[i].endsWith("MB") ? 1024 : 1),
                     Devices(pDialog)[i].toLower()});
      }
      QVERIFY(!Sizes.isEmpty());
      QVERIFY(Sizes.first().endsWith("MB") && !Sizes.last().endsWith("MB") &&
              std::is_sorted(Rows.rbegin(), Rows.rend()));
    });
  }

  void wrongInputCannotBeTaken() {
    const std::tuple<QList<INPUT>, bool> aCases[] = {
        {{{"UseSerialNo", u"on"_s}, {"SerialNo", u"4294967296"_s}}, false},
        {{{"HostInterface", u"IP"_s}, {"HostName", u"board.local"_s}}, true},
        {{{"HostInterface", u"IP"_s}, {"HostName", u"board:70000"_s}}, false},
        {{{"HostInterface", u"IP"_s}, {"HostName", u":3333"_s}}, false},
        {{{"Speed", u"4294967"_s}}, false},
        {{{"TargetInterface", u"JTAG"_s}, {"MultipleTargets", u"on"_s}, {"DRPre", u"1"_s}}, false},
    };
    for (const auto& [Inputs, bValid] : aCases) {
      CVNodeSettingsDialog Dialog(nullptr, CDeviceConfig().ToXML(), {});
      Dialog.show();
      QVERIFY(OkButton(&Dialog)->isEnabled() && !Dialog.IsModified());
      for (const INPUT& Input : Inputs) SetInput(&Dialog, Input);
      QVERIFY2(OkButton(&Dialog)->isEnabled() == bValid, qPrintable(Inputs.last().second));
      QTest::keyClick(&Dialog, Qt::Key_Return);
      QCOMPARE(Dialog.result() == QDialog::Accepted, bValid);
    }
  }

  void nothingHappensWithoutAChange() {
    const CStoreQuestion Question(true);
    const QByteArray sBefore = Config().ToXML();
    Run({});
    InDialog([](QWidget* pDialog) {
      CheckMnemonics(pDialog);
      QTRY_COMPARE(QApplication::focusWidget()->accessibleName(), "Filter of Device");
      for (int i = 0; i < 4; ++i) QTest::keyClick(QApplication::focusWidget(), Qt::Key_Tab);
      for (const char* const sNext :
           {"Devices", "CoreIndex", "Endian", "HostInterface", "UseSerialNo", "TargetInterface", "Speed", "", ""}) {
        QTest::keyClick(QApplication::focusWidget(), Qt::Key_Tab);
        QCOMPARE(QApplication::focusWidget()->objectName(), QLatin1String(sNext));
      }
      SetInput(pDialog, {"Speed", u"8 MHz"_s});
      QTest::keyClick(pDialog, Qt::Key_Escape);
      QVERIFY(!pDialog->isVisible());
    });
    QCOMPARE(Question.Asked(), QStringList());
    QCOMPARE(Config().ToXML(), sBefore);
  }

  void aProjectThatCannotBeWrittenIsTold() {
    const CStoreQuestion Question(true);
    WriteFile(m_Project.Path(), "void Other (void) {}\n");
    Run({{"Speed", u"8 MHz"_s}});
    QVERIFY(ConsoleText(*m_Session.Window())
                .contains("Could not write V-Node settings to the project file. See the log file for details."));
    QCOMPARE(Config().Value(DCP_SPEED), 8'000'000);
  }

  void aCommandWithoutNameAsksForTheDevice() {
    WhenModal([](QWidget* pDialog) {
      QCOMPARE(pDialog->windowTitle(), "Device Selection");
      Filter(pDialog, {u""_s, u"LPC1768"_s});
      SetInput(pDialog, {"CoreIndex", u"2"_s});
      QTreeView* const pTable = pDialog->findChild<QTreeView*>();
      const QPoint Row = pTable->visualRect(pTable->model()->index(0, 1)).center();
      QTest::mouseClick(pTable->viewport(), Qt::LeftButton, {}, Row);
      QTest::mouseDClick(pTable->viewport(), Qt::LeftButton, {}, Row);
      QVERIFY(!pDialog->isVisible());
    });
    ExecuteCommand(u"Project.SetDevice (\"\")"_s);
    QTRY_COMPARE(Config().Text(DCP_DEVICE_NAME), "LPC1768");
    QTRY_COMPARE(Config().Value(DCP_CORE_INDEX), 2);
    QVERIFY(ConsoleText(*m_Session.Window()).contains("Project.SetDevice (\"LPC1768\");"));
    Config().SetText(DCP_DEVICE_NAME, "Unheard-of");
    WhenModal([](QWidget* pDialog) {
      QVERIFY(!OkButton(pDialog)->isEnabled());
      QCOMPARE(Chosen(pDialog), "Chosen: Unheard-of, which the library doesn't know");
    });
    ExecuteCommand(u"Project.SetDevice (\"\")"_s);
    QCOMPARE(Config().Text(DCP_DEVICE_NAME), "Unheard-of");
    Config().SetValue(DCP_CORE_INDEX, 0);
  }

private:
  // While there is no project file, nothing is asked.
  void CheckTheProjectless() {
    const CStoreQuestion Question(true);
    Run({{"Speed", u"2 MHz"_s}});
    QCOMPARE(Question.Asked(), QStringList());
    QCOMPARE(Config().Value(DCP_SPEED), 2'000'000);
  }
  void InDialog(const std::function<void(QWidget*)>& Drive) { m_Session.RunDialog(Qt::Key_J, Drive); }
  // Sets inputs and takes them.
  void Run(const QList<INPUT>& Inputs) {
    InDialog([&Inputs](QWidget* pDialog) {
      for (const INPUT& Input : Inputs) SetInput(pDialog, Input);
      QTest::mouseClick(OkButton(pDialog), Qt::LeftButton);
      QVERIFY(!pDialog->isVisible());
    });
    CDevice::Get().WaitForJob(JT_CONFIGURE, true);
  }

  CSession m_Session;
  CSavedProject m_Project;
};

QTEST_MAIN(CVNodeSettingsDialogTest)
#include "vnode_settings_dialog_test.moc"
