#include <gtest/gtest.h>

#include "core/core_table.h"
#include "core/vcore.h"
#include "device/probe_api/register_index.h"
#include "peripherals/cpu_register_file.h"
#include "peripherals/cpu_register_reader.h"

namespace {

const QString sConfigDir = QStringLiteral(VEXOR_SOURCE_DIR "/resources/Config");

TEST(CpuRegisterFiles, EveryCoreHasAFileWithTheProbesNumbers) {
  for (const U32 CoreId : VCore::GetKnownCores()) {
    SCOPED_TRACE(testing::Message() << std::hex << CoreId);
    CCpuRegisterFile File;
    ASSERT_EQ(File.Load(CCpuRegisterFile::GetSVDFileNameForCore(sConfigDir, CoreId)), 0) << qPrintable(File.Error());
    ASSERT_EQ(VCore::Init({CoreId, 0, 0}, {}), 0);
    for (U32 Reg = 0; Reg <= VCORE_REG_PC; ++Reg) {
      const QString sName = QStringLiteral("R%1").arg(Reg);
      EXPECT_EQ(File.GetVNodeRegIdx(sName), static_cast<int>(VCore::MapRegIndex(Reg))) << qPrintable(sName);
    }
    EXPECT_EQ(File.GetVNodeRegIdx(QStringLiteral("pc")), File.GetVNodeRegIdx(QStringLiteral("R15")));
    EXPECT_EQ(File.GetVNodeRegIdx(QStringLiteral("PSR")), static_cast<int>(VCore::MapRegIndex(VCORE_REG_PSR)));
    for (const CPU_REGISTER& Register : File.Registers()) {
      VCore::CP_REG CP;
      const bool bHasIndex = Register.VNodeRegIdx != INVALID_REG_INDEX;
      EXPECT_NE(bHasIndex, !Register.sId.isEmpty()) << qPrintable(Register.sName);
      if (!bHasIndex) {
        EXPECT_EQ(VCore::ParseCPReg(Register.sId, CP), 0) << qPrintable(Register.sName);
      }
    }
    VCore::Exit();
  }
}

TEST(CpuRegisterFiles, SpecialRegistersOfTheCortexM4) {
  const struct {
    const char* sName;
    U32 Index;
  } aReg[] = {
      {"SP", VNODE_REG_SP},
      {"LR", VNODE_REG_LR},
      {"xPSR", VNODE_REG_XPSR},
      {"MSP", VNODE_REG_MSP},
      {"PSP", VNODE_REG_PSP},
      {"APSR", VNODE_REG_APSR},
      {"EPSR", VNODE_REG_EPSR},
      {"IPSR", VNODE_REG_IPSR},
      {"PRIMASK", VNODE_REG_PRIMASK},
      {"BASEPRI", VNODE_REG_BASEPRI},
      {"FAULTMASK", VNODE_REG_FAULTMASK},
      {"CONTROL", VNODE_REG_CONTROL},
      {"FPSCR", VNODE_REG_FPSCR},
      {"S0", VNODE_REG_S0},
      {"S31", VNODE_NUM_REGS - 1},
  };
  CCpuRegisterFile File;
  ASSERT_EQ(File.Load(CCpuRegisterFile::GetSVDFileNameForCore(sConfigDir, 0x0E0000FF)), 0);
  for (const auto& Reg : aReg) {
    EXPECT_EQ(File.GetVNodeRegIdx(QString::fromLatin1(Reg.sName)), static_cast<int>(Reg.Index)) << Reg.sName;
    EXPECT_EQ(File.GetRegName(Reg.Index), QString::fromLatin1(Reg.sName));
  }
  EXPECT_EQ(File.GetVNodeRegIdx(QStringLiteral("R16")), -1);
}

// The banked registers' own numbers are those that the modes give to the logic registers.
TEST(CpuRegisterFiles, BankedRegisters) {
  CCpuRegisterFile File;
  ASSERT_EQ(File.Load(CCpuRegisterFile::GetSVDFileNameForCore(sConfigDir, 0x092601FF)), 0);
  const std::pair<const char*, U32> aMode[] = {{"USR", 16}, {"FIQ", 17}, {"IRQ", 18},
                                               {"SVC", 19}, {"ABT", 23}, {"UND", 27}};
  for (const auto& [sMode, Mode] : aMode) {
    VCORE_API API;
    API.pfReadProbeRegs = [Mode = Mode](const U32*, U32* paValue, U8* paStatus, U32) {
      *paValue = Mode;
      *paStatus = 0;
      return 0;
    };
    ASSERT_EQ(VCore::Init({0x092601FF, 0, 0}, API), 0);
    for (U32 Reg = 8; Reg <= VCORE_REG_LR; ++Reg) {
      const CPU_REGISTER* pRegister = File.Find(QStringLiteral("R%1_%2").arg(Reg).arg(QString::fromLatin1(sMode)));
      if (pRegister != nullptr) {
        EXPECT_EQ(pRegister->VNodeRegIdx, VCore::MapRegIndex(Reg)) << sMode << Reg;
      }
    }
    EXPECT_EQ(File.GetVNodeRegIdx(QStringLiteral("SP")),
              File.GetVNodeRegIdx(QStringLiteral("R13_") + QString::fromLatin1(sMode)));
    VCore::Exit();
  }
}

TEST(CpuRegisterReader, Numbers) {
  const struct {
    const char* sText;
    U64 Value;
    bool bOk;
  } aCase[] = {{"4K", 4000, true}, {"1M", 1000000, true}, {"#101", 5, true}, {"0x1G", 0, false},  {"0x10", 16, true},
               {"+12", 12, true},  {"", 0, false},        {"k", 0, false},   {"twelve", 0, false}};
  for (const auto& Case : aCase) {
    bool bOk = !Case.bOk;
    EXPECT_EQ(ParseSvdNumber(QString::fromLatin1(Case.sText), &bOk), Case.Value) << Case.sText;
    EXPECT_EQ(bOk, Case.bOk) << Case.sText;
  }
}

TEST(CpuRegisterReader, BadFilesAreRefused) {
  CCpuRegisterFile File;
  const QByteArray aBad[] = {"", "<cpu><groups>", "<device/>", "no xml", QByteArray("<a>").repeated(200000)};
  for (const QByteArray& Text : aBad) {
    EXPECT_EQ(File.Parse(Text), -1);
    EXPECT_FALSE(File.Error().isEmpty());
    EXPECT_TRUE(File.Registers().isEmpty());
  }
  EXPECT_EQ(File.Load(sConfigDir + QStringLiteral("/CPU/none.svd")), -1);
  EXPECT_EQ(File.Parse("<CPU><groups><group><size>16</size><registers><register><name>X</name><index>3</index>"
                       "</register><register/></registers></group></groups></CPU>"),
            0);
  ASSERT_EQ(File.Registers().size(), 1);
  EXPECT_EQ(File.Registers()[0].Size, 16u);
}

}  // namespace
