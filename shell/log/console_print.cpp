#include "shell/log/console_print.h"

#include <chrono>
#include <utility>

#include "shell/log/log.h"

namespace {

constexpr U64 USEC_PER_SEC = 1'000'000;
constexpr U64 SEC_PER_MIN = 60;
constexpr U64 SEC_PER_HOUR = 3600;

const std::chrono::steady_clock::time_point ProcessStart = std::chrono::steady_clock::now();

U64 MicrosecondsSinceStart() {
  return static_cast<U64>(
      std::chrono::duration_cast<std::chrono::microseconds>(std::chrono::steady_clock::now() - ProcessStart).count());
}

CConsoleRing& Ring() {
  static CConsoleRing TheRing;
  return TheRing;
}

thread_local void (*BeforePrint)() = nullptr;

// Bytes of the longest part that fits a slot and ends at a character's border.
size_t FittingBytes(const char* sText, size_t NumBytes) {
  if (NumBytes <= CONSOLE_MAX_TEXT_BYTES) return NumBytes;
  size_t Size = CONSOLE_MAX_TEXT_BYTES;
  while (Size > 0 && (static_cast<U8>(sText[Size]) & 0xC0) == 0x80) --Size;
  return Size;
}

void Queue(const char* sText, size_t NumBytes, U32 Rgba, I32 ColorID, bool UseMono) {
  if (NumBytes == 0) return;
  if (void (*const Print)() = std::exchange(BeforePrint, nullptr)) Print();
  CONSOLE_MSG Msg;
  const size_t Size = FittingBytes(sText, NumBytes);
  std::memcpy(Msg.Text, sText, Size);
  Msg.StartNewLine = 1;
  Msg.UseMonoFont = UseMono;
  Msg.Rgba = Rgba;
  Msg.ColorID = ColorID;
  Msg.NumLines = static_cast<U32>(std::count(Msg.Text, Msg.Text + Size, '\n')) + 1;
  Msg.TimeStamp = MicrosecondsSinceStart();
  Ring().Push(Msg);
}

void LogToFile(const CONSOLE_MSG& Msg) {
  const U32 Size = static_cast<U32>(strnlen(Msg.Text, sizeof(Msg.Text)));
  QByteArray Line(Msg.Text, Size);
  if (Msg.StartNewLine) Line += '\n';
  WriteConsoleLogFile(Line.constData(), static_cast<U32>(Line.size()));
}

}  // namespace

void PrintConsole(const QString& sText, U32 Rgba, bool UseMono) {
  const QByteArray Text = sText.toUtf8();
  Queue(Text.constData(), static_cast<size_t>(Text.size()), Rgba, -1, UseMono);
}

void PrintConsole(const char* sText, U32 Rgba) {
  Queue(sText, strlen(sText), Rgba, -1, false);
}

void PrintConsoleColor(const QString& sText, I32 ColorID, bool UseMono) {
  const QByteArray Text = sText.toUtf8();
  Queue(Text.constData(), static_cast<size_t>(Text.size()), CONSOLE_RGBA_DEFAULT, ColorID, UseMono);
}

void PrintConsoleLines(const QStringList& Lines, I32 ColorID) {
  for (const QString& sLine : Lines) PrintConsoleColor(sLine, ColorID, true);
}

void PrintConsoleError(const QString& sText) {
  PrintConsoleColor(sText, CONSOLE_COLOR_ERROR);
}

void SetBeforePrint(void (*Print)()) {
  BeforePrint = Print;
}

U32 DrainConsole(const std::function<void(const CONSOLE_MSG&)>& Show) {
  CONSOLE_MSG Msg;
  U32 NumShown = 0;
  while (NumShown < CONSOLE_DRAIN_MAX && Ring().Pop(&Msg)) {
    if (Show) Show(Msg);
    LogToFile(Msg);
    ++NumShown;
  }
  return NumShown;
}

void ClearConsoleRing() {
  Ring().Clear();
}

QString TimeStampText(U64 TimeStamp) {
  const U64 Seconds = TimeStamp / USEC_PER_SEC;
  const U64 Hours = Seconds / SEC_PER_HOUR;
  const U64 Minutes = Seconds / SEC_PER_MIN % SEC_PER_MIN;
  const QLatin1Char Zero('0');
  QString sText;
  if (Hours) sText += QString::number(Hours) + u':';
  if (Hours || Minutes) sText += QStringLiteral("%1:").arg(Minutes, Hours ? 2 : 1, 10, Zero);
  sText += QStringLiteral("%1.").arg(Seconds % SEC_PER_MIN, Hours || Minutes ? 2 : 1, 10, Zero);
  const U64 Micro = TimeStamp % USEC_PER_SEC;
  return sText + QStringLiteral("%1 %2").arg(Micro / 1000, 3, 10, Zero).arg(Micro % 1000, 3, 10, Zero);
}
