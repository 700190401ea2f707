// Texts of users that stand for an address or a source location.

#include <QRegularExpression>

#include "base/text.h"
#include "program/database/database.h"
#include "program/database/path_forms.h"

namespace {

constexpr int HEX_BASE = 16;

QList<FILE_INDEX> FilesOfName(const CDatabaseLock& Db, const QString& sName) {
  auto& ByName = Db->Caches.FilesByName;
  if (!ByName) {
    ByName.emplace();
    for (FILE_INDEX i = 0; i < Db->Files.Count(); ++i) {
      (*ByName)[FileNameOf(Db->Files.At(i).sPath).toLower()].append(i);
    }
  }
  return ByName->value(sName.toLower());
}

// How well a line of a file answers to its name alone.
int RankOf(const CDatabaseLock& Db, FILE_INDEX Index, U32 Line) {
  if (Db->Lines.HasLine(Index, Line)) return 2;
  const FILE_ENTRY& File = Db->Files.At(Index);
  return File.LowAddr <= File.HighAddr ? 1 : 0;
}

// Of the files whose path ends so the first with code on the line, else with any code.
U32 FileIdOfEnd(const CDatabaseLock& Db, const QString& sFile, U32 Line) {
  const QString sEnd = QLatin1Char('/') + NormalisedPath(sFile);
  FILE_INDEX Best = -1;
  for (const FILE_INDEX File : FilesOfName(Db, FileNameOf(sEnd))) {
    const QString sPath = QLatin1Char('/') + NormalisedPath(Db->Files.At(File).sPath);
    if (!sPath.endsWith(sEnd, Qt::CaseInsensitive)) continue;
    if (Best < 0 || RankOf(Db, File, Line) > RankOf(Db, Best, Line)) Best = File;
  }
  return Best < 0 ? INVALID_FILE_ID : Db->Files.At(Best).Id;
}

// Identifier of a file by its path or the end of it. The caller holds no lock: files may be looked for on slow disks.
U32 FileIdOfText(const QString& sFile, U32 Line) {
  {
    const CDatabaseLock Db;
    const U32 Own = Db->Files.IdOfPath(sFile);
    const U32 Id = Own != INVALID_FILE_ID ? Own : FileIdOfEnd(Db, sFile, Line);
    if (Id != INVALID_FILE_ID) return Id;
  }
  return ELFAPI_FileId(sFile);
}

// "file:line" and "file:line:column".
CSrcLoc ParseFileAndLine(const QString& sText) {
  static const QRegularExpression Form(QStringLiteral("^(.+?):\\s*(\\d{1,9})(?::\\s*(\\d{1,9}))?$"));
  const QRegularExpressionMatch Match = Form.match(sText);
  if (!Match.hasMatch()) return {};
  const U32 Line = Match.captured(2).toUInt();
  const U32 File = FileIdOfText(Match.captured(1), Line);
  return File == INVALID_FILE_ID ? CSrcLoc() : CSrcLoc{File, Line, Match.captured(3).toUInt()};
}

// All symbols of that name, the one first that it stands for in the current scope.
ELF_SYM_LIST SymbolsOfText(const QString& sText) {
  ELF_SYM_LIST Symbols = ELFAPI_FindSymbols(sText, true, true, false, true);
  const qsizetype Meant = Symbols.indexOf(ELFAPI_FindSymbol(sText, true, true, false, true));
  if (Meant > 0) Symbols.move(Meant, 0);
  return Symbols;
}

CAddrRange RangeOfSymbol(const QString& sText, PARSED_LOC_KIND& Kind) {
  const CDatabaseLock Db;
  const ELF_SYM_LIST Symbols = SymbolsOfText(sText);
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
  Kind = PARSED_LOC_NONE;
  return {};
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
  const QString sTrimmed = sText.trimmed();
  bool bIsNumber = false;
  const U32 Number = sTrimmed.toUInt(&bIsNumber, HEX_BASE);
  Kind = PARSED_LOC_NUMBER;
  if (bIsNumber) return {Number, 0};
  const CAddrRange Range = RangeOfSymbol(sTrimmed, Kind);
  if (Kind != PARSED_LOC_NONE) return Range;
  const U32 Addr = ELFAPI_GetAddrOfLoc(ELFAPI_ParseSrcLoc(sTrimmed));
  if (Addr == INVALID_ADDR) return {};
  Kind = PARSED_LOC_SRC;
  return {Addr, 0};
}

CSrcLoc ELFAPI_ParseSrcLoc(const QString& sText) {
  const QString sTrimmed = sText.trimmed();
  const CSrcLoc Written = ParseFileAndLine(sTrimmed);
  if (Written.IsValid()) return Written;
  const CDatabaseLock Db;
  bool bIsNumber = false;
  const U32 Addr = sTrimmed.toUInt(&bIsNumber, HEX_BASE);
  if (bIsNumber) {
    const CSrcLoc Loc = ELFAPI_GetFirstSrcLoc(Addr);
    return Loc.IsValid() ? Loc : ELFAPI_GetLoc(ELFAPI_GetFuncAt(Addr));
  }
  for (const ELF_SYM_HANDLE Sym : SymbolsOfText(sTrimmed)) {
    const CSrcLoc Loc = ELFAPI_GetLoc(Sym);
    if (Loc.IsValid()) return Loc;
  }
  return {};
}
