#pragma once
// The core model's state and what its sources share. Not for other folders.

#include <atomic>
#include <memory>
#include <mutex>
#include <shared_mutex>

#include "core/image_store.h"
#include "core/inst_cache.h"
#include "core/program_view.h"
#include "core/text_cache.h"
#include "core/vcore.h"

namespace VCore {

using API_PTR = std::shared_ptr<const VCORE_API>;

struct CORE_STATE {
  std::shared_mutex Mutex;  // guards everything below; never held while a callback runs
  API_PTR pAPI;             // null while not initialised
  VCORE_CPU Cpu;
  VCORE_INFO Info;
  CInstCache Cache;
  CProgramView Program;
  ELF_FILE* pFile = nullptr;
  CImageStore Image;
  CTextCache Texts;
  QHash<U64, U32> InstCounts;
  U32 Anchor = INVALID_ADDR;
  U32 Generation = 1;  // counts what makes the decoders of all threads start anew
};

CORE_STATE& State();

// What a query needs to know throughout its run.
struct SNAPSHOT {
  API_PTR pAPI;  // null while not initialised
  VCORE_CPU Cpu;
  VCORE_INFO Info;
  U32 Generation = 0;
};

SNAPSHOT TakeSnapshot();
void LogError(const SNAPSHOT& Core, const QString& sText);

// A thread has a decoder for each, so that a question about an instruction between two rows of a listing does not end
// the listing's IT block.
enum DECODER_USE { DECODER_TEXT, DECODER_FLAGS, NUM_DECODER_USES };

// A thread's decoder, brought to an address: the mode set, the IT block left unless the address is the expected next.
DISASM_CONTEXT& PrepareDecoder(const SNAPSHOT& Core, DECODER_USE Use, U32 Addr, U32 Mode);
// Tells the thread's decoder where the next instruction is expected.
void SetNextDecodeAddr(DECODER_USE Use, U32 Addr);

// Four bytes at the address, or two, from pfGetMemData; the number of bytes read, 0 on failure.
U32 ReadInstBytes(const SNAPSHOT& Core, U32 Addr, U8 (&aByte)[4]);
// GetExecMode and GetInstSize within a query.
U32 ExecModeAt(const SNAPSHOT& Core, U32 Addr);
U32 InstSizeAt(const SNAPSHOT& Core, U32 Addr);
// Fills the members of the callback table that were left empty with the core model's own answers.
void FillOwnAnswers(VCORE_API& API);

}  // namespace VCore
