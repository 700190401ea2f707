// The console under load, on the offscreen platform: how long the main thread is kept from its events while two threads
// print without a pause and a user types, and what lines cost once there are many of them, beside the toolkit's own
// view for journals. Usage: console_bench [LINES]
#include <QApplication>
#include <QElapsedTimer>
#include <QFile>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <QScrollBar>
#include <QTest>
#include <algorithm>
#include <atomic>
#include <cstdio>
#include <thread>

#include "shell/log/console_print.h"
#include "shell/log/log.h"
#include "shell/look/look.h"
#include "shell/settings/colors.h"
#include "shell/settings/fonts.h"
#include "shell/settings/settings_cache.h"
#include "shell/windows/console_window.h"

namespace {

constexpr int NUM_WRITERS = 2;
constexpr int MESSAGES_PER_WRITER = 50'000;
constexpr int LOAD_MS = 10'000;
constexpr int IDLE_MS = 3000;
constexpr int TYPE_INTERVAL_MS = 20;
constexpr int DEFAULT_LINES = 100'000;
constexpr QSize WINDOW_SIZE(900, 400);
constexpr double NS_PER_MS = 1e6;
constexpr qint64 BYTES_PER_PAGE = 4096;

qint64 ResidentBytes() {
  QFile File(QStringLiteral("/proc/self/statm"));
  if (!File.open(QIODevice::ReadOnly)) return 0;
  return File.readAll().split(' ').value(1).toLongLong() * BYTES_PER_PAGE;
}

QString MessageText(int Number) {
  return QStringLiteral("Message %1 of a target that has a lot to tell about its inputs and outputs").arg(Number);
}

// The longest times between two turns of a timer of 1 ms, which is what a key press may have to wait.
class CGapMeter {
public:
  CGapMeter() {
    m_Clock.start();
    QObject::connect(&m_Timer, &QTimer::timeout, &m_Timer, [this] {
      m_Gaps.push_back(static_cast<double>(m_Clock.nsecsElapsed()) / NS_PER_MS);
      m_Clock.restart();
    });
    m_Timer.start(1);
  }
  void Print(const char* sName) {
    std::ranges::sort(m_Gaps);
    const size_t Size = m_Gaps.size();
    std::printf("%-30s longest gap %.1f ms, 99 %% below %.1f ms, %zu turns\n", sName, m_Gaps.back(),
                m_Gaps[Size * 99 / 100], Size);
  }

private:
  QTimer m_Timer;
  QElapsedTimer m_Clock;
  std::vector<double> m_Gaps;
};

// What the machine itself keeps from the timer, with and without threads that only keep it busy.
void MeasureIdle(int NumBusy) {
  std::atomic<bool> bStop = false;
  std::vector<std::thread> Busy;
  for (int t = 0; t < NumBusy; ++t) {
    Busy.emplace_back([&bStop] {
      while (!bStop) {
      }
    });
  }
  CGapMeter Meter;
  QTest::qWait(IDLE_MS);
  Meter.Print(NumBusy ? "two busy threads, no message:" : "idle:");
  bStop = true;
  for (std::thread& Thread : Busy) Thread.join();
}

void MeasureLoad(CConsoleWindow& Console, bool bBurst) {
  CGapMeter Meter;
  std::vector<std::thread> Writers;
  for (int t = 0; t < NUM_WRITERS; ++t) {
    Writers.emplace_back([t, bBurst] {
      for (int i = 0; i < MESSAGES_PER_WRITER; ++i) {
        LogMsg(MessageText(i), t ? MSG_INFO | MSG_TO_CONSOLE : MSG_ERROR | MSG_TO_CONSOLE);
        if (!bBurst && i % 10 == 0) std::this_thread::sleep_for(std::chrono::microseconds(LOAD_MS * 10 / 50));
      }
    });
  }
  auto* const pInput = Console.findChild<QLineEdit*>(QStringLiteral("ConsoleInput"));
  qsizetype NumKeys = 0;
  QTimer Typist;
  QObject::connect(&Typist, &QTimer::timeout, &Typist, [&] {
    QTest::keyClick(pInput, static_cast<char>('a' + NumKeys % 26));
    ++NumKeys;
  });
  Typist.start(TYPE_INTERVAL_MS);
  QTest::qWait(LOAD_MS);
  Typist.stop();
  for (std::thread& Writer : Writers) Writer.join();
  Meter.Print(bBurst ? "two threads, one burst:" : "two threads, 10 s:");
  std::printf("  keys typed %lld, arrived %lld; lines shown %lld\n", static_cast<long long>(NumKeys),
              static_cast<long long>(pInput->text().size()),
              static_cast<long long>(Console.DumpText().count(QLatin1Char('\n')) + 1));
  Console.Clear();
}

// Appends a hundred lines at a time, painting after each, and prints the cost at the start, in the middle and the end.
void MeasureGrowth(const char* sName, int NumLines, const std::function<void(int)>& AppendHundred) {
  const int NumBatches = NumLines / static_cast<int>(CONSOLE_DRAIN_MAX);
  const qint64 Before = ResidentBytes();
  std::vector<double> aDuration;
  for (int i = 0; i < NumBatches; ++i) {
    QElapsedTimer Timer;
    Timer.start();
    AppendHundred(i * static_cast<int>(CONSOLE_DRAIN_MAX));
    QApplication::processEvents();
    aDuration.push_back(static_cast<double>(Timer.nsecsElapsed()) / NS_PER_MS);
  }
  const double Bytes = static_cast<double>(ResidentBytes() - Before) / NumLines;
  std::printf("%-30s %.0f bytes a line; 100 lines in", sName, Bytes);
  const int Tenth = std::max(1, NumBatches / 10);
  for (const int First : {0, (NumBatches - Tenth) / 2, NumBatches - Tenth}) {
    const auto Begin = aDuration.begin() + First;
    std::nth_element(Begin, Begin + Tenth / 2, Begin + Tenth);
    std::printf(" %.2f", *(Begin + Tenth / 2));
  }
  std::printf(" ms (start, middle, end; medians)\n");
}

void MeasureMany(CConsoleWindow& Console, int NumLines) {
  MeasureGrowth("console:", NumLines, [&](int First) {
    for (U32 i = 0; i < CONSOLE_DRAIN_MAX; ++i)
      PrintConsoleColor(MessageText(First + static_cast<int>(i)), COLOR_LOGGING_USER);
    Console.Drain();
  });
  QElapsedTimer Timer;
  Timer.start();
  auto* const pBar = Console.findChild<QPlainTextEdit*>()->verticalScrollBar();
  constexpr int NUM_SCROLLS = 200;
  for (int i = 0; i < NUM_SCROLLS; ++i) {
    pBar->setValue(pBar->maximum() / NUM_SCROLLS * i);
    QApplication::processEvents();
  }
  std::printf("  scrolled and painted in %.2f ms\n",
              static_cast<double>(Timer.nsecsElapsed()) / NS_PER_MS / NUM_SCROLLS);
  Timer.restart();
  SetFont(FONT_CONSOLE, QFont(QStringLiteral("Sans"), 12), false);
  Console.SetFont(FONT_CONSOLE, GetFont(FONT_CONSOLE));
  QApplication::processEvents();
  std::printf("  another font in %.0f ms\n", static_cast<double>(Timer.nsecsElapsed()) / NS_PER_MS);
  Timer.restart();
  SetColorRgb(COLOR_LOGGING_USER, 0xFF008000u, false);
  Console.SetColor(COLOR_LOGGING_USER, GetColor(COLOR_LOGGING_USER));
  QApplication::processEvents();
  std::printf("  another colour in %.0f ms\n", static_cast<double>(Timer.nsecsElapsed()) / NS_PER_MS);
  Timer.restart();
  Console.Clear();
  std::printf("  cleared in %.0f ms\n", static_cast<double>(Timer.nsecsElapsed()) / NS_PER_MS);
}

void MeasurePeer(int NumLines) {
  QPlainTextEdit Edit;
  Edit.setReadOnly(true);
  Edit.setUndoRedoEnabled(false);
  Edit.setLineWrapMode(QPlainTextEdit::NoWrap);
  Edit.resize(WINDOW_SIZE);
  Edit.show();
  MeasureGrowth("toolkit's plain view:", NumLines, [&](int First) {
    for (U32 i = 0; i < CONSOLE_DRAIN_MAX; ++i) Edit.appendPlainText(MessageText(First + static_cast<int>(i)));
    Edit.verticalScrollBar()->setValue(Edit.verticalScrollBar()->maximum());
  });
}

}  // namespace

int main(int NumArgs, char** pArgs) {
  qputenv("QT_QPA_PLATFORM", "offscreen");
  const QApplication Application(NumArgs, pArgs);
  SetSettingsInMemory(true);
  const int NumLines = NumArgs > 1 ? QString::fromLocal8Bit(pArgs[1]).toInt() : DEFAULT_LINES;
  CConsoleWindow Console(nullptr);
  Console.resize(WINDOW_SIZE);
  Console.show();
  QTest::qWait(100);
  MeasureIdle(0);
  MeasureIdle(NUM_WRITERS);
  MeasureLoad(Console, true);
  MeasureLoad(Console, false);
  MeasureMany(Console, NumLines);
  Console.hide();
  MeasurePeer(NumLines);
  return 0;
}
