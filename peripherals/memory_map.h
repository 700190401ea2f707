#pragma once

#include <array>
#include <vector>

#include <QStringList>

#include "base/types.h"

// Layers of the map, each with an array of its own.
enum REGION_TYPES : U8 { REGION_SEGMENT = 0, REGION_SECTION = 1, REGION_SYMBOL = 2, NUM_REGION_TYPES = 3 };

enum REGION_ACCESS : U32 {
  REGION_ACCESS_UNKNOWN = 0,
  REGION_ACCESS_READ_ONLY = 1,
  REGION_ACCESS_READ_WRITE = 2,
  REGION_ACCESS_WRITE_ONLY = 4,
};

struct MEMORY_REGION {
  static constexpr U32 NO_ALIAS = 0xFFFFFFFFu;

  U64 Addr = 0;
  U64 Size = 0;               // bytes, above 0
  U64 VirtAddr = 0;           // equal to Addr in a segment
  U32 Index = 0;              // of a segment's name; else the number of the section or symbol
  U32 AliasIndex = NO_ALIAS;  // name of a second segment at the same place
  U32 Access = REGION_ACCESS_UNKNOWN;
  U8 Type = REGION_SEGMENT;
};

// What lies where in the target: the segments of map files and commands. Main thread.
class CMemoryMap {
public:
  struct SUMMARY {
    U64 LowestStart = ~U64{0};
    U64 HighestStart = 0;
    U64 HighestEnd = 0;
    U32 NumRegions = 0;
  };

  static CMemoryMap& Get();

  // Copies the region into the array of its type; a segment gets its name's Index. -1 for a size of 0 or
  // beyond the last address, and, with a message, for a type that does not exist. Tidy makes the additions visible.
  int AddRegion(MEMORY_REGION Region, const QString& sName = QString());
  // Adds the segments of an XML file whose root holds elements named "...MemorySegment...", each with the attributes
  // start, size, access and name. An element that lacks one is skipped with a message. -1 when the file can't be read.
  int LoadMapFile(const QString& sPath);
  // Sorts a layer by address, the larger of two at the same one first, joins segments at the same place and
  // renews the summary.
  void Tidy(REGION_TYPES Type);
  void Clear();

  U32 Count(REGION_TYPES Type) const { return static_cast<U32>(m_aRegions[Type].size()); }
  // Null past the end.
  const MEMORY_REGION* GetRegion(REGION_TYPES Type, U32 Index) const;
  // Name of a segment, empty for one without.
  QString GetName(const MEMORY_REGION& Segment) const { return m_Names.value(Segment.Index); }
  QString GetAliasName(const MEMORY_REGION& Segment) const;
  const SUMMARY& GetSummary() const { return m_Summary; }

private:
  void JoinAliases();
  void UpdateSummary();

  std::array<std::vector<MEMORY_REGION>, NUM_REGION_TYPES> m_aRegions;
  QStringList m_Names;  // of segments
  SUMMARY m_Summary;
};
