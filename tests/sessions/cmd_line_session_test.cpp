// Projects from the options of the command line.

#include <gtest/gtest.h>

#include <QFile>
#include <QTemporaryDir>

#include "session_runner.h"

namespace {

constexpr const char* PROGRAM = "examples/traffic_light/traffic_light.elf";
const QStringList TARGET = {QStringLiteral("--DEVICE"), QStringLiteral("nRF52840_xxAA"), QStringLiteral("-usb"),
                            QStringLiteral("-if"),      QStringLiteral("SWD"),           QStringLiteral("-speed"),
                            QStringLiteral("4 MHz"),    QStringLiteral("-programfile"),  QLatin1String(PROGRAM)};
// The statements as they are echoed, in this order.
const QStringList STATEMENTS = {QStringLiteral("Project.SetDevice (\"nRF52840_xxAA\");"),
                                QStringLiteral("Project.SetHostIF (\"USB\", \"\");"),
                                QStringLiteral("Project.SetTargetIF (\"SWD\");"),
                                QStringLiteral("Project.SetTIFSpeed (\"4 MHz\");"),
                                QStringLiteral("Project.AddSvdFile (\"$(InstallDir)/Config/CPU/Cortex-M4.svd\");"),
                                QStringLiteral("File.Open (\"examples/traffic_light/traffic_light.elf\");")};

void ExpectInOrder(const QString& sText, const QStringList& Parts) {
  qsizetype Pos = 0;
  for (const QString& sPart : Parts) {
    const qsizetype Found = sText.indexOf(sPart, Pos);
    EXPECT_GE(Found, 0) << sPart.toStdString() << "\nnot behind the one before in\n" << sText.toStdString();
    Pos = std::max(Pos, Found);
  }
}

TEST(CmdLineSession, OptionsMakeAProjectThatCanBeDebuggedAndSaved) {
  QTemporaryDir Dir;
  const SESSION_RESULT Run = RunSession(QStringLiteral("@wait idle\nDebug.Start ();\n@wait halted\n"
                                                       "Target.GetReg (\"PC\");\nFile.SaveProjectAs (\"%1/new\");\n")
                                            .arg(Dir.path()),
                                        TARGET);
  EXPECT_EQ(0, Run.ExitCode) << Run.sOutput.toStdString();
  ExpectInOrder(Run.sOutput, STATEMENTS);
  EXPECT_EQ(AddressOf(QLatin1String(PROGRAM), QStringLiteral("main")) & ~1U, Run.Value(0));
  QFile Saved(Dir.filePath(QStringLiteral("new.vdebug")));
  ASSERT_TRUE(Saved.open(QIODevice::ReadOnly));
  ExpectInOrder(QString::fromUtf8(Saved.readAll()), STATEMENTS);
}

TEST(CmdLineSession, OptionsAreAddedToAProjectThatExists) {
  QTemporaryDir Dir;
  const QString sProject = Dir.filePath(QStringLiteral("old.vdebug"));
  QFile File(sProject);
  ASSERT_TRUE(File.open(QIODevice::WriteOnly));
  File.write("// kept\nvoid OnProjectLoad (void) {\n  Project.SetDevice (\"Cortex-M0\");\n  Util.Log (\"mine\");\n}\n");
  File.close();
  const SESSION_RESULT Run =
      RunSession(QStringLiteral("@wait idle\n"), TARGET + QStringList{QStringLiteral("-project"), sProject});
  EXPECT_EQ(0, Run.ExitCode) << Run.sOutput.toStdString();
  ExpectInOrder(Run.sOutput, STATEMENTS + QStringList{QStringLiteral("mine")});
  EXPECT_FALSE(Run.Has("Cortex-M0")) << Run.sOutput.toStdString();
  ASSERT_TRUE(File.open(QIODevice::ReadOnly));
  const QString sText = QString::fromUtf8(File.readAll());
  ExpectInOrder(sText, QStringList{QStringLiteral("// kept")} + STATEMENTS + QStringList{QStringLiteral("Util.Log")});
  EXPECT_FALSE(sText.contains(QLatin1String("Cortex-M0")));
}

TEST(CmdLineSession, TooFewOptionsMakeNoProject) {
  const SESSION_RESULT Run = RunSession(QStringLiteral("@wait idle\n"), TARGET.first(3));
  EXPECT_EQ(0, Run.ExitCode) << Run.sOutput.toStdString();
  EXPECT_FALSE(Run.Has("Project.")) << Run.sOutput.toStdString();
  EXPECT_TRUE(Run.Has("the command line lacks -if.")) << Run.sOutput.toStdString();
}

TEST(CmdLineSession, AProjectAsTheFirstArgumentWins) {
  const SESSION_RESULT Run = RunSession(
      QStringLiteral("@wait idle\n"),
      QStringList{QStringLiteral("examples/traffic_light/traffic_light.vdebug"), QStringLiteral("-device"),
                  QStringLiteral("Cortex-M0"), QStringLiteral("-usb"), QStringLiteral("-if"), QStringLiteral("SWD")});
  EXPECT_EQ(0, Run.ExitCode) << Run.sOutput.toStdString();
  EXPECT_TRUE(Run.Has("Project.SetDevice (\"nRF52840_xxAA\");")) << Run.sOutput.toStdString();
  EXPECT_FALSE(Run.Has("Cortex-M0\"")) << Run.sOutput.toStdString();
}

}  // namespace
