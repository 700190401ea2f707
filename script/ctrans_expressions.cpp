// Expressions: precedence climbing over signed 64-bit integers.

#include <cstring>

#include "script/ctrans_engine.h"

namespace {

enum OPERATOR_NUMBERS : int {
  OP_LOGICAL_OR = 4,
  OP_LOGICAL_AND = 5,
  OP_OR = 6,
  OP_XOR = 7,
  OP_AND = 8,
  OP_NOT_EQUAL = 9,
  OP_EQUAL = 10,
  OP_GREATER_EQUAL = 11,
  OP_GREATER = 12,
  OP_LESS_EQUAL = 13,
  OP_LESS = 14,
  OP_SHIFT_RIGHT = 15,
  OP_SHIFT_LEFT = 16,
  OP_MINUS = 17,
  OP_PLUS = 18,
  OP_DIVIDE = 20,
  OP_MULTIPLY = 21,
};

struct BINARY_OPERATOR {
  std::string_view sText;
  int Number;  // its precedence, each operator has its own
};

// In the order of comparison: longer operators before their prefixes.
constexpr BINARY_OPERATOR OPERATORS[] = {
    {">=", OP_GREATER_EQUAL},
    {"<=", OP_LESS_EQUAL},
    {"&&", OP_LOGICAL_AND},
    {"||", OP_LOGICAL_OR},
    {"==", OP_EQUAL},
    {"!=", OP_NOT_EQUAL},
    {"<<", OP_SHIFT_LEFT},
    {">>", OP_SHIFT_RIGHT},
    {"*", OP_MULTIPLY},
    {"/", OP_DIVIDE},
    {"+", OP_PLUS},
    {"-", OP_MINUS},
    {">", OP_GREATER},
    {"<", OP_LESS},
    {"&", OP_AND},
    {"|", OP_OR},
    {"^", OP_XOR},
};

constexpr U32 MAX_VARIABLE_SIZE = 8;  // bytes

const char ESCAPES[][2] = {{'0', '\0'}, {'\\', '\\'}, {'b', '\b'}, {'n', '\n'}, {'r', '\r'}, {'t', '\t'}};

}  // namespace

int CTransOperatorNumber(std::string_view sText) {
  for (const BINARY_OPERATOR& Operator : OPERATORS) {
    if (Operator.sText == sText) return Operator.Number;
  }
  return 0;
}

bool CTrans::ENGINE::Expression(int Min, bool bExecute, CTRANS_VALUE* pValue) {
  const CTransLevel Level(&Nesting);
  if (Nesting > MAX_NESTING) return Fail("Out of memory.");
  if (!Primary(bExecute, pValue)) return false;
  for (;;) {
    if (!SkipBlanks()) return false;
    const CTRANS_CURSOR BeforeOperator = Cursor;
    const BINARY_OPERATOR* pOperator = nullptr;
    for (const BINARY_OPERATOR& Candidate : OPERATORS) {
      if (TryToken(Candidate.sText)) {
        pOperator = &Candidate;
        break;
      }
    }
    if (pOperator == nullptr) return true;
    if (Min > pOperator->Number) {
      Cursor = BeforeOperator;
      return true;
    }
    CTRANS_VALUE Right;
    if (!SkipBlanks()) return false;
    const CTRANS_CURSOR RightStart = Cursor;
    if (!Expression(pOperator->Number, bExecute, &Right)) return false;
    if (pValue->IsString || Right.IsString) return Fail("Expected a base type.");
    if (!bExecute) continue;
    if (pOperator->Number == OP_DIVIDE && Right.Number == 0) return FailDivision(RightStart);
    if (!Apply(pOperator->Number, pValue->Number, Right.Number, &pValue->Number)) return false;
  }
}

bool CTrans::ENGINE::NumberExpression(bool bExecute, I64* pNumber) {
  CTRANS_VALUE Value;
  if (!Expression(0, bExecute, &Value)) return false;
  if (Value.IsString) return Fail("Expected a base type.");
  *pNumber = Value.Number;
  return true;
}

bool CTrans::ENGINE::Apply(int Operator, I64 Left, I64 Right, I64* pResult) {
  const U64 L = static_cast<U64>(Left), R = static_cast<U64>(Right);
  const auto Store = [pResult](U64 Value) {
    *pResult = static_cast<I64>(Value);
    return true;
  };
  switch (Operator) {
    case OP_LOGICAL_OR:
      return Store(L || R);
    case OP_LOGICAL_AND:
      return Store(L && R);
    case OP_OR:
      return Store(L | R);
    case OP_XOR:
      return Store(L ^ R);
    case OP_AND:
      return Store(L & R);
    case OP_NOT_EQUAL:
      return Store(L != R);
    case OP_EQUAL:
      return Store(L == R);
    case OP_GREATER_EQUAL:
      return Store(Left >= Right);
    case OP_GREATER:
      return Store(Left > Right);
    case OP_LESS_EQUAL:
      return Store(Left <= Right);
    case OP_LESS:
      return Store(Left < Right);
    case OP_SHIFT_RIGHT:
      return Store(static_cast<U64>(Left >> (R & 63)));
    case OP_SHIFT_LEFT:
      return Store(L << (R & 63));
    case OP_MINUS:
      return Store(L - R);
    case OP_PLUS:
      return Store(L + R);
    case OP_MULTIPLY:
      return Store(L * R);
    case OP_DIVIDE:
      if (Right == 0) return FailDivision(Cursor);
      return Store(Right == -1 ? 0 - L : static_cast<U64>(Left / Right));
    default:
      return Fail("Syntax error.");
  }
}

bool CTrans::ENGINE::FailDivision(const CTRANS_CURSOR& Divisor) {
  Cursor = Divisor;
  DividedByZero = !HasError;
  return Fail("");
}

bool CTrans::ENGINE::Primary(bool bExecute, CTRANS_VALUE* pValue) {
  if (!SkipBlanks()) return false;
  if (TryToken("(")) return Expression(0, bExecute, pValue) && Expect(')');
  if (*Cursor.p == '"') return StringLiteral(bExecute, pValue);
  if (TryInteger(&pValue->Number)) {
    if (!bExecute) pValue->Number = 0;
    return true;
  }
  return !HasError && IdentifierPrimary(bExecute, pValue);
}

bool CTrans::ENGINE::StringLiteral(bool bExecute, CTRANS_VALUE* pValue) {
  std::string sValue;
  for (++Cursor.p; *Cursor.p != '"'; ++Cursor.p) {
    char c = *Cursor.p;
    if (c == 0 || c == '\n') return Fail("Illegal character in string");
    if (c == '\\') {
      c = Cursor.p[1];
      const auto It = std::find_if(std::begin(ESCAPES), std::end(ESCAPES), [c](const char* p) { return p[0] == c; });
      if (c == 0 || It == std::end(ESCAPES)) return Fail("Unexpected escape character.");
      c = (*It)[1];
      ++Cursor.p;
    }
    sValue += c;
  }
  ++Cursor.p;
  pValue->IsString = true;
  if (!bExecute) return true;
  const char* const pCopy = CopyText(sValue);
  // A literal takes two symbols beside its text, as its type and its name.
  if (pCopy == nullptr || Heap.TakeLow(2 * sizeof(CTRANS_SYMBOL)) == nullptr) return Fail("Out of memory.");
  pValue->Number = static_cast<I64>(reinterpret_cast<U64>(pCopy));
  return true;
}

bool CTrans::ENGINE::IdentifierPrimary(bool bExecute, CTRANS_VALUE* pValue) {
  const std::string_view sName = PeekIdentifier();
  if (sName.empty()) return Fail("Expected a value or an identifier.");
  const CTRANS_SYMBOL* const pSymbol = Find(sName);
  if (pSymbol == nullptr) return Fail("Unknown identifier.");
  const bool bType = pSymbol->Kind != CTRANS_KIND::CONSTANT && pSymbol->Kind != CTRANS_KIND::FUNCTION &&
                     pSymbol->Kind != CTRANS_KIND::VARIABLE;
  if (bType) return Fail("Syntax error. Unexpected type");
  if (pSymbol->Form == CTRANS_FORM::POINTER) return Fail("Expected a base type.");
  if (pSymbol->Form == CTRANS_FORM::POINTER_ARRAY) {
    return Fail("Currently, only arrays of base type variables are allowed.");
  }
  TakeIdentifier();
  switch (pSymbol->Kind) {
    case CTRANS_KIND::CONSTANT:
      pValue->Number = bExecute ? pSymbol->Value : 0;
      return true;
    case CTRANS_KIND::FUNCTION:
      return Call(*pSymbol, bExecute, pValue);
    default:
      return ReadVariable(*pSymbol, bExecute, &pValue->Number);
  }
}

bool CTrans::ENGINE::ReadVariable(const CTRANS_SYMBOL& Variable, bool bExecute, I64* pNumber) {
  U8* pStorage = Variable.pStorage;
  if (Variable.Form == CTRANS_FORM::ARRAY && !Index(Variable, bExecute, &pStorage)) return false;
  return !bExecute || ReadStorage(pStorage, Variable.BaseSize, pNumber);
}

bool CTrans::ENGINE::Index(const CTRANS_SYMBOL& Array, bool bExecute, U8** ppElement) {
  CTRANS_VALUE Value;
  if (!Expect('[') || !SkipBlanks()) return false;
  const CTRANS_CURSOR Start = Cursor;
  if (!Expression(0, bExecute, &Value)) return false;
  if (Value.IsString) return Fail("Expected a value.");
  if (!Expect(']')) return false;
  if (!bExecute) return true;
  const I64 Position = Value.Number;
  if (Position < 0 || static_cast<U64>(Position) >= Array.Count) {
    Cursor = Start;
    return Fail("Array index out of range.");
  }
  *ppElement = Array.pStorage + static_cast<U64>(Position) * Array.BaseSize;
  return true;
}

bool CTrans::ENGINE::ReadStorage(const U8* pStorage, U32 Size, I64* pNumber) {
  if (Size < 1 || Size > MAX_VARIABLE_SIZE) return Fail("Unsupported base type size.");
  U64 Value = 0;
  std::memcpy(&Value, pStorage, Size);
  *pNumber = static_cast<I64>(Value);
  return true;
}

bool CTrans::ENGINE::WriteStorage(U8* pStorage, U32 Size, I64 Number) {
  if (Size > MAX_VARIABLE_SIZE) return Fail("Base type size exceeds 8 bytes");
  if (Size < 1) return Fail("Base type size must be at least 1 byte");
  std::memcpy(pStorage, &Number, Size);
  return true;
}

bool CTrans::ENGINE::Call(const CTRANS_SYMBOL& Function, bool bExecute, CTRANS_VALUE* pValue) {
  const CTRANS_FUNCTION& Target = *Function.pFunction;
  const CTransLevel Level(&Nesting);
  if (Nesting > MAX_NESTING) return Fail("Out of memory.");
  std::vector<U64> Args(Target.NumParams);
  if (!Expect('(')) return false;
  for (size_t i = 0; i < Args.size(); ++i) {
    if (i > 0) TryToken(",");
    CTRANS_VALUE Value;
    if (!Expression(0, bExecute, &Value)) return false;
    Args[i] = static_cast<U64>(Value.Number);
  }
  if (!Expect(')')) return false;
  *pValue = {};
  if (!bExecute) return true;
  if (!Poll()) return false;
  // The rest of a statement that a request to close has overtaken: its commands would get made-up values.
  if (CloseRequested) return true;
  if (Target.NativeIndex < 0) return CallScript(Target, Args.data(), &pValue->Number);
  return CallNative(Target, Args.data(), &pValue->Number);
}

bool CTrans::ENGINE::CallNative(const CTRANS_FUNCTION& Function, const U64* paArgs, I64* pResult) {
  if (Function.NumParams > MAX_NATIVE_ARGS) return true;
  {
    const CTransPosition Saved(&Cursor, &StatementStart);
    *pResult = static_cast<I64>(Natives[static_cast<size_t>(Function.NativeIndex)](paArgs, Function.NumParams));
  }
  return HeedHost();
}

bool CTrans::ENGINE::CallScript(const CTRANS_FUNCTION& Function, const U64* paArgs, I64* pResult) {
  const CTransPosition Saved(&Cursor, &StatementStart);
  CTRANS_SYMBOL* const pSavedLocals = pLocals;
  CTRANS_SYMBOL* const pSavedLocalsEnd = pLocalsEnd;
  U8* const pMark = Heap.HighMark();
  const I64 SavedReturn = ReturnValue;

  pLocals = pLocalsEnd = nullptr;
  ReturnValue = -1;
  bool bDone = true;
  U32 ArgIndex = 0;
  for (const CTRANS_PARAM* pParam = Function.pParams; pParam && bDone; pParam = pParam->pNext) {
    CTRANS_SYMBOL* const pSymbol = DefineLocal(pParam->sName);
    U8* const pStorage = pSymbol ? Heap.TakeHigh(sizeof(U64)) : nullptr;
    if (pStorage == nullptr) {
      bDone = Fail("Out of memory.");
      break;
    }
    std::memcpy(pStorage, &paArgs[ArgIndex++], sizeof(U64));
    pSymbol->pStorage = pStorage;
    pSymbol->BaseSize = pParam->BaseSize;
    pSymbol->Form = pParam->Form;
  }
  Cursor = Function.Body;
  bDone = bDone && Block(true) != CTRANS_FLOW::FAIL && !HasError;
  *pResult = ReturnValue;

  ReturnValue = SavedReturn;
  Heap.ReleaseHigh(pMark);
  pLocals = pSavedLocals;
  pLocalsEnd = pSavedLocalsEnd;
  return bDone;
}
