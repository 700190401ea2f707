// The source editor with big files, on the offscreen platform and in a view of 2560x1440, beside the toolkit's field
// for plain text in the same run: opening until the first paint, frames while scrolling, a key pressed in the midst.
#include <QApplication>
#include <QPlainTextEdit>
#include <QScrollBar>
#include <QTest>
#include <algorithm>
#include <cstdio>
#include <ctime>

#include "program/database/elfapi.h"
#include "shell/settings/settings_cache.h"
#include "ui/windows/source_editor.h"

namespace {

constexpr QSize VIEW_SIZE(2560, 1440);
constexpr int ROWS_PER_FRAME = 3;  // of a wheel's notch
constexpr double NS_PER_MS = 1e6;
constexpr double MS_PER_S = 1e3;

QString SourceText(int NumLines) {
  static const char* const LINES[] = {
      "static uint32_t checksum(const void *data, uint32_t size) {",
      "\tuint32_t sum = 0x811C9DC5u;  // of an empty block",
      "\tfor (uint32_t i = 0; i < size; i++) sum = (sum ^ ((const uint8_t *)data)[i]) * 16777619u;",
      "\tif (sum == 0) { log_error(\"checksum of block %u\", size); return 1; }",
      "\treturn sum; /* never 0 */",
      "}",
      ""};
  QString sText;
  for (int i = 0; i < NumLines; ++i) sText += QLatin1String(LINES[i % std::size(LINES)]) + QLatin1Char('\n');
  return sText;
}

// How often each thing is done; the toolkit takes its time for long lines.
struct COUNTS {
  int Opens = 3;
  int Frames = 300;
  int Keys = 20;
};

struct FRAME_TIMES {
  std::vector<double> Times;  // milliseconds
  double Median() { return At(0.5); }
  double At(double Part) {
    std::ranges::sort(Times);
    return Times[static_cast<size_t>(Part * static_cast<double>(Times.size() - 1))];
  }
};

double ProcessorTime() {
  timespec Time = {};
  clock_gettime(CLOCK_THREAD_CPUTIME_ID, &Time);
  return static_cast<double>(Time.tv_sec) * MS_PER_S + static_cast<double>(Time.tv_nsec) / NS_PER_MS;
}

template <typename ACTION>
double Milliseconds(ACTION Action) {
  const double Start = ProcessorTime();
  Action();
  return ProcessorTime() - Start;
}

template <typename OPEN>
void Measure(const char* sName, const COUNTS& Counts, QAbstractScrollArea& View, OPEN Open) {
  View.resize(VIEW_SIZE);
  View.show();
  const auto Paint = [&View] { View.viewport()->repaint(); };
  FRAME_TIMES Opens, Frames, Sideways, Keys;
  for (int i = 0; i < Counts.Opens; ++i) {
    Opens.Times.push_back(Milliseconds([&] {
      Open();
      QApplication::processEvents();
      Paint();
    }));
  }
  const auto Scroll = [&](QScrollBar& Bar, int Step, FRAME_TIMES& Times) {
    for (int i = 0; i < Counts.Frames; ++i) {
      Times.Times.push_back(Milliseconds([&] {
        Bar.setValue((i * Step) % std::max(1, Bar.maximum()));
        QApplication::processEvents();
      }));
    }
  };
  Scroll(*View.verticalScrollBar(), ROWS_PER_FRAME, Frames);
  Scroll(*View.horizontalScrollBar(), View.horizontalScrollBar()->singleStep() * ROWS_PER_FRAME, Sideways);
  double First = 0;
  for (int i = 0; i <= Counts.Keys; ++i) {
    const double Time = Milliseconds([&] {
      QTest::keyClick(&View, Qt::Key_A);
      QApplication::processEvents();
    });
    if (i == 0) {
      First = Time;
    } else {
      Keys.Times.push_back(Time);
    }
  }
  std::printf(
      "  %-8s open %7.1f ms; frame %5.2f ms, 99 %% below %5.2f; sideways %5.2f; first key %7.1f, next %5.2f ms\n",
      sName, Opens.Median(), Frames.Median(), Frames.At(0.99), Sideways.Median(), First, Keys.Median());
  View.hide();
}

void Compare(const char* sName, const QString& sText, const COUNTS& Counts = {}) {
  if (QCoreApplication::arguments().size() > 1 &&
      !QString::fromLatin1(sName).contains(QCoreApplication::arguments()[1]))
    return;
  std::printf("%s: %.1f million characters, %lld lines\n", sName, static_cast<double>(sText.size()) / 1e6,
              static_cast<long long>(sText.count(QLatin1Char('\n'))));
  const QFont Font(QStringLiteral("DejaVu Sans Mono"), 10);
  CSourceEditor Editor(nullptr);
  Editor.SetFonts(Font, Font);
  Editor.SetSessionQuery([] { return false; });
  Measure("here", Counts, Editor, [&] { Editor.SetText(sText, QStringLiteral("bench.c"), INVALID_FILE_ID); });
  QPlainTextEdit Field;
  Field.setFont(Font);
  Field.setLineWrapMode(QPlainTextEdit::NoWrap);
  Measure("toolkit", Counts, Field, [&] { Field.setPlainText(sText); });
}

}  // namespace

// Usage: source_bench [TEXT], a part of the name of those that are to be measured.
int main(int NumArgs, char** pArgs) {
  qputenv("QT_QPA_PLATFORM", "offscreen");
  const QApplication Application(NumArgs, pArgs);
  SetSettingsInMemory(true);
  std::setvbuf(stdout, nullptr, _IOLBF, 0);
  constexpr qsizetype TEN_MILLION = 10'000'000;
  Compare("200,000 lines", SourceText(200'000));
  QString sLong = SourceText(7).remove(QLatin1Char('\n')).remove(QLatin1Char('\t')).repeated(67);
  Compare("10 MB", SourceText(240'000).left(TEN_MILLION));
  Compare("lines of 20,000 characters",
          (sLong + QLatin1Char('\n')).repeated(static_cast<int>(TEN_MILLION / sLong.size())), {1, 10, 1});
  Compare("10 MB, tabs and accents",
          SourceText(200'000).replace(QLatin1String("sum"), QStringLiteral("s\u00FCm")).left(TEN_MILLION));
  return 0;
}
