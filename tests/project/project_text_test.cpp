// Edits of project texts: what goes, what comes, and what of the user's text has to stay.

#include <random>

#include <gtest/gtest.h>

#include "base/types.h"
#include "project/project_text.h"
#include "script/hook_table.h"
#include "tests/common/print.h"
#include "text_rules.h"

namespace {

struct EDIT_CASE {
  const char* sName;
  const char* sBefore;
  const char* sAfter;
};

const QString HEAD = "void OnProjectLoad (void) ";

TEST(ProjectText, FindsTheBodyBetweenWhatOnlyLooksLikeIt) {
  const struct {
    const char* sText;
    const char* sBody;  // null: no start; "-": no end
  } aCases[] = {
      {"void OnProjectLoad (void) {a}", "a"},
      {"/* OnProjectLoad { */ void OnProjectLoad(void)\n{ if (1) { } b }", " if (1) { } b "},
      {"void OnProjectLoad (void);\nvoid X (void) { x }\nvoid OnProjectLoad (void) { c }", " c "},
      {"void X (void) { OnProjectLoad (); }\nvoid OnProjectLoad (void) { d }", " d "},
      {"void OnProjectLoadX (void) { x }\nvoid OnProjectLoad (void) { e }", " e "},
      {"void OnProjectLoad (void) { f(\"}\"); // }\n g /* } */ }", " f(\"}\"); // }\n g /* } */ "},
      {"void OnProjectLoad (void) { \"a\\\"}\" h }", " \"a\\\"}\" h "},
      {"// void OnProjectLoad (void) { }", nullptr},
      {"void OnProjectLoad (void", nullptr},
      {"void OnProjectLoad (void) { /* }", "-"},
  };
  for (const auto& Case : aCases) {
    const QString sText = Case.sText;
    const qsizetype Start = FindBodyStart(sText);
    EXPECT_EQ(Start < 0, Case.sBody == nullptr) << Case.sText;
    if (Start < 0 || !Case.sBody) continue;
    const qsizetype End = FindBodyEnd(sText, Start);
    EXPECT_EQ(End < 0 ? "-" : sText.mid(Start, End - Start), Case.sBody) << Case.sText;
  }
}

TEST(ProjectText, RemovesCallsAndNothingElse) {
  const EDIT_CASE aCases[] = {
      {"a line of its own, with its comment", "{\n  a();\n  P.X (\"1\"); // old\n\n  b();\n}",
       "{\n  a();\n\n  b();\n}"},
      {"every call", "{\n  P.X(1);\n  b();\n  P.X(2);\n}", "{\n  b();\n}"},
      {"several lines", "{\n  P.X (\n    1,\n    \")\"\n  )\n  ;\n  b();\n}", "{\n  b();\n}"},
      {"beside others", "{\n  a(); P.X(1); b();\n}", "{\n  a();  b();\n}"},
      {"commented out, in a string, part of a name",
       "{\n  // P.X(1);\n  /* P.X(2); */\n  a(\"P.X(3);\");\n  P.XY(4);\n  Q.P.X(5);\n}",
       "{\n  // P.X(1);\n  /* P.X(2); */\n  a(\"P.X(3);\");\n  P.XY(4);\n  Q.P.X(5);\n}"},
      {"a comment over several lines", "{\n  P.X(1); /* one\n  two */\n  b();\n}", "{\n   /* one\n  two */\n  b();\n}"},
      {"a comment that ends ahead", "{\n /* one\n  two */ P.X(1);\n  b();\n}", "{\n /* one\n  two */ \n  b();\n}"},
      {"without statement its head would take the next one", "{\n  if (a) P.X(1);\n  else\n    P.X(2);\n  b();\n}",
       "{\n  if (a) { }\n  else\n    { }\n  b();\n}"},
      {"a value that is used", "{\n  i = P.X(1);\n  if (P.X(2)) { b(); }\n  b (P.X(3));\n}",
       "{\n  i = P.X(1);\n  if (P.X(2)) { b(); }\n  b (P.X(3));\n}"},
      {"arguments that do not end in their statement", "{\n  P.X (a\")b\"; // c\n  if (1) { b(1); }\n}",
       "{\n  P.X (a\")b\"; // c\n  if (1) { b(1); }\n}"},
      {"another function's", "{\n}\nvoid Y (void) {\n  P.X(1);\n}", "{\n}\nvoid Y (void) {\n  P.X(1);\n}"},
  };
  for (const EDIT_CASE& Case : aCases) {
    const TEXT_EDIT Edit = RemoveCommand(HEAD + Case.sBefore, "P.X");
    EXPECT_EQ(Edit.sText, HEAD + Case.sAfter) << Case.sName;
    EXPECT_EQ(Edit.sError, QString()) << Case.sName;
  }
}

TEST(ProjectText, InsertsWithinTheBody) {
  const EDIT_CASE aCases[] = {
      {"behind the marker's line", "{\n  a();\n  // MARK it\n  b();\n}", "{\n  a();\n  // MARK it\n  N();\n  b();\n}"},
      {"no marker", "{\n  b();\n}", "{\n  N();\n  b();\n}"},
      {"no line end", "{ b(); }", "{\n  N();\n b(); }"},
      {"empty body", "{}", "{\n  N();\n}"},
      {"a marker of another function", "{\n}\n// MARK\nvoid Y (void) {\n}",
       "{\n  N();\n}\n// MARK\nvoid Y (void) {\n}"},
      {"a marker on the last line", "{\n  b(); /* MARK */ }\n", "{\n  N();\n  b(); /* MARK */ }\n"},
  };
  for (const EDIT_CASE& Case : aCases) {
    EXPECT_EQ(InsertBehindMarker(HEAD + Case.sBefore, "MARK", {"N();"}).sText, HEAD + Case.sAfter) << Case.sName;
  }
}

const QString USER_TEXT =
    "void OnProjectLoad (void) {\n"
    "  //\n  // Dialog-generated settings\n  //\n"
    "  Project.SetDevice (\"old\");\n"
    "  Project.SetHostIF (\"USB\", \"\");\n"
    "  Project.SetTIFSpeed (\"4 MHz\"); // as fast as the cable allows\n"
    "  Target.SetEndianess (1);\n"
    "\n"
    "  // Project.SetDevice (\"spare\");\n"
    "  Project.SetTraceSource (\"SWO\");\n"
    "  Project.AddSvdFile (\"a.svd\");\n"
    "  //\n  // User settings\n  //\n"
    "  File.Open (\"a.elf\");\n"
    "}\n";

TEST(ProjectText, SettingsReplaceTheirOwnKindOnly) {
  const TEXT_EDIT VNode =
      ReplaceVNodeCommands(USER_TEXT, {"Project.SetDevice (\"new\");", "Project.SetTIFSpeed (\"1 MHz\");"});
  EXPECT_EQ(VNode.sText,
            QString(USER_TEXT).replace("  Project.SetDevice (\"old\");\n  Project.SetHostIF (\"USB\", \"\");\n"
                                       "  Project.SetTIFSpeed (\"4 MHz\"); // as fast as the cable allows\n"
                                       "  Target.SetEndianess (1);\n",
                                       "  Project.SetDevice (\"new\");\n  Project.SetTIFSpeed (\"1 MHz\");\n"));
  const TEXT_EDIT Trace = ReplaceTraceCommands(VNode.sText, {"Project.SetTraceSource (\"None\");"});
  EXPECT_TRUE(Trace.sText.contains(
      "  Project.SetTIFSpeed (\"1 MHz\");\n  Project.SetTraceSource (\"None\");\n\n  // Project.SetDevice"))
      << Trace.sText.toStdString();
  EXPECT_FALSE(Trace.sText.contains("SWO"));
  const TEXT_EDIT Appended = AppendCommands(USER_TEXT, {"Project.AddSvdFile (\"b.svd\");"});
  EXPECT_TRUE(HasCommand(Appended.sText, "Project.AddSvdFile"));
  EXPECT_EQ(Appended.sText.count("AddSvdFile"), 2);
  EXPECT_FALSE(HasCommand(USER_TEXT, "Project.AddSvd"));
  EXPECT_FALSE(HasCommand(USER_TEXT, "User settings"));
}

TEST(ProjectText, CommandsReplaceTheirOwnKind) {
  const EDIT_CASE aCases[] = {
      {"behind the mark", "{\n  //\n  // Dialog-generated settings\n  //\n  P.X (1);\n  a();\n}",
       "{\n  //\n  // Dialog-generated settings\n  //\n  P.X (2);\n  P.Y ();\n  a();\n}"},
      {"no mark, twice the same", "{\n  if (1) {\n    P.XY (0);\n  }\n  P.X (1);\n  P.X (1);\n}",
       "{\n  P.X (2);\n  P.Y ();\n  if (1) {\n    P.XY (0);\n  }\n}"},
      {"on one line", "{ P.X (1); a(); }", "{\n  P.X (2);\n  P.Y ();\n  a(); }"},
  };
  for (const EDIT_CASE& Case : aCases) {
    EXPECT_EQ(ReplaceCommands(HEAD + Case.sBefore, {"P.X (2);", "P.Y ();"}).sText, HEAD + Case.sAfter) << Case.sName;
  }
  const QString sSpeed = "{ Project.SetTIFSpeed (\"1 MHz\");";
  EXPECT_EQ(ReplaceTraceCommands(HEAD + sSpeed + " }\nvoid Y (void) {\n}\n", {"N();"}).sText,
            HEAD + sSpeed + "\n  N();\n }\nvoid Y (void) {\n}\n");
}

TEST(ProjectText, FailuresHaveTheirTextsAndChangeNothing) {
  const QString sError = "Could not determine text position of function body ";
  const std::pair<const char*, const char*> aCases[] = {
      {"void Other (void) {\n}\n", "start"}, {"void OnProjectLoad (void) {\n", "end"}, {"", "start"}};
  for (const auto& [sText, sPlace] : aCases) {
    for (const TEXT_EDIT& Edit : {ReplaceCommands(sText, {"A (1);"}), ReplaceTraceCommands(sText, {})}) {
      EXPECT_EQ(Edit.sError, sError + sPlace);
      EXPECT_EQ(Edit.sText, sText);
    }
  }
}

// The fuzz target's rules on texts cut out of and pasted into a real one.
TEST(ProjectText, RulesHoldForDamagedTexts) {
  const QString sPieces = USER_TEXT + "/* */ // \" ' \\ { } ( ) ; \r\n if else OnProjectLoad Project.SetDevice";
  std::mt19937 Random(1);
  const auto Next = [&Random](qsizetype Limit) { return static_cast<qsizetype>(Random() % static_cast<U32>(Limit)); };
  for (int i = 0; i < 3000; ++i) {
    QString sText = USER_TEXT;
    for (qsizetype n = 0; n < 1 + i % 6; ++n) {
      const qsizetype From = Next(sPieces.size());
      sText.replace(Next(sText.size() + 1), Next(12), sPieces.mid(From, Next(20)));
    }
    ASSERT_EQ(BrokenTextRule(sText), std::string()) << sText.toStdString();
  }
}

}  // namespace
