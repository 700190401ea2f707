#pragma once

#include <string>
#include <string_view>

#include "probe/session.h"

// Executes one probe command. The reply is empty, or the reason why the command failed. The session is locked.
//
//   device=NAME                         selects the device
//   ScriptFile=PATH                     executes a probe script
//   HideDeviceSelection=0|1
//   SetRTTAddr ADDR                     address of the RTT control block
//   SetRTTSearchRanges ADDR SIZE[, ...]
//   ReadIntoTraceCache ADDR SIZE        program memory for the trace decoder
//   DeviceListFile=PATH                 adds the devices of a file to the device list
//   sim.power-cycle                     the next connect finds a board whose memories are erased
//   and the commands of CFaults
std::string ExecuteCommand(CSession& Session, std::string_view sCommand);
