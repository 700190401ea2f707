#include "probe/status.h"
#include "probe/text.h"

namespace {

std::string Quoted(std::string_view sText) {
  std::string sResult = "\"";
  for (const char c : sText) {
    if (c == '"' || c == '\\') {
      sResult += {'\\', c};
    } else if (static_cast<unsigned char>(c) < ' ') {
      sResult += FormatText("\\u%04x", static_cast<unsigned char>(c));
    } else {
      sResult += c;
    }
  }
  return sResult + '"';
}

// The members of an object or a list, each behind a comma but the first.
class CMembers {
public:
  CMembers& Raw(std::string_view sName, const std::string& sValue) {
    if (!m_sText.empty()) m_sText += ',';
    if (!sName.empty()) m_sText += Quoted(sName) + ':';
    m_sText += sValue;
    return *this;
  }
  CMembers& Text(std::string_view sName, std::string_view sValue) { return Raw(sName, Quoted(sValue)); }
  CMembers& Number(std::string_view sName, U64 Value) { return Raw(sName, std::to_string(Value)); }
  CMembers& Bool(std::string_view sName, bool bValue) { return Raw(sName, bValue ? "true" : "false"); }
  CMembers& Add(const CMembers& Item) { return Raw({}, Item.Object()); }
  std::string Object() const { return '{' + m_sText + '}'; }
  std::string List() const { return '[' + m_sText + ']'; }

private:
  std::string m_sText;
};

CMembers Memory(const char* sKind, const sim::MEM_RANGE& Range) {
  return CMembers().Text("kind", sKind).Number("address", Range.Start).Number("size", Range.Size);
}

std::string DeviceObject(const DEVICE_ROW& Device) {
  CMembers Memories;
  if (Device.Flash.Size) Memories.Add(Memory("flash", Device.Flash));
  for (const sim::MEM_RANGE& RAM : Device.RAM) {
    if (RAM.Size) Memories.Add(Memory("RAM", RAM));
  }
  CMembers Members;
  Members.Text("name", Device.sName).Text("maker", Device.sMaker);
  Members.Text("core", Device.pCore ? Device.pCore->sName : "");
  return Members.Number("clockHz", Device.ClockHz).Raw("memories", Memories.List()).Object();
}

std::string TargetObject(const PROBE_STATUS& Status) {
  CMembers Counters;
  for (const auto& Counter : Status.Target.Counters) Counters.Number(Counter.sName, Counter.Value);
  CMembers Registers;
  for (const auto& Register : Status.Target.Registers) Registers.Number(Register.sName, Register.Value);
  CMembers Members;
  Members.Text("kind", Status.Target.sKind).Text("state", Status.sRunState);
  return Members.Raw("counters", Counters.Object()).Raw("registers", Registers.Object()).Object();
}

std::string BreakpointList(const PROBE_STATUS& Status) {
  CMembers Items;
  for (const auto& Item : Status.Breakpoints) {
    CMembers Members;
    Members.Number("address", Item.Addr).Text("implementation", Item.sImplementation);
    Items.Add(Members.Number("uses", Item.NumUses));
  }
  return Items.List();
}

std::string DataEventList(const PROBE_STATUS& Status) {
  CMembers Items;
  for (const auto& Item : Status.DataEvents) {
    CMembers Members;
    Members.Number("address", Item.Info.Addr).Number("addressMask", Item.Info.AddrMask);
    Members.Number("data", Item.Info.Data).Number("dataMask", Item.Info.DataMask);
    Items.Add(Members.Text("access", Item.sAccess).Number("bytes", Item.NumBytes));
  }
  return Items.List();
}

}  // namespace

std::string StatusJson(const PROBE_STATUS& Status) {
  CMembers Probe;
  Probe.Bool("open", Status.bOpen).Bool("busy", Status.bBusy).Number("serialNumber", Status.SerialNo);
  Probe.Text("interface", Status.sInterface).Number("speedKHz", Status.SpeedKHz);
  CMembers RTT;
  if (Status.RTTAddr != INVALID_ADDR) RTT.Number("address", Status.RTTAddr);
  RTT.Text("searchRanges", Status.sRTTSearchRanges);
  CMembers Faults;
  for (const std::string& sFault : Status.Faults) Faults.Text({}, sFault);
  CMembers Channels;
  for (const std::string& sChannel : Status.Target.Channels) Channels.Text({}, sChannel);
  CMembers Root;
  Root.Raw("probe", Probe.Object()).Raw("device", DeviceObject(Status.Device)).Raw("target", TargetObject(Status));
  Root.Raw("breakpoints", BreakpointList(Status)).Raw("dataEvents", DataEventList(Status));
  return Root.Raw("channels", Channels.List()).Raw("rtt", RTT.Object()).Raw("faults", Faults.List()).Object() + '\n';
}
