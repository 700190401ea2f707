// The engine's symbols and its public operations.

#include <cstring>

#include "script/ctrans_engine.h"

namespace {

struct BASE_TYPE {
  std::string_view sName;
  U32 Size;  // bytes
};
constexpr BASE_TYPE BASE_TYPES[] = {{"char", 1}, {"int", 4}, {"__int64", 8}, {"void", 0}, {"__const_char", 1}};
constexpr std::string_view QUALIFIERS[] = {"volatile", "const", "signed", "unsigned"};

}  // namespace

CTrans::ENGINE::ENGINE(std::string sScript, CTRANS_CALLBACKS Host, U32 HeapSize)
    : sText(std::move(sScript)), Callbacks(std::move(Host)), Heap(HeapSize) {
  Cursor.p = Cursor.pLineStart = sText.c_str();
  StatementStart = Cursor;
  for (const std::string_view sName : QUALIFIERS) Define(sName, CTRANS_KIND::QUALIFIER);
  Define("__api__", CTRANS_KIND::ATTRIBUTE);
  for (const BASE_TYPE& Type : BASE_TYPES) Define(Type.sName, CTRANS_KIND::BASE_TYPE)->BaseSize = Type.Size;
}

char* CTrans::ENGINE::CopyText(std::string_view sSource) {
  char* const pCopy = reinterpret_cast<char*>(Heap.TakeLow(sSource.size() + 1));
  if (pCopy == nullptr) return nullptr;
  std::memcpy(pCopy, sSource.data(), sSource.size());
  pCopy[sSource.size()] = 0;
  return pCopy;
}

CTRANS_SYMBOL* CTrans::ENGINE::Define(std::string_view sName, CTRANS_KIND Kind) {
  CTRANS_SYMBOL* const pSymbol = NewLow<CTRANS_SYMBOL>();
  const char* const pName = pSymbol ? CopyText(sName) : nullptr;
  if (pName == nullptr) return nullptr;
  pSymbol->sName = {pName, sName.size()};
  pSymbol->Kind = Kind;
  Globals.emplace(pSymbol->sName, pSymbol);
  return pSymbol;
}

CTRANS_SYMBOL* CTrans::ENGINE::DefineLocal(std::string_view sName) {
  U8* const p = Heap.TakeHigh(sizeof(CTRANS_SYMBOL));
  if (p == nullptr) return nullptr;
  CTRANS_SYMBOL* const pSymbol = new (p) CTRANS_SYMBOL;
  pSymbol->sName = sName;
  pSymbol->Kind = CTRANS_KIND::VARIABLE;
  (pLocals ? pLocalsEnd->pNext : pLocals) = pSymbol;
  pLocalsEnd = pSymbol;
  return pSymbol;
}

CTRANS_SYMBOL* CTrans::ENGINE::FindLocal(std::string_view sName) const {
  for (CTRANS_SYMBOL* pSymbol = pLocals; pSymbol; pSymbol = pSymbol->pNext) {
    if (pSymbol->sName == sName) return pSymbol;
  }
  return nullptr;
}

CTRANS_SYMBOL* CTrans::ENGINE::Find(std::string_view sName) const {
  if (CTRANS_SYMBOL* const pLocal = FindLocal(sName)) return pLocal;
  const auto It = Globals.find(sName);
  return It == Globals.end() ? nullptr : It->second;
}

CTrans::CTrans(std::string sText, CTRANS_CALLBACKS Callbacks, U32 HeapSize)
    : m_pEngine(std::make_unique<ENGINE>(std::move(sText), std::move(Callbacks), HeapSize)) {}

CTrans::~CTrans() = default;

void CTrans::AddConstant(std::string_view sName, I64 Value) {
  CTRANS_SYMBOL* const pSymbol = m_pEngine->Define(sName, CTRANS_KIND::CONSTANT);
  if (pSymbol) pSymbol->Value = Value;
}

int CTrans::AddApiFunction(std::string_view sPrototype, CTRANS_API_FUNC Func) {
  const std::string sCopy(sPrototype);
  const CTRANS_CURSOR Saved = m_pEngine->Cursor;
  m_pEngine->Cursor = {sCopy.c_str(), sCopy.c_str(), 1};
  m_pEngine->IsSilent = true;
  CTRANS_SYMBOL* const pSymbol = m_pEngine->ParseHead();
  m_pEngine->IsSilent = false;
  m_pEngine->Cursor = Saved;
  if (pSymbol == nullptr) return -1;
  pSymbol->pFunction->NativeIndex = static_cast<int>(m_pEngine->Natives.size());
  m_pEngine->Natives.push_back(std::move(Func));
  return 0;
}

bool CTrans::HasScriptFunction(std::string_view sName) const {
  const auto It = m_pEngine->Globals.find(sName);
  return It != m_pEngine->Globals.end() && It->second->Kind == CTRANS_KIND::FUNCTION &&
         It->second->pFunction->NativeIndex < 0;
}

U32 CTrans::GetNumParams(std::string_view sName) const {
  return HasScriptFunction(sName) ? static_cast<U32>(m_pEngine->Globals.find(sName)->second->pFunction->NumParams) : 0;
}

int CTrans::CallFunction(std::string_view sName) {
  ENGINE& Engine = *m_pEngine;
  if (Engine.HasError || !Engine.sAbortReason.empty()) return CTRANS_FAILED;
  const auto It = Engine.Globals.find(sName);
  if (It == Engine.Globals.end() || It->second->Kind != CTRANS_KIND::FUNCTION) return CTRANS_UNKNOWN_FUNCTION;
  CTRANS_VALUE Result;
  const CTRANS_FUNCTION& Function = *It->second->pFunction;
  if (Function.NumParams != 0 || Function.NativeIndex >= 0) return CTRANS_FAILED;
  if (Engine.Nesting == 0) Engine.LastPoll = std::chrono::steady_clock::now();
  const bool bDone = Engine.CallScript(Function, nullptr, &Result.Number);
  if (Engine.DividedByZero) return CTRANS_DIVIDED_BY_ZERO;
  return bDone ? CTRANS_OK : CTRANS_FAILED;
}

bool CTrans::HasError() const {
  return m_pEngine->HasError;
}

void CTrans::RequestClose() {
  m_pEngine->CloseRequested = true;
}

void CTrans::Abort(std::string_view sReason) {
  if (m_pEngine->Nesting > 0) m_pEngine->sAbortReason = sReason;
}

bool CTrans::IsHeapPointer(U64 Value) const {
  return m_pEngine->Heap.Contains(Value);
}

std::string_view CTrans::TextAt(U64 Value) const {
  return m_pEngine->Heap.TextAt(Value);
}
