#pragma once
// What the tests of the database share: the small program in data/, and what other tools say about it.

#include <gtest/gtest.h>

#include <QFile>
#include <QRegularExpression>

#include "core/vcore.h"
#include "program/database/elfapi.h"

inline const QString DEMO_DIR = QStringLiteral(VEXOR_SOURCE_DIR "/tests/database/data/");

class DemoProgramTest : public testing::Test {
protected:
  static constexpr U32 CORTEX_M4 = 0x0E0000FF;

  void SetUp() override {
    VCore::Init({CORTEX_M4, 0, 0}, {});
    ASSERT_EQ(ELFAPI_Load(DEMO_DIR + QStringLiteral("demo.elf")), 0);
  }
  void TearDown() override {
    ELFAPI_Unload();
    ELFAPI_SetMessageSink({});
    VCore::Exit();
  }

  static QString Lines(const char* sFile) {
    QFile File(DEMO_DIR + QString::fromLatin1(sFile));
    EXPECT_TRUE(File.open(QIODevice::ReadOnly));
    return QString::fromUtf8(File.readAll());
  }
  static QString LocText(const CSrcLoc& Loc) { return ELFAPI_GetSrcLocText({Loc.File, Loc.Line, 0}); }
  static QString LocTextAt(U32 Addr) { return LocText(ELFAPI_GetFirstSrcLoc(Addr)); }
  static CSrcLoc Loc(const char* sText) { return ELFAPI_ParseSrcLoc(QString::fromLatin1(sText)); }
  static U32 AddrOf(const char* sName) {
    PARSED_LOC_KIND Kind;
    return ELFAPI_ParseLocation(QString::fromLatin1(sName), Kind).Start;
  }
  static QStringList Names(const ELF_SYM_LIST& Symbols) {
    QStringList Result;
    for (const ELF_SYM_HANDLE Sym : Symbols) Result.append(ELFAPI_GetQualifiedName(Sym));
    return Result;
  }
};
