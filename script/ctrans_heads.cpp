// Function heads, and the pass over the text that finds them.

#include "script/ctrans_engine.h"

void CTrans::ENGINE::SkipQualifiers() {
  for (;;) {
    const std::string_view sName = PeekIdentifier();
    const CTRANS_SYMBOL* const pSymbol = sName.empty() ? nullptr : Find(sName);
    if (pSymbol == nullptr || pSymbol->Kind != CTRANS_KIND::QUALIFIER) return;
    TakeIdentifier();
  }
}

CTRANS_PARAM* CTrans::ENGINE::ParseParam() {
  SkipQualifiers();
  const std::string_view sType = PeekIdentifier();
  const CTRANS_SYMBOL* const pType = Find(sType);
  if (pType == nullptr || pType->Kind != CTRANS_KIND::BASE_TYPE) {
    Fail(sType.empty() ? "Expected an identifier." : "Expected a base type.");
    return nullptr;
  }
  TakeIdentifier();
  const bool bPointer = TryToken("*");
  const std::string_view sName = TakeIdentifier();
  if (sName.empty()) {
    Fail("Expected an identifier.");
    return nullptr;
  }
  CTRANS_PARAM* const pParam = NewLow<CTRANS_PARAM>();
  const char* const pName = pParam ? CopyText(sName) : nullptr;
  if (pName == nullptr) {
    Fail("Out of memory.");
    return nullptr;
  }
  pParam->sName = {pName, sName.size()};
  pParam->BaseSize = pType->BaseSize;
  pParam->Form = bPointer ? CTRANS_FORM::POINTER : CTRANS_FORM::PLAIN;
  return pParam;
}

CTRANS_SYMBOL* CTrans::ENGINE::ParseHead() {
  while (TryKeyword("__api__")) {
  }
  SkipQualifiers();
  const CTRANS_SYMBOL* const pType = Find(PeekIdentifier());
  if (pType == nullptr || pType->Kind != CTRANS_KIND::BASE_TYPE) {
    Fail("Expected a base type.");
    return nullptr;
  }
  TakeIdentifier();
  const std::string_view sName = TakeIdentifier();
  if (sName.empty()) {
    Fail("Expected an identifier.");
    return nullptr;
  }
  if (!Expect('(')) return nullptr;
  CTRANS_FUNCTION* const pFunction = NewLow<CTRANS_FUNCTION>();
  if (pFunction == nullptr) {
    Fail("Out of memory.");
    return nullptr;
  }
  const CTRANS_CURSOR FirstParam = Cursor;
  if (!(TryKeyword("void") && TryToken(")"))) {
    Cursor = FirstParam;
    CTRANS_PARAM** ppEnd = &pFunction->pParams;
    for (bool bComma = false; bComma || !TryToken(")");) {
      if (HasError || (*ppEnd = ParseParam()) == nullptr) return nullptr;
      ppEnd = &(*ppEnd)->pNext;
      ++pFunction->NumParams;
      bComma = TryToken(",");
    }
  }
  CTRANS_SYMBOL* const pSymbol = Define(sName, CTRANS_KIND::FUNCTION);
  if (pSymbol == nullptr) {
    Fail("Out of memory.");
    return nullptr;
  }
  pSymbol->pFunction = pFunction;
  return pSymbol;
}

bool CTrans::ENGINE::SkipBody() {
  if (!SkipBlanks()) return false;
  if (*Cursor.p != '{') return Fail("Expected '{'");
  U32 Depth = 0;
  do {
    if (!SkipBlanks()) return false;
    if (AtEnd()) return Fail("Unexpected end of file looking for '}'");
    if (*Cursor.p == '{') ++Depth;
    if (*Cursor.p == '}') --Depth;
    ++Cursor.p;
  } while (Depth > 0);
  return true;
}

int CTrans::ParseGlobals() {
  ENGINE& Engine = *m_pEngine;
  Engine.Cursor = {Engine.sText.c_str(), Engine.sText.c_str(), 1};
  while (!Engine.HasError && Engine.SkipBlanks() && !Engine.AtEnd()) {
    Engine.StatementStart = Engine.Cursor;
    const std::string_view sWord = Engine.PeekIdentifier();
    if (sWord.empty() || Engine.Find(sWord) == nullptr) {
      Engine.Fail("Syntax error.");
      break;
    }
    CTRANS_SYMBOL* const pSymbol = Engine.ParseHead();
    if (pSymbol == nullptr) return Engine.IsOutOfMemory ? -1 : 0;
    pSymbol->pFunction->Body = Engine.Cursor;
    if (!Engine.SkipBody()) break;
  }
  // A zero byte would hide the functions behind it.
  if (Engine.AtEnd() && Engine.Cursor.p != Engine.sText.c_str() + Engine.sText.size()) {
    Engine.StatementStart = Engine.Cursor;
    Engine.Fail("Syntax error.");
  }
  return 0;
}
