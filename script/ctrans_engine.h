#pragma once
// The inside of the script engine, shared by its source files.

#include <algorithm>
#include <chrono>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "script/ctrans.h"
#include "script/ctrans_heap.h"

// A read position in the script text.
struct CTRANS_CURSOR {
  const char* p = nullptr;
  const char* pLineStart = nullptr;
  U32 LineNo = 1;
};

enum class CTRANS_KIND : U32 { BASE_TYPE = 0, CONSTANT = 4, FUNCTION = 7, QUALIFIER = 8, ATTRIBUTE = 9, VARIABLE = 11 };

// How a declarator forms a type over its base type.
enum class CTRANS_FORM : U8 { PLAIN, POINTER, ARRAY, POINTER_ARRAY };

struct CTRANS_FUNCTION;

// A named thing. Lives in the heap; lists are in order of definition.
struct CTRANS_SYMBOL {
  CTRANS_SYMBOL* pNext = nullptr;
  std::string_view sName;
  CTRANS_KIND Kind = CTRANS_KIND::BASE_TYPE;
  CTRANS_FORM Form = CTRANS_FORM::PLAIN;  // of a variable
  U32 BaseSize = 0;                       // bytes of a base type, or of the base type of a variable
  I64 Value = 0;                          // of a constant
  U64 Count = 0;                          // elements of an array
  U8* pStorage = nullptr;                 // of a variable
  CTRANS_FUNCTION* pFunction = nullptr;
};

struct CTRANS_PARAM {
  CTRANS_PARAM* pNext = nullptr;
  std::string_view sName;
  U32 BaseSize = 0;
  CTRANS_FORM Form = CTRANS_FORM::PLAIN;
};

struct CTRANS_FUNCTION {
  CTRANS_PARAM* pParams = nullptr;
  U32 NumParams = 0;
  CTRANS_CURSOR Body;    // of a script function: at its "{"
  int NativeIndex = -1;  // of a native one: into ENGINE::Natives
};

// What an expression yields. A string is only good as an argument.
struct CTRANS_VALUE {
  I64 Number = 0;
  bool IsString = false;
};

// How a statement ended.
enum class CTRANS_FLOW { NEXT, RETURN, FAIL };

struct CTrans::ENGINE {
  // Nested statements, expressions and calls; bounds the native stack.
  static constexpr U32 MAX_NESTING = 3000;

  ENGINE(std::string sScript, CTRANS_CALLBACKS Host, U32 HeapSize);

  // Text (ctrans_text.cpp)
  bool SkipBlanks();
  bool AtEnd() const { return *Cursor.p == 0; }
  bool TryToken(std::string_view sToken);
  bool Expect(char Token);
  bool TryKeyword(std::string_view sKeyword);
  std::string_view PeekIdentifier();
  std::string_view TakeIdentifier();
  bool TryInteger(I64* pValue);
  bool Fail(const char* sText);
  bool Fail(const std::string& sText);
  // Lets the host have a turn. False when that has stopped the script.
  bool Poll();
  // What the host has asked for meanwhile. False when the script must not go on.
  bool HeedHost();

  // Symbols (ctrans_symbols.cpp)
  CTRANS_SYMBOL* Define(std::string_view sName, CTRANS_KIND Kind);
  CTRANS_SYMBOL* DefineLocal(std::string_view sName);
  CTRANS_SYMBOL* FindLocal(std::string_view sName) const;
  CTRANS_SYMBOL* Find(std::string_view sName) const;
  char* CopyText(std::string_view sText);
  template <typename T>
  T* NewLow() {
    U8* const p = Heap.TakeLow(sizeof(T));
    return p ? new (p) T : nullptr;
  }

  // Function heads (ctrans_heads.cpp)
  CTRANS_SYMBOL* ParseHead();
  CTRANS_PARAM* ParseParam();
  bool SkipBody();
  void SkipQualifiers();

  // Statements (ctrans_statements.cpp)
  CTRANS_FLOW Statement(bool bExecute);
  CTRANS_FLOW Block(bool bExecute);
  CTRANS_FLOW IfStatement(bool bExecute);
  CTRANS_FLOW WhileStatement(bool bExecute);
  CTRANS_FLOW DoStatement(bool bExecute);
  CTRANS_FLOW ReturnStatement(bool bExecute);
  CTRANS_FLOW IdentifierStatement(bool bExecute);
  CTRANS_FLOW Declaration();
  CTRANS_FLOW Assignment(const CTRANS_SYMBOL& Variable, bool bExecute);
  bool Condition(bool bExecute, bool* pResult);

  // Expressions (ctrans_expressions.cpp)
  bool Expression(int Min, bool bExecute, CTRANS_VALUE* pValue);
  bool NumberExpression(bool bExecute, I64* pNumber);
  bool Primary(bool bExecute, CTRANS_VALUE* pValue);
  bool IdentifierPrimary(bool bExecute, CTRANS_VALUE* pValue);
  bool StringLiteral(bool bExecute, CTRANS_VALUE* pValue);
  bool ReadVariable(const CTRANS_SYMBOL& Variable, bool bExecute, I64* pNumber);
  bool Index(const CTRANS_SYMBOL& Array, bool bExecute, U8** ppElement);
  bool ReadStorage(const U8* pStorage, U32 Size, I64* pNumber);
  bool WriteStorage(U8* pStorage, U32 Size, I64 Number);
  bool Call(const CTRANS_SYMBOL& Function, bool bExecute, CTRANS_VALUE* pValue);
  bool CallNative(const CTRANS_FUNCTION& Function, const U64* paArgs, I64* pResult);
  bool CallScript(const CTRANS_FUNCTION& Function, const U64* paArgs, I64* pResult);
  bool FailDivision(const CTRANS_CURSOR& Divisor);
  bool Apply(int Operator, I64 Left, I64 Right, I64* pResult);

  std::string sText;
  CTRANS_CALLBACKS Callbacks;
  CTransHeap Heap;
  CTRANS_CURSOR Cursor;
  CTRANS_CURSOR StatementStart;
  std::unordered_map<std::string_view, CTRANS_SYMBOL*> Globals;
  CTRANS_SYMBOL* pLocals = nullptr;
  CTRANS_SYMBOL* pLocalsEnd = nullptr;
  std::vector<CTRANS_API_FUNC> Natives;
  I64 ReturnValue = -1;
  U32 Nesting = 0;
  std::chrono::steady_clock::time_point LastPoll;
  std::string sAbortReason;
  bool HasError = false;
  bool DividedByZero = false;  // what the error was
  bool CloseRequested = false;
  bool IsOutOfMemory = false;
  bool IsSilent = false;  // while a prototype is read: its errors are no errors of the script
};

// The number of a binary operator, by which ENGINE::Apply knows it; 0 for none.
int CTransOperatorNumber(std::string_view sText);

// Puts the read position back: whatever runs meanwhile may run script functions, which leave it where theirs ended.
class CTransPosition {
public:
  CTransPosition(CTRANS_CURSOR* pCursor, CTRANS_CURSOR* pStatementStart)
      : m_pCursor(pCursor),
        m_pStatementStart(pStatementStart),
        m_Cursor(*pCursor),
        m_StatementStart(*pStatementStart) {}
  ~CTransPosition() {
    *m_pCursor = m_Cursor;
    *m_pStatementStart = m_StatementStart;
  }
  CTransPosition(const CTransPosition&) = delete;
  CTransPosition& operator=(const CTransPosition&) = delete;

private:
  CTRANS_CURSOR* m_pCursor;
  CTRANS_CURSOR* m_pStatementStart;
  CTRANS_CURSOR m_Cursor;
  CTRANS_CURSOR m_StatementStart;
};

// Counts one level of nesting for its lifetime.
class CTransLevel {
public:
  explicit CTransLevel(U32* pNesting) : m_pNesting(pNesting) { ++*m_pNesting; }
  ~CTransLevel() { --*m_pNesting; }
  CTransLevel(const CTransLevel&) = delete;
  CTransLevel& operator=(const CTransLevel&) = delete;

private:
  U32* m_pNesting;
};
