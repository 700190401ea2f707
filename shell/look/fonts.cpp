#include "shell/settings/fonts.h"

#include <QApplication>
#include <QFontDatabase>
#include <QFontMetrics>
#include <QMap>
#include <QWidget>

#include "shell/look/look.h"
#include "shell/settings/color_table.h"
#include "shell/settings/settings_cache.h"

namespace {

const SETTING_GROUP FONT_GROUP = {QStringLiteral("AppData"), QStringLiteral("Preferences"), QStringLiteral("Fonts")};

struct FONT_CACHE {
  QMap<U32, QFont> UserFonts;    // the values set
  QMap<U32, QFont> SavedFonts;   // those that go to the settings
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

// The style as the font system names it, unless it has no face of the wanted weight and slant.
QString StyleNameOf(const QFont& Font) {
  const QString sStyle = QFontInfo(Font).styleName();
  bool bOk = false;
  const FONT_SPEC Read = ParseFontText(QStringLiteral("x, 1pt, ") + sStyle, &bOk);
  return bOk && Read.Weight == Font.weight() && Read.Italic == Font.italic() ? sStyle : QString();
}

FONT_SPEC SpecOf(const QFont& Font) {
  return {Font.family(), Font.pointSize(), Font.weight(), Font.italic(), StyleNameOf(Font)};
}

// As far as a font's text tells.
bool IsSameFont(const QFont& a, const QFont& b) {
  return a.family().compare(b.family(), Qt::CaseInsensitive) == 0 && a.pointSize() == b.pointSize() &&
         a.weight() == b.weight() && a.italic() == b.italic();
}

// A font that the widget or what it stands in was given, other than the application's. A style sheet makes the title of
// a dock bold, and with it the dock's font.
bool HasOwnFont(const QWidget* pWidget) {
  if (pWidget->testAttribute(Qt::WA_SetFont)) return true;
  while (!pWidget->isWindow()) {
    pWidget = pWidget->parentWidget();
    const QFont Font = pWidget->font();
    if (pWidget->testAttribute(Qt::WA_SetFont)) {
      return Font.family() != QApplication::font().family() || Font.pointSize() != QApplication::font().pointSize();
    }
  }
  return false;
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
  if (bSave) C.SavedFonts.remove(ID);
  C.CachedFonts.clear();
  if (!IsSameFont(Font, InheritedFont(*pInfo))) {
    C.UserFonts[ID] = Font;
    if (bSave) C.SavedFonts[ID] = Font;
  }
  C.CachedFonts.clear();
  if (ID == FONT_APP && bApply) QApplication::setFont(Font);
  return 0;
}

void SpreadApplicationFont() {
  for (QWidget* const pWidget : QApplication::allWidgets()) {
    if (pWidget->testAttribute(Qt::WA_StyleSheet) && !HasOwnFont(pWidget)) pWidget->setFont(QFont());
  }
}

QFont GetInheritedFont(U32 ID) {
  const FONT_INFO* const pInfo = GetFontInfo(ID);
  return pInfo ? InheritedFont(*pInfo) : QFont();
}

bool IsFontModified(U32 ID) {
  return Cache().UserFonts.contains(ID);
}

QFont MonospacedForm(const QFont& Font) {
  if (IsMonospacedFamily(Font.family())) return Font;
  // For a family that it does not have, the font system gives the one that goes with the hint.
  QFont Wanted(QStringLiteral("unknown"), Font.pointSize(), Font.weight(), Font.italic());
  Wanted.setStyleHint(QFont::TypeWriter);
  const QFontInfo Found(Wanted);
  const QString sFamily =
      Found.fixedPitch() ? Found.family() : QFontDatabase::systemFont(QFontDatabase::FixedFont).family();
  QFont Mono(sFamily, Font.pointSize(), Font.weight(), Font.italic());
  Mono.setStyleHint(QFont::TypeWriter);
  return Mono;
}

int GetFontHeight(U32 ID) {
  return QFontMetrics(GetFont(ID)).height();
}

int GetTextWidth(U32 ID, const QString& sText) {
  return QFontMetrics(GetFont(ID)).horizontalAdvance(sText);
}

QString FontToText(U32 ID) {
  return FontToText(GetFont(ID));
}

QString FontToText(const QFont& Font) {
  return FontSpecText(SpecOf(Font));
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
    if (C.SavedFonts.contains(ID)) {
      SetSetting(FONT_GROUP, sName, FontToText(C.SavedFonts[ID]));
    } else {
      RemoveSetting(SettingPath(FONT_GROUP, sName));
    }
  }
}
