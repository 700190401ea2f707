#pragma once
// What a table window remembers of its items by key: the last value, whether it changed lately, whether it has to be
// read. No widgets.

#include <QHash>

#include "base/types.h"

enum CHANGE_LEVELS : U8 {
  CHANGE_LEVEL_NONE = 0,  // not known
  CHANGE_LEVEL_1 = 1,     // changed lately, the more lately the lower
  CHANGE_LEVEL_2 = 2,
  CHANGE_LEVEL_3 = 3,
  CHANGE_LEVEL_UNCHANGED = 4,
};

enum ITEM_REFRESH_STATES : U8 {
  ITEM_STALE = 0,      // has to be read
  ITEM_READ = 1,       // its value is there
  ITEM_REQUESTED = 2,  // a read was asked for
};

class CItemStates {
public:
  using KEY = I64;

  void Clear();

  // --- Values. Negative ones are none and change nothing.
  void TakeValue(KEY Key, I64 Value);
  CHANGE_LEVELS GetLevel(KEY Key) const { return static_cast<CHANGE_LEVELS>(m_Levels.value(Key)); }
  bool IsChanged(KEY Key) const { return GetLevel(Key) >= CHANGE_LEVEL_1 && GetLevel(Key) <= CHANGE_LEVEL_3; }
  bool HasChanges() const;
  U32 GetValue(KEY Key) const { return m_Values.value(Key); }
  // What was remembered of an item that has another key now.
  void Restore(KEY Key, U32 Value, CHANGE_LEVELS Level);
  // A changed item fades by one level; it has done so when this returns.
  void Age(KEY Key);

  // --- Refresh
  ITEM_REFRESH_STATES GetRefreshState(KEY Key) const { return static_cast<ITEM_REFRESH_STATES>(m_Refresh.value(Key)); }
  void SetRefreshState(KEY Key, ITEM_REFRESH_STATES State);
  // All items have to be read.
  void Invalidate() { m_Refresh.clear(); }
  // Items whose answer did not come are asked for again.
  void ForgetRequests();

private:
  QHash<KEY, U8> m_Levels;
  QHash<KEY, U32> m_Values;
  QHash<KEY, U8> m_Refresh;
};
