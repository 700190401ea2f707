// What serves all languages: erasure, and the rules that hold for every text.

#include <gtest/gtest.h>

#include <QDirIterator>
#include <QFileInfo>

#include "span_rules.h"
#include "tests/common/files.h"

namespace {

TEST(SyntaxHighlighter, ErasureKeepsPlacesAndLineEnds) {
  const std::tuple<SYNTAX_LANGUAGE, const char*, const char*> ROWS[] = {
      {SYNTAX_C, "int a; /* one\ntwo */ \"s\"; // x\nb", "int a; ______\n______ ___; ____\nb"},
      {SYNTAX_C, "/* a\r\n\r\nb */ c\r\n", "____\r\n\r\n____ c\r\n"},
      {SYNTAX_CPP, "#include<x>\n\"open\nstill\" y", "#include___\n_____\n______ y"},
      {SYNTAX_GNU_ASM, "mov r0, r1 ; x", "mov r0, r1 ___"},
      {SYNTAX_C, "a; \"\xC3\xBC\" '\"' b", "a; ___ '\"' b"},
      {SYNTAX_ASM_LISTING, "MOV R0, \"x\" // y", "MOV R0, \"x\" // y"},
      {SYNTAX_C, "", ""},
      {SYNTAX_C, "\n\n", "\n\n"},
  };
  for (const auto& [Language, sBefore, sAfter] : ROWS) {
    QString sText = QString::fromUtf8(sBefore);
    const QString sShared = sText;
    CSyntaxHighlighter::EraseCommentsAndStrings(Language, sText, u'_');
    EXPECT_EQ(sText, QString::fromUtf8(sAfter)) << sBefore;
    EXPECT_EQ(sShared, QString::fromUtf8(sBefore));
    EXPECT_EQ(BrokenRule(CSyntaxHighlighter(), Language, sShared, SYNTAX_IDLE), "");
  }
}

TEST(SyntaxHighlighter, RulesHoldForOurOwnSources) {
  int NumFiles = 0;
  for (const char* const sFolder : {"base", "core", "device", "examples", "script", "shell", "tests", "ui"}) {
    QDirIterator Files(QString(VEXOR_SOURCE_DIR "/") + sFolder, {"*.c", "*.cpp", "*.h", "*.s"}, QDir::Files,
                       QDirIterator::Subdirectories);
    while (Files.hasNext()) {
      const QString sFile = Files.next();
      const QString sText = ReadBytes(sFile);
      const SYNTAX_LANGUAGE Language = CSyntaxHighlighter::GetLanguage(QFileInfo(sFile).suffix());
      for (const I32 State : {SYNTAX_IDLE, SYNTAX_IN_BLOCK_COMMENT, SYNTAX_IN_STRING}) {
        ASSERT_EQ(BrokenRule(CSyntaxHighlighter(), Language, sText, State), "") << sFile.toStdString();
      }
      ++NumFiles;
    }
  }
  EXPECT_GT(NumFiles, 200);
}

}  // namespace
