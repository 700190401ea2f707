#include <gtest/gtest.h>

#include "core/core_table.h"
#include "core/vcore.h"
#include "device/probe_api/register_index.h"
#include "peripherals/cpu_register_file.h"
#include "peripherals/cpu_register_reader.h"

namespace {

using namespace Qt::StringLiterals;

constexpr U32 CORE_ID_M4 = 0x0E0000FF, CORE_ID_ARM9 = 0x092601FF;
const QString sConfigDir = QStringLiteral(VEXOR_SOURCE_DIR "/resources/Config");

TEST(CpuRegisterFiles, EveryCoreHasAFileWithTheProbesNumbers) {
  for (const U32 CoreId : VCore::GetKnownCores()) {
    SCOPED_TRACE(testing::Message() << std::hex << CoreId);
    CCpuRegisterFile File;
    ASSERT_EQ(File.Load(CCpuRegisterFile::GetSVDFileNameForCore(sConfigDir, CoreId)), 0) << qPrintable(File.Error());
    ASSERT_EQ(VCore::Init({CoreId, 0, 0}, {}), 0);
    for (U32 Reg = 0; Reg <= VCORE_REG_PC; ++Reg) {
      EXPECT_EQ(File.GetVNodeRegIdx(u"R%1"_s.arg(Reg)), static_cast<int>(VCore::MapRegIndex(Reg))) << Reg;
    }
    EXPECT_EQ(File.GetVNodeRegIdx(u"pc"_s), File.GetVNodeRegIdx(u"R15"_s));
    EXPECT_EQ(File.GetVNodeRegIdx(u"PSR"_s), static_cast<int>(VCore::MapRegIndex(VCORE_REG_PSR)));
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
  const std::pair<const char16_t*, U32> aReg[] = {{u"SP", VNODE_REG_SP},
                                                  {u"LR", VNODE_REG_LR},
                                                  {u"xPSR", VNODE_REG_XPSR},
                                                  {u"MSP", VNODE_REG_MSP},
                                                  {u"PSP", VNODE_REG_PSP},
                                                  {u"APSR", VNODE_REG_APSR},
                                                  {u"EPSR", VNODE_REG_EPSR},
                                                  {u"IPSR", VNODE_REG_IPSR},
                                                  {u"PRIMASK", VNODE_REG_PRIMASK},
                                                  {u"BASEPRI", VNODE_REG_BASEPRI},
                                                  {u"FAULTMASK", VNODE_REG_FAULTMASK},
                                                  {u"CONTROL", VNODE_REG_CONTROL},
                                                  {u"FPSCR", VNODE_REG_FPSCR},
                                                  {u"S0", VNODE_REG_S0},
                                                  {u"S31", VNODE_NUM_REGS - 1}};
  CCpuRegisterFile File;
  ASSERT_EQ(File.Load(CCpuRegisterFile::GetSVDFileNameForCore(sConfigDir, CORE_ID_M4)), 0);
  for (const auto& [sText, Index] : aReg) {
    const QString sName = QString::fromUtf16(sText);
    EXPECT_EQ(File.GetVNodeRegIdx(sName), static_cast<int>(Index)) << qPrintable(sName);
    EXPECT_EQ(File.GetRegName(Index), sName);
  }
  EXPECT_EQ(File.GetVNodeRegIdx(u"R16"_s), -1);
}

// The banked registers' own numbers are those that the modes give to the logic registers.
TEST(CpuRegisterFiles, BankedRegisters) {
  CCpuRegisterFile File;
  ASSERT_EQ(File.Load(CCpuRegisterFile::GetSVDFileNameForCore(sConfigDir, CORE_ID_ARM9)), 0);
  const std::pair<QString, U32> aMode[] = {{u"USR"_s, 16}, {u"FIQ"_s, 17}, {u"IRQ"_s, 18},
                                           {u"SVC"_s, 19}, {u"ABT"_s, 23}, {u"UND"_s, 27}};
  for (const auto& [sMode, Mode] : aMode) {
    VCORE_API API;
    API.pfReadProbeRegs = [Mode = Mode](const U32*, U32* paValue, U8* paStatus, U32) {
      *paValue = Mode;
      *paStatus = 0;
      return 0;
    };
    ASSERT_EQ(VCore::Init({CORE_ID_ARM9, 0, 0}, API), 0);
    for (U32 Reg = 8; Reg <= VCORE_REG_LR; ++Reg) {
      const CPU_REGISTER* pRegister = File.Find(u"R%1_%2"_s.arg(Reg).arg(sMode));
      if (pRegister == nullptr) continue;
      EXPECT_EQ(pRegister->VNodeRegIdx, VCore::MapRegIndex(Reg)) << qPrintable(sMode) << Reg;
    }
    EXPECT_EQ(File.GetVNodeRegIdx(u"SP"_s), File.GetVNodeRegIdx(u"R13_"_s + sMode));
    const CPU_REGISTER* pSaved = File.Find(u"SPSR_"_s + sMode);
    EXPECT_EQ(pSaved ? pSaved->VNodeRegIdx : INVALID_REG_INDEX, VCore::MapRegIndex(VCORE_REG_SPSR))
        << qPrintable(sMode);
    VCore::Exit();
  }
}

TEST(CpuRegisterReader, Numbers) {
  const std::tuple<QString, U64, bool> aCase[] = {
      {u"4K"_s, 4000, true}, {u"1M"_s, 1000000, true}, {u"#101"_s, 5, true},
      {u"0x1G"_s, 0, false}, {u"0x10"_s, 16, true},    {u"+12"_s, 12, true},
      {u""_s, 0, false},     {u"k"_s, 0, false},       {u"twelve"_s, 0, false}};
  for (const auto& [sText, Value, bGood] : aCase) {
    bool bOk = !bGood;
    EXPECT_EQ(ParseSvdNumber(sText, &bOk), Value) << qPrintable(sText);
    EXPECT_EQ(bOk, bGood) << qPrintable(sText);
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
  EXPECT_EQ(File.Load(sConfigDir + u"/CPU/none.svd"_s), -1);
  EXPECT_EQ(File.Parse("<CPU><groups><group><size>16</size><registers><register><name>X</name><index>3</index>"
                       "</register><register/></registers></group></groups></CPU>"),
            0);
  ASSERT_EQ(File.Registers().size(), 1);
  EXPECT_EQ(File.Registers()[0].Size, 16u);
}

}  // namespace
