#include "probe/sim/dwt.h"

#include <algorithm>
#include <bit>

namespace sim {

namespace {

enum DWT_REG : U32 { CTRL = 0x00, CYCCNT = 0x04, COMP0 = 0x20 };
enum COMPARATOR_REG : U32 { COMP = 0x0, MASK = 0x4, FUNCTION = 0x8, COMPARATOR_SIZE = 0x10 };

inline constexpr U32 CTRL_CYCCNTENA = 1u << 0;
inline constexpr U32 CTRL_NOPRFCNT = 1u << 24;
inline constexpr U32 CTRL_NOCYCCNT = 1u << 25;
inline constexpr U32 CTRL_NOEXTTRIG = 1u << 26;
inline constexpr U32 CTRL_NOTRCPKT = 1u << 27;
inline constexpr U32 CTRL_NUMCOMP_SHIFT = 28;

inline constexpr U32 MASK_BITS = 0x1F;
inline constexpr U32 MAX_MASK = 31;

// What a comparator does with a match: stop at reads is 5, at writes 6, at both 7.
inline constexpr U32 FUNCTION_MASK = 0xF;
inline constexpr U32 FUNCTION_STOP = 4;
inline constexpr U32 FUNCTION_ON_READ = 1;
inline constexpr U32 FUNCTION_ON_WRITE = 2;
inline constexpr U32 FUNCTION_DATAVMATCH = 1u << 8;
inline constexpr U32 FUNCTION_LNK1ENA = 1u << 9;
inline constexpr U32 FUNCTION_SIZE_SHIFT = 10;  // binary logarithm of the value's bytes
inline constexpr U32 FUNCTION_ADDR0_SHIFT = 12;
inline constexpr U32 FUNCTION_ADDR1_SHIFT = 16;
inline constexpr U32 FUNCTION_VALUE_MASK =
    FUNCTION_DATAVMATCH | 3u << FUNCTION_SIZE_SHIFT | 0xFu << FUNCTION_ADDR0_SHIFT | 0xFu << FUNCTION_ADDR1_SHIFT;
inline constexpr U32 FUNCTION_MATCHED = 1u << 24;

inline constexpr U32 VALUE_COMPARATOR = 1;
inline constexpr U32 ALL_BITS = 0xFFFFFFFF;

bool HasValue(const DATA_WATCH& Watch) {
  return Watch.DataMask != ALL_BITS;
}

U32 LowBits(U32 Num) {
  return Num >= 32 ? ALL_BITS : (1u << Num) - 1;
}

U32 FunctionOf(const DATA_WATCH& Watch) {
  if (!Watch.bOnRead && !Watch.bOnWrite) return 0;
  return FUNCTION_STOP | (Watch.bOnRead ? FUNCTION_ON_READ : 0) | (Watch.bOnWrite ? FUNCTION_ON_WRITE : 0);
}

// The value as all lanes of the bus would have it.
U32 Replicated(U32 Value, U32 NumBytes) {
  return NumBytes == 1 ? (Value & 0xFF) * 0x01010101u : NumBytes == 2 ? (Value & 0xFFFF) * 0x00010001u : Value;
}

// Width of the narrowest value that has all bits that are compared.
U32 NumValueBytes(const DATA_WATCH& Watch) {
  const U32 Width = static_cast<U32>(std::bit_width(~Watch.DataMask));
  return Width <= 8 ? 1 : Width <= 16 ? 2 : 4;
}

bool IsAddrMatched(const DATA_WATCH& Watch, U32 Addr, U32 NumBytes) {
  for (U32 Byte = 0; Byte < NumBytes; Byte++) {
    if (((Addr + Byte) & ~Watch.AddrMask) == (Watch.Addr & ~Watch.AddrMask)) return true;
  }
  return false;
}

// Whether an item of ItemBytes in an accessed value equals the one looked for; with 0 the whole under a mask.
bool IsValueMatched(const DATA_WATCH& Watch, U32 ItemBytes, U32 NumBytes, U32 Value) {
  if (!ItemBytes) return (Value & ~Watch.DataMask) == (Watch.Data & ~Watch.DataMask);
  for (U32 Byte = 0; Byte + ItemBytes <= NumBytes; Byte += ItemBytes) {
    if (!((Value >> (8 * Byte) ^ Watch.Data) & LowBits(8 * ItemBytes))) return true;
  }
  return false;
}

}  // namespace

void CDwt::Create(U32 NumComparators, bool bV7) {
  m_Items.assign(NumComparators, {});
  m_bV7 = bV7;
}

void CDwt::SetEnabled(bool bEnabled, U64 Now) {
  m_CounterHeld = Counter(Now);
  m_CounterStart = Now - m_CounterHeld;
  m_bEnabled = bEnabled;
  Update();
}

U32 CDwt::Counter(U64 Now) const {
  return m_bCounting && m_bEnabled ? static_cast<U32>(Now - m_CounterStart) : m_CounterHeld;
}

U32 CDwt::Read(U32 Offset, U64 Now) {
  const U32 NumComp = static_cast<U32>(m_Items.size()) << CTRL_NUMCOMP_SHIFT;
  if (Offset == CTRL) {
    if (!m_bV7) return NumComp;
    return NumComp | CTRL_NOTRCPKT | CTRL_NOEXTTRIG | CTRL_NOPRFCNT | (m_bCounting ? CTRL_CYCCNTENA : 0);
  }
  if (Offset == CYCCNT) return m_bV7 ? Counter(Now) : 0;
  return ReadComparator(Offset - COMP0);
}

void CDwt::Write(U32 Offset, U32 Value, U64 Now) {
  if (!m_bEnabled) return;
  if (Offset == CTRL && m_bV7) {
    m_CounterHeld = Counter(Now);
    m_bCounting = Value & CTRL_CYCCNTENA;
    m_CounterStart = Now - m_CounterHeld;
  } else if (Offset == CYCCNT && m_bV7) {
    m_CounterHeld = Value;
    m_CounterStart = Now - Value;
  } else {
    WriteComparator(Offset - COMP0, Value);
  }
}

U32 CDwt::ReadComparator(U32 Offset) {
  if (Offset / COMPARATOR_SIZE >= m_Items.size()) return 0;
  DWT_COMPARATOR& Item = m_Items[Offset / COMPARATOR_SIZE];
  switch (Offset % COMPARATOR_SIZE) {
    case COMP:
      return Item.Comp;
    case MASK:
      return Item.Mask;
    case FUNCTION: {
      const U32 Value = Item.Function;
      Item.Function &= ~FUNCTION_MATCHED;
      return Value | (m_bV7 && Offset / COMPARATOR_SIZE == VALUE_COMPARATOR ? FUNCTION_LNK1ENA : 0);
    }
    default:
      return 0;
  }
}

void CDwt::WriteComparator(U32 Offset, U32 Value) {
  const U32 Index = Offset / COMPARATOR_SIZE;
  if (Index >= m_Items.size()) return;
  DWT_COMPARATOR& Item = m_Items[Index];
  switch (Offset % COMPARATOR_SIZE) {
    case COMP:
      Item.Comp = Value;
      break;
    case MASK:
      Item.Mask = Value & MASK_BITS;
      break;
    case FUNCTION:
      Item.Function =
          Value & (m_bV7 && Index == VALUE_COMPARATOR ? FUNCTION_VALUE_MASK | FUNCTION_MASK : FUNCTION_MASK);
      // Stops at data accesses are all that there is.
      if ((Value & FUNCTION_MASK) <= FUNCTION_STOP || (Value & FUNCTION_MASK) > (FUNCTION_STOP | 3)) Item.Function = 0;
      break;
    default:
      return;
  }
  Item.bByWatch = false;
  Update();
}

int CDwt::FindFreeForAddr() const {
  // Comparator 1 comes last: a value may need it later.
  for (U32 Index = 0; Index < m_Items.size(); Index++) {
    if (IsFree(Index) && !(m_bV7 && Index == VALUE_COMPARATOR)) return static_cast<int>(Index);
  }
  return m_bV7 && IsFree(VALUE_COMPARATOR) ? static_cast<int>(VALUE_COMPARATOR) : WATCH_NO_FREE_UNIT;
}

void CDwt::Program(U32 Index, const DATA_WATCH& Watch) {
  DWT_COMPARATOR& Item = m_Items[Index];
  Item.Mask = std::min<U32>(static_cast<U32>(std::bit_width(Watch.AddrMask)), MAX_MASK);
  Item.Comp = Watch.Addr & ~LowBits(Item.Mask);
  Item.Function = FunctionOf(Watch);
  Item.Watch = Watch;
  Item.bHeld = Item.bByWatch = true;
}

void CDwt::ProgramValue(const DATA_WATCH& Watch, U32 Linked) {
  Program(VALUE_COMPARATOR, Watch);
  DWT_COMPARATOR& Item = m_Items[VALUE_COMPARATOR];
  const U32 NumBytes = NumValueBytes(Watch);
  Item.Mask = 0;
  Item.Comp = Replicated(Watch.Data, NumBytes);
  Item.Function |= FUNCTION_DATAVMATCH | static_cast<U32>(std::countr_zero(NumBytes)) << FUNCTION_SIZE_SHIFT |
                   Linked << FUNCTION_ADDR0_SHIFT | Linked << FUNCTION_ADDR1_SHIFT;
  if (Linked == VALUE_COMPARATOR) return;
  Program(Linked, Watch);
  m_Items[Linked].Function = 0;
  m_Items[Linked].bByWatch = false;
}

int CDwt::Add(const DATA_WATCH& Watch) {
  if (!HasValue(Watch)) {
    const int Index = FindFreeForAddr();
    if (Index >= 0) Program(static_cast<U32>(Index), Watch);
    Update();
    return Index;
  }
  if (!m_bV7) return WATCH_NO_VALUES;
  if (!IsFree(VALUE_COMPARATOR)) return WATCH_NO_FREE_UNIT;
  int Linked = VALUE_COMPARATOR;
  if (Watch.AddrMask != ALL_BITS) Linked = FindFreeForAddr();
  if (Linked < 0 || (Watch.AddrMask != ALL_BITS && Linked == static_cast<int>(VALUE_COMPARATOR)))
    return WATCH_NO_FREE_UNIT;
  ProgramValue(Watch, static_cast<U32>(Linked));
  Update();
  return VALUE_COMPARATOR;
}

void CDwt::Remove(int Index) {
  if (Index < 0 || static_cast<size_t>(Index) >= m_Items.size() || !m_Items[Index].bHeld) return;
  const DWT_COMPARATOR& Item = m_Items[Index];
  const size_t Linked = Item.Function >> FUNCTION_ADDR0_SHIFT & 0xF;
  const bool bLinked = (Item.Function & FUNCTION_DATAVMATCH) && Linked < m_Items.size();
  m_Items[Index] = {};
  if (bLinked && m_Items[Linked].bHeld && !m_Items[Linked].Function) m_Items[Linked] = {};
  Update();
}

void CDwt::Activate(U32 Index) {
  const DWT_COMPARATOR& Item = m_Items[Index];
  if (Item.bByWatch) {
    if (Item.Watch.bOnRead || Item.Watch.bOnWrite) m_Active.push_back({Item.Watch, Index, 0});
    return;
  }
  if (!Item.Function) return;
  DATA_WATCH Watch;
  Watch.bOnRead = Item.Function & FUNCTION_ON_READ;
  Watch.bOnWrite = Item.Function & FUNCTION_ON_WRITE;
  if (!(Item.Function & FUNCTION_DATAVMATCH)) {
    Watch.Addr = Item.Comp;
    Watch.AddrMask = LowBits(Item.Mask);
    m_Active.push_back({Watch, Index, 0});
    return;
  }
  Watch.Data = Item.Comp;
  const U32 ItemBytes = std::min(4u, 1u << (Item.Function >> FUNCTION_SIZE_SHIFT & 3));
  for (const U32 Shift : {FUNCTION_ADDR0_SHIFT, FUNCTION_ADDR1_SHIFT}) {
    const U32 Linked = Item.Function >> Shift & 0xF;
    if (Linked >= m_Items.size()) continue;
    Watch.Addr = m_Items[Linked].Comp;
    Watch.AddrMask = Linked == Index ? ALL_BITS : LowBits(m_Items[Linked].Mask);
    m_Active.push_back({Watch, Index, ItemBytes});
  }
}

void CDwt::Update() {
  m_Active.clear();
  if (!m_bEnabled) return;
  for (U32 Index = 0; Index < m_Items.size(); Index++) Activate(Index);
}

bool CDwt::Match(U32 Addr, U32 NumBytes, U32 Value, bool bWrite) {
  for (const ACTIVE& Active : m_Active) {
    const DATA_WATCH& Watch = Active.Watch;
    if (!(bWrite ? Watch.bOnWrite : Watch.bOnRead)) continue;
    if (Watch.NumBytes && Watch.NumBytes != NumBytes) continue;
    if (!IsAddrMatched(Watch, Addr, NumBytes) || !IsValueMatched(Watch, Active.ItemBytes, NumBytes, Value)) continue;
    m_Items[Active.Index].Function |= FUNCTION_MATCHED;
    return true;
  }
  return false;
}

}  // namespace sim
