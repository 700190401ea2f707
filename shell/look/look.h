#pragma once
// Colours, fonts and icons as windows use them. Main thread.

#include <QColor>
#include <QFont>
#include <QIcon>
#include <QString>

#include "base/types.h"

// The live colour (COLOR_ID), palette roles resolved.
QColor GetColor(U32 ID);
// A text's colour that is made for a light ground, as it can be read on the desktop's: where the palette is dark it is
// made light enough for a contrast of 4.5 to the palette's grounds.
QColor ReadableColor(const QColor& Color);
// The live colour for a text; a colour that the user has set stays as it is.
QColor GetTextColor(U32 ID);
// Tells the colour table what the application's palette is; at start and when the palette changes.
void UpdatePaletteColors();
// Whether the desktop's palette is a dark one.
bool IsDarkPalette();

// The font that is set for an identifier (FONT_ID), else the one that it inherits.
QFont GetFont(U32 ID);
// Sets it; a font equal to the inherited one removes the entry. FONT_APP is also the application's font unless
// bApply is false. With bSave it is kept in the settings, otherwise those stay as they are. Returns 0, or -1 for an
// unknown identifier.
int SetFont(U32 ID, const QFont& Font, bool bSave, bool bApply = true);
// The toolkit tells widgets below a style sheet nothing of a new application font: gives it to those that have no font
// of their own. After SetFont(FONT_APP, ...), once windows and docks have theirs.
void SpreadApplicationFont();
// The font that an identifier has while none is set, and whether one is set.
QFont GetInheritedFont(U32 ID);
bool IsFontModified(U32 ID);
// The fixed-pitch form of a font.
QFont MonospacedForm(const QFont& Font);
// Height of a line and width of a text in logical pixels.
int GetFontHeight(U32 ID);
int GetTextWidth(U32 ID, const QString& sText);
// "Family,  10pt,  Normal"
QString FontToText(U32 ID);
QString FontToText(const QFont& Font);
QFont TextToFont(const QString& sText, bool* pOk);

// Colours and fonts from and to the settings cache.
void LoadColorsAndFonts();
void SaveColorsAndFonts();

// An icon by its file name, such as "arrow-pc.png"; an empty icon for an unknown name. It paints itself in the colours
// for the palette of the moment (IsDarkPalette), so it may be kept over a change of the palette.
QIcon GetIcon(const QString& sName);
// The resource path of that icon for a style sheet, for the palette of now; empty for an unknown name.
QString GetIconPath(const QString& sName);
