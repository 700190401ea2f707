#include "device/data_files/program_segments.h"

#include "base/msg_flags.h"
#include "program/elf/elf.h"

namespace VFile {

namespace {

constexpr U32 SEGMENT_TYPE_LOAD = 1;

void LogDifference(U32 Virt, U32 Phys, const MessageSink& Sink) {
  const U32 Difference = Virt > Phys ? Virt - Phys : Phys - Virt;
  if (Difference == 0 || !Sink) return;
  Sink(QStringLiteral("Virtual segment address differs from physical address by %1 bytes").arg(Difference, 0, 16),
       MSG_INFO | MSG_TO_STDOUT | MSG_TO_FILE);
}

}  // namespace

QMemBlocks ReadSegments(const ELF_FILE* pFile, const MessageSink& Sink) {
  QMemBlocks Blocks;
  const U32 NumSegments = pFile ? ELF_GetNumSegments(pFile) : 0;
  for (U32 i = 0; i < NumSegments; ++i) {
    const U8* pData = ELF_GetSegmentData(pFile, i);
    if (ELF_GetSegmentType(pFile, i) != SEGMENT_TYPE_LOAD || !pData) continue;
    U32 Phys = ELF_GetSegmentPAddr(pFile, i);
    U32 Virt = ELF_GetSegmentVAddr(pFile, i);
    U32 NumBytes = ELF_GetSegmentFileSize(pFile, i);
    LogDifference(Virt, Phys, Sink);
    // A linker may put the file's own headers in front of the first section.
    const U32 Skip = ELF_GetSegmentSectionOffset(pFile, i);
    if (Skip <= NumBytes) {
      pData += Skip;
      Phys += Skip;
      Virt += Skip;
      NumBytes -= Skip;
    }
    if (NumBytes == 0) continue;
    Blocks.append({Phys, NumBytes, Virt, QByteArray(reinterpret_cast<const char*>(pData), NumBytes), {}});
  }
  std::stable_sort(Blocks.begin(), Blocks.end(),
                   [](const CMemBlock& A, const CMemBlock& B) { return A.Addr < B.Addr; });
  return Blocks;
}

}  // namespace VFile
