#include "peripherals/memory_map.h"

#include <algorithm>

#include <QFile>
#include <QXmlStreamReader>

#include "shell/log/log.h"

namespace {

void Warn(const QString& sText) {
  LogMsg(sText, MSG_WARNING | MSG_TO_ALL);
}

// Attribute names are in any case. False, with a message, when the element has none of that name.
bool GetAttribute(const QXmlStreamReader& Reader, const char* sName, QString* psValue) {
  for (const QXmlStreamAttribute& Attribute : Reader.attributes()) {
    if (Attribute.name().compare(QLatin1String(sName), Qt::CaseInsensitive) != 0) continue;
    *psValue = Attribute.value().trimmed().toString();
    return true;
  }
  Warn(QStringLiteral("Cannot parse segment description. '%1' attribute expected but missing.")
           .arg(QLatin1String(sName)));
  return false;
}

U32 AccessOf(const QString& sText) {
  const std::pair<const char*, U32> aAccess[] = {{"ReadOnly", REGION_ACCESS_READ_ONLY},
                                                 {"Read/Write", REGION_ACCESS_READ_WRITE},
                                                 {"WriteOnly", REGION_ACCESS_WRITE_ONLY}};
  for (const auto& [sName, Access] : aAccess) {
    if (sText.compare(QLatin1String(sName), Qt::CaseInsensitive) == 0) return Access;
  }
  return REGION_ACCESS_UNKNOWN;
}

bool ReadSegment(const QXmlStreamReader& Reader, MEMORY_REGION* pRegion, QString* psName) {
  QString sStart;
  QString sSize;
  QString sAccess;
  if (!GetAttribute(Reader, "start", &sStart) || !GetAttribute(Reader, "size", &sSize) ||
      !GetAttribute(Reader, "access", &sAccess) || !GetAttribute(Reader, "name", psName)) {
    return false;
  }
  bool bStart = false;
  bool bSize = false;
  pRegion->Addr = pRegion->VirtAddr = sStart.toULongLong(&bStart, 0);
  pRegion->Size = sSize.toULongLong(&bSize, 0);
  pRegion->Access = AccessOf(sAccess);
  if (bStart && bSize) return true;
  Warn(QStringLiteral("Cannot parse segment description. '%1' is no number.").arg(bStart ? sSize : sStart));
  return false;
}

}  // namespace

CMemoryMap& CMemoryMap::Get() {
  static CMemoryMap Map;
  return Map;
}

int CMemoryMap::AddRegion(MEMORY_REGION Region, const QString& sName) {
  if (Region.Size == 0 || Region.Size > ~Region.Addr) return -1;
  if (Region.Type >= NUM_REGION_TYPES) {
    Warn(QStringLiteral("Cannot add region of undefined type to the memory map"));
    return -1;
  }
  if (Region.Type == REGION_SEGMENT) {
    Region.VirtAddr = Region.Addr;
    Region.Index = static_cast<U32>(m_Names.size());
    m_Names.append(sName);
  }
  m_aRegions[Region.Type].push_back(Region);
  return 0;
}

int CMemoryMap::LoadMapFile(const QString& sPath) {
  QFile File(sPath);
  if (!File.open(QIODevice::ReadOnly)) return -1;
  QXmlStreamReader Reader(&File);
  int Depth = 0;  // of the element that was read last; the root has 1
  while (!Reader.atEnd()) {
    const auto Token = Reader.readNext();
    if (Token == QXmlStreamReader::EndElement) --Depth;
    if (Token != QXmlStreamReader::StartElement || ++Depth != 2) continue;
    MEMORY_REGION Region;
    QString sName;
    if (Reader.name().contains(QLatin1String("MemorySegment")) && ReadSegment(Reader, &Region, &sName)) {
      AddRegion(Region, sName);
    }
  }
  if (Reader.hasError()) {
    Warn(QStringLiteral("\"%1\", line %2: %3").arg(sPath).arg(Reader.lineNumber()).arg(Reader.errorString()));
  }
  Tidy(REGION_SEGMENT);
  return 0;
}

void CMemoryMap::Tidy(REGION_TYPES Type) {
  std::stable_sort(m_aRegions[Type].begin(), m_aRegions[Type].end(),
                   [](const auto& A, const auto& B) { return A.Addr != B.Addr ? A.Addr < B.Addr : A.Size > B.Size; });
  if (Type == REGION_SEGMENT) JoinAliases();
  UpdateSummary();
}

// Of two segments at the same place the later one stays, with the first one's name as its alias.
void CMemoryMap::JoinAliases() {
  std::vector<MEMORY_REGION> aJoined;
  for (MEMORY_REGION Region : m_aRegions[REGION_SEGMENT]) {
    if (!aJoined.empty() && aJoined.back().Addr == Region.Addr && aJoined.back().Size == Region.Size) {
      if (aJoined.back().AliasIndex != MEMORY_REGION::NO_ALIAS) {
        Warn(QStringLiteral("discarding further region aliases"));
        continue;
      }
      Region.AliasIndex = aJoined.back().Index;
      aJoined.pop_back();
    }
    aJoined.push_back(Region);
  }
  m_aRegions[REGION_SEGMENT] = std::move(aJoined);
}

void CMemoryMap::UpdateSummary() {
  m_Summary = {};
  for (const auto& aRegions : m_aRegions) {
    for (const MEMORY_REGION& Region : aRegions) {
      m_Summary.LowestStart = std::min(m_Summary.LowestStart, Region.Addr);
      m_Summary.HighestStart = std::max(m_Summary.HighestStart, Region.Addr);
      m_Summary.HighestEnd = std::max(m_Summary.HighestEnd, Region.Addr + Region.Size);
      ++m_Summary.NumRegions;
    }
  }
}

void CMemoryMap::Clear() {
  for (auto& aRegions : m_aRegions) aRegions.clear();
  m_Names.clear();
  m_Summary = {};
}

const MEMORY_REGION* CMemoryMap::GetRegion(REGION_TYPES Type, U32 Index) const {
  return Index < Count(Type) ? &m_aRegions[Type][Index] : nullptr;
}

QString CMemoryMap::GetAliasName(const MEMORY_REGION& Segment) const {
  return Segment.AliasIndex == MEMORY_REGION::NO_ALIAS ? QString() : m_Names.value(Segment.AliasIndex);
}
