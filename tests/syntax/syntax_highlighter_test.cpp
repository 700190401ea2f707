// What serves all languages: suffixes, colours, gaps, erasure, and the rules that hold for every text.

#include <gtest/gtest.h>

#include <QDirIterator>
#include <QFileInfo>

#include "shell/settings/color_ids.h"
#include "span_rules.h"
#include "tests/common/files.h"

namespace {

TEST(SyntaxHighlighter, LanguageBySuffixIsExact) {
  const struct {
    QStringView sSuffix;
    SYNTAX_LANGUAGE Language;
  } ROWS[] = {{u"c", SYNTAX_C},     {u"h", SYNTAX_C},       {u"cpp", SYNTAX_CPP},
              {u"hpp", SYNTAX_CPP}, {u"s", SYNTAX_GNU_ASM}, {u"asm", SYNTAX_ASM_LISTING},
              {u"S", SYNTAX_PLAIN}, {u"C", SYNTAX_PLAIN},   {u"cc", SYNTAX_PLAIN},
              {u"", SYNTAX_PLAIN},  {u".c", SYNTAX_PLAIN}};
  for (const auto& Row : ROWS) {
    EXPECT_EQ(CSyntaxHighlighter::GetLanguage(Row.sSuffix), Row.Language) << Row.sSuffix.toString().toStdString();
  }
}

TEST(SyntaxHighlighter, ColorsOfKindsAndTheWindowsOwnForOthers) {
  EXPECT_EQ(CSyntaxHighlighter::GetColorID(SYNTAX_COMMENT), COLOR_SYNTAX_COMMENT);
  EXPECT_EQ(CSyntaxHighlighter::GetColorID(SYNTAX_REGISTER), COLOR_SYNTAX_REGISTER);
  for (const int Kind : {int{SYNTAX_DEFAULT}, int{SYNTAX_IDENTIFIER}, 10, 255}) {
    EXPECT_EQ(CSyntaxHighlighter::GetColorID(static_cast<SYNTAX_KIND>(Kind)), -1) << Kind;
  }
}

TEST(SyntaxHighlighter, EmptyTextsKeepTheStateAndGetOneEmptySpan) {
  for (const I32 State : {SYNTAX_IDLE, SYNTAX_IN_BLOCK_COMMENT, SYNTAX_IN_STRING, SYNTAX_IN_PATH}) {
    HIGHLIGHTED Text = HighlightText(CSyntaxHighlighter(), SYNTAX_C, QStringView(), State);
    EXPECT_TRUE(Text.Spans.empty());
    EXPECT_EQ(Text.State, State);
    CSyntaxHighlighter::FillGaps(Text.Spans, Text.Kinds, 0);
    ASSERT_EQ(Text.Spans.size(), 1u);
    EXPECT_EQ(Text.Spans[0].Start, 0);
    EXPECT_EQ(Text.Spans[0].Length, 0);
    EXPECT_EQ(Text.Kinds, std::vector{SYNTAX_DEFAULT});
  }
}

TEST(SyntaxHighlighter, FillGapsKeepsNeighboursApart) {
  constexpr QStringView TEXT = u" \"a\"\"b\" x";
  HIGHLIGHTED Text = HighlightText(CSyntaxHighlighter(), SYNTAX_C, TEXT);
  CSyntaxHighlighter::FillGaps(Text.Spans, Text.Kinds, TEXT.size());
  EXPECT_EQ(Picture(Text, TEXT.size()), "OSssSssOo");
}

TEST(SyntaxHighlighter, ErasureKeepsPlacesAndLineEnds) {
  const struct {
    SYNTAX_LANGUAGE Language;
    const char* sBefore;
    const char* sAfter;
  } ROWS[] = {
      {SYNTAX_C, "int a; /* one\ntwo */ \"s\"; // x\nb", "int a; ______\n______ ___; ____\nb"},
      {SYNTAX_C, "/* a\r\n\r\nb */ c\r\n", "____\r\n\r\n____ c\r\n"},
      {SYNTAX_CPP, "#include<x>\n\"open\nstill\" y", "#include___\n_____\n______ y"},
      {SYNTAX_GNU_ASM, "mov r0, r1 ; x", "mov r0, r1 ___"},
      {SYNTAX_C, "a; \"\xC3\xBC\" '\"' b", "a; ___ '\"' b"},
      {SYNTAX_ASM_LISTING, "MOV R0, \"x\" // y", "MOV R0, \"x\" // y"},
      {SYNTAX_C, "", ""},
      {SYNTAX_C, "\n\n", "\n\n"},
  };
  for (const auto& Row : ROWS) {
    QString sText = QString::fromUtf8(Row.sBefore);
    const QString sShared = sText;
    CSyntaxHighlighter::EraseCommentsAndStrings(Row.Language, sText, u'_');
    EXPECT_EQ(sText, QString::fromUtf8(Row.sAfter)) << Row.sBefore;
    EXPECT_EQ(sShared, QString::fromUtf8(Row.sBefore));
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
