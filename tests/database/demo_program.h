#pragma once
// What the tests of the database share: the small program in data/, and what other tools say about it.

#include <gtest/gtest.h>

#include <QRegularExpression>

#include "core/vcore.h"
#include "program/database/elfapi.h"
#include "tests/common/files.h"

using namespace Qt::Literals::StringLiterals;

inline const QString DEMO_DIR = QStringLiteral(VEXOR_SOURCE_DIR "/tests/database/data/");
inline const QString CORPUS_DIR = QStringLiteral(VEXOR_SOURCE_DIR "/tests/corpus/data/");
inline const QString DEMO_ELF = DEMO_DIR + u"demo.elf"_s;

class DemoProgramTest : public testing::Test {
protected:
  static constexpr U32 CORTEX_M4 = 0x0E0000FF;

  void SetUp() override {
    VCore::Init({CORTEX_M4, 0, 0}, {});
    ASSERT_EQ(ELFAPI_Load(DEMO_ELF), 0);
  }
  void TearDown() override {
    ELFAPI_Unload();
    ELFAPI_SetMessageSink({});
    VCore::Exit();
  }

  static std::string LocText(const CSrcLoc& Loc) { return ELFAPI_GetSrcLocText({Loc.File, Loc.Line, 0}).toStdString(); }
  static std::string LocTextAt(U32 Addr) { return LocText(ELFAPI_GetFirstSrcLoc(Addr)); }
  static CSrcLoc Loc(const char* sText) { return ELFAPI_ParseSrcLoc(QLatin1String(sText)); }
  static QAddrList AddrsOf(const char* sLoc) { return ELFAPI_GetAddrsOfLoc(Loc(sLoc)); }
  static U32 FileId(const char* sPath) { return ELFAPI_FileId(QLatin1String(sPath)); }
  static U32 AddrOf(const char* sName) {
    PARSED_LOC_KIND Kind;
    return ELFAPI_ParseLocation(QLatin1String(sName), Kind).Start;
  }
  static ELF_SYM_HANDLE Global(const char* sName) {
    return ELFAPI_FindSymbol(QLatin1String(sName), true, false, false, false);
  }
  static std::string Name(ELF_SYM_HANDLE Sym) { return ELFAPI_GetName(Sym).toStdString(); }
  // Qualified, with blanks between them.
  static std::string Names(const ELF_SYM_LIST& Symbols) {
    QStringList Result;
    for (const ELF_SYM_HANDLE Sym : Symbols) Result.append(ELFAPI_GetQualifiedName(Sym));
    return Result.join(u' ').toStdString();
  }
};
