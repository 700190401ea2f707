// Projects in whole sessions: new ones, saved ones, and files beside the program.

#include <gtest/gtest.h>

#include <QFile>
#include <QTemporaryDir>

#include "session_runner.h"

namespace {

constexpr const char* EXAMPLE = "examples/traffic_light/traffic_light.vdebug";
// One S-record with four bytes at the start of RAM.
constexpr const char* RECORD = "S0030000FC\nS3092000000078563412C2\nS70500000000FA\n";

QByteArray ReadAll(const QString& sPath) {
  QFile File(sPath);
  return File.open(QIODevice::ReadOnly) ? File.readAll() : QByteArray();
}

TEST(ProjectSession, ANewProjectHasNothingOfTheOldOneButTheDevice) {
  QTemporaryDir Dir;
  const QString sNew = Dir.filePath(QStringLiteral("new"));
  const SESSION_RESULT Run = RunSession(QStringLiteral("File.Open (\"%1\");\n@wait idle\nFile.NewProject ();\n"
                                                       "-File.SaveProjectAs (\"%2/none/x.vdebug\");\n"
                                                       "-File.SaveProjectAs (\"%2/x.txt\");\n"
                                                       "File.SaveProjectAs (\"%2/new\");\n"
                                                       "File.Open (\"%2/new.vdebug\");\n@wait idle\n")
                                            .arg(QLatin1String(EXAMPLE), Dir.path()));
  EXPECT_EQ(0, Run.ExitCode) << Run.sOutput.toStdString();
  const QByteArray Text = ReadAll(sNew + QStringLiteral(".vdebug"));
  EXPECT_TRUE(Text.contains("  Project.SetDevice (\"nRF52840_xxAA\");\r\n")) << Text.toStdString();
  EXPECT_FALSE(Text.contains("crossing")) << "a comment of the example";
  EXPECT_FALSE(Text.contains("File.Open")) << "the program was closed";
  EXPECT_EQ(2, Run.sOutput.count(QLatin1String(": invalid project filename"))) << Run.sOutput.toStdString();
  EXPECT_EQ(1, Run.Value(0)) << "the result of a save";
}

TEST(ProjectSession, AFileIsLoadedBesideTheProgram) {
  QTemporaryDir Dir;
  const QString sFile = Dir.filePath(QStringLiteral("data.srec"));
  QFile File(sFile);
  ASSERT_TRUE(File.open(QIODevice::WriteOnly));
  File.write(RECORD);
  File.close();
  const SESSION_RESULT Run =
      RunSession(QStringLiteral("File.Open (\"%1\");\n@wait idle\n-File.Load (\"%2\");\n"
                                "Debug.Start ();\n@wait halted\nFile.Load (\"%2\");\n@wait idle\n"
                                "Target.ReadU32 (0x20000000)\n-File.Load (\"none.hex\");\n")
                     .arg(QLatin1String(EXAMPLE), sFile));
  EXPECT_EQ(0, Run.ExitCode) << Run.sOutput.toStdString();
  EXPECT_TRUE(Run.Has("data.srec\"): not connected")) << Run.sOutput.toStdString();
  EXPECT_EQ(0x12345678, Run.Value(0)) << Run.sOutput.toStdString();
  EXPECT_TRUE(Run.Has("File.Load (\"none.hex\"): file not found")) << Run.sOutput.toStdString();
}

TEST(ProjectSession, TheProbeGetsTheScriptBesideTheProject) {
  QTemporaryDir Dir;
  QFile::copy(QStringLiteral(VEXOR_SOURCE_DIR "/") + QLatin1String(EXAMPLE), Dir.filePath(QStringLiteral("t.vdebug")));
  QFile::copy(QStringLiteral(VEXOR_SOURCE_DIR "/examples/traffic_light/traffic_light.elf"),
              Dir.filePath(QStringLiteral("traffic_light.elf")));
  QFile Script(Dir.filePath(QStringLiteral("t.vnode")));
  ASSERT_TRUE(Script.open(QIODevice::WriteOnly));
  Script.close();
  const QString sLog = Dir.filePath(QStringLiteral("log.txt"));
  const SESSION_RESULT Run = RunSession(
      QStringLiteral("File.Open (\"%1/t.vdebug\");\n@wait idle\nDebug.Start ();\n@wait halted\n").arg(Dir.path()),
      {QStringLiteral("-logfile"), sLog});
  EXPECT_EQ(0, Run.ExitCode) << Run.sOutput.toStdString();
  const QByteArray Log = ReadAll(sLog);
  EXPECT_TRUE(Log.contains(QByteArray("V-Node script \"") + Script.fileName().toUtf8() + "\" failed"))
      << Log.toStdString();
}

}  // namespace
