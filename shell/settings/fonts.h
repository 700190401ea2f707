#pragma once
// The table of the 11 fonts and the text form of a font, without the toolkit's font classes.

#include <QString>
#include <QStringList>

#include "base/types.h"

enum FONT_ID : U32 {
  FONT_APP,
  FONT_APP_MONO,
  FONT_ITEM_NAME,
  FONT_ITEM_VALUE,
  FONT_TABLE_HEADER,
  FONT_SRC_CODE,
  FONT_SRC_ASM_CODE,
  FONT_ASM_CODE,
  FONT_CONSOLE,
  FONT_LINE_NUMBERS,
  FONT_EXEC_COUNTERS,
  NUM_FONTS
};

enum FONT_ORIGIN : U8 {
  FONT_ORIGIN_APPLICATION,  // the application font, FONT_DEFAULT_POINT_SIZE, style "Normal"
  FONT_ORIGIN_MONO_OF,      // the fixed-pitch form of font Parent
  FONT_ORIGIN_SAME_AS,      // font Parent
  FONT_ORIGIN_PLAIN,        // the toolkit's default font
};

inline constexpr int FONT_DEFAULT_POINT_SIZE = 8;  // points
inline constexpr int FONT_MAX_POINT_SIZE = 59;     // points
inline constexpr int FONT_WEIGHT_NORMAL = 400;
inline constexpr int FONT_WEIGHT_BOLD = 700;

struct FONT_INFO {
  U32 FontID;
  const char* sName;
  const char* sDisplayName;
  const char* sDescription;
  FONT_ORIGIN Origin;  // what is used while no font is set
  U32 Parent;
};

// The row, null for an identifier above 10.
const FONT_INFO* GetFontInfo(U32 ID);
// A number below 11, or an identifier or display name in any case (the first row of several); -1 if there is none.
int FindFont(const QString& sText);

// A font as far as its text tells. Weights are on the toolkit's scale of 100 to 900.
struct FONT_SPEC {
  QString sFamily;
  int PointSize = 0;
  int Weight = FONT_WEIGHT_NORMAL;
  bool Italic = false;
  QString sStyleName;  // of a resolved font; may be empty
};

// "Family,  10pt,  Normal", with two blanks behind each comma.
QString FontSpecText(const FONT_SPEC& Font);
// Reads such a text; *pOk is false unless it has three parts and a size of 1 to 59 points.
FONT_SPEC ParseFontText(const QString& sText, bool* pOk);

// A family that is used as it is where a fixed-pitch font is wanted; any case.
bool IsMonospacedFamily(const QString& sFamily);
