#include "shell/settings/fonts.h"

#include "base/text.h"
#include "shell/settings/named_constants.h"

namespace {

constexpr int FONT_WEIGHT_LIGHT = 300;
constexpr int FONT_WEIGHT_MEDIUM = 500;
constexpr int FONT_WEIGHT_DARK = 600;
constexpr int FONT_WEIGHT_BLACK = 900;

constexpr FONT_INFO Fonts[NUM_FONTS] = {
    {FONT_APP, "FONT_APP", "Text", "Default Font used to display text", FONT_ORIGIN_APPLICATION, FONT_APP},
    {FONT_APP_MONO, "FONT_APP_MONO", "Value", "Default Font used to display text", FONT_ORIGIN_MONO_OF, FONT_APP},
    {FONT_ITEM_NAME, "FONT_ITEM_NAME", "Text", "Table text font", FONT_ORIGIN_SAME_AS, FONT_APP},
    {FONT_ITEM_VALUE, "FONT_ITEM_VALUE", "Value", "Table value text font", FONT_ORIGIN_SAME_AS, FONT_APP_MONO},
    {FONT_TABLE_HEADER, "FONT_TABLE_HEADER", "Text", "Table header font", FONT_ORIGIN_SAME_AS, FONT_ITEM_NAME},
    {FONT_SRC_CODE, "FONT_SRC_CODE", "Text", "Source code font as used by the source viewer", FONT_ORIGIN_SAME_AS,
     FONT_APP_MONO},
    {FONT_SRC_ASM_CODE, "FONT_SRC_ASM_CODE", "Assembly Code", "Font used for inline disassembly", FONT_ORIGIN_SAME_AS,
     FONT_SRC_CODE},
    {FONT_ASM_CODE, "FONT_ASM_CODE", "Text",
     "Assembly code font as used by the disassembly and instruction trace windows", FONT_ORIGIN_SAME_AS, FONT_APP_MONO},
    {FONT_CONSOLE, "FONT_CONSOLE", "Text", "Console window font", FONT_ORIGIN_SAME_AS, FONT_APP},
    {FONT_LINE_NUMBERS, "FONT_LINE_NUMBERS", "Line Numbers", "Font used for line numbers", FONT_ORIGIN_PLAIN,
     FONT_LINE_NUMBERS},
    {FONT_EXEC_COUNTERS, "FONT_EXEC_COUNTERS", "Execution Counters", "Font used for execution counters",
     FONT_ORIGIN_PLAIN, FONT_EXEC_COUNTERS},
};

struct STYLE_WORD {
  const char* sWord;
  int Weight;
};
constexpr STYLE_WORD WeightWords[] = {{"Bold", FONT_WEIGHT_BOLD},
                                      {"Black", FONT_WEIGHT_BLACK},
                                      {"Dark", FONT_WEIGHT_DARK},
                                      {"Medium", FONT_WEIGHT_MEDIUM},
                                      {"Light", FONT_WEIGHT_LIGHT}};

constexpr const char* MonoFamilies[] = {
    "Fixed",           "Liberation Mono",  "Monospace",     "Nimbus Mono",    "Nimbus Mono L",
    "Terminal",        "Ubuntu Mono",      "UM Typewriter", "Terminus",       "ProFont",
    "Lucida Console",  "Letter Gothic",    "HyperFont",     "FixedSys",       "Everson Mono",
    "Droid Sans Mono", "Dejavu Sans Mono", "Courier",       "Courier New",    "Courier 10 Pitch",
    "Consolas",        "Andale Mono",      "FreeMono",      "TlwgTypewriter", "Menlo",
    "Monaco"};

QString StyleText(const FONT_SPEC& Font) {
  if (!Font.sStyleName.isEmpty()) return Font.sStyleName;
  const bool bBold = Font.Weight >= FONT_WEIGHT_BOLD;
  if (bBold) return Font.Italic ? QStringLiteral("Bold Italic") : QStringLiteral("Bold");
  return Font.Italic ? QStringLiteral("Italic") : QStringLiteral("Normal");
}

}  // namespace

const FONT_INFO* GetFontInfo(U32 ID) {
  return ID < NUM_FONTS ? &Fonts[ID] : nullptr;
}

int FindFont(const QString& sText) {
  const QString sName = Unquoted(sText);
  bool bNumber = false;
  const I64 Number = ParseNumber(sName, &bNumber);
  if (bNumber) return Number >= 0 && Number < NUM_FONTS ? static_cast<int>(Number) : -1;
  for (const FONT_INFO& Info : Fonts) {
    for (const char* sOther : {Info.sName, Info.sDisplayName}) {
      if (sName.compare(QLatin1String(sOther), Qt::CaseInsensitive) == 0) return static_cast<int>(Info.FontID);
    }
  }
  return -1;
}

QString FontSpecText(const FONT_SPEC& Font) {
  return QStringLiteral("%1,  %2pt,  %3").arg(Font.sFamily).arg(Font.PointSize).arg(StyleText(Font));
}

FONT_SPEC ParseFontText(const QString& sText, bool* pOk) {
  FONT_SPEC Font;
  *pOk = false;
  QStringList Parts = sText.split(u',');
  if (Parts.size() != 3) return Font;
  for (QString& sPart : Parts) sPart = sPart.remove(u'"').trimmed();
  Font.sFamily = Parts[0];
  Font.PointSize = Parts[1].remove(QStringLiteral("pt"), Qt::CaseInsensitive).trimmed().toInt(pOk);
  for (const STYLE_WORD& Word : WeightWords) {
    if (Parts[2].contains(QLatin1String(Word.sWord), Qt::CaseInsensitive)) Font.Weight = Word.Weight;
  }
  Font.Italic = Parts[2].contains(u"Italic", Qt::CaseInsensitive) || Parts[2].contains(u"Oblique", Qt::CaseInsensitive);
  *pOk = *pOk && Font.PointSize >= 1 && Font.PointSize <= FONT_MAX_POINT_SIZE;
  return Font;
}

bool IsMonospacedFamily(const QString& sFamily) {
  return std::any_of(std::begin(MonoFamilies), std::end(MonoFamilies), [&](const char* sName) {
    return sFamily.compare(QLatin1String(sName), Qt::CaseInsensitive) == 0;
  });
}
