#pragma once

#include <QByteArray>
#include <QList>
#include <QString>
#include <vector>

#include "core/vcore.h"

// What the core model keeps of a program file: its image, its labels and its mapping symbols, copied once, so that no
// question reaches the file afterwards. No lock.
class CProgramView {
public:
  struct FUNC {
    U32 Addr = 0;  // aligned
    U32 Size = 0;  // bytes
    QString sName;
  };

  void Clear();
  // Reads segments and symbols; InstAlign is a power of two.
  void Load(ELF_FILE* pFile, U32 InstAlign);
  // Reads the mapping symbols; the number of regions.
  int LoadRegions(ELF_FILE* pFile, U32 InstAlign);

  // The image bytes at Addr if one segment holds all of them, else null.
  const U8* Image(U32 Addr, U32 NumBytes) const;
  bool Read(U32 Addr, U32 NumBytes, void* pData) const;
  // Lowest segment start above Addr, INVALID_ADDR if there is none.
  U32 NextSegmentStart(U32 Addr) const;

  const std::vector<FUNC>& Funcs() const { return aFunc; }
  const std::vector<VCORE_REGION>& Regions() const { return aRegion; }
  int RegionAt(U32 Addr) const;
  // Address behind the region: the next region's start or the end of the symbols.
  U32 RegionEnd(int Index) const;
  bool IsData(U32 Addr) const;
  // Lowest region start above Addr, INVALID_ADDR if there is none.
  U32 NextRegionStart(U32 Addr) const;
  // The label of an address, with the distance from its start.
  bool FindLabel(U32 Addr, U32 InstAlign, QString& sName, U32& Offset) const;

private:
  // A segment, or a piece of one whose parts are relocated in different ways.
  struct SEGMENT {
    U32 Addr;
    U32 FileAddr;  // before relocation
    QByteArray Data;
    std::vector<I32> aRegionOfChunk;  // position of the region at the start of each chunk
  };
  struct SYMBOL {
    U32 Addr;
    bool bObject;
    QString sName;
  };
  void LoadSegments(ELF_FILE* pFile);
  void AddPieces(U32 FileAddr, const QByteArray& Data);
  void LoadSymbols(ELF_FILE* pFile, U32 InstAlign);
  // What a mapping symbol says of code goes with the code when only a part of it is moved.
  void AddRegionsOfPieces();
  void IndexRegions();
  const SEGMENT* SegmentAt(U32 Addr) const;

  std::vector<SEGMENT> aSegment;  // by address
  std::vector<FUNC> aFunc;        // by address
  std::vector<SYMBOL> aSymbol;    // by address, objects first
  std::vector<VCORE_REGION> aRegion;
  U32 SymbolsEnd = 0;
};
