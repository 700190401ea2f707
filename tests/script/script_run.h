#pragma once
// One script with a few native functions, and what they were told.

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "script/ctrans.h"

class CScriptRun {
public:
  explicit CScriptRun(const std::string& sText)
      : m_Engine(sText, {[this](const CTRANS_ERROR& Error) { Errors.push_back(Error); }, [this] { OnPoll(); }}) {
    m_Engine.AddConstant("TEN", 10);
    m_Engine.AddConstant("BIG", I64{1} << 32);
    Add("__api__ int Out (unsigned int Value);", [this](const U64* paArgs, U32) {
      Out.push_back(static_cast<I64>(paArgs[0]));
      return U64{0};
    });
    Add("__api__ int Log (const char* sText);", [this](const U64* paArgs, U32) {
      if (!m_Engine.IsHeapPointer(paArgs[0])) return U64{0xFFFFFFFF};
      Log.emplace_back(m_Engine.TextAt(paArgs[0]));
      return U64{0};
    });
    Add("__api__ int Minus (void);", [](const U64*, U32) { return U64{0xFFFFFFFF}; });
    Add("__api__ int Nine (int a, int b, int c, int d, int e, int f, int g, int h, int i);",
        [](const U64*, U32) { return U64{77}; });
    Add("__api__ int Turn (void);", [this](const U64*, U32) {
      if (OnTurn) OnTurn(m_Engine);
      return U64{0};
    });
    LoadResult = m_Engine.ParseGlobals();
  }

  int Call(const char* sName = "main") { return m_Engine.CallFunction(sName); }
  std::string ErrorText() const { return Errors.empty() ? "" : Errors.front().sText; }

  std::vector<I64> Out;
  std::vector<std::string> Log;
  std::vector<CTRANS_ERROR> Errors;
  int LoadResult = 0;
  std::function<void(CTrans& Engine)> OnTurn;       // called by Turn()
  std::function<void(CTrans& Engine)> OnEveryPoll;  // called when the engine polls

private:
  void Add(const char* sPrototype, CTRANS_API_FUNC Func) {
    EXPECT_EQ(0, m_Engine.AddApiFunction(sPrototype, std::move(Func))) << sPrototype;
  }
  void OnPoll() {
    if (OnEveryPoll) OnEveryPoll(m_Engine);
  }

  CTrans m_Engine;
};
