#include <unistd.h>

#include <cstring>
#include <fstream>
#include <set>

#include "core/core_table.h"
#include "probe_fixture.h"

class DeviceListTest : public CProbeTest {
protected:
  VNODEARM_DEVICE_INFO Info(int Index) {
    VNODEARM_DEVICE_INFO Result = {};
    Result.SizeOfStruct = sizeof(Result);
    EXPECT_EQ(API.VNODEARM_DEVICE_GetInfo(Index, &Result), 0) << Index;
    return Result;
  }
  std::string CoreName(U32 Core) {
    char acName[33];
    API.VNODEARM_Core2CoreName(Core, acName, sizeof(acName));
    return acName;
  }
};

TEST_F(DeviceListTest, EveryDeviceIsCompleteAndFoundByItsName) {
  const int NumDevices = API.VNODEARM_DEVICE_GetInfo(-1, nullptr);
  ASSERT_GT(NumDevices, 150);
  EXPECT_STREQ(Info(0).sName, "Unspecified");
  for (int i = 1; i < NumDevices; ++i) {
    const VNODEARM_DEVICE_INFO Device = Info(i);
    EXPECT_EQ(API.VNODEARM_DEVICE_GetIndex(Device.sName), i) << Device.sName;
    EXPECT_NE(CoreName(Device.Core), "") << Device.sName;
    EXPECT_GT(Device.RAMSize, 0u) << Device.sName;
    EXPECT_STRNE(Device.sManufacturer, "") << Device.sName;
  }
  std::ifstream File(VEXOR_SOURCE_DIR "/probe/devices.txt");
  int NumLines = 0;
  for (std::string sLine; std::getline(File, sLine);) NumLines += !sLine.empty() && sLine[0] != '#';
  EXPECT_EQ(NumDevices - 1, NumLines) << "a name twice, or a line that is none";
  VNODEARM_DEVICE_INFO Record = {sizeof(Record)};
  EXPECT_NE(API.VNODEARM_DEVICE_GetInfo(NumDevices, &Record), 0);
  EXPECT_NE(API.VNODEARM_DEVICE_GetInfo(-2, &Record), 0);
  EXPECT_EQ(API.VNODEARM_DEVICE_GetIndex("nrf52840_XXAA"), API.VNODEARM_DEVICE_GetIndex("nRF52840_xxAA"));
  EXPECT_LT(API.VNODEARM_DEVICE_GetIndex("NoSuchPart"), 0);
  EXPECT_LT(API.VNODEARM_DEVICE_GetIndex(""), 0);
}

TEST_F(DeviceListTest, EveryCoreOfTheCoreModelHasAGenericDevice) {
  std::set<std::string> Names;
  for (U32 Family = 1; Family <= 15; ++Family) {
    for (U32 SubFamily = 0; SubFamily <= 15; ++SubFamily) {
      QString sCore;
      VCore::GetCoreName(Family, SubFamily, sCore);
      const std::string sName = sCore.toStdString();
      if (sName.empty() || !Names.insert(sName).second) continue;
      const int Index = API.VNODEARM_DEVICE_GetIndex(sName.c_str());
      ASSERT_GT(Index, 0) << sName;
      const VNODEARM_DEVICE_INFO Device = Info(Index);
      VCore::GetCoreName(VCore::GetFamily(Device.Core), VCore::GetSubFamily(Device.Core), sCore);
      EXPECT_EQ(sCore.toStdString(), sName);
      EXPECT_STREQ(Device.sManufacturer, "Generic");
      EXPECT_EQ(CoreName(Device.Core), sName);
    }
  }
  EXPECT_GE(Names.size(), 21u);
}

TEST_F(DeviceListTest, UsersFileAddsAndReplaces) {
  const std::string sPath = testing::TempDir() + "vnode_devices_" + std::to_string(getpid()) + ".txt";
  const auto AddLine = [&](const std::string& sLine) {
    std::ofstream(sPath) << "# my own\n" << sLine << '\n';
    return Exec("DeviceListFile=" + sPath);
  };
  EXPECT_EQ(AddLine("MyPart, Me, Cortex-M3, 10, 20, 0x1000+2K, 0x20000000+0x800"), "");
  const int Index = API.VNODEARM_DEVICE_GetIndex("mypart");
  ASSERT_GT(Index, 0);
  EXPECT_EQ(Info(Index).FlashSize, 0x800u);
  EXPECT_EQ(Info(Index).RAMSize, 0x800u);
  EXPECT_EQ(AddLine("MYPART, Me, Cortex-M3, 10, 20, 0x1000+4K, 0x20000000+1K"), "");
  EXPECT_EQ(API.VNODEARM_DEVICE_GetIndex("mypart"), Index);
  EXPECT_EQ(Info(Index).FlashSize, 0x1000u);

  const std::pair<const char*, const char*> CASES[] = {
      {"Bad, Me, Cortex-M3", "fields expected"},
      {"Bad, Me, Cortex-X9, 10, 20, -, 0x0+1K", "unknown core Cortex-X9"},
      {"Bad, Me, Cortex-M3, 0, 20, -, 0x0+1K", "invalid number"},
      {"Bad, Me, Cortex-M3, 10, 20, -, 0xFFFFF000+8K", "invalid memory range"},
      {"Bad, Me, Cortex-M3, 10, 20, 0x0+2K, 0x400+4K", "overlap"},
      {"Bad, Me, Cortex-M3, 10, 20, -, 0x0+1K, MPU=17", "invalid option MPU=17"},
      {"Bad, Me, Cortex-M4, 10, 20, -, 0x0+1K, FPU=double, MPU=8", "invalid option FPU=double"},
  };
  for (const auto& [sLine, sError] : CASES) {
    EXPECT_THAT(AddLine(sLine), testing::AllOf(testing::HasSubstr("line 2"), testing::HasSubstr(sError)));
    EXPECT_LT(API.VNODEARM_DEVICE_GetIndex("Bad"), 0);
  }
  std::remove(sPath.c_str());
}
