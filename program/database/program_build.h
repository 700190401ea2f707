#pragma once

#include <QString>
#include <functional>
#include <memory>

#include "base/types.h"

struct DATABASE;
struct READER_STATE;
namespace VCore {
struct CORE_STATE;
}

// How CProgramBuild::Read ended.
enum PROGRAM_BUILD_RESULT : I32 { PROGRAM_BUILT = 0, PROGRAM_REFUSED = -1, PROGRAM_BUILD_STOPPED = -2 };

// Asked while a program is built, on the thread that builds, with the share done in thousandths; false stops it.
using BUILD_PROGRESS = std::function<bool(U32 Permille)>;
inline constexpr U32 BUILD_PROGRESS_END = 1000;

// Gives the loaded program to the core model again, which has forgotten it when it was set up for another device.
void GiveProgramToCore();

// A program file that is read, and its tables built, beside the loaded program, which goes on answering everybody.
class CProgramBuild {
public:
  CProgramBuild();
  // Frees what was built and not taken over, or the program whose place it took.
  ~CProgramBuild();
  CProgramBuild(const CProgramBuild&) = delete;
  CProgramBuild& operator=(const CProgramBuild&) = delete;

  // Once, on any thread. The database's questions that this thread asks meanwhile, from the progress function too, are
  // about the new program. A program that was stopped or refused is empty.
  PROGRAM_BUILD_RESULT Read(const QString& sPath, const BUILD_PROGRESS& Progress = {});
  // Puts the program in place of the loaded one, in the database, the core model and VFile. After Read, on any thread.
  void TakeOver();

private:
  std::shared_ptr<READER_STATE> m_pReader;
  std::shared_ptr<VCore::CORE_STATE> m_pCore;
  std::unique_ptr<DATABASE> m_pDatabase;
};
