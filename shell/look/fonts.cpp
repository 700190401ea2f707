#include "shell/settings/fonts.h"

#include <QApplication>
#include <QFontDatabase>
#include <QFontMetrics>
#include <QMap>

#include "shell/look/look.h"
#include "shell/settings/color_table.h"
#include "shell/settings/settings_cache.h"

namespace {

const SETTING_GROUP FONT_GROUP = {QStringLiteral("AppData"), QStringLiteral("Preferences"), QStringLiteral("Fonts")};

struct FONT_CACHE {
  QMap<U32, QFont> UserFonts;    // the values set
  QMap<U32, bool> SaveFonts;     // which of them go to the settings
  QMap<U32, QFont> CachedFonts;  // resolved
};

FONT_CACHE& Cache() {
  static FONT_CACHE Instance;
  return Instance;
}

QFont InheritedFont(const FONT_INFO& Info) {
  switch (Info.Origin) {
    case FONT_ORIGIN_APPLICATION: {
      // The desktop's font, not the one that was set in its place since.
      static const QFont Original = [] {
        QFont Font = QApplication::font();
        Font.setPointSize(FONT_DEFAULT_POINT_SIZE);
        return Font;
      }();
      return Original;
    }
    case FONT_ORIGIN_MONO_OF:
      return MonospacedForm(GetFont(Info.Parent));
    case FONT_ORIGIN_SAME_AS:
      return GetFont(Info.Parent);
    case FONT_ORIGIN_PLAIN:
      break;
  }
  return QFont();
}

FONT_SPEC SpecOf(const QFont& Font) {
  return {Font.family(), Font.pointSize(), Font.weight(), Font.italic(), Font.styleName()};
}

}  // namespace

QFont GetFont(U32 ID) {
  FONT_CACHE& C = Cache();
  const auto It = C.CachedFonts.constFind(ID);
  if (It != C.CachedFonts.constEnd()) return *It;
  const FONT_INFO* const pInfo = GetFontInfo(ID);
  if (pInfo == nullptr) return QFont();
  const QFont Font = C.UserFonts.contains(ID) ? C.UserFonts[ID] : InheritedFont(*pInfo);
  C.CachedFonts[ID] = Font;
  return Font;
}

int SetFont(U32 ID, const QFont& Font, bool bSave, bool bApply) {
  const FONT_INFO* const pInfo = GetFontInfo(ID);
  if (pInfo == nullptr) return -1;
  FONT_CACHE& C = Cache();
  C.UserFonts.remove(ID);
  C.CachedFonts.clear();
  if (Font != InheritedFont(*pInfo)) {
    C.UserFonts[ID] = Font;
    C.SaveFonts[ID] = bSave;
  }
  C.CachedFonts.clear();
  if (ID == FONT_APP && bApply) QApplication::setFont(Font);
  return 0;
}

QFont MonospacedForm(const QFont& Font) {
  if (IsMonospacedFamily(Font.family())) return Font;
  QFont Mono = QFontDatabase::systemFont(QFontDatabase::FixedFont);
  Mono.setStyleHint(QFont::Monospace);
  Mono.setPointSize(Font.pointSize());
  Mono.setWeight(static_cast<QFont::Weight>(Font.weight()));
  Mono.setItalic(Font.italic());
  return Mono;
}

int GetFontHeight(U32 ID) {
  return QFontMetrics(GetFont(ID)).height();
}

int GetTextWidth(U32 ID, const QString& sText) {
  return QFontMetrics(GetFont(ID)).horizontalAdvance(sText);
}

QString FontToText(U32 ID) {
  return FontSpecText(SpecOf(GetFont(ID)));
}

QFont TextToFont(const QString& sText, bool* pOk) {
  const FONT_SPEC Spec = ParseFontText(sText, pOk);
  if (!*pOk) return QFont();
  QFont Font(Spec.sFamily, Spec.PointSize);
  Font.setWeight(static_cast<QFont::Weight>(Spec.Weight));
  Font.setItalic(Spec.Italic);
  return Font;
}

void LoadColorsAndFonts() {
  LoadColors();
  for (U32 ID = 0; ID < NUM_FONTS; ++ID) {
    const QString sText = GetSetting(FONT_GROUP, QString::fromLatin1(GetFontInfo(ID)->sName), QString()).toString();
    bool bOk = false;
    const QFont Font = sText.isEmpty() ? QFont() : TextToFont(sText, &bOk);
    if (bOk) SetFont(ID, Font, true);
  }
}

void SaveColorsAndFonts() {
  SaveColors();
  const FONT_CACHE& C = Cache();
  for (U32 ID = 0; ID < NUM_FONTS; ++ID) {
    const QString sName = QString::fromLatin1(GetFontInfo(ID)->sName);
    if (C.UserFonts.contains(ID) && C.SaveFonts.value(ID)) {
      SetSetting(FONT_GROUP, sName, FontSpecText(SpecOf(C.UserFonts[ID])));
    } else {
      RemoveSetting(SettingPath(FONT_GROUP, sName));
    }
  }
}
