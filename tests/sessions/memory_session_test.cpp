// Memory commands and downloads, from a session into the simulated board and back.

#include <QProcess>

#include "session_runner.h"

namespace {

const QString BOARD =
    u"Project.SetDevice STM32F407VG\nProject.SetHostIF (\"USB\", \"\")\nProject.SetTargetIF SWD\n"
    "Debug.SetConnectMode CM_ATTACH_HALT\n"_s;
const QString HALTED_BOARD = BOARD + u"Debug.Connect\n@wait halted\n"_s;

class MemorySession : public SessionTest {
protected:
  bool RunTool(const QString& sLine) const {
    QProcess Process;
    Process.setWorkingDirectory(Path("."));
    Process.startCommand(sLine);
    const bool bDone = Process.waitForFinished() && Process.exitCode() == 0;
    EXPECT_TRUE(bDone) << sLine.toStdString();
    return bDone;
  }
  QByteArray Bytes(const QString& sName) const { return ReadBytes(m_Dir.filePath(sName)); }
};

TEST_F(MemorySession, WhatIsDownloadedIsTheImageOfTheProgram) {
  const QString sElf = QStringLiteral(VEXOR_SOURCE_DIR "/tests/database/data/demo.elf");
  ASSERT_TRUE(RunTool(u"arm-none-eabi-objcopy -O binary %1 image.bin"_s.arg(sElf)));
  ASSERT_TRUE(RunTool(u"arm-none-eabi-objcopy -O srec %1 a.srec"_s.arg(sElf)));
  ASSERT_TRUE(RunTool(u"arm-none-eabi-objcopy -O ihex %1 a.hex"_s.arg(sElf)));
  ASSERT_TRUE(QFile::copy(sElf, Path("demo.elf")));
  const QByteArray Image = Bytes(u"image.bin"_s);
  const QByteArray Expected = Image.leftJustified(0x300, '\xFF');
  const QStringList Commands = {
      u"Exec.Download (\"%1/a.srec\")"_s,
      u"File.Load (\"%1/a.hex\", 0)"_s,
      u"Target.LoadMemory (\"%1/image.bin\", 0x08000000)"_s,
      u"File.Load (\"%1/image.bin\", 0x08000000)"_s,
      u"File.Open (\"%1/demo.elf\")\n@wait idle\nDebug.Download"_s,
  };
  QString sSession = HALTED_BOARD;
  for (int i = 0; i < Commands.size(); ++i) {
    sSession +=
        u"Target.FillMemory 0x08000000 0x300 0xFF\n"_s + Commands[i].arg(Path(".")) +
        u"\n@wait idle\nTarget.SaveMemory (\"%1/out%2\", 0x08000000, 0x300)\n@wait idle\n"_s.arg(Path(".")).arg(i);
  }
  RunSession(sSession).Expect(0, {}, {"failed", "not written"});
  for (int i = 0; i < Commands.size(); ++i) EXPECT_EQ(Bytes(u"out%1"_s.arg(i)), Expected) << Commands[i].toStdString();
}

// One after the other; each is refused with its words, and the session goes on.
TEST_F(MemorySession, CommandsRefuseWhatTheyCannotDo) {
  WriteBytes(Path("bad.hex"), ":01001000AA45\n:01001000AA46\n");
  WriteBytes(Path("empty.bin"), "");
  const std::pair<const char*, const char*> aCases[] = {
      {"Target.SaveMemory (x.bin, 0, 4)", "not connected"},
      {"Target.FillMemory (0, 4, 1)", "not connected"},
      {"Target.LoadMemory (x.bin, 0)", "not connected"},
      {"Target.WriteU32 (0x20000000, 1)", "not connected"},
      {"Target.SetReg (R0, 1)", "not connected"},
      {"Exec.Reset ()", "not connected"},
      {"Exec.Download (x.hex)", "not connected"},
      {"Target.SetAccessWidth (3)", "invalid parameter"},
      {"Target.SetEndianess (maybe)", "invalid parameter"},
      {"Target.LoadMemoryMap (none.xml)", "file not found: \"none.xml\""},
      {"Target.LoadMemoryMap (%1/bad.hex)", "/bad.hex\", line 1: "},
      {"Target.AddMemorySegment (RAM, here, 16)", "invalid parameter: \"here\""},
      {"Target.AddMemorySegment (RAM, 0x20000000, 0)", "invalid parameter: \"0\""},
      {"", ""},  // connects
      {"Exec.Connect ()", "already connected"},
      {"Target.FillMemory (0x20000000, 0, 1)", "invalid parameter: \"0\""},
      {"Target.FillMemory (0x20000000, 4, 256)", "invalid parameter: \"256\""},
      {"Target.FillMemory (0xFFFFFFF0, 16, 0)", "invalid parameter: \"16\""},
      {"Target.FillMemory (nowhere, 16, 0)", "invalid parameter: \"nowhere\""},
      {"Target.FillMemory (0x20000000, 0xFFFFFFFF, 0)", "invalid parameter: \"0xFFFFFFFF\""},
      {"Target.FillMemory (0x120000000, 4, 0)", "invalid parameter: \"0x120000000\""},
      {"Target.FillMemory (0x20000000, 0x100000004, 0)", "invalid parameter: \"0x100000004\""},
      {"Target.SaveMemory (/none/x.bin, 0x20000000, 4)", "invalid filename: \"/none/x.bin\""},
      {"Target.SaveMemory (x.bin, 0x20000000, few)", "invalid parameter: \"few\""},
      {"Target.LoadMemory (none.bin, 0x20000000)", "file not found: \"none.bin\""},
      {"Target.LoadMemory (%1/empty.bin, 0x20000000)", "invalid parameter: \"%1/empty.bin\""},
      {"Target.WriteU8 (0x20000000, x)", "invalid parameter: \"x\""},
      {"Target.WriteU8 (0x20000000, 0x100)", "invalid parameter: \"0x100\""},
      {"Target.WriteU16 (0x20000000, 65536)", "invalid parameter: \"65536\""},
      {"Target.WriteU32 (0x20000000, 0x100000000)", "invalid parameter: \"0x100000000\""},
      {"Target.ReadU32 (0x30000000)", "could not read MCU memory"},
      {"Target.WriteU32 (0x30000000, 1)", "Target memory write of 4 bytes @ 30000000 failed."},
      {"Target.FillMemory (0x2001FFF0, 32, 1)", "Target memory write of 32 bytes @ 2001FFF0 failed."},
      {"Target.GetReg (R99X)", "invalid parameter"},
      {"Target.SetReg (R99X, 1)", "invalid parameter: \"R99X\""},
      {"Target.SetReg (R0, x)", "invalid parameter: \"x\""},
      {"Exec.Download (none.hex)", "file not found"},
      {"Exec.Download (%1/empty.bin)", "/empty.bin\" was not written: there is no data to write"},
      {"Exec.Download (%1/bad.hex)", "file contains corrupt data record at line 1."},
      {"Exec.Command (nonsense)", "Error executing V-Node command \"nonsense\": "},
      {"Debug.Continue ()\n@wait running", ""},
      {"Exec.Download (%1/bad.hex)", "program is running"},
      {"Target.GetReg (R0)", "program is running"},
      {"Target.SetReg (R0, 1)", "program is running"},
  };
  QString sSession = BOARD;
  for (size_t i = 0; i < std::size(aCases); ++i) {
    const QString sCommand = QLatin1String(aCases[i].first);
    sSession += u"Util.Log (\"case %1\")\n"_s.arg(i);
    sSession += sCommand.isEmpty() ? u"Debug.Connect\n@wait halted\n"_s : u"-%1\n@wait idle\n"_s.arg(sCommand);
  }
  const SESSION_RESULT Run = RunSession(sSession.replace(u"%1"_s, Path(".")));
  Run.Expect(0);
  for (size_t i = 0; i < std::size(aCases); ++i) {
    const QString sFrom = u"\ncase %1\n"_s.arg(i);
    const qsizetype From = Run.sOutput.indexOf(sFrom);
    const QString sPart = Run.sOutput.mid(From, Run.sOutput.indexOf(u"\ncase %1\n"_s.arg(i + 1)) - From);
    const QString sError = QString::fromLatin1(aCases[i].second).replace(u"%1"_s, Path("."));
    EXPECT_TRUE(From >= 0 && sPart.contains(sError)) << aCases[i].first << sPart.toStdString();
  }
}

// The phases: failed_session_test.cpp.
TEST_F(MemorySession, AFailedDownloadOfAFileIsTold) {
  QString sSession = HALTED_BOARD;
  for (const char* sCommand : {"File.Load", "Target.LoadMemory"}) {
    sSession += u"Exec.Command (\"sim.fail-download verify 1\")\n%1 (\"%2\", 0x08000000)\n@wait idle\n"_s.arg(
        QLatin1String(sCommand), Write("a.bin", QByteArray(100, 'a')));
  }
  RunSession(sSession).Expect(0, {"error during verification phase",
                                  "[Unsuccessfull Data Download] The data file was not downloaded correctly.",
                                  "Target memory write of 100 bytes @ 08000000 failed."});
}

TEST_F(MemorySession, ARunningTargetIsReadWithoutAHalt) {
  const SESSION_RESULT Run = RunSession(
      HALTED_BOARD +
      u"Target.WriteU32 (0x20000000, 0xE7FDBF00)\nTarget.SetReg (PC, 0x20000000)\n@wait idle\nDebug.Continue\n"
      "@wait running\nTarget.ReadU32 (0x20000000)\nTarget.WriteU32 (0x20000100, 0x11223344)\n"
      "Target.ReadU32 (0x20000100)\nTarget.ReadU16 (0x20000102)\nTarget.ReadU8 (0x20000103)\n"
      "Target.SaveMemory (\"%1/out\", 0x20000100, 4)\n@wait idle\n-Target.GetReg (R0)\n"_s.arg(Path(".")));
  Run.Expect(0, {"program is running"});
  EXPECT_EQ(Run.Value(0), 0xE7FDBF00);
  EXPECT_EQ(Run.Value(1), 0x11223344);
  EXPECT_EQ(Run.Value(2), 0x1122);
  EXPECT_EQ(Run.Value(3), 0x11);
  EXPECT_EQ(Bytes(u"out"_s).toHex(), "44332211");
}

TEST_F(MemorySession, HolesInASavedRangeAreCounted) {
  RunSession(HALTED_BOARD +
             u"Target.FillMemory (0x20000000, 64, 0x5A)\n@wait idle\n"
             "Exec.Command (\"sim.bad-memory 0x20000010 7\")\n@wait idle\n"
             "Target.SaveMemory (\"%1/out\", 0x20000000, 64)\n@wait idle\n"_s.arg(Path(".")))
      .Expect(0, {"7 of 64 bytes @ 20000000 could not be read; they are 0 in"});
  EXPECT_EQ(Bytes(u"out"_s), QByteArray(16, 'Z') + QByteArray(7, 0) + QByteArray(41, 'Z'));
}

// A function of a project goes on when the work of a command is done, and sees what it has written.
TEST_F(MemorySession, AScriptWaitsForItsMemoryCommands) {
  WriteBytes(Path("p.vdebug"),
             uR"(void OnProjectLoad (void) {
  Project.SetDevice ("STM32F407VG");
  Project.SetHostIF ("USB", "");
  Project.SetTargetIF ("SWD");
  Debug.SetConnectMode (CM_ATTACH_HALT);
}
void AfterTargetHalt (void) {
  unsigned int Value;
  Target.WriteU32 (0x20000000, 1);
  Value = Target.ReadU32 (0x20000000);
  Target.WriteU32 (0x20000000, 0x12345678);
  if (Target.ReadU32 (0x20000000) == 0x12345678) Util.Log ("memory is fresh");
  Target.SetReg ("R0", 1);
  Value = Target.GetReg ("R0");
  Target.SetReg ("R0", 0x77);
  if (Target.GetReg ("R0") == 0x77) Util.Log ("registers are fresh");
  Target.FillMemory (0x20001000, 20000, 0xA5);
  Target.SaveMemory ("saved.bin", 0x20001000, 20000);
  Target.LoadMemory ("saved.bin", 0x20008000);
  if (Target.ReadU32 (0x20008000 + 19996) == 0xA5A5A5A5) Util.Log ("loaded what was saved");
  Target.WriteU64 (0x20000010, 0x89ABCDEF);
  if (Target.ReadU32 (0x20000014) == 0) Util.Log ("eight bytes");
  Target.WriteU8 (0x20000018, 0 - 145);
  Target.WriteU16 (0x2000001A, -2);
  if (Target.ReadU32 (0x20000018) == 0xFFFE006F) Util.Log ("negative values");
  if (Target.FillMemory (0x20000000, 0, 0) == 0xFFFFFFFF) Util.Log ("no error code");
  if (Target.ReadU32 (0x30000000) == 0) Util.Log ("nothing there");
  if (Exec.Connect () != 0xFFFFFFFF) Util.Log ("end");
}
)"_s.toUtf8());
  RunSession(u"File.Open (\"%1\")\n@wait idle\nDebug.Start\n@wait halted\n@wait idle\n"_s.arg(Path("p.vdebug")))
      .Expect(0, {"memory is fresh", "registers are fresh", "loaded what was saved", "eight bytes", "negative values",
                  "nothing there", "Target.FillMemory (0x20000000, 0x0, 0x0): invalid parameter", "already connected",
                  "\nend\n"});
  EXPECT_EQ(Bytes(u"saved.bin"_s), QByteArray(20000, '\xA5'));
}

}  // namespace
