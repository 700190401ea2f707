// The lexical rules of the script language.

#include <cstring>

#include "script/ctrans_engine.h"

namespace {

constexpr size_t MAX_STATEMENT_TEXT = 512;
constexpr size_t MAX_ERROR_TEXT = 199;

bool IsIdentifierStart(char c) {
  return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || c == '_';
}
bool IsIdentifierChar(char c) {
  return IsIdentifierStart(c) || (c >= '0' && c <= '9') || c == '.';
}

int DigitValue(char c) {
  if (c >= '0' && c <= '9') return c - '0';
  if (c >= 'a' && c <= 'f') return c - 'a' + 10;
  if (c >= 'A' && c <= 'F') return c - 'A' + 10;
  return 16;
}

}  // namespace

bool CTrans::ENGINE::SkipBlanks() {
  for (;;) {
    const char c = *Cursor.p;
    if (c == '\n') {
      ++Cursor.p;
      ++Cursor.LineNo;
      Cursor.pLineStart = Cursor.p;
    } else if (c == ' ' || c == '\t' || c == '\r') {
      ++Cursor.p;
    } else if (c == '/' && Cursor.p[1] == '/') {
      while (*Cursor.p && *Cursor.p != '\r' && *Cursor.p != '\n') ++Cursor.p;
    } else if (c == '/' && Cursor.p[1] == '*') {
      Cursor.p += 2;
      while (*Cursor.p && !(Cursor.p[0] == '*' && Cursor.p[1] == '/')) {
        if (*Cursor.p++ == '\n') {
          ++Cursor.LineNo;
          Cursor.pLineStart = Cursor.p;
        }
      }
      if (AtEnd()) return Fail("C-comment has not been closed properly");
      Cursor.p += 2;
    } else {
      return true;
    }
  }
}

bool CTrans::ENGINE::TryToken(std::string_view sToken) {
  if (!SkipBlanks() || std::strncmp(Cursor.p, sToken.data(), sToken.size()) != 0) return false;
  Cursor.p += sToken.size();
  return true;
}

bool CTrans::ENGINE::Expect(char Token) {
  if (!SkipBlanks()) return false;
  if (*Cursor.p != Token) return Fail(std::string("Expected a '") + Token + "'");
  ++Cursor.p;
  return true;
}

std::string_view CTrans::ENGINE::PeekIdentifier() {
  if (!SkipBlanks() || !IsIdentifierStart(*Cursor.p)) return {};
  const char* pEnd = Cursor.p;
  while (IsIdentifierChar(*pEnd)) ++pEnd;
  return {Cursor.p, static_cast<size_t>(pEnd - Cursor.p)};
}

std::string_view CTrans::ENGINE::TakeIdentifier() {
  const std::string_view sName = PeekIdentifier();
  Cursor.p += sName.size();
  return sName;
}

bool CTrans::ENGINE::TryKeyword(std::string_view sKeyword) {
  if (PeekIdentifier() != sKeyword) return false;
  Cursor.p += sKeyword.size();
  return true;
}

bool CTrans::ENGINE::TryInteger(I64* pValue) {
  if (!SkipBlanks()) return false;
  const char* p = Cursor.p;
  const bool bNegative = *p == '-';
  if (bNegative) ++p;
  int Base = 10;
  if (p[0] == '0' && p[1] == 'x' && DigitValue(p[2]) < 16) {
    Base = 16;
    p += 2;
  }
  if (DigitValue(*p) >= Base) return false;
  U64 Value = 0;
  for (; DigitValue(*p) < Base; ++p) Value = Value * static_cast<U64>(Base) + static_cast<U64>(DigitValue(*p));
  Cursor.p = p;
  *pValue = static_cast<I64>(bNegative ? 0 - Value : Value);
  return true;
}

bool CTrans::ENGINE::Fail(const char* sText) {
  return Fail(std::string(sText));
}

bool CTrans::ENGINE::Fail(const std::string& sErrorText) {
  if (HasError || IsSilent) return false;
  HasError = true;
  IsOutOfMemory = sErrorText == "Out of memory.";
  CTRANS_ERROR Error;
  Error.sText = sErrorText.substr(0, MAX_ERROR_TEXT);
  Error.LineNo = static_cast<int>(Cursor.LineNo);
  Error.ColumnNo = static_cast<int>(Cursor.p - Cursor.pLineStart) + 1;
  Error.FirstLineNo = static_cast<int>(std::min(StatementStart.LineNo, Cursor.LineNo));
  const std::string_view sRest = std::string_view(StatementStart.p).substr(0, MAX_STATEMENT_TEXT);
  const size_t End = sRest.find(';');
  Error.sStatement = std::string(End == sRest.npos ? sRest : sRest.substr(0, End + 1));
  if (Callbacks.OnError) Callbacks.OnError(Error);
  return false;
}

bool CTrans::ENGINE::Poll() {
  const auto Now = std::chrono::steady_clock::now();
  if (Now - LastPoll >= Callbacks.PollInterval) {
    const CTransPosition Saved(&Cursor, &StatementStart);
    if (Callbacks.OnPoll) Callbacks.OnPoll();
    LastPoll = std::chrono::steady_clock::now();
  }
  return HeedHost();
}

bool CTrans::ENGINE::HeedHost() {
  if (!sAbortReason.empty()) Fail(sAbortReason);
  return !HasError;
}
