// Projects from the options of the command line.

#include "session_runner.h"

namespace {

using CmdLineSession = SessionTest;

const QString PROGRAM = u"examples/traffic_light/traffic_light.elf"_s;
const QStringList TARGET = {u"--DEVICE"_s, u"nRF52840_xxAA"_s, u"-usb"_s,         u"-if"_s, u"SWD"_s,
                            u"-speed"_s,   u"4 MHz"_s,         u"-programfile"_s, PROGRAM};
// The statements as they are echoed, in this order.
const QStringList STATEMENTS = {u"Project.SetDevice (\"nRF52840_xxAA\");"_s,
                                u"Project.SetHostIF (\"USB\", \"\");"_s,
                                u"Project.SetTargetIF (\"SWD\");"_s,
                                u"Project.SetTIFSpeed (\"4 MHz\");"_s,
                                u"Project.AddSvdFile (\"$(InstallDir)/Config/CPU/Cortex-M4.svd\");"_s,
                                u"File.Open (\"examples/traffic_light/traffic_light.elf\");"_s};

void ExpectInOrder(const QString& sText, const QStringList& Parts) {
  qsizetype Pos = 0;
  for (const QString& sPart : Parts) {
    const qsizetype Found = sText.indexOf(sPart, Pos);
    EXPECT_GE(Found, 0) << sPart.toStdString() << "\nnot behind the one before in\n" << sText.toStdString();
    Pos = std::max(Pos, Found);
  }
}

TEST_F(CmdLineSession, OptionsMakeAProjectThatCanBeDebuggedAndSaved) {
  const SESSION_RESULT Run = RunSession(
      u"@wait idle\nDebug.Start ();\n@wait halted\nTarget.GetReg (\"PC\");\n"
      "File.SaveProjectAs (\"%1\");\n"_s.arg(Path("new")),
      TARGET);
  Run.Expect(0);
  ExpectInOrder(Run.sOutput, STATEMENTS);
  EXPECT_EQ(AddressOf(PROGRAM, u"main"_s), Run.Value(0));
  ExpectInOrder(QString::fromUtf8(ReadBytes(Path("new.vdebug"))), STATEMENTS);
}

TEST_F(CmdLineSession, OptionsAreAddedToAProjectThatExists) {
  const QString sProject = Write("old.vdebug",
                                 "// kept\nvoid OnProjectLoad (void) {\n  Project.SetDevice "
                                 "(\"Cortex-M0\");\n  Util.Log (\"mine\");\n}\n");
  const SESSION_RESULT Run = RunSession(u"@wait idle\n"_s, TARGET + QStringList{u"-project"_s, sProject});
  Run.Expect(0, {}, {"Cortex-M0"});
  ExpectInOrder(Run.sOutput, STATEMENTS + QStringList{u"mine"_s});
  const QString sText = QString::fromUtf8(ReadBytes(sProject));
  ExpectInOrder(sText, QStringList{u"// kept"_s} + STATEMENTS + QStringList{u"Util.Log"_s});
  EXPECT_FALSE(sText.contains(u"Cortex-M0"));
}

TEST_F(CmdLineSession, AProjectMayStandBehindTheBatchFile) {
  const QString sBatch = Write("batch.txt", "@wait idle\n");
  const QString sProject = QStringLiteral(VEXOR_SOURCE_DIR "/examples/traffic_light/traffic_light.vdebug");
  RunProgram(QStringLiteral(VEXOR_BIN_DIR "/vexor"), {u"-batch"_s, sBatch, sProject})
      .Expect(0, {"traffic_light.vdebug", "traffic_light.elf"});
}

TEST_F(CmdLineSession, AProjectThatCannotBeOpenedEndsTheSession) {
  const QString sBatch = Write("batch.txt", "Util.Log never\n");
  const QString sBad = Write("bad.vdebug", "nonsense;\n");
  for (const auto& [sProject, sWhy] :
       {std::pair{Path("none.vdebug"), "file not found"}, {sBad, "Error in project file"}}) {
    RunProgram(QStringLiteral(VEXOR_BIN_DIR "/vexor"), {u"-batch"_s, sBatch, sProject}).Expect(1, {sWhy}, {"never"});
  }
}

TEST_F(CmdLineSession, TooFewOptionsMakeNoProject) {
  RunSession(u"@wait idle\n"_s, TARGET.first(3)).Expect(0, {"the command line lacks -if."}, {"Project."});
}

TEST_F(CmdLineSession, AProjectAsTheFirstArgumentWins) {
  RunSession(u"@wait idle\n"_s, {u"examples/traffic_light/traffic_light.vdebug"_s, u"-device"_s, u"Cortex-M0"_s,
                                 u"-usb"_s, u"-if"_s, u"SWD"_s})
      .Expect(0, {"Project.SetDevice (\"nRF52840_xxAA\");"}, {"Cortex-M0\""});
}

}  // namespace
