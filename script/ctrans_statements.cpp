// Statements: parsed and, where Execute says so, carried out in the same walk over the text.

#include "script/ctrans_engine.h"

namespace {

// In the order in which they are tried, with the binary operator that each applies first.
struct ASSIGNMENT_OPERATOR {
  std::string_view sText;
  std::string_view sBinary;
};
constexpr ASSIGNMENT_OPERATOR ASSIGNMENTS[] = {
    {"+=", "+"}, {"-=", "-"}, {"*=", "*"},   {"/=", "/"},   {"&=", "&"},
    {"|=", "|"}, {"^=", "^"}, {"<<=", "<<"}, {">>=", ">>"}, {"=", ""},
};

}  // namespace

CTRANS_FLOW CTrans::ENGINE::Statement(bool bExecute) {
  if (HasError || !SkipBlanks()) return CTRANS_FLOW::FAIL;
  if (bExecute && CloseRequested) return CTRANS_FLOW::RETURN;
  const CTransLevel Level(&Nesting);
  StatementStart = Cursor;
  if (Nesting > MAX_NESTING) {
    Fail("Out of memory.");
    return CTRANS_FLOW::FAIL;
  }
  if (*Cursor.p == '{') return Block(bExecute);
  if (TryKeyword("return")) return ReturnStatement(bExecute);
  if (TryKeyword("if")) return IfStatement(bExecute);
  if (TryKeyword("while")) return WhileStatement(bExecute);
  if (TryKeyword("do")) return DoStatement(bExecute);
  if (PeekIdentifier() == "for") {
    Fail("Keyword \"for\" is not yet supported");
    return CTRANS_FLOW::FAIL;
  }
  if (PeekIdentifier() == "else") {
    Fail("Keyword \"else\" is not allowed without \"if\"");
    return CTRANS_FLOW::FAIL;
  }
  return IdentifierStatement(bExecute);
}

CTRANS_FLOW CTrans::ENGINE::Block(bool bExecute) {
  if (!Expect('{')) return CTRANS_FLOW::FAIL;
  for (;;) {
    if (!SkipBlanks()) return CTRANS_FLOW::FAIL;
    if (TryToken("}")) return CTRANS_FLOW::NEXT;
    const CTRANS_FLOW Flow = Statement(bExecute);
    if (Flow != CTRANS_FLOW::NEXT) return Flow;
  }
}

bool CTrans::ENGINE::Condition(bool bExecute, bool* pResult) {
  I64 Value = 0;
  if (!Expect('(') || !NumberExpression(bExecute, &Value) || !Expect(')')) return false;
  *pResult = bExecute && Value != 0;
  return true;
}

CTRANS_FLOW CTrans::ENGINE::ReturnStatement(bool bExecute) {
  I64 Value = 0;
  if (!NumberExpression(bExecute, &Value) || !Expect(';')) return CTRANS_FLOW::FAIL;
  if (!bExecute) return CTRANS_FLOW::NEXT;
  ReturnValue = Value;
  return CTRANS_FLOW::RETURN;
}

CTRANS_FLOW CTrans::ENGINE::IfStatement(bool bExecute) {
  bool bTrue = false;
  if (!Condition(bExecute, &bTrue)) return CTRANS_FLOW::FAIL;
  CTRANS_FLOW Flow = Statement(bExecute && bTrue);
  if (Flow != CTRANS_FLOW::NEXT) return Flow;
  if (!TryKeyword("else")) return HasError ? CTRANS_FLOW::FAIL : CTRANS_FLOW::NEXT;
  return Statement(bExecute && !bTrue);
}

CTRANS_FLOW CTrans::ENGINE::WhileStatement(bool bExecute) {
  const CTRANS_CURSOR Start = Cursor, Keyword = StatementStart;
  for (;;) {
    bool bTrue = false;
    StatementStart = Keyword;
    if (bExecute && !Poll()) return CTRANS_FLOW::FAIL;
    if (!Condition(bExecute, &bTrue)) return CTRANS_FLOW::FAIL;
    const bool bPass = bTrue && !CloseRequested;
    const CTRANS_FLOW Flow = Statement(bPass);
    if (Flow != CTRANS_FLOW::NEXT || !bPass) return Flow;
    Cursor = Start;
  }
}

CTRANS_FLOW CTrans::ENGINE::DoStatement(bool bExecute) {
  const CTRANS_CURSOR Start = Cursor, Keyword = StatementStart;
  for (;;) {
    if (bExecute && !Poll()) return CTRANS_FLOW::FAIL;
    const CTRANS_FLOW Flow = Statement(bExecute);
    if (Flow != CTRANS_FLOW::NEXT) return Flow;
    StatementStart = Keyword;
    if (!TryKeyword("while")) {
      Fail("Syntax error. missing \"while\" at line " + std::to_string(Cursor.LineNo));
      return CTRANS_FLOW::FAIL;
    }
    bool bTrue = false;
    if (!Condition(bExecute, &bTrue) || !Expect(';')) return CTRANS_FLOW::FAIL;
    if (!bTrue || CloseRequested) return CTRANS_FLOW::NEXT;
    Cursor = Start;
  }
}

CTRANS_FLOW CTrans::ENGINE::IdentifierStatement(bool bExecute) {
  const std::string_view sName = PeekIdentifier();
  const CTRANS_SYMBOL* const pSymbol = sName.empty() ? nullptr : Find(sName);
  if (pSymbol == nullptr) {
    Fail("Syntax error.");
    return CTRANS_FLOW::FAIL;
  }
  switch (pSymbol->Kind) {
    case CTRANS_KIND::BASE_TYPE:
    case CTRANS_KIND::QUALIFIER:
      return Declaration();
    case CTRANS_KIND::FUNCTION: {
      TakeIdentifier();
      CTRANS_VALUE Result;
      return Call(*pSymbol, bExecute, &Result) && Expect(';') ? CTRANS_FLOW::NEXT : CTRANS_FLOW::FAIL;
    }
    case CTRANS_KIND::VARIABLE:
      TakeIdentifier();
      return Assignment(*pSymbol, bExecute);
    default:
      TakeIdentifier();
      return CTRANS_FLOW::NEXT;
  }
}

CTRANS_FLOW CTrans::ENGINE::Declaration() {
  SkipQualifiers();
  const CTRANS_SYMBOL* const pType = Find(PeekIdentifier());
  if (pType == nullptr || pType->Kind != CTRANS_KIND::BASE_TYPE) {
    Fail(pType ? "Currently only basic data types for local variables are allowed." : "Syntax error.");
    return CTRANS_FLOW::FAIL;
  }
  TakeIdentifier();
  CTRANS_FORM Form = TryToken("*") ? CTRANS_FORM::POINTER : CTRANS_FORM::PLAIN;
  const std::string_view sName = TakeIdentifier();
  if (sName.empty()) {
    Fail("Expected an identifier.");
    return CTRANS_FLOW::FAIL;
  }
  I64 Count = 1;
  if (TryToken("[")) {
    if (!TryInteger(&Count)) {
      Fail("Expected an integer value");
      return CTRANS_FLOW::FAIL;
    }
    if (!TryToken("]")) {
      Fail("");
      return CTRANS_FLOW::FAIL;
    }
    Form = Form == CTRANS_FORM::POINTER ? CTRANS_FORM::POINTER_ARRAY : CTRANS_FORM::ARRAY;
  }
  if (!Expect(';')) return CTRANS_FLOW::FAIL;
  // The first definition of a name wins, so a declaration in a loop takes memory once.
  if (FindLocal(sName) != nullptr) return CTRANS_FLOW::NEXT;
  const bool bPointers = Form == CTRANS_FORM::POINTER || Form == CTRANS_FORM::POINTER_ARRAY;
  const U64 NumBytes = static_cast<U64>(Count) * (bPointers ? sizeof(U64) : pType->BaseSize);
  CTRANS_SYMBOL* const pSymbol = Count < 0 || Count > HEAP_SIZE ? nullptr : DefineLocal(sName);
  U8* const pStorage = pSymbol ? Heap.TakeHigh(NumBytes) : nullptr;
  if (pStorage == nullptr) {
    Fail("Out of memory.");
    return CTRANS_FLOW::FAIL;
  }
  pSymbol->Form = Form;
  pSymbol->BaseSize = pType->BaseSize;
  pSymbol->Count = static_cast<U64>(Count);
  pSymbol->pStorage = pStorage;
  return CTRANS_FLOW::NEXT;
}

CTRANS_FLOW CTrans::ENGINE::Assignment(const CTRANS_SYMBOL& Variable, bool bExecute) {
  U8* pStorage = Variable.pStorage;
  const bool bArray = Variable.Form == CTRANS_FORM::ARRAY || Variable.Form == CTRANS_FORM::POINTER_ARRAY;
  if (bArray && !Index(Variable, bExecute, &pStorage)) return CTRANS_FLOW::FAIL;
  const ASSIGNMENT_OPERATOR* pOperator = nullptr;
  for (const ASSIGNMENT_OPERATOR& Candidate : ASSIGNMENTS) {
    if (TryToken(Candidate.sText)) {
      pOperator = &Candidate;
      break;
    }
  }
  if (pOperator == nullptr) return HasError ? CTRANS_FLOW::FAIL : CTRANS_FLOW::NEXT;
  if (Variable.Form == CTRANS_FORM::POINTER || Variable.Form == CTRANS_FORM::POINTER_ARRAY) {
    Fail("Assignments are allowed for base types only");
    return CTRANS_FLOW::FAIL;
  }
  if (Variable.Form == CTRANS_FORM::ARRAY && !pOperator->sBinary.empty()) {
    Fail("Expected a base type.");
    return CTRANS_FLOW::FAIL;
  }
  I64 Value = 0;
  if (!SkipBlanks()) return CTRANS_FLOW::FAIL;
  const CTRANS_CURSOR ValueStart = Cursor;
  if (!NumberExpression(bExecute, &Value) || !Expect(';')) return CTRANS_FLOW::FAIL;
  if (!bExecute) return CTRANS_FLOW::NEXT;
  if (!pOperator->sBinary.empty()) {
    I64 Old = 0;
    if (pOperator->sBinary == "/" && Value == 0) {
      FailDivision(ValueStart);
      return CTRANS_FLOW::FAIL;
    }
    if (!ReadStorage(pStorage, Variable.BaseSize, &Old) ||
        !Apply(CTransOperatorNumber(pOperator->sBinary), Old, Value, &Value)) {
      return CTRANS_FLOW::FAIL;
    }
  }
  return WriteStorage(pStorage, Variable.BaseSize, Value) ? CTRANS_FLOW::NEXT : CTRANS_FLOW::FAIL;
}
