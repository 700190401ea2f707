#pragma once

#include <QStringList>

class CDeviceConfig;

// The commands by which a project stores a connection: device, host and target interface, speed, and, if there is
// something to say, the place on the scan chain and the byte order.
QStringList VNodeCommands(const CDeviceConfig& Config);
