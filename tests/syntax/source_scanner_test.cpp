// Spans of C, C++, assembler and plain text.

#include <gtest/gtest.h>

#include "span_rules.h"

namespace {

constexpr I32 IDLE = SYNTAX_IDLE;
constexpr I32 COMMENT = SYNTAX_IN_BLOCK_COMMENT;
constexpr I32 STRING = SYNTAX_IN_STRING;
constexpr I32 PATH = SYNTAX_IN_PATH;

// A text and the picture of its spans. The text's line feeds are written as ¶, its tabs as →.
struct SOURCE_ROW {
  SYNTAX_LANGUAGE Language;
  I32 StateIn;
  I32 StateOut;
  const char* sText;
  const char* sPicture;
};

void Check(const SOURCE_ROW& Row) {
  SCOPED_TRACE(Row.sText);
  const QString sText = QString(Row.sText).replace(u'¶', u'\n').replace(u'→', u'\t');
  const HIGHLIGHTED Text = HighlightText(CSyntaxHighlighter(), Row.Language, sText, Row.StateIn);
  ASSERT_EQ(BrokenOrder(Text, sText.size()), "");
  EXPECT_EQ(Picture(Text, sText.size()), Row.sPicture);
  EXPECT_EQ(Text.State, Row.StateOut);
}

TEST(SourceScanner, Comments) {
  const SOURCE_ROW ROWS[] = {
      {SYNTAX_C, IDLE, IDLE, R"(a=1; // if "x")", "I....Ccccccccc"},
      {SYNTAX_CPP, IDLE, IDLE, "x /* y */ int z", "I.Ccccccc.Kkk.."},
      {SYNTAX_C, IDLE, COMMENT, "int a; /* open", "Kkk.I..Ccccccc"},
      {SYNTAX_C, COMMENT, COMMENT, R"("all" of it // here)", "Ccccccccccccccccccc"},
      {SYNTAX_C, COMMENT, IDLE, "still */ int b;", "Cccccccc.Kkk.I."},
      {SYNTAX_C, COMMENT, IDLE, "*/", "Cc"},
      {SYNTAX_C, IDLE, IDLE, "/*/ x */", "Ccc.I..."},
      {SYNTAX_C, IDLE, IDLE, "/* a *//* b */int", "CccccccCcccccc..."},
      {SYNTAX_C, IDLE, IDLE, "a//b¶c d (", "ICccc..I.."},
      {SYNTAX_C, SYNTAX_IN_LINE_COMMENT, IDLE, "after a continued line¶(x)", "Ccccccccccccccccccccccc.I."},
      {SYNTAX_GNU_ASM, IDLE, IDLE, R"(mov r0, r1 ; "c")", "Iii.Ii..Ii.Ccccc"},
      {SYNTAX_CPP, IDLE, IDLE, "a;int b;", "I.Kkk.I."},
      {SYNTAX_C, IDLE, IDLE, "a / b / * c /", "I...I.....I.."},
  };
  for (const SOURCE_ROW& Row : ROWS) Check(Row);
}

TEST(SourceScanner, Strings) {
  const SOURCE_ROW ROWS[] = {
      {SYNTAX_C, IDLE, IDLE, R"(s = "a\"b" + 'c';)", "I...Ssssss......."},
      {SYNTAX_C, IDLE, IDLE, R"("a""b"x"")", "SssSss.Ss"},
      {SYNTAX_C, IDLE, IDLE, R"(c = '"'; d = "")", "I........I...Ss"},
      {SYNTAX_C, IDLE, STRING, R"(x("open)", "I.Sssss"},
      {SYNTAX_C, STRING, IDLE, R"(still" /*x*/)", "Ssssss.Ccccc"},
      {SYNTAX_C, IDLE, STRING, R"("a\\" b)", "Sssssss"},
      {SYNTAX_C, IDLE, STRING, R"('\"' x)", "..Ssss"},
      {SYNTAX_GNU_ASM, IDLE, COMMENT, R"("/* // ; #if" /* ")", "Sssssssssssss.Cccc"},
      {SYNTAX_C, IDLE, IDLE, R"("ü😀" int ()", "Sssss.Kkk.."},
  };
  for (const SOURCE_ROW& Row : ROWS) Check(Row);
}

TEST(SourceScanner, DirectivesAndPaths) {
  const SOURCE_ROW ROWS[] = {
      {SYNTAX_C, IDLE, IDLE, "#include<stdio.h>", "DdddddddSssssssss"},
      {SYNTAX_C, IDLE, IDLE, "#include <stdio.h>", "Dddddddd..Iiiii..."},
      {SYNTAX_C, IDLE, IDLE, "a<b", "I.."},
      {SYNTAX_C, IDLE, IDLE, R"(#include"x.h"<y>)", "DdddddddSssss.I."},
      {SYNTAX_C, IDLE, IDLE, "#include/**/<y>", "DdddddddCccc.I."},
      {SYNTAX_C, IDLE, PATH, "#include<open", "DdddddddSssss"},
      {SYNTAX_C, PATH, IDLE, "h> int x", "Ss.Kkk.."},
      {SYNTAX_C, IDLE, IDLE, "#include<a><b>", "DdddddddSss.I."},
      {SYNTAX_C, IDLE, IDLE, "#includes<x>", "..........I."},
      {SYNTAX_C, IDLE, IDLE, "#define N 1", "Ddddddd.I.."},
      {SYNTAX_C, IDLE, IDLE, "→#  define x", "....Iiiiii.."},
      {SYNTAX_C, IDLE, IDLE, "#if defined(A)", "Ddd.Iiiiiii.I."},
      {SYNTAX_C, IDLE, IDLE, "x##y#undef", "I...Dddddd"},
      {SYNTAX_C, IDLE, IDLE, "#endif_", "......."},
  };
  for (const SOURCE_ROW& Row : ROWS) Check(Row);
}

TEST(SourceScanner, Words) {
  const SOURCE_ROW ROWS[] = {
      {SYNTAX_C, IDLE, IDLE, "return -1; returned", "Kkkkkk............."},
      {SYNTAX_C, IDLE, IDLE, "return-1", "Iiiiii.."},
      {SYNTAX_CPP, IDLE, IDLE, "reinterpret_cast<int>(p)", "Iiiiiiiiiiiiiiii.Kkk..I."},
      {SYNTAX_CPP, IDLE, IDLE, "static_assert(x)", "Kkkkkkkkkkkkk.I."},
      {SYNTAX_C, IDLE, IDLE, "else¶", "Iiii."},
      {SYNTAX_C, IDLE, IDLE, "int2 _int int_t Int uchar", "Iiii.Iiii.Iiiii.Iii.Kkkkk"},
      {SYNTAX_C, IDLE, IDLE, "→int→*p[int]{int}int:", ".Kkk..I.Kkk..Kkk.Kkk."},
      {SYNTAX_C, IDLE, IDLE, "größe int (", "Ii....Kkk.."},
      {SYNTAX_GNU_ASM, IDLE, IDLE, "int if", "Iii..."},
      {SYNTAX_PLAIN, IDLE, IDLE, "int if", "Iii..."},
  };
  for (const SOURCE_ROW& Row : ROWS) Check(Row);
}

TEST(SourceScanner, AStateThatTheLanguageDoesNotHaveIsIdle) {
  for (const I32 State : {-1, I32{SYNTAX_IN_IMMEDIATE}, I32{SYNTAX_IN_LABEL}, 11, 0x7FFFFFFF}) {
    Check({SYNTAX_C, State, IDLE, "int x > y", "Kkk.I...."});
  }
}

}  // namespace
