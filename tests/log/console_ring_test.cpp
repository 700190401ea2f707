// The console's ring: cut texts, and many threads at once. Its overflow: console_test.cpp of the shell.

#include <thread>

#include <gtest/gtest.h>

#include "shell/log/console_print.h"
#include "shell/log/log.h"

namespace {

CONSOLE_MSG PrintAndTake(const QString& sText) {
  ClearConsoleRing();
  PrintConsole(sText);
  CONSOLE_MSG Taken;
  DrainConsole([&](const CONSOLE_MSG& Msg) { Taken = Msg; });
  return Taken;
}

TEST(ConsolePrint, LongTextsAreCutAtACharacterAndCountOnlyTheirOwnLines) {
  const CONSOLE_MSG Long = PrintAndTake(QString(999, u'x') + "\n\n\ntail");
  EXPECT_EQ(strlen(Long.Text), 1000u);
  EXPECT_EQ(Long.NumLines, 2u);
  // the two bytes of the last character would be bytes 999 and 1000
  const CONSOLE_MSG Umlaut = PrintAndTake(QString(999, u'x') + QChar(0xE4));
  EXPECT_EQ(strlen(Umlaut.Text), 999u);
  EXPECT_EQ(PrintAndTake(QString(1000, u'y')).Text, std::string(1000, 'y'));
}

TEST(ConsolePrint, TimeStampTexts) {
  const std::pair<U64, const char*> Cases[] = {
      {3'723'004'005, "1:02:03.004 005"}, {12'345'678, "12.345 678"}, {7, "0.000 007"},
      {61'000'000, "1:01.000 000"},       {59'999'999, "59.999 999"}, {3'600'000'000, "1:00:00.000 000"},
  };
  for (const auto& [Microseconds, sText] : Cases) EXPECT_EQ(TimeStampText(Microseconds).toStdString(), sText);
}

TEST(ConsolePrint, ManyThreadsLoseAndMixNothing) {
  constexpr int NUM_THREADS = 4;
  constexpr int NUM_MESSAGES = 2000;
  SetConsoleExists(true);
  ClearConsoleRing();
  std::atomic<int> NumRunning = NUM_THREADS;
  std::atomic<int> NumAllowed = 0;  // keeps the writers within the ring's size
  std::vector<std::thread> Threads;
  for (int t = 0; t < NUM_THREADS; ++t) {
    Threads.emplace_back([&, t] {
      for (int i = 0; i < NUM_MESSAGES; ++i) {
        while (NumAllowed.fetch_add(1) > 900) {
          NumAllowed.fetch_sub(1);
          std::this_thread::yield();
        }
        const QString sText = QString("%1:%2").arg(t).arg(i);
        if (t % 2) PrintConsole(sText);
        if (t % 2 == 0) LogMsg(sText.toUtf8().constData(), MSG_INFO | MSG_TO_CONSOLE);
      }
      --NumRunning;
    });
  }
  std::array<int, NUM_THREADS> Next = {};
  int NumTaken = 0;
  const auto Take = [&](const CONSOLE_MSG& Msg) {
    int t = -1;
    int i = -1;
    ASSERT_EQ(sscanf(Msg.Text, "%d:%d", &t, &i), 2) << Msg.Text;
    ASSERT_EQ(i, Next[static_cast<size_t>(t)]++) << "order of one thread";
    ++NumTaken;
    NumAllowed.fetch_sub(1);
  };
  while (NumRunning > 0) DrainConsole(Take);
  while (DrainConsole(Take) > 0) {
  }
  for (std::thread& Thread : Threads) Thread.join();
  EXPECT_EQ(NumTaken, NUM_THREADS * NUM_MESSAGES);
  SetConsoleExists(false);
}

}  // namespace
