#include "shell/settings/colors.h"

#include "base/text.h"
#include "shell/settings/color_table.h"
#include "shell/settings/named_constants.h"
#include "shell/settings/settings_cache.h"

#include "shell/log/console_print.h"

static_assert(CONSOLE_COLOR_SCRIPT == COLOR_LOGGING_SCRIPT && CONSOLE_COLOR_USER == COLOR_LOGGING_USER &&
              CONSOLE_COLOR_ERROR == COLOR_LOGGING_ERROR);

namespace {

constexpr U32 RGBA_BLACK = 0xFF000000u;
constexpr U32 RGBA_OPAQUE = 0xFF000000u;
constexpr int MAX_DARK_LIGHTNESS = 128;  // of 255
constexpr U32 RGB_MASK = 0x00FFFFFFu;

struct COLOR_STATE {
  std::array<U32, NUM_COLORS> Live;
  std::array<U32, NUM_COLORS> Saved;
  U32 PaletteBase = 0xFFFFFFFFu;
  U32 PaletteWindow = 0xFFEFEFEFu;
  ColorListener Listener;

  COLOR_STATE() {
    for (const COLOR_INFO& Info : Colors) Live[Info.ColorID] = Saved[Info.ColorID] = Info.Color;
  }
};

COLOR_STATE& State() {
  static COLOR_STATE TheState;
  return TheState;
}

const SETTING_GROUP& ColorGroup() {
  static const SETTING_GROUP Group = {QStringLiteral("AppData"), QStringLiteral("Preferences"),
                                      QStringLiteral("Colors")};
  return Group;
}

bool EqualsText(const QString& sText, const char* sOther) {
  return sText.compare(QLatin1String(sOther), Qt::CaseInsensitive) == 0;
}

// Applies Combine(Shift) to the three colour channels.
template <typename F>
U32 ByChannel(const F& Combine) {
  U32 Argb = RGBA_OPAQUE;
  for (const U32 Shift : {0u, 8u, 16u}) Argb |= static_cast<U32>(Combine(Shift)) << Shift;
  return Argb;
}

int Channel(U32 Argb, U32 Shift) {
  return static_cast<int>(Argb >> Shift & 0xFFu);
}

}  // namespace

const COLOR_INFO* GetColorInfo(U32 ID) {
  return ID < NUM_COLORS ? &Colors[ID] : nullptr;
}

int FindColor(const QString& sText) {
  const QString sName = Unquoted(sText);
  bool bNumber = false;
  const I64 Number = ParseNumber(sName, &bNumber);
  if (bNumber) return Number >= 0 && Number < NUM_COLORS ? static_cast<int>(Number) : -1;
  for (const COLOR_INFO& Info : Colors) {
    if (EqualsText(sName, Info.sName) || EqualsText(sName, Info.sDisplayName)) return static_cast<int>(Info.ColorID);
  }
  return -1;
}

void SetPaletteColors(U32 Base, U32 Window) {
  State().PaletteBase = Base;
  State().PaletteWindow = Window;
}

U32 ResolveColor(U32 Argb) {
  if (Argb == COLOR_PALETTE_BASE) return State().PaletteBase;
  return Argb == COLOR_PALETTE_WINDOW ? State().PaletteWindow : Argb;
}

U32 GetColorRgb(U32 ID) {
  return ID < NUM_COLORS ? ResolveColor(State().Live[ID]) : RGBA_BLACK;
}

int SetColorRgb(U32 ID, U32 Argb, bool bSave) {
  if (ID >= NUM_COLORS) return -1;
  State().Live[ID] = Argb;
  if (bSave) State().Saved[ID] = Argb;
  return 0;
}

void ResetColor(U32 ID) {
  if (ID < NUM_COLORS) SetColorRgb(ID, Colors[ID].Color, true);
}

void ResetColors() {
  for (U32 ID = 0; ID < NUM_COLORS; ++ID) ResetColor(ID);
}

bool IsColorModified(U32 ID) {
  return ID < NUM_COLORS && GetColorRgb(ID) != ResolveColor(Colors[ID].Color);
}

U32 GetPCColor(bool bActive) {
  return GetColorRgb(bActive ? COLOR_PC_ACTIVE : COLOR_PC_INACTIVE);
}

U32 GetCallSiteColor(bool bActive) {
  return GetColorRgb(bActive ? COLOR_CALL_SITE_ACTIVE : COLOR_CALL_SITE_INACTIVE);
}

U32 GetAlternateBase() {
  const U32 Base = State().PaletteBase;
  const U32 Window = State().PaletteWindow;
  return ByChannel([=](U32 Shift) { return (Channel(Base, Shift) + Channel(Window, Shift)) / 2; });
}

U32 ContrastColor(U32 Argb, int Delta) {
  const auto [Min, Max] = std::minmax({Channel(Argb, 0), Channel(Argb, 8), Channel(Argb, 16)});
  const int Signed = Min + Max <= 2 * MAX_DARK_LIGHTNESS ? Delta : -Delta;
  return ByChannel([=](U32 Shift) { return std::clamp(Channel(Argb, Shift) + Signed, 0, 255); });
}

void SetColorListener(const ColorListener& Listener) {
  State().Listener = Listener;
}

void TellColorChanged(U32 ID) {
  if (State().Listener) State().Listener(ID, GetColorRgb(ID));
}

QString ColorText(U32 Argb) {
  return QStringLiteral("#%1").arg(Argb & RGB_MASK, 6, 16, QLatin1Char('0'));
}

U32 ParseColorText(const QString& sText, bool* pOk) {
  *pOk = sText.size() == 7 && sText.startsWith(u'#');
  const U32 Rgb = *pOk ? sText.mid(1).toUInt(pOk, 16) : 0;
  return Rgb | RGBA_OPAQUE;
}

void LoadColors() {
  for (const COLOR_INFO& Info : Colors) {
    bool bOk = false;
    const U32 Argb = ParseColorText(GetSetting(ColorGroup(), QLatin1String(Info.sName)).toString(), &bOk);
    SetColorRgb(Info.ColorID, bOk ? Argb : Info.Color, true);
  }
}

void SaveColors() {
  for (const COLOR_INFO& Info : Colors) {
    const U32 Saved = State().Saved[Info.ColorID];
    const QString sKey = QLatin1String(Info.sName);
    if (ResolveColor(Saved) == ResolveColor(Info.Color)) {
      RemoveSetting(SettingPath(ColorGroup(), sKey));
    } else {
      SetSetting(ColorGroup(), sKey, ColorText(ResolveColor(Saved)));
    }
  }
}
