#include "ui/table/item_states.h"

#include <algorithm>

void CItemStates::Clear() {
  m_Levels.clear();
  m_Values.clear();
  m_Refresh.clear();
}

bool CItemStates::HasChanges() const {
  return std::any_of(m_Levels.cbegin(), m_Levels.cend(), [](U8 Level) { return Level < CHANGE_LEVEL_UNCHANGED; });
}

void CItemStates::TakeValue(KEY Key, I64 Value) {
  if (Value < 0) return;
  const U32 New = static_cast<U32>(Value);
  const auto Known = m_Values.find(Key);
  if (Known == m_Values.end()) {
    m_Values.insert(Key, New);
    m_Levels.insert(Key, CHANGE_LEVEL_UNCHANGED);
  } else if (GetLevel(Key) == CHANGE_LEVEL_NONE) {
    m_Levels.insert(Key, CHANGE_LEVEL_UNCHANGED);
  } else if (*Known != New) {
    *Known = New;
    m_Levels.insert(Key, CHANGE_LEVEL_1);
  }
}

void CItemStates::Restore(KEY Key, U32 Value, CHANGE_LEVELS Level) {
  m_Values.insert(Key, Value);
  m_Levels.insert(Key, Level);
}

void CItemStates::Age(KEY Key) {
  if (IsChanged(Key)) ++m_Levels[Key];
}

void CItemStates::SetRefreshState(KEY Key, ITEM_REFRESH_STATES State) {
  if (State == ITEM_STALE) {
    m_Refresh.remove(Key);
  } else {
    m_Refresh.insert(Key, State);
  }
}

void CItemStates::ForgetRequests() {
  m_Refresh.removeIf([](const auto& Entry) { return Entry.value() == ITEM_REQUESTED; });
}
