#include "ui/windows/source_document.h"

#include <QFile>
#include <QFileInfo>
#include <QStringDecoder>

#include "base/text.h"
#include "program/database/elfapi.h"
#include "program/database/file_finder.h"

namespace {

constexpr int NUM_LINE_ENDS_TESTED = 10;

bool IsWhereItSays(const QString& sPath) {
  const QFileInfo Info(sPath);
  return Info.isAbsolute() && Info.isFile();
}

}  // namespace

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

QString DecodeSource(const QByteArray& Bytes) {
  return Bytes.isValidUtf8() ? QString(QStringDecoder(QStringDecoder::Utf8)(Bytes)) : QString::fromLatin1(Bytes);
}

QString FindSourceFile(const QString& sPath) {
  return IsWhereItSays(sPath) ? sPath : CFileFinder::Get()->FindFile(sPath);
}

SOURCE_DOCUMENT LoadSourceDocument(const QString& sPath) {
  SOURCE_DOCUMENT Document;
  Document.sFilePath = sPath;
  Document.sResolvedPath = IsWhereItSays(sPath) ? sPath : CFileFinder::Get()->ResolvePath(sPath);
  Document.FileNo = ELFAPI_FileId(sPath);
  QFile File(Document.sResolvedPath);
  if (!QFileInfo(Document.sResolvedPath).isFile() || !File.open(QIODevice::ReadOnly)) return Document;
  Document.bExists = true;
  Document.sText = DecodeSource(File.readAll());
  Document.LineEnding = DetectLineEnding(Document.sText);
  Document.sText = WithUnixLineEnds(Document.sText);
  return Document;
}
