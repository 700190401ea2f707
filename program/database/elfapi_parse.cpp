// Texts of users that stand for an address or a source location.

#include <QRegularExpression>

#include "program/database/database.h"

namespace {

constexpr int HEX_BASE = 16;

QString FileNameOf(const QString& sPath) {
  return sPath.mid(std::max(sPath.lastIndexOf(QLatin1Char('/')), sPath.lastIndexOf(QLatin1Char('\\'))) + 1);
}

// Identifier of a file by path or by bare name; of several files with one name the first that has code.
U32 FileIdOfText(const CDatabaseLock& Db, const QString& sFile) {
  const U32 Id = ELFAPI_FileId(sFile);
  if (Id != INVALID_FILE_ID) return Id;
  U32 Found = INVALID_FILE_ID;
  for (FILE_INDEX i = 0; i < Db->Files.Count(); ++i) {
    const FILE_ENTRY& File = Db->Files.At(i);
    if (FileNameOf(File.sPath).compare(sFile, Qt::CaseInsensitive) != 0) continue;
    if (File.LowAddr <= File.HighAddr) return File.Id;
    if (Found == INVALID_FILE_ID) Found = File.Id;
  }
  return Found;
}

// "file:line" and "file:line:column".
CSrcLoc ParseFileAndLine(const CDatabaseLock& Db, const QString& sText) {
  static const QRegularExpression Form(QStringLiteral("^(.+?):\\s*(\\d{1,9})(?::\\s*(\\d{1,9}))?$"));
  const QRegularExpressionMatch Match = Form.match(sText);
  if (!Match.hasMatch()) return {};
  const U32 File = FileIdOfText(Db, Match.captured(1));
  if (File == INVALID_FILE_ID) return {};
  return {File, Match.captured(2).toUInt(), Match.captured(3).toUInt()};
}

}  // namespace

QString ELFAPI_GetSrcLocText(const CSrcLoc& Loc) {
  const CDatabaseLock Db;
  const QString sPath = Loc.IsValid() ? ELFAPI_GetFilePathOf(Loc.File) : QString();
  if (sPath.isEmpty()) return {};
  const QString sText = QStringLiteral("%1:%2").arg(FileNameOf(sPath)).arg(Loc.Line);
  return Loc.Column == 0 ? sText : QStringLiteral("%1:%2").arg(sText).arg(Loc.Column);
}

CAddrRange ELFAPI_ParseLocation(const QString& sText, PARSED_LOC_KIND& Kind) {
  const CDatabaseLock Db;
  const QString sTrimmed = sText.trimmed();
  bool bIsNumber = false;
  const U32 Number = sTrimmed.toUInt(&bIsNumber, HEX_BASE);
  Kind = PARSED_LOC_NUMBER;
  if (bIsNumber) return {Number, 0};

  const ELF_SYM_LIST Symbols = ELFAPI_FindSymbols(sTrimmed, true, true, false, true);
  Kind = PARSED_LOC_SYMBOL;
  for (const ELF_SYM_HANDLE Sym : Symbols) {
    const U32 Addr = ELFAPI_GetAddr(Sym);
    if (Addr != INVALID_ADDR) return {Addr, ELFAPI_GetSize(Sym)};
  }
  Kind = PARSED_LOC_DECL;
  for (const ELF_SYM_HANDLE Sym : Symbols) {
    const U32 Addr = ELFAPI_GetAddrOfLoc(ELFAPI_GetDeclLoc(Sym));
    if (Addr != INVALID_ADDR) return {Addr, 0};
  }
  Kind = PARSED_LOC_SRC;
  const U32 Addr = ELFAPI_GetAddrOfLoc(ELFAPI_ParseSrcLoc(sTrimmed));
  if (Addr != INVALID_ADDR) return {Addr, 0};
  Kind = PARSED_LOC_NONE;
  return {};
}

CSrcLoc ELFAPI_ParseSrcLoc(const QString& sText) {
  const CDatabaseLock Db;
  const QString sTrimmed = sText.trimmed();
  const CSrcLoc Written = ParseFileAndLine(Db, sTrimmed);
  if (Written.IsValid()) return Written;
  bool bIsNumber = false;
  const U32 Addr = sTrimmed.toUInt(&bIsNumber, HEX_BASE);
  if (bIsNumber) {
    const CSrcLoc Loc = ELFAPI_GetFirstSrcLoc(Addr);
    return Loc.IsValid() ? Loc : ELFAPI_GetLoc(ELFAPI_GetFuncAt(Addr));
  }
  for (const ELF_SYM_HANDLE Sym : ELFAPI_FindSymbols(sTrimmed, true, true, false, true)) {
    const CSrcLoc Loc = ELFAPI_GetLoc(Sym);
    if (Loc.IsValid()) return Loc;
  }
  return {};
}
