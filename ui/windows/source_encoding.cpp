#include "ui/windows/source_encoding.h"

#include <QStringDecoder>
#include <QStringEncoder>

#include <algorithm>

namespace {

constexpr int NUM_LINE_ENDS_TESTED = 10;
constexpr qsizetype NUM_BYTES_TESTED = 1024;

// UTF-16 without a mark shows in its zero bytes: those of the characters that a program is written in.
std::optional<QStringConverter::Encoding> GuessUtf16(const QByteArray& Bytes) {
  const qsizetype NumBytes = std::min(Bytes.size(), NUM_BYTES_TESTED) & ~qsizetype{1};
  qsizetype NumZeros[2] = {0, 0};
  for (qsizetype i = 0; i < NumBytes; ++i) NumZeros[i & 1] += Bytes[i] == '\0';
  const qsizetype NumMost = NumBytes / 4;
  if (NumBytes == 0 || Bytes.size() % 2 != 0) return {};
  if (NumZeros[0] == 0 && NumZeros[1] > NumMost) return QStringConverter::Utf16LE;
  if (NumZeros[1] == 0 && NumZeros[0] > NumMost) return QStringConverter::Utf16BE;
  return {};
}

}  // namespace

QString DecodeSource(const QByteArray& Bytes, SOURCE_ENCODING* pEncoding) {
  std::optional<QStringConverter::Encoding> Codec = QStringConverter::encodingForData(Bytes);
  const bool bMark = Codec.has_value();
  if (!bMark) Codec = GuessUtf16(Bytes).value_or(QStringConverter::Utf8);
  QStringDecoder Decoder(*Codec);
  const QString sText = Decoder(Bytes);
  *pEncoding = {*Codec, bMark};
  // The end of the data within a character is an error, too, of which the decoder speaks only when it goes on.
  QByteArray Again;
  if (!Decoder.hasError() && EncodeSource(sText, *pEncoding, &Again) && Again.size() == Bytes.size()) return sText;
  *pEncoding = {QStringConverter::Latin1, false};
  return QString::fromLatin1(Bytes);
}

bool EncodeSource(const QString& sText, const SOURCE_ENCODING& Encoding, QByteArray* pBytes) {
  QStringEncoder Encoder(Encoding.Codec,
                         Encoding.bMark ? QStringConverter::Flag::WriteBom : QStringConverter::Flag::Default);
  const QByteArray Bytes = Encoder(sText);
  if (Encoder.hasError()) return false;
  *pBytes = Bytes;
  return true;
}

EOL_FORMAT DetectLineEnding(const QString& sText) {
  EOL_FORMAT Format = EOL_MAC;
  int NumFound = 0;
  for (qsizetype Pos = sText.indexOf(QLatin1Char('\n'), 1); Pos >= 0 && NumFound < NUM_LINE_ENDS_TESTED;
       Pos = sText.indexOf(QLatin1Char('\n'), Pos + 1), ++NumFound) {
    const EOL_FORMAT Found = sText[Pos - 1] == QLatin1Char('\r') ? EOL_WINDOWS : EOL_UNIX;
    if (NumFound > 0 && Found != Format) return EOL_MIXED;
    Format = Found;
  }
  return Format;
}

QString WithLineEnds(QString sText, EOL_FORMAT Format) {
  if (Format == EOL_WINDOWS) sText.replace(QLatin1Char('\n'), QLatin1String("\r\n"));
  if (Format == EOL_MAC) sText.replace(QLatin1Char('\n'), QLatin1Char('\r'));
  return sText;
}
