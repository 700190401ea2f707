#include "peripherals/memory_map.h"

#include <gtest/gtest.h>

#include <QTemporaryDir>

#include "shell/log/console_print.h"
#include "shell/log/log.h"
#include "tests/common/files.h"

namespace {

// "start+size access name/alias" of each segment.
std::string Segments(const CMemoryMap& Map) {
  QStringList Texts;
  for (U32 i = 0; i < Map.Count(REGION_SEGMENT); ++i) {
    const MEMORY_REGION& Region = *Map.GetRegion(REGION_SEGMENT, i);
    Texts << QString::asprintf("%llx+%llx %u ", Region.Addr, Region.Size, Region.Access) + Map.GetName(Region) +
                 QLatin1Char('/') + Map.GetAliasName(Region);
  }
  return Texts.join(QLatin1String("; ")).toStdString();
}

std::string TakeMessages() {
  QStringList Texts;
  while (DrainConsole([&](const CONSOLE_MSG& Message) { Texts << QString::fromUtf8(Message.Text); }) != 0) {
  }
  return Texts.join(QLatin1Char('|')).toStdString();
}

TEST(MemoryMap, FilesOfSegments) {
  SetConsoleExists(true);
  TakeMessages();
  const std::tuple<const char*, const char*, const char*> aCases[] = {
      {R"(<Map><MemorySegment name="Flash" start="0x08000000" size="1024" access="ReadOnly"/>
          <MyMemorySegmentX NAME="RAM" Start="0x20000000" SIZE="0x100" access="read/write"/>
          <Other start="1" size="1" access="" name=""/>
          <MemorySegment name="Port" start="010" size="4" access="WriteOnly"/>
          <MemorySegment name="Odd" start="16" size="4" access="sometimes"/></Map>)",
       "8+4 4 Port/; 10+4 0 Odd/; 8000000+400 1 Flash/; 20000000+100 2 RAM/", ""},
      {R"(<Map><MemorySegment name="A" beginn="0" size="1" access="ReadOnly"/>
          <MemorySegment name="B" start="0" access="ReadOnly"/><MemorySegment name="C" start="0" size="1"/>
          <MemorySegment start="0" size="1" access="ReadOnly"/><MemorySegment name="E" start="x" size="1" access=""/>
          <MemorySegment name="F" start="0" size="0" access=""/>
          <MemorySegment name="H" start="0xFFFFFFFFFFFFFFFE" size="2" access=""/>
          <MemorySegment name="G" start="16" size="1" access="ReadOnly"/></Map>)",
       "10+1 1 G/",
       "'start' attribute expected but missing.|'size' attribute expected but missing.|"
       "'access' attribute expected but missing.|'name' attribute expected but missing.|'x' is no number."},
      // Larger first at the same address; one place has one segment and one alias.
      {R"(<Map><MemorySegment name="A" start="0" size="8" access=""/><MemorySegment name="B" start="0" size="16" access=""/>
          <MemorySegment name="C" start="0" size="8" access=""/><MemorySegment name="D" start="0" size="8" access=""/></Map>)",
       "0+10 0 B/; 0+8 0 C/A", "discarding further region aliases"},
      {R"(<Map><MemorySegment name="A" start="0" size="8" access=""/><MemorySegment )", "0+8 0 A/", ", line 1: "},
      {"<Map><In><MemorySegment name=\"A\" start=\"0\" size=\"8\" access=\"\"/></In></Map>", "", ""},
      {"no XML", "", ", line 1: "},
  };
  QTemporaryDir Dir;
  for (const auto& [sXML, sSegments, sMessage] : aCases) {
    CMemoryMap Map;
    EXPECT_EQ(Map.LoadMapFile(WriteBytes(Dir.filePath(QStringLiteral("map.xml")), sXML)), 0);
    EXPECT_EQ(Segments(Map), sSegments);
    std::string sMessages = TakeMessages();
    const std::string sBegin = "Cannot parse segment description. ";
    for (size_t At; (At = sMessages.find(sBegin)) != std::string::npos;) sMessages.erase(At, sBegin.size());
    EXPECT_EQ(*sMessage == 0, sMessages.empty()) << sMessages;
    EXPECT_NE(sMessages.find(sMessage), std::string::npos) << sMessages;
  }
  EXPECT_EQ(CMemoryMap().LoadMapFile(Dir.filePath(QStringLiteral("none.xml"))), -1);
  SetConsoleExists(false);
}

}  // namespace
