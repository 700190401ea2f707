// The engine as its host sees it: loading, errors, limits, requests. The language itself: conformance_test.cpp.

#include "script_run.h"

namespace {

std::string Main(const std::string& sBody) {
  return "void main (void) {" + sBody + "}";
}

TEST(CTrans, TheFirstErrorFreezesTheEngine) {
  for (const char* const sBody : {"Out(1); nonsense;", "int a; Out(1); a = 1 / 0;", "Out(1); int a[2; Out(2);"}) {
    CScriptRun Run(Main(sBody));
    EXPECT_GT(0, Run.Call()) << sBody;
    EXPECT_EQ(CTRANS_FAILED, Run.Call()) << sBody;
    EXPECT_EQ(1u, Run.Errors.size()) << sBody;
    EXPECT_EQ(std::vector<I64>{1}, Run.Out) << sBody;
  }
}

TEST(CTrans, NothingNestsDeeperThanTheStackBears) {
  const auto Times = [](const std::string& sText) {
    std::string sResult;
    for (int i = 0; i < 100'000; ++i) sResult += sText;
    return sResult;
  };
  const std::pair<const char*, std::string> aCases[] = {
      {"recursion", "int f (void) { return f(); } void main (void) { f(); }"},
      {"recursion of two",
       "int f (void) { if (1) { g(); } } int g (void) { while (f()) { } } void main (void) { g(); }"},
      {"recursion through a command", "void main (void) { Turn(); }"},
      {"recursion of an argument", "int f (int a) { return 1 + f(f(a)); } void main (void) { f(0); }"},
      {"parentheses", Main("Out(" + Times("(") + "1" + Times(")") + ");")},
      {"operators to the right", Main("Out(" + Times("1 - ") + "1);")},
      {"blocks", Main(Times("{") + Times("}"))},
      {"conditions", Main(Times("if (1) ") + "Out(1);")},
      {"conditions that are stepped over", Main(Times("if (0) ") + "Out(1);")},
      {"alternatives", Main(Times("if (0) Out(1); else ") + "Out(1);")},
      {"loops", Main(Times("do ") + "Out(1);")},
      {"calls in arguments", Main(Times("Out(") + "1" + Times(")") + ";")},
  };
  for (const auto& [sName, sText] : aCases) {
    CScriptRun Run(sText);
    Run.OnTurn = [](CTrans& Engine) { Engine.CallFunction("main"); };
    EXPECT_EQ(CTRANS_FAILED, Run.Call()) << sName;
    EXPECT_EQ("Out of memory.", Run.ErrorText()) << sName;
  }
}

TEST(CTrans, OrdinaryDepthIsNoProblem) {
  CScriptRun Run(
      "int f (int n) { if (n == 0) { return 0; } else { while (1) { return 1 + (f((n - 1))); } } }"
      "void main (void) { Out(f(200)); }");
  EXPECT_EQ(CTRANS_OK, Run.Call()) << Run.ErrorText();
  EXPECT_EQ(std::vector<I64>{200}, Run.Out);
}

TEST(CTrans, ErrorsTellTheirStatement) {
  // script, the statement of its error, the statement's first line, the error's line
  const std::tuple<const char*, const char*, int, int> aCases[] = {
      {"void main (void) {\n  Out(1);\n  Out(1, 2); Out(3);\n}", "Out(1, 2);", 3, 3},
      {"void f () {\n Out(1);\n}\nvoid main () {\n f() 5;\n}", "f() 5;", 5, 5},
      {"void main () { int a[2]; int i; i = 0; a[0] = 1; a[1] = 1;\n while (a[i]) {\n i += 1; } }",
       "while (a[i]) {\n i += 1;", 2, 2},
      {"void main () {\n do { Out(1); }\n Out(2);\n}", "do { Out(1);", 2, 3},
      {"void main () {\n Out(1 +\n 2)\n}\n", "Out(1 +\n 2)\n}\n", 2, 4},
      {"void main () { f();\n}\nvoid f () {\n Out(\n 1 / 0); }", "Out(\n 1 / 0);", 4, 5},
      {"int f (int x) { return x; } void main () {\n if (f(1))\n Out(f(2)\n);\n if (f(1)) x; }", "x;", 5, 5},
  };
  for (const auto& [sText, sStatement, FirstLine, Line] : aCases) {
    CScriptRun Run(sText);
    Run.Call();
    ASSERT_EQ(1u, Run.Errors.size()) << sText;
    const CTRANS_ERROR& Error = Run.Errors[0];
    EXPECT_EQ(std::tuple(sStatement, FirstLine, Line), std::tuple(Error.sStatement, Error.FirstLineNo, Error.LineNo));
  }
  CScriptRun Long(Main("Out(" + std::string(1000, ' ') + "x);"));
  Long.Call();
  EXPECT_EQ(512u, Long.Errors.at(0).sStatement.size());
}

TEST(CTrans, AZeroByteHidesNothing) {
  CScriptRun Run(std::string("void main (void) { Out(1); }\n\0void f (void) { }", 46));
  EXPECT_EQ("Syntax error.", Run.ErrorText());
  EXPECT_EQ(2, Run.Errors.at(0).LineNo);
}

TEST(CTrans, OnlyFunctionsOfTheScriptAreCalled) {
  CScriptRun Run("void main (void) {} int f (int x) { return x; }");
  EXPECT_EQ(CTRANS_UNKNOWN_FUNCTION, Run.Call("other"));
  EXPECT_EQ(CTRANS_UNKNOWN_FUNCTION, Run.Call("TEN"));
  EXPECT_EQ(CTRANS_FAILED, Run.Call("f")) << "it has a parameter";
  EXPECT_EQ(CTRANS_FAILED, Run.Call("Minus"));
  EXPECT_TRUE(Run.Errors.empty());
  EXPECT_EQ(CTRANS_OK, Run.Call());
}

// What an endless loop may look like; the last ones poll only inside another call.
const char* const ENDLESS[] = {
    "void main (void) { while (1) { } Out(1); }",
    "void main (void) { do { } while (1); Out(1); }",
    "int f (int n) { if (n < 1) return 1; return f(n - 1) + f(n - 1); } void main (void) { f(60); Out(1); }",
    "int f (void) { while (1) { } return 7; } void main (void) { Out(f()); }",
    "void g (void) { } void main (void) { while (1) Turn(); Out(1); }",
};

TEST(CTrans, AnEndlessScriptEndsOnRequestOrIsAborted) {
  for (const char* const sText : ENDLESS) {
    for (const bool bAbort : {false, true}) {
      CScriptRun Run(sText);
      Run.OnTurn = [](CTrans& Engine) { Engine.CallFunction("g"); };
      Run.OnEveryPoll = [bAbort](CTrans& Engine) { bAbort ? Engine.Abort("enough") : Engine.RequestClose(); };
      EXPECT_EQ(bAbort ? CTRANS_FAILED : CTRANS_OK, Run.Call()) << sText;
      EXPECT_TRUE(Run.Out.empty()) << sText << ": a command got the result of a function that was left";
      EXPECT_EQ(bAbort ? "enough" : "", Run.ErrorText()) << sText;
      EXPECT_EQ(bAbort ? 1u : 0u, Run.Errors.size()) << sText;
    }
  }
}

TEST(CTrans, AnAbortNamesThePlaceOfTheCommandThatCausedIt) {
  CScriptRun Run("void main (void) {\n Out(1);\n Turn();\n Out(2); }\nvoid g (void) { Out(3); }");
  Run.OnTurn = [](CTrans& Engine) {
    Engine.Abort("enough");
    EXPECT_EQ(CTRANS_FAILED, Engine.CallFunction("g")) << "nothing else begins";
  };
  EXPECT_EQ(CTRANS_FAILED, Run.Call());
  EXPECT_EQ(std::vector<I64>{1}, Run.Out);
  EXPECT_EQ(3, Run.Errors.at(0).LineNo);
}

}  // namespace
