#include "ui/windows/source_document.h"

#include <QFile>
#include <QFileInfo>

#include "base/save_file.h"
#include "base/stable_hash.h"
#include "base/text.h"
#include "program/database/elfapi.h"
#include "program/database/file_finder.h"

namespace {

bool IsWhereItSays(const QString& sPath) {
  const QFileInfo Info(sPath);
  return Info.isAbsolute() && Info.isFile();
}

U32 HashOf(const QByteArray& Bytes) {
  return StableHash32(Bytes.constData(), static_cast<size_t>(Bytes.size()));
}

}  // namespace

QString SOURCE_DOCUMENT::FileName() const {
  return QFileInfo(Place()).fileName();
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
  Document.FileTime = QFileInfo(File).lastModified();
  const QByteArray Bytes = File.readAll();
  Document.TextHash = HashOf(Bytes);
  Document.sText = DecodeSource(Bytes, &Document.Encoding);
  Document.LineEnding = DetectLineEnding(Document.sText);
  // A file of a single line has no format that would have to be kept.
  if (Document.LineEnding == EOL_MAC && !Document.sText.contains(QLatin1Char('\r'))) Document.LineEnding = EOL_UNIX;
  Document.sText = WithUnixLineEnds(Document.sText);
  return Document;
}

bool HasChangedOutside(SOURCE_DOCUMENT& Document) {
  const QFileInfo Info(Document.sResolvedPath);
  if (!Document.bExists || !Info.isFile() || Info.lastModified() == Document.FileTime) return false;
  QFile File(Document.sResolvedPath);
  if (!File.open(QIODevice::ReadOnly)) return false;
  Document.FileTime = Info.lastModified();
  const U32 Hash = HashOf(File.readAll());
  const bool bChanged = Hash != Document.TextHash;
  Document.TextHash = Hash;
  return bChanged;
}

bool WriteSourceDocument(SOURCE_DOCUMENT& Document, const QString& sText, QString* psReason) {
  QByteArray Bytes;
  SOURCE_ENCODING Encoding = Document.Encoding;
  const QString sFileText = WithLineEnds(sText, Document.LineEnding);
  if (!EncodeSource(sFileText, Encoding, &Bytes)) {
    // A character that the file's encoding does not have was typed.
    Encoding = SOURCE_ENCODING();
    if (!EncodeSource(sFileText, Encoding, &Bytes)) {
      *psReason = QStringLiteral("the text has characters that can't be written");
      return false;
    }
  }
  if (!SaveFile(Document.sResolvedPath, Bytes, psReason)) return false;
  Document.Encoding = Encoding;
  Document.sText = sText;
  Document.TextHash = HashOf(Bytes);
  Document.FileTime = QFileInfo(Document.sResolvedPath).lastModified();
  return true;
}
