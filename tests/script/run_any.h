#pragma once
// Runs any text as a script and checks what holds for every text.

#include <chrono>
#include <string>

#include "script/ctrans.h"

// Loads the text with a few native functions and calls OnProjectLoad, main, f and g, as far as they exist. Endless
// loops are asked to close at the first poll. An empty text when all is well, otherwise what was broken.
inline std::string RunAnyScript(const std::string& sText) {
  constexpr std::chrono::milliseconds TIME_LIMIT{20};
  std::string sBroken;
  int NumErrors = 0;
  CTrans* pEngine = nullptr;
  CTRANS_CALLBACKS Callbacks;
  Callbacks.OnError = [&](const CTRANS_ERROR& Error) {
    if (++NumErrors > 1) sBroken = "a second error: " + Error.sText;
    if (Error.LineNo < 1 || Error.ColumnNo < 1) sBroken = "an error without a place";
  };
  Callbacks.OnPoll = [&] { pEngine->RequestClose(); };
  CTrans Engine(sText, Callbacks);
  pEngine = &Engine;
  Engine.AddConstant("TEN", 10);
  const auto AddUp = [&Engine](const U64* paArgs, U32 NumArgs) {
    U64 Sum = NumArgs;
    for (U32 i = 0; i < NumArgs; ++i) {
      Sum += Engine.IsHeapPointer(paArgs[i]) ? Engine.TextAt(paArgs[i]).size() : paArgs[i];
    }
    return static_cast<U64>(static_cast<U32>(Sum));
  };
  Engine.AddApiFunction("__api__ int Util.Log (const char* sText);", AddUp);
  Engine.AddApiFunction("__api__ int Out (unsigned int Value);", AddUp);
  Engine.AddApiFunction("__api__ int Nest (void);", [&Engine](const U64*, U32) {
    return static_cast<U64>(static_cast<U32>(Engine.CallFunction("g")));
  });
  Engine.ParseGlobals();
  const auto Start = std::chrono::steady_clock::now();
  for (const char* const sName : {"OnProjectLoad", "main", "f", "g"}) {
    if (std::chrono::steady_clock::now() - Start > TIME_LIMIT) break;
    if (Engine.CallFunction(sName) == CTRANS_OK && Engine.HasError()) sBroken = "success in spite of an error";
  }
  return sBroken;
}
