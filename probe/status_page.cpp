#include "probe/status.h"
#include "probe/text.h"

namespace {

constexpr U32 NO_MASK = 0xFFFFFFFF;

std::string Escaped(std::string_view sText) {
  std::string sResult;
  for (const char c : sText) {
    switch (c) {
      case '<':
        sResult += "&lt;";
        break;
      case '>':
        sResult += "&gt;";
        break;
      case '&':
        sResult += "&amp;";
        break;
      case '"':
        sResult += "&quot;";
        break;
      default:
        sResult += c;
    }
  }
  return sResult;
}

std::string Hex(U32 Value) {
  return FormatText("0x%08X", Value);
}

// With thin blanks between groups of three digits.
std::string Grouped(U64 Value) {
  std::string sResult = std::to_string(Value);
  for (size_t Pos = sResult.size(); Pos > 3;) sResult.insert(Pos -= 3, "&#8239;");
  return sResult;
}

std::string SizeText(U32 NumBytes) {
  constexpr U32 KB = 1024;
  if (NumBytes % (KB * KB) == 0) return FormatText("%u MB", NumBytes / (KB * KB));
  return NumBytes % KB == 0 ? FormatText("%u KB", NumBytes / KB) : FormatText("%u bytes", NumBytes);
}

std::string Pair(const char* sName, const std::string& sHtml) {
  return sHtml.empty() ? "" : FormatText("<dt>%s</dt><dd>", sName) + sHtml + "</dd>";
}

std::string Card(const char* sTitle, const std::string& sHtml) {
  return FormatText("<section><h2>%s</h2>", sTitle) + sHtml + "</section>\n";
}

std::string Row(std::initializer_list<std::string> Cells) {
  std::string sResult = "<tr>";
  for (const std::string& sCell : Cells) sResult += "<td>" + sCell + "</td>";
  return sResult + "</tr>";
}

// "none" without rows.
std::string Table(const char* sHeads, const std::string& sRows) {
  if (sRows.empty()) return "<p>none</p>";
  std::string sResult = "<table><tr>";
  for (std::string_view sHead : SplitTrimmed(sHeads, ',')) sResult += "<th>" + std::string(sHead) + "</th>";
  return sResult + "</tr>" + sRows + "</table>";
}

std::string ProbeCard(const PROBE_STATUS& Status) {
  const std::string sSpeed = Status.SpeedKHz == VNODE_SPEED_AUTO       ? "automatic"
                             : Status.SpeedKHz == VNODE_SPEED_ADAPTIVE ? "adaptive"
                                                                       : Grouped(Status.SpeedKHz) + " kHz";
  std::string sPairs = Pair("Serial number", std::to_string(Status.SerialNo));
  sPairs += Pair("Interface", Status.sInterface) + Pair("Speed", sSpeed);
  if (Status.RTTAddr != INVALID_ADDR) sPairs += Pair("RTT control block", Hex(Status.RTTAddr));
  return Card("Probe", "<dl>" + sPairs + Pair("RTT searched in", Escaped(Status.sRTTSearchRanges)) + "</dl>");
}

std::string TargetCard(const PROBE_STATUS& Status) {
  const DEVICE_ROW& Device = Status.Device;
  std::string sPairs = Pair("Kind", Escaped(Status.Target.sKind));
  if (Device.pCore) {
    sPairs += Pair("Device", Escaped(Device.sName)) + Pair("Maker", Escaped(Device.sMaker));
    sPairs += Pair("Core", Device.pCore->sName);
    sPairs += Pair("Clock", Grouped(Device.ClockHz / 1'000'000) + " MHz");
  }
  for (const auto& Counter : Status.Target.Counters) {
    std::string sTitle = Counter.sName;
    sTitle[0] = static_cast<char>(std::toupper(static_cast<unsigned char>(sTitle[0])));
    sPairs += Pair(sTitle.c_str(), Grouped(Counter.Value));
  }
  return Card("Target", "<dl>" + sPairs + "</dl>");
}

std::string RegisterCard(const PROBE_STATUS& Status) {
  std::string sPairs;
  for (const auto& Register : Status.Target.Registers) sPairs += Pair(Register.sName.c_str(), Hex(Register.Value));
  return Card("Registers", sPairs.empty() ? "<p>shown while the core is halted</p>" : "<dl>" + sPairs + "</dl>");
}

std::string MemoryRow(const char* sKind, const sim::MEM_RANGE& Range) {
  return Range.Size ? Row({sKind, Hex(Range.Start), Hex(Range.Start + (Range.Size - 1)), SizeText(Range.Size)}) : "";
}

std::string MemoryCard(const DEVICE_ROW& Device) {
  std::string sRows = MemoryRow("Flash", Device.Flash);
  for (const sim::MEM_RANGE& RAM : Device.RAM) sRows += MemoryRow("RAM", RAM);
  return Card("Memory map", Table("Kind, From, To, Size", sRows));
}

std::string BreakpointCard(const PROBE_STATUS& Status) {
  std::string sRows;
  for (const auto& Item : Status.Breakpoints) {
    sRows += Row({Hex(Item.Addr), Item.sImplementation, std::to_string(Item.NumUses)});
  }
  return Card("Breakpoints", Table("Address, Held by, Uses", sRows));
}

std::string DataEventCard(const PROBE_STATUS& Status) {
  std::string sRows;
  for (const auto& Item : Status.DataEvents) {
    const std::string sValue =
        Item.Info.DataMask == NO_MASK
            ? "any"
            : Hex(Item.Info.Data) + (Item.Info.DataMask ? " but " + Hex(Item.Info.DataMask) : "");
    const std::string sWidth = Item.NumBytes ? SizeText(Item.NumBytes) : "any";
    sRows += Row({Hex(Item.Info.Addr), Hex(Item.Info.AddrMask), Item.sAccess, sWidth, sValue});
  }
  return Card("Data events", Table("Address, Address bits ignored, Access, Width, Value", sRows));
}

std::string ChannelCard(const PROBE_STATUS& Status) {
  std::string sRows;
  for (const std::string& sChannel : Status.Target.Channels) sRows += Row({Escaped(sChannel)});
  return Card("Open channels", Table("Channel", sRows));
}

std::string FaultCard(const PROBE_STATUS& Status) {
  std::string sRows;
  for (const std::string& sFault : Status.Faults) sRows += Row({"<code>" + Escaped(sFault) + "</code>"});
  return Card("Injected faults", Table("Command", sRows));
}

}  // namespace

std::string StatusPage(const PROBE_STATUS& Status) {
  std::string sPage =
      "<!DOCTYPE html>\n<html lang=\"en\"><head><meta charset=\"utf-8\"><title>V-Node</title>\n"
      "<meta name=\"viewport\" content=\"width=device-width\"><meta name=\"color-scheme\" content=\"light dark\">\n"
      "<link rel=\"stylesheet\" href=\"/page.css\"><script src=\"/refresh.js\" defer></script>\n"
      "<noscript><meta http-equiv=\"refresh\" content=\"2\"></noscript></head>\n<body><main>\n";
  std::string sClass = Status.sRunState;
  for (char& c : sClass) c = c == ' ' ? '-' : c;
  sPage += "<header><h1>V-Node</h1><span class=\"state " + Escaped(sClass) + "\">" + Escaped(Status.sRunState);
  sPage += Status.bBusy ? "</span><span class=\"busy\">busy</span></header>\n" : "</span></header>\n";
  sPage += "<div class=\"cards\">\n" + TargetCard(Status) + ProbeCard(Status) + MemoryCard(Status.Device);
  sPage += RegisterCard(Status) + BreakpointCard(Status) + DataEventCard(Status);
  sPage += ChannelCard(Status) + FaultCard(Status);
  return sPage + "</div>\n<footer><a href=\"/state.json\">state.json</a></footer>\n</main></body></html>\n";
}
