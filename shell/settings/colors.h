#pragma once
// The table of the 45 colours, with their live and saved values as ARGB numbers. Main thread.

#include <functional>

#include <QString>

#include "base/types.h"
#include "shell/settings/color_ids.h"

// Values that stand for a role of the application's palette and follow it.
inline constexpr U32 COLOR_PALETTE_BASE = 0xFF000001u;
inline constexpr U32 COLOR_PALETTE_WINDOW = 0xFF000002u;

struct COLOR_INFO {
  U32 ColorID;
  U32 Color;  // default, ARGB
  const char* sName;
  const char* sDisplayName;
  const char* sDescription;
};

// The row, null for an identifier above 44.
const COLOR_INFO* GetColorInfo(U32 ID);
// A number below 45, or an identifier or display name in any case; -1 if there is none.
int FindColor(const QString& sText);

// Told by the owner of the application's palette whenever that changes; ARGB.
void SetPaletteColors(U32 Base, U32 Window);
// Palette roles resolved, other values as they are.
U32 ResolveColor(U32 Argb);

// The live colour, palette roles resolved; opaque black for an unknown identifier.
U32 GetColorRgb(U32 ID);
// Sets the live colour, and with bSave the saved one. Returns 0, or -1 for an unknown identifier.
int SetColorRgb(U32 ID, U32 Argb, bool bSave);
// Live and saved colour back to the default.
void ResetColor(U32 ID);
void ResetColors();
// The live colour differs from the default, both resolved.
bool IsColorModified(U32 ID);

// Colours of the row at the program counter and of a call site, by the focus of the window.
U32 GetPCColor(bool bActive);
U32 GetCallSiteColor(bool bActive);
// Average of the palette's two roles, channel by channel.
U32 GetAlternateBase();
// Delta added to each channel of a dark colour, taken from each channel of a light one.
U32 ContrastColor(U32 Argb, int Delta);

// Told by the command Edit.Color after it has changed a live colour; one receiver, which tells the windows.
using ColorListener = std::function<void(U32 ID, U32 Argb)>;
void SetColorListener(const ColorListener& Listener);
void TellColorChanged(U32 ID);

// "#rrggbb", and back; *pOk is false for any other text.
QString ColorText(U32 Argb);
U32 ParseColorText(const QString& sText, bool* pOk);

// Settings cache to live and saved colours, and saved colours to the cache; unmodified ones are not kept there.
void LoadColors();
void SaveColors();
