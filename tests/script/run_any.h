#pragma once
// Runs any text as a script and checks what holds for every text.

#include <string>

#include "script/ctrans.h"

// Loads the text with a few native functions and calls OnProjectLoad, main, f and g, as far as they exist. After a
// fixed number of loop passes and calls the script is told to close, or aborted. An empty text when all is well,
// otherwise what was broken.
inline std::string RunAnyScript(const std::string& sText, U32 HeapSize = CTrans::HEAP_SIZE) {
  constexpr int MAX_STEPS = 500;
  std::string sBroken;
  int NumErrors = 0, NumSteps = 0;
  CTrans* pEngine = nullptr;
  CTRANS_CALLBACKS Callbacks;
  Callbacks.OnError = [&](const CTRANS_ERROR& Error) {
    if (++NumErrors > 1) sBroken = "a second error: " + Error.sText;
    if (Error.LineNo < 1 || Error.ColumnNo < 1) sBroken = "an error without a place";
    if (Error.FirstLineNo < 1 || Error.FirstLineNo > Error.LineNo) sBroken = "a statement that begins nowhere";
    if (!Error.sStatement.empty() && sText.find(Error.sStatement) == sText.npos) sBroken = "a statement from nowhere";
  };
  Callbacks.OnPoll = [&] {
    if (++NumSteps != MAX_STEPS) return;
    sText.size() % 2 ? pEngine->Abort("enough") : pEngine->RequestClose();
  };
  Callbacks.PollInterval = {};
  CTrans Engine(sText, Callbacks, HeapSize);
  pEngine = &Engine;
  Engine.AddConstant("TEN", 10);
  Engine.AddConstant("BIG", I64{1} << 32);
  const auto AddUp = [&Engine](const U64* paArgs, U32 NumArgs) {
    U64 Sum = NumArgs;
    for (U32 i = 0; i < NumArgs; ++i) {
      Sum += Engine.IsHeapPointer(paArgs[i]) ? Engine.TextAt(paArgs[i]).size() : paArgs[i];
    }
    return static_cast<U64>(static_cast<U32>(Sum));
  };
  for (const char* const sPrototype :
       {"__api__ int Util.Log (const char* sText);", "__api__ int Log (const char* sText);",
        "__api__ int Out (unsigned int Value);",
        "__api__ int Nine (int a, int b, int c, int d, int e, int f, int g, int h, int i);"}) {
    Engine.AddApiFunction(sPrototype, AddUp);
  }
  Engine.AddApiFunction("__api__ int Nest (void);", [&Engine](const U64*, U32) {
    return static_cast<U64>(static_cast<U32>(Engine.CallFunction("g")));
  });
  Engine.ParseGlobals();
  for (const char* const sName : {"OnProjectLoad", "main", "f", "g"}) {
    const int Result = Engine.CallFunction(sName);
    if (Result == CTRANS_OK && Engine.HasError()) sBroken = "success in spite of an error";
    if (Result == CTRANS_DIVIDED_BY_ZERO && NumErrors == 0) sBroken = "a failure that nobody reported";
  }
  return sBroken;
}
