#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "script/ctrans.h"

namespace {

// Runs one script with a few native functions and keeps what they were told.
class CScriptRun {
public:
  explicit CScriptRun(const std::string& sText)
      : m_Engine(sText, {[this](const CTRANS_ERROR& Error) { Errors.push_back(Error); }, [this] { OnPoll(); }}) {
    m_Engine.AddConstant("RM_RESET_HALT", 0);
    m_Engine.AddConstant("TEN", 10);
    EXPECT_EQ(0, m_Engine.AddApiFunction("__api__ int Out (unsigned int Value);", [this](const U64* paArgs, U32) {
      Out.push_back(static_cast<I64>(paArgs[0]));
      return U64{0};
    }));
    EXPECT_EQ(0, m_Engine.AddApiFunction("__api__ int Util.Log (const char* sText);", [this](const U64* paArgs, U32) {
      if (!m_Engine.IsHeapPointer(paArgs[0])) return U64{0xFFFFFFFF};
      Log.push_back(reinterpret_cast<const char*>(paArgs[0]));
      return U64{0};
    }));
    EXPECT_EQ(0, m_Engine.AddApiFunction("__api__ int Fails (int A, int B);",
                                         [](const U64*, U32) { return U64{0xFFFFFFFF}; }));
    EXPECT_EQ(
        0, m_Engine.AddApiFunction("__api__ int Nine (int a, int b, int c, int d, int e, int f, int g, int h, int i);",
                                   [](const U64*, U32) { return U64{77}; }));
    LoadResult = m_Engine.ParseGlobals();
  }

  int Call(const char* sName = "main") { return m_Engine.CallFunction(sName); }
  std::string ErrorText() const { return Errors.empty() ? "" : Errors.front().sText; }
  void OnPoll() {
    if (CloseOnPoll) m_Engine.RequestClose();
  }

  std::vector<I64> Out;
  std::vector<std::string> Log;
  std::vector<CTRANS_ERROR> Errors;
  int LoadResult = 0;
  bool CloseOnPoll = false;

private:
  CTrans m_Engine;
};

std::string Main(const std::string& sBody) {
  return "void main (void) {" + sBody + "}";
}

struct VALUE_CASE {
  const char* sExpression;
  I64 Expected;
};

class CTransValues : public testing::TestWithParam<VALUE_CASE> {};

TEST_P(CTransValues, Evaluates) {
  CScriptRun Run(Main(std::string("Out(") + GetParam().sExpression + ");"));
  EXPECT_EQ(CTRANS_OK, Run.Call()) << Run.ErrorText();
  ASSERT_EQ(1u, Run.Out.size());
  EXPECT_EQ(GetParam().Expected, Run.Out[0]) << GetParam().sExpression;
}

INSTANTIATE_TEST_SUITE_P(
    Expressions, CTransValues,
    testing::Values(VALUE_CASE{"10 - 4 - 3", 9}, VALUE_CASE{"10 - 4 + 3", 3}, VALUE_CASE{"10 + 4 - 3", 11},
                    VALUE_CASE{"8 / 2 * 2", 2}, VALUE_CASE{"2 * 3 / 4", 1}, VALUE_CASE{"1 + 2 == 3", 1},
                    VALUE_CASE{"1 == 1 + 1", 0}, VALUE_CASE{"-5 / 2", -2}, VALUE_CASE{"-8 >> 1", -4},
                    VALUE_CASE{"1 << 65", 2}, VALUE_CASE{"0x10 | 0x0f ^ 1", 0x1E}, VALUE_CASE{"010", 10},
                    VALUE_CASE{"TEN*TEN", 100}, VALUE_CASE{"5-3", 2}, VALUE_CASE{"(2+3)*4", 20},
                    VALUE_CASE{"3 < 2 || 2 <= 2 && 1", 1}, VALUE_CASE{"Fails(1, 2) == 0xFFFFFFFF", 1},
                    VALUE_CASE{"Fails(1 2) == -1", 0}, VALUE_CASE{"Nine(1,2,3,4,5,6,7,8,9)", 0},
                    VALUE_CASE{"/* c */ 7 // x\n", 7}, VALUE_CASE{"0x8000000000000000 / -1", INT64_MIN},
                    VALUE_CASE{"RM_RESET_HALT", 0}));

struct PROGRAM_CASE {
  const char* sText;
  std::vector<I64> Expected;
};

class CTransPrograms : public testing::TestWithParam<PROGRAM_CASE> {};

TEST_P(CTransPrograms, Prints) {
  CScriptRun Run(GetParam().sText);
  EXPECT_EQ(CTRANS_OK, Run.Call()) << Run.ErrorText();
  EXPECT_EQ(GetParam().Expected, Run.Out) << GetParam().sText;
}

INSTANTIATE_TEST_SUITE_P(
    Programs, CTransPrograms,
    testing::Values(
        PROGRAM_CASE{"void main(){int x; x = -1; Out(x); Out(x < 0);}", {4294967295, 0}},
        PROGRAM_CASE{"void main(){char c; c = 0x1ff; Out(c); __int64 w; w = -1; Out(w);}", {255, -1}},
        PROGRAM_CASE{"void main(){int i; i = 0; while (i < 3) { Out(i); i += 1; } Out(9);}", {0, 1, 2, 9}},
        PROGRAM_CASE{"void main(){int i; i = 5; do { Out(i); i -= 1; } while (i > 3); Out(i);}", {5, 4, 3}},
        PROGRAM_CASE{"void main(){int a[3]; a[0]=1; a[1]=a[0]+1; a[2]=a[1]*a[1]; Out(a[2]); Out(a[0]);}", {4, 1}},
        PROGRAM_CASE{"void main(){if (0) Out(1); else if (1) Out(2); else Out(3); if (1) { Out(4); } else { Out(5); }}",
                     {2, 4}},
        PROGRAM_CASE{"int f(int n){ if (n < 2) return n; return f(n - 1) + f(n + -2); } void main(){ Out(f(15)); }",
                     {610}},
        PROGRAM_CASE{"int f(void){ Out(1); } void main(){ Out(f()); }", {1, -1}},
        PROGRAM_CASE{"void main(){ { return 1; Out(5); } Out(6); }", {}},
        PROGRAM_CASE{
            "int f(int a int b){ return a << b; } void main(){ int x; x = 3; x *= f(1, 4); x >>= 1; x ^= 1; Out(x); }",
            {25}},
        PROGRAM_CASE{"void main(){ while (1) { return 0; } }", {}},
        PROGRAM_CASE{"void main(){ int i; i = 0; while (i < 60000) { int k[4]; k[0] = i; i += 1; } Out(i); }", {60000}},
        PROGRAM_CASE{"int f(int x){ x = x + 1; return x; } void main(){ int x; x = 1; f(x); Out(x); Out(f(x)); }",
                     {1, 2}},
        PROGRAM_CASE{"volatile const unsigned int f(const int x) { return x; } void main(){ const unsigned int y; y = "
                     "f(4); Out(y); }",
                     {4}}));

struct ERROR_CASE {
  const char* sBody;
  const char* sError;
};

class CTransErrors : public testing::TestWithParam<ERROR_CASE> {};

TEST_P(CTransErrors, StopsWithItsText) {
  CScriptRun Run(Main(GetParam().sBody));
  EXPECT_EQ(CTRANS_FAILED, Run.Call());
  EXPECT_EQ(GetParam().sError, Run.ErrorText()) << GetParam().sBody;
  EXPECT_EQ(1u, Run.Errors.size());
  EXPECT_EQ(CTRANS_FAILED, Run.Call()) << "the first error freezes the engine";
}

INSTANTIATE_TEST_SUITE_P(
    Errors, CTransErrors,
    testing::Values(
        ERROR_CASE{"Util.Log(\"x\")", "Expected a ';'"}, ERROR_CASE{"unsigned SP;", "Syntax error."},
        ERROR_CASE{"int a[2]; a[2] = 1;", "Array index out of range."},
        ERROR_CASE{"int a[2]; a[-1] = 1;", "Array index out of range."},
        ERROR_CASE{"int b; b[0] = 1;", "Syntax error."}, ERROR_CASE{"if (0) { Nothing.Known(); }", "Syntax error."},
        ERROR_CASE{"return;", "Expected a value or an identifier."},
        ERROR_CASE{"for (;;) {}", "Keyword \"for\" is not yet supported"},
        ERROR_CASE{"else Out(1);", "Keyword \"else\" is not allowed without \"if\""},
        ERROR_CASE{"do { Out(1); } Out(2);", "Syntax error. missing \"while\" at line 1"},
        ERROR_CASE{"int a = 1;", "Expected a ';'"}, ERROR_CASE{"int 1;", "Expected an identifier."},
        ERROR_CASE{"int a[x];", "Expected an integer value"}, ERROR_CASE{"int a[2]; a = 1;", "Expected a '['"},
        ERROR_CASE{"int a[2]; a[0] += 1;", "Expected a base type."},
        ERROR_CASE{"int *p; p = 1;", "Assignments are allowed for base types only"},
        ERROR_CASE{"int *p; Out(p);", "Expected a base type."},
        ERROR_CASE{"void v; v = 1;", "Base type size must be at least 1 byte"},
        ERROR_CASE{"void v; Out(v);", "Unsupported base type size."},
        ERROR_CASE{"Out(\"a\" + 1);", "Expected a base type."}, ERROR_CASE{"Out(foo);", "Unknown identifier."},
        ERROR_CASE{"Out(int);", "Syntax error. Unexpected type"},
        ERROR_CASE{"Out(!1);", "Expected a value or an identifier."},
        ERROR_CASE{"Util.Log(\"a\\q\");", "Unexpected escape character."},
        ERROR_CASE{"Util.Log(\"a\n\");", "Illegal character in string"}, ERROR_CASE{"Out(1 2);", "Expected a ')'"},
        ERROR_CASE{"Out(1,);", "Expected a ')'"}, ERROR_CASE{"int \xE4; ", "Expected an identifier."},
        ERROR_CASE{"unsigned RM_RESET_HALT x;", "Currently only basic data types for local variables are allowed."},
        ERROR_CASE{"int a[1000000];", "Out of memory."}, ERROR_CASE{"int a[-1];", "Out of memory."},
        ERROR_CASE{"while (1) { Util.Log(\"eats the heap\"); }", "Out of memory."},
        ERROR_CASE{"int x; x = \"s\";", "Expected a base type."}));

TEST(CTrans, RecursionAndNestingEndWithAnError) {
  CScriptRun Recursive("int f(void) { return f(); } void main (void) { f(); }");
  EXPECT_EQ(CTRANS_FAILED, Recursive.Call());
  EXPECT_EQ("Out of memory.", Recursive.ErrorText());
  CScriptRun Deep(Main("Out(" + std::string(100000, '(') + "1" + std::string(100000, ')') + ");"));
  EXPECT_EQ(CTRANS_FAILED, Deep.Call());
  EXPECT_EQ("Out of memory.", Deep.ErrorText());
  CScriptRun Blocks(Main(std::string(100000, '{') + std::string(100000, '}')));
  EXPECT_EQ(CTRANS_FAILED, Blocks.Call());
  EXPECT_EQ("Out of memory.", Blocks.ErrorText());
}

TEST(CTrans, DivisionByZeroIsAResultOfItsOwn) {
  CScriptRun Run(Main("int a; a = 0; Out(1 / a);"));
  EXPECT_EQ(CTRANS_DIVIDED_BY_ZERO, Run.Call());
  EXPECT_TRUE(Run.Errors.empty());
  CScriptRun Skipped(Main("if (0) { Out(1 / 0); } Out(3);"));
  EXPECT_EQ(CTRANS_OK, Skipped.Call());
  EXPECT_EQ(std::vector<I64>{3}, Skipped.Out);
}

TEST(CTrans, LoadReadsHeadsOnly) {
  struct LOAD_CASE {
    const char* sText;
    const char* sError;
    int Line;
  };
  const LOAD_CASE aCases[] = {
      {"void main (void) { nonsense } ", "", 0},
      {"void main (void) {\n } }", "Syntax error.", 2},
      {"\nint x;", "Expected a '('", 2},
      {"void main (void) ;", "Expected '{'", 1},
      {"void main (void) {\n{\n", "Unexpected end of file looking for '}'", 3},
      {"void main (void) { Util.Log(\"}\"); }", "Syntax error.", 1},
      {"/* open", "C-comment has not been closed properly", 1},
      {"void (void) {}", "Expected an identifier.", 1},
      {"void f (int) {}", "Expected an identifier.", 1},
      {"void f (int a,) {}", "Expected an identifier.", 1},
      {"void main (void) { /* } */ } // }", "", 0},
  };
  for (const LOAD_CASE& Case : aCases) {
    CScriptRun Run(Case.sText);
    EXPECT_EQ(Case.sError, Run.ErrorText()) << Case.sText;
    EXPECT_EQ(0, Run.LoadResult);
    if (!Run.Errors.empty()) {
      EXPECT_EQ(Case.Line, Run.Errors[0].LineNo) << Case.sText;
    }
  }
}

TEST(CTrans, ErrorsTellWhere) {
  struct PLACE_CASE {
    const char* sText;
    const char* sStatement;
    int Line;
  };
  const PLACE_CASE aCases[] = {
      {"void main (void) {\n  Out(1);\n  Out(1, 2); Out(3);\n}", "Out(1, 2);", 3},
      {"void f () {\n Out(1);\n}\nvoid main () {\n f() 5;\n}", "f() 5;", 5},
      {"void main () { int a[2]; int i; i = 0; a[0] = 1; a[1] = 1;\n while (a[i]) {\n i += 1; } }",
       "while (a[i]) {\n i += 1;", 2},
      {"void main () {\n do { Out(1); }\n Out(2);\n}", "do { Out(1);", 3},
  };
  for (const PLACE_CASE& Case : aCases) {
    CScriptRun Run(Case.sText);
    Run.Call();
    ASSERT_EQ(1u, Run.Errors.size()) << Case.sText;
    EXPECT_EQ(Case.Line, Run.Errors[0].LineNo) << Case.sText;
    EXPECT_EQ(Case.sStatement, Run.Errors[0].sStatement) << Case.sText;
  }
  CScriptRun Long(Main("Out(" + std::string(1000, ' ') + "x);"));
  Long.Call();
  EXPECT_EQ(512u, Long.Errors.at(0).sStatement.size());
}

TEST(CTrans, StringsReachNativeFunctions) {
  CScriptRun Run(Main("Util.Log(\"a, b\\t\\\\\"); Out(Util.Log(5)); Util.Log((\"c\"));"));
  EXPECT_EQ(CTRANS_OK, Run.Call()) << Run.ErrorText();
  EXPECT_EQ((std::vector<std::string>{"a, b\t\\", "c"}), Run.Log);
  EXPECT_EQ((std::vector<I64>{0xFFFFFFFF}), Run.Out);
}

TEST(CTrans, UnknownAndNativeFunctionsAreNotCalled) {
  CScriptRun Run("void main (void) {}");
  EXPECT_EQ(CTRANS_UNKNOWN_FUNCTION, Run.Call("other"));
  EXPECT_EQ(CTRANS_UNKNOWN_FUNCTION, Run.Call("TEN"));
}

TEST(CTrans, EndlessLoopEndsOnRequest) {
  CScriptRun Run(Main("while (1) { } Out(1);"));
  Run.CloseOnPoll = true;
  EXPECT_EQ(CTRANS_OK, Run.Call());
  EXPECT_TRUE(Run.Out.empty());
}

}  // namespace
