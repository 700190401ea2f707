// Which message reaches which sink, and in what form.

#include <sys/wait.h>
#include <unistd.h>

#include <csignal>

#include <QDir>
#include <QTemporaryDir>

#include <gtest/gtest.h>

#include "shell/log/console_print.h"
#include "shell/log/log.h"
#include "tests/common/files.h"
#include "tests/common/print.h"

namespace {

constexpr U32 RGBA_ERROR = 0xFFB22222u;
constexpr U32 RGBA_PROBE = 0xFF00008Bu;

// The texts that wait in the console, and the colours of them.
QStringList TakeConsole(QList<U32>* pColors = nullptr) {
  QStringList Texts;
  while (DrainConsole([&](const CONSOLE_MSG& Msg) {
    Texts << QString::fromUtf8(Msg.Text);
    if (pColors) *pColors << Msg.Rgba;
  })) {
  }
  return Texts;
}

std::string StdoutOf(const std::function<void()>& Log) {
  testing::internal::CaptureStdout();
  Log();
  fflush(stdout);
  return testing::internal::GetCapturedStdout();
}

class LogTest : public testing::Test {
protected:
  void SetUp() override {
    SetLogInterval("1");
    ClearConsoleRing();
    SetConsoleExists(true);
    sPath = Dir.filePath("app.log");
  }
  void TearDown() override {
    CloseLogFiles();
    SetDebugMode(false);
    SetConsoleExists(false);
  }
  void OpenAppLog() { ASSERT_EQ(0, OpenLogFile(LOG_FILE_APPLICATION, sPath.toUtf8().constData())); }

  QTemporaryDir Dir;
  QString sPath;
};

TEST_F(LogTest, FlagsChooseSinksPrefixesAndColours) {
  // Flags; what reaches the console with its colour, standard output, and the file.
  const std::tuple<U32, QStringList, QList<U32>, const char*, const char*> Routes[] = {
      {MSG_INFO | MSG_TO_CONSOLE, {"text"}, {CONSOLE_RGBA_DEFAULT}, "", ""},
      {MSG_INFO | MSG_TO_STDOUT, {}, {}, " i  text\n", ""},
      {MSG_WARNING | MSG_TO_FILE, {}, {}, "", "[W] text\n"},
      {MSG_ERROR | MSG_TO_ALL, {"text"}, {RGBA_ERROR}, "[E] text\n", "[E] text\n"},
      {MSG_ERROR | MSG_SRC_PROBE | MSG_TO_CONSOLE, {"V-Node: text"}, {RGBA_ERROR}, "", ""},
      {MSG_SRC_PROBE | MSG_TO_ALL | MSG_INFO,
       {"V-Node: text"},
       {RGBA_PROBE},
       " i  V-Node: text\n",
       " i  V-Node: text\n"},
      {MSG_SRC_TARGET | MSG_TO_CONSOLE | MSG_TO_FILE, {"Target: text"}, {CONSOLE_RGBA_DEFAULT}, "", "Target: text\n"},
      {MSG_WARNING | MSG_SRC_CORE | MSG_TO_STDOUT, {}, {}, "[W] Core: text\n", ""},
      {MSG_INFO, {}, {}, "", ""},
  };
  SetDebugMode(true);
  for (const auto& [Flags, Console, ConsoleColors, sStdout, sFile] : Routes) {
    OpenAppLog();
    EXPECT_EQ(StdoutOf([Flags = Flags] { EXPECT_EQ(0, LogMsg("text \r\n \n", Flags)); }), sStdout) << Flags;
    EXPECT_EQ(ReadBytes(sPath), sFile) << Flags;
    QList<U32> Colors;
    EXPECT_EQ(TakeConsole(&Colors), Console) << Flags;
    EXPECT_EQ(Colors, ConsoleColors) << Flags;
  }
}

TEST_F(LogTest, StartEmptiesTheFileAndABadPathIsSilent) {
  OpenAppLog();
  LogMsg("old", MSG_TO_FILE);
  OpenAppLog();
  EXPECT_EQ(ReadBytes(sPath), "");
  EXPECT_STREQ(GetLogFilePath(), sPath.toUtf8().constData());
  EXPECT_EQ(-1, OpenLogFile(LOG_FILE_APPLICATION, "/no/such/folder/app.log"));
  EXPECT_EQ(0, LogMsg("nowhere", MSG_TO_FILE));
  EXPECT_EQ(-1, OpenLogFile(7, "x"));
}

TEST_F(LogTest, AGrownFileIsCutAndContinued) {
  OpenAppLog();
  LogMsg("first", MSG_TO_FILE);
  QFile(sPath).resize(16'000'001);
  LogMsg("next", MSG_TO_FILE);
  EXPECT_EQ(ReadBytes(sPath), "first\n" + QByteArray(16'000 - 6, '\0') + "next\n");
}

TEST_F(LogTest, ARemovedFileBeginsAnewAndALostFolderIsBorne) {
  OpenAppLog();
  LogMsg("first", MSG_TO_FILE);
  ASSERT_TRUE(QFile::remove(sPath));
  LogMsg("second", MSG_TO_FILE);
  EXPECT_EQ(ReadBytes(sPath), "second\n");
  ASSERT_TRUE(QDir(Dir.path()).removeRecursively());
  EXPECT_EQ(0, LogMsg("nowhere", MSG_TO_FILE));
  ASSERT_TRUE(QDir().mkpath(Dir.path()));
  LogMsg("third", MSG_TO_FILE);
  EXPECT_EQ(ReadBytes(sPath), "third\n");
}

TEST_F(LogTest, AKilledProgramLosesAtMostOneInterval) {
  constexpr int INTERVAL = 200;
  constexpr int NUM_LINES = 1000;
  SetLogInterval(QString::number(INTERVAL));
  const pid_t Child = fork();
  ASSERT_GE(Child, 0);
  if (Child == 0) {
    OpenLogFile(LOG_FILE_APPLICATION, sPath.toUtf8().constData());
    for (int i = 0; i < NUM_LINES; ++i) LogMsg(QByteArray::number(1000 + i).constData(), MSG_TO_FILE);
    raise(SIGKILL);
  }
  int Status = 0;
  ASSERT_EQ(waitpid(Child, &Status, 0), Child);
  ASSERT_TRUE(WIFSIGNALED(Status) && WTERMSIG(Status) == SIGKILL);
  const QList<QByteArray> Lines = ReadBytes(sPath).trimmed().split('\n');
  EXPECT_GT(Lines.size(), NUM_LINES - INTERVAL / 5);  // a line has 5 bytes
  for (qsizetype i = 0; i < Lines.size(); ++i) ASSERT_EQ(Lines[i].toInt(), 1000 + i);
  // A program that closes its log loses nothing.
  OpenAppLog();
  LogMsg("rest", MSG_TO_FILE);
  EXPECT_EQ(ReadBytes(sPath), "");
  CloseLogFiles();
  EXPECT_EQ(ReadBytes(sPath), "rest\n");
}

TEST_F(LogTest, QtMessagesStayOutOfTheConsoleUnlessCritical) {
  SetDebugMode(true);
  const QMessageLogContext Context;
  EXPECT_EQ(" i  debug\n i  info\n[W] warning\n[E] critical\n", StdoutOf([&] {
              HandleQtMessage(QtDebugMsg, Context, "debug");
              HandleQtMessage(QtInfoMsg, Context, "info");
              HandleQtMessage(QtWarningMsg, Context, "warning");
              HandleQtMessage(QtCriticalMsg, Context, "critical");
            }));
  EXPECT_EQ(TakeConsole(), QStringList{"critical"});
}

}  // namespace
