#pragma once

#include <functional>

#include <QByteArray>
#include <QString>

#include "base/types.h"
#include "rtos/plugin_api.h"

// The list windows of a plug-in, as its table services need them. A table-changing command and its up to three values
// go to Change, which does nothing outside the main thread.
class IPluginLists {
public:
  virtual ~IPluginLists() = default;
  virtual U32 GetHandle(U32 ListIndex) = 0;
  // The result of the command, -1 for a handle that names no window.
  virtual I32 Change(U32 hList, const char* sCommand, U32 First, U32 Second, const QString& sText) = 0;
  virtual I32 Clear(U32 hList) = 0;
  virtual I32 NumColumns(U32 hList) = 0;
  virtual I32 NumRows(U32 hList) = 0;
  virtual I32 FindColumn(U32 hList, const QString& sName) = 0;
  // False for a cell that does not exist.
  virtual bool GetText(U32 hList, U32 Row, U32 Col, QString* psText) = 0;
};

// What plug-ins ask of other parts of the debugger; a function that nobody has plugged in can't answer.
struct PLUGIN_SERVICES {
  // Bytes of an expression's value; a negative result is the error that the plug-in gets.
  std::function<I32(const QString& sExpression, QByteArray* pValue)> Evaluate;
  IPluginLists* pLists = nullptr;
};

// The table that every plug-in gets.
const PLUGIN_HOST_API& PluginHostAPI();
void SetPluginServices(const PLUGIN_SERVICES& Services);
