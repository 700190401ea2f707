#include "device/breakpoints/breakpoint_location.h"

#include <QDateTime>
#include <QFile>
#include <QFileInfo>
#include <QRegularExpression>
#include <QStringList>

#include "base/text.h"
#include "program/database/elfapi.h"
#include "program/database/file_finder.h"
#include "program/database/path_forms.h"

namespace {

constexpr int HEX_BASE = 16;
constexpr U32 THUMB_BIT = 1;
constexpr qint64 MAX_SOURCE_BYTES = 64 << 20;

// Where the code of a function of that name begins; inlined instances have none of their own.
CSrcLoc FunctionLine(const QString& sName) {
  for (const ELF_SYM_HANDLE Sym : ELFAPI_FindSymbols(sName, true, false, false, true)) {
    if (!ELFAPI_IsFunction(Sym) || ELFAPI_IsInlined(Sym)) continue;
    const CSrcLoc Loc = ELFAPI_GetFirstSrcLoc(ELFAPI_GetAddr(Sym));
    if (Loc.IsValid()) return Loc;
  }
  return {};
}

// The lines of one file, as it was when it was read; breakpoints of a program mostly lie in few files.
const QStringList& LinesOf(const QString& sFile) {
  static QString sKnown;
  static QDateTime KnownTime;
  static QStringList Lines;
  const QFileInfo Info(sFile);
  if (sFile == sKnown && Info.lastModified() == KnownTime) return Lines;
  sKnown = sFile;
  KnownTime = Info.lastModified();
  Lines.clear();
  QFile File(sFile);
  if (Info.size() <= MAX_SOURCE_BYTES && File.open(QIODevice::ReadOnly | QIODevice::Text)) {
    Lines = QString::fromUtf8(File.readAll()).split(QLatin1Char('\n'));
  }
  return Lines;
}

}  // namespace

CSrcLoc ParseBreakpointLine(const QString& sText) {
  const CSrcLoc Function = FunctionLine(sText.trimmed());
  return Function.IsValid() ? Function : ELFAPI_ParseSrcLoc(sText);
}

BREAKPOINT_LOCATION ParseBreakpointLocation(const QString& sText) {
  const CSrcLoc Function = FunctionLine(sText.trimmed());
  if (Function.IsValid()) return {Function, INVALID_ADDR};
  bool bIsNumber = false;
  const U32 Addr = sText.trimmed().remove(GROUP_BLANK).toUInt(&bIsNumber, HEX_BASE);
  if (bIsNumber) return {{}, Addr & ~THUMB_BIT};
  return {ELFAPI_ParseSrcLoc(sText), INVALID_ADDR};
}

bool IsLineText(const QString& sText) {
  static const QRegularExpression Form(QStringLiteral(":\\s*\\d+\\s*$"));
  return sText.contains(Form);
}

CSrcLoc LineWithCode(const CSrcLoc& Loc) {
  if (!Loc.IsValid() || ELFAPI_GetAddrOfLoc(Loc) != INVALID_ADDR) return Loc;
  const CSrcLoc Next = ELFAPI_NextSrcLoc(Loc);
  return Next.IsValid() ? Next : Loc;
}

QString MovedBreakpointText(const QString& sWanted, const QString& sInstead) {
  return QStringLiteral("Cannot set breakpoint on source location %1. Setting breakpoint on next code line %2 instead.")
      .arg(sWanted, sInstead);
}

QString LineText(const QString& sPath, U32 Line) {
  return QStringLiteral("%1:%2").arg(FileNameOf(sPath)).arg(Line);
}

QString UniqueLineText(const CSrcLoc& Loc, QString sPath) {
  if (sPath.isEmpty()) sPath = ELFAPI_GetFilePathOf(Loc.File);
  const QString sShort = LineText(sPath, Loc.Line);
  return ELFAPI_ParseSrcLoc(sShort) == Loc ? sShort : QStringLiteral("%1:%2").arg(sPath).arg(Loc.Line);
}

QString SourceLineText(const QString& sPath, U32 Line) {
  const QString sFile = CFileFinder::Get()->FindFile(sPath);
  return sFile.isEmpty() || Line == 0 ? QString() : LinesOf(sFile).value(Line - 1).trimmed();
}
