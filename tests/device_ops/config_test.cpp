#include "device/interface_speed.h"
#include "device_fixture.h"

namespace {

using CConfigTest = CDeviceOpsTest;

TEST_F(CConfigTest, ReaderTakesAnyElementAnyBaseAndDefaults) {
  const char sXML[] =
      "<x><A DRPre='12' Endian='junk'/><B DRPre='99' IRPre='0X1f' Speed='auto' Unknown='1' USBSerialNo='0xFFFFFFFF'/>"
      "</x>";
  Ctx.Config.SetValue(DCP_STEPPING_MODE, 5);
  ASSERT_EQ(Ops.Configurator.Configure(sXML), 0);
  const std::pair<DEV_CONFIG_PARAMS, int> aCase[] = {
      {DCP_DR_PRE, 12},   {DCP_IR_PRE, 0x1F},  {DCP_SPEED, 0},         {DCP_ENDIAN, 0},        {DCP_CONNECT_MODE, 1},
      {DCP_TARGET_IF, 1}, {DCP_CORE_INDEX, 0}, {DCP_STEPPING_MODE, 5}, {DCP_DEVICE_INDEX, -1}, {DCP_USB_SERIAL_NO, -1}};
  for (const auto& [Param, Value] : aCase) EXPECT_EQ(Ctx.Config.Value(Param), Value) << Param;
}

TEST_F(CConfigTest, BadXMLChangesNothing) {
  const QByteArray sBefore = Ctx.Config.ToXML();
  for (const char* sXML : {"", "<VNodeSettings", "no xml", "<a><b></a>"}) {
    EXPECT_EQ(Ops.Configurator.Configure(sXML), -1) << sXML;
  }
  EXPECT_EQ(Ops.Configurator.Configure(nullptr), -1);
  EXPECT_EQ(Ops.Configurator.Configure(QByteArray("<a>").repeated(1000000).constData()), -1);
  EXPECT_EQ(Ctx.Config.ToXML(), sBefore);
}

TEST_F(CConfigTest, SpeedValuesDependOnEachOther) {
  // parameter and value; speed, maximum, adaptive; kHz for the probe
  const std::tuple<DEV_CONFIG_PARAMS, int, int, int, int, U32> aCase[] = {{DCP_SPEED, 2000000, 2000000, 0, 0, 2000},
                                                                          {DCP_USE_ADAPTIVE, 1, 65535, 0, 1, 65535},
                                                                          {DCP_USE_MAX_SPEED, 1, 0, 1, 0, 0},
                                                                          {DCP_SPEED, 65535, 65535, 0, 1, 65535},
                                                                          {DCP_SPEED, 0, 0, 1, 0, 0},
                                                                          {DCP_SPEED, 100000, 100000, 0, 0, 100}};
  Connect();
  Sink.OnConfigChanged = [this] { EXPECT_EQ(Probe.Count("SetSpeed"), 1) << "who hears of it finds it done"; };
  for (const auto& [Param, Value, Speed, UseMax, UseAdaptive, ForProbe] : aCase) {
    Forget();
    EXPECT_EQ(Ops.Configurator.SetConfigParam(Param, Value), 0);
    EXPECT_EQ(Ctx.Config.Value(DCP_SPEED), Speed);
    EXPECT_EQ(Ctx.Config.Value(DCP_USE_MAX_SPEED), UseMax);
    EXPECT_EQ(Ctx.Config.Value(DCP_USE_ADAPTIVE), UseAdaptive);
    EXPECT_EQ(Probe.CallText(), QString::asprintf("SetSpeed %x", ForProbe).toStdString()) << "at once";
    EXPECT_EQ(Sink.TakeEvents(), QString::asprintf("config %d %d", Param, Value).toStdString());
  }
  Forget();
  EXPECT_EQ(Ops.Configurator.Configure("<x><A Speed='2000' UseMaxSpeed='0'/></x>"), 0);
  EXPECT_EQ(Probe.CallText({"SetSpeed"}), "SetSpeed 7d0");
}

TEST(InterfaceSpeed, TextsOfASpeed) {
  const std::pair<const char*, I64> aCase[] = {{"4000", 4000000},
                                               {"0x10", 16000},
                                               {"0", 0},
                                               {"65535", 65535},
                                               {"auto", 0},
                                               {"Adaptive", 65535},
                                               {"1 Hz", 1000},
                                               {"1499 Hz", 1000},
                                               {"1500 Hz", 1000},
                                               {"1501 Hz", 2000},
                                               {"", -1},
                                               {"FREQ_2_MHZ", 2000000},
                                               {"2.5MHz", 2500000},
                                               {"2147483", 2147483000},
                                               {"4 GHz", -1},
                                               {"\"4 MHz\"", 4000000},
                                               {"2147484", -1},
                                               {"JTAG", -1},
                                               {"-1", -1},
                                               {"2147483647 Hz", 2147483000}};
  for (const auto& [sText, Hz] : aCase) {  // -1: none
    bool bOk = false;
    const U32 Speed = ParseInterfaceSpeed(QLatin1String(sText), &bOk);
    EXPECT_EQ(bOk ? I64{Speed} : -1, Hz) << sText;
  }
}

}  // namespace
