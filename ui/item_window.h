#pragma once
// What a window can do beyond CWindow, for the commands that reach windows by name.

#include <QString>

#include "base/types.h"

// A window that holds items which the user adds by name, such as watched expressions.
class IItemWindow {
public:
  virtual ~IItemWindow() = default;
  virtual void AddItem(const QString& sSymbol) = 0;
  virtual void RemoveItem(const QString& sSymbol) = 0;
};

// A window that can be sent to an address of the target.
class IAddressWindow {
public:
  virtual ~IAddressWindow() = default;
  virtual void ShowAddress(U32 Addr) = 0;
};
