#pragma once

#include <chrono>
#include <functional>
#include <memory>
#include <string>
#include <string_view>

#include "base/types.h"

// A native function that scripts call: NumArgs values of 64 bits, strings as pointers into the script heap. Its result
// is what the call yields in the script.
using CTRANS_API_FUNC = std::function<U64(const U64* paArgs, U32 NumArgs)>;

// Result of CTrans::CallFunction.
enum CTRANS_RESULTS : int {
  CTRANS_OK = 0,
  CTRANS_FAILED = -1,
  CTRANS_UNKNOWN_FUNCTION = -2,
  CTRANS_DIVIDED_BY_ZERO = -3,
};

// What the host hears of the first error.
struct CTRANS_ERROR {
  std::string sText;       // empty for a failure that has no words: a division by zero, an array without "]"
  std::string sStatement;  // from the start of the failing statement up to its first ";", at most 512 bytes
  int LineNo = 0;          // from 1
  int ColumnNo = 0;        // from 1, in bytes
  int FirstLineNo = 0;     // line in which the failing statement begins, LineNo or before
};

struct CTRANS_CALLBACKS {
  std::function<void(const CTRANS_ERROR&)> OnError;  // once, for the first error
  // At this interval while a script runs, at most once a loop pass or call, so that the host stays answerable. May call
  // RequestClose or Abort.
  std::function<void()> OnPoll;
  std::chrono::milliseconds PollInterval{50};
};

// The script engine: a subset of C without a compile step. Loading reads the function heads only; a call walks the text
// of the body and executes as it parses. All memory that a script can take comes from one heap of fixed size.
//
// The first error freezes the engine: every later operation fails at once, and the host makes a new engine.
// Main thread; not re-entrant from OnError, but native functions may call CallFunction.
class CTrans {
public:
  static constexpr U32 HEAP_SIZE = 1'000'000;  // bytes
  static constexpr U32 MAX_NATIVE_ARGS = 8;

  // HeapSize: all that a script can take, in bytes; a few thousand at least.
  CTrans(std::string sText, CTRANS_CALLBACKS Callbacks, U32 HeapSize = HEAP_SIZE);
  ~CTrans();
  CTrans(const CTrans&) = delete;
  CTrans& operator=(const CTrans&) = delete;

  // Appends a named number. The earliest definition of a name wins.
  void AddConstant(std::string_view sName, I64 Value);
  // Declares Func by a prototype such as "__api__ int File.Open (const char* sFileName);". 0, or -1 when the prototype
  // is no function head or the heap is full; neither is an error of the script.
  int AddApiFunction(std::string_view sPrototype, CTRANS_API_FUNC Func);
  // Reads the heads of all functions of the text. 0, or -1 when the heap is full. A syntax error is reported through
  // OnError and gives 0.
  int ParseGlobals();

  bool HasScriptFunction(std::string_view sName) const;
  // Of a function of the script; 0 if there is none.
  U32 GetNumParams(std::string_view sName) const;
  // Runs a function without arguments. CTRANS_RESULTS; the function's own result does not reach the caller.
  int CallFunction(std::string_view sName);

  bool HasError() const;
  // Makes running functions end at their next statement or loop test, without an error. Stays set.
  void RequestClose();
  // Makes running functions fail with this error at the place where they are. For use by OnPoll and native functions.
  void Abort(std::string_view sReason);
  // Whether a value that a script passed is a pointer into the script heap: true for every string.
  bool IsHeapPointer(U64 Value) const;
  // The text that such a pointer stands for, up to its zero or the end of the heap; empty for any other value.
  std::string_view TextAt(U64 Value) const;

private:
  struct ENGINE;
  std::unique_ptr<ENGINE> m_pEngine;
};
