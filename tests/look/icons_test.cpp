// What the drawn icons must be: there, of their size, visible on either ground, different from each other.

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cmath>

#include <QAction>
#include <QApplication>
#include <QImage>
#include <QPainter>
#include <QPalette>
#include <QRegularExpression>

#include "icon_names.h"
#include "shell/look/look.h"

namespace {
const QColor LIGHT_GROUND(0xF0, 0xF0, 0xF0);
const QColor DARK_GROUND(0x2B, 0x2B, 0x2B);
constexpr int VISIBLE_ALPHA = 128;
constexpr double MIN_CONTRAST = 3.0;           // what graphics need to be told from their ground
constexpr double MIN_DISABLED_CONTRAST = 1.5;  // what is switched off is faint, but there
constexpr double MIN_SHARE = 0.3;              // of an icon's visible pixels must have the contrast
constexpr int MIN_VISIBLE_PIXELS = 12;

class CApplication : public testing::Environment {
public:
  void SetUp() override { m_pApplication = std::make_unique<QApplication>(m_NumArgs, m_pasArgs); }
  void TearDown() override { m_pApplication.reset(); }

private:
  char m_acName[10] = "look_test";
  int m_NumArgs = 1;
  char* m_pasArgs[2] = {m_acName, nullptr};
  std::unique_ptr<QApplication> m_pApplication;
};
const testing::Environment* const APPLICATION = testing::AddGlobalTestEnvironment(new CApplication);

void UseGround(const QColor& Ground) {
  QApplication::setPalette(QPalette(Ground));
}

class IconTest : public testing::Test {
protected:
  void SetUp() override { UseGround(LIGHT_GROUND); }
};

QString FileName(const char* sName) {
  return QLatin1String(sName) + QStringLiteral(".png");
}

int ExpectedSize(const QString& sName) {
  if (sName.startsWith(QLatin1String("titlebar-close-icon"))) return 10;
  const QRegularExpressionMatch Match = QRegularExpression(QStringLiteral("-(1[127]|32)$")).match(sName);
  return Match.hasMatch() ? Match.captured(1).toInt() : 16;
}

QImage Picture(const QIcon& Icon, int Size, qreal Scale, QIcon::Mode Mode = QIcon::Normal) {
  return Icon.pixmap(QSize(Size, Size), Scale, Mode).toImage().convertToFormat(QImage::Format_ARGB32);
}

QImage Picture(const char* sName, qreal Scale, QIcon::Mode Mode = QIcon::Normal) {
  return Picture(GetIcon(FileName(sName)), ExpectedSize(QLatin1String(sName)), Scale, Mode);
}

// Without regard to what else the image knows, such as its resolution.
bool SamePixels(const QImage& A, const QImage& B) {
  if (A.size() != B.size()) return false;
  for (int y = 0; y < A.height(); ++y)
    for (int x = 0; x < A.width(); ++x)
      if (A.pixelColor(x, y) != B.pixelColor(x, y)) return false;
  return true;
}

double Luminance(const QColor& Color) {
  const auto Linear = [](double Value) {
    return Value <= 0.04045 ? Value / 12.92 : std::pow((Value + 0.055) / 1.055, 2.4);
  };
  return 0.2126 * Linear(Color.redF()) + 0.7152 * Linear(Color.greenF()) + 0.0722 * Linear(Color.blueF());
}

double Contrast(const QColor& A, const QColor& B) {
  const double a = Luminance(A);
  const double b = Luminance(B);
  return (std::max(a, b) + 0.05) / (std::min(a, b) + 0.05);
}

struct VISIBILITY {
  int NumVisible = 0;
  int NumContrasting = 0;
  double Share() const { return NumVisible == 0 ? 0.0 : static_cast<double>(NumContrasting) / NumVisible; }
};

VISIBILITY Measure(const QImage& Image, const QColor& Ground, double Limit) {
  VISIBILITY Result;
  QImage Shown(Image.size(), QImage::Format_RGB32);
  Shown.fill(Ground);
  QImage Plain = Image;
  Plain.setDevicePixelRatio(1.0);
  QPainter(&Shown).drawImage(0, 0, Plain);
  for (int y = 0; y < Image.height(); ++y) {
    for (int x = 0; x < Image.width(); ++x) {
      if (qAlpha(Image.pixel(x, y)) < VISIBLE_ALPHA) continue;
      ++Result.NumVisible;
      Result.NumContrasting += Contrast(Shown.pixelColor(x, y), Ground) >= Limit;
    }
  }
  return Result;
}

// Largest number of visible pixels along one of the four edges.
int EdgePixels(const QImage& Image) {
  const int Last = Image.width() - 1;
  int an[4] = {};
  for (int i = 0; i <= Last; ++i) {
    an[0] += qAlpha(Image.pixel(i, 0)) >= VISIBLE_ALPHA;
    an[1] += qAlpha(Image.pixel(i, Last)) >= VISIBLE_ALPHA;
    an[2] += qAlpha(Image.pixel(0, i)) >= VISIBLE_ALPHA;
    an[3] += qAlpha(Image.pixel(Last, i)) >= VISIBLE_ALPHA;
  }
  return *std::max_element(an, an + 4);
}

bool IsForDarkGrounds(const QString& sName) {
  return sName.endsWith(QLatin1String("-white"));
}

// Painted by an icon into a square of that size at that scale.
QImage Painted(const QIcon& Icon, int Size, qreal Scale) {
  const int NumPixels = qRound(Size * Scale);
  QImage Image(NumPixels, NumPixels, QImage::Format_ARGB32_Premultiplied);
  Image.setDevicePixelRatio(Scale);
  Image.fill(Qt::transparent);
  QPainter Painter(&Image);
  Icon.paint(&Painter, QRect(0, 0, Size, Size));
  Painter.end();
  return Image.convertToFormat(QImage::Format_ARGB32);
}
}  // namespace

TEST_F(IconTest, EveryNameHasItsSizeAtBothScales) {
  for (const QColor& Ground : {LIGHT_GROUND, DARK_GROUND}) {
    UseGround(Ground);
    for (const char* sName : ICON_NAMES) {
      const int Size = ExpectedSize(QLatin1String(sName));
      ASSERT_FALSE(GetIcon(FileName(sName)).isNull()) << sName;
      EXPECT_EQ(Picture(sName, 1.0).size(), QSize(Size, Size)) << sName;
      EXPECT_EQ(Picture(sName, 2.0).size(), QSize(2 * Size, 2 * Size)) << sName;
      EXPECT_THAT(GetIcon(FileName(sName)).availableSizes(),
                  testing::UnorderedElementsAre(QSize(Size, Size), QSize(2 * Size, 2 * Size)))
          << sName;
    }
  }
}

TEST_F(IconTest, NothingIsBlankOrCutOffAtAnEdge) {
  for (const char* sName : ICON_NAMES) {
    for (const qreal Scale : {1.0, 2.0}) {
      const QImage Image = Picture(sName, Scale);
      EXPECT_GE(Measure(Image, LIGHT_GROUND, 1.0).NumVisible, MIN_VISIBLE_PIXELS * Scale * Scale) << sName;
      EXPECT_LE(EdgePixels(Image), Image.width() / 2) << sName << " at " << Scale;
    }
  }
}

TEST_F(IconTest, EachIsVisibleOnBothGrounds) {
  for (const QColor& Ground : {LIGHT_GROUND, DARK_GROUND}) {
    UseGround(Ground);
    for (const char* sName : ICON_NAMES) {
      const QString sIcon = QLatin1String(sName);
      if (IsForDarkGrounds(sIcon) && Ground == LIGHT_GROUND) continue;
      const double Limit = sIcon == QLatin1String("arrow-down-disabled") ? MIN_DISABLED_CONTRAST
                           : sIcon == QLatin1String("grey-dot-17")       ? 2.0
                                                                         : MIN_CONTRAST;
      for (const qreal Scale : {1.0, 2.0})
        EXPECT_GE(Measure(Picture(sName, Scale), Ground, Limit).Share(), MIN_SHARE)
            << sName << " on " << Ground.name().toStdString() << " at " << Scale;
    }
  }
}

// The icons that stand on a highlighted title are white whatever the palette is.
TEST_F(IconTest, WhiteIconsStayWhite) {
  for (const QColor& Ground : {LIGHT_GROUND, DARK_GROUND}) {
    UseGround(Ground);
    for (const char* sName : {"edit-mathematics-white", "titlebar-close-icon-white"}) {
      const QImage Image = Picture(sName, 2.0);
      const VISIBILITY Seen = Measure(Image, Qt::black, 5.0);
      EXPECT_EQ(Seen.NumContrasting, Seen.NumVisible) << sName;
    }
  }
}

TEST_F(IconTest, NoTwoLookAlike) {
  const auto IsWarning = [](const char* sName) {
    return qstrcmp(sName, "exclamation") == 0 || qstrcmp(sName, "message-warning") == 0;
  };
  for (const auto& A : ICON_NAMES)
    for (const auto& B : ICON_NAMES)
      EXPECT_FALSE(&A < &B && !(IsWarning(A) && IsWarning(B)) && SamePixels(Picture(A, 1.0), Picture(B, 1.0)))
          << A << " and " << B;
}

TEST_F(IconTest, DisabledOnesAreTold) {
  for (const QColor& Ground : {LIGHT_GROUND, DARK_GROUND}) {
    UseGround(Ground);
    for (const char* sName : ICON_NAMES) {
      const QString sIcon = QLatin1String(sName);
      if (!sIcon.startsWith(QLatin1String("debug-")) && !sIcon.startsWith(QLatin1String("file-")) &&
          !sIcon.startsWith(QLatin1String("edit-")))
        continue;
      if (IsForDarkGrounds(sIcon)) continue;
      const QImage Disabled = Picture(sName, 1.0, QIcon::Disabled);
      EXPECT_FALSE(SamePixels(Disabled, Picture(sName, 1.0))) << sName;
      EXPECT_GE(Measure(Disabled, Ground, MIN_DISABLED_CONTRAST).Share(), MIN_SHARE)
          << sName << " on " << Ground.name().toStdString();
    }
  }
}

TEST_F(IconTest, UnknownNamesGiveEmptyIcons) {
  for (const char* sName : {"", "no-such-icon.png", "arrow-pc", "arrow-pc.svg", "dark", "dark/arrow-pc.png",
                            "../icons/arrow-pc.png", "Arrow-PC.png"}) {
    EXPECT_TRUE(GetIcon(QLatin1String(sName)).isNull()) << sName;
    EXPECT_TRUE(GetIconPath(QLatin1String(sName)).isEmpty()) << sName;
  }
}

TEST_F(IconTest, AKeptIconFollowsThePalette) {
  const QString sName = QStringLiteral("document-text.png");
  QAction Action(GetIcon(sName), QString());
  const QString sLight = GetIconPath(sName);
  const QImage Light = Picture(Action.icon(), 16, 1.0);
  UseGround(DARK_GROUND);
  const QString sDark = GetIconPath(sName);
  const QImage Dark = Picture(Action.icon(), 16, 1.0);
  EXPECT_FALSE(SamePixels(Light, Dark));
  EXPECT_TRUE(SamePixels(Light, QImage(sLight)));
  EXPECT_TRUE(SamePixels(Dark, QImage(sDark)));
  UseGround(LIGHT_GROUND);
  EXPECT_TRUE(SamePixels(Light, Picture(Action.icon(), 16, 1.0)));
}

// What was drawn for a size is shown there pixel by pixel, not a larger picture made smaller.
TEST_F(IconTest, PaintsTheDrawingOfTheScale) {
  const QIcon Icon = GetIcon(QStringLiteral("edit-find.png"));
  const QImage One(QStringLiteral(":/icons/edit-find.png"));
  const QImage Two(QStringLiteral(":/icons/edit-find@2x.png"));
  EXPECT_TRUE(SamePixels(Picture(Icon, 16, 1.0), One.convertToFormat(QImage::Format_ARGB32)));
  EXPECT_TRUE(SamePixels(Painted(Icon, 16, 1.0), One.convertToFormat(QImage::Format_ARGB32)));
  EXPECT_TRUE(SamePixels(Painted(Icon, 16, 2.0), Two.convertToFormat(QImage::Format_ARGB32)));
  EXPECT_TRUE(SamePixels(Picture(Icon, 32, 1.0), Two.convertToFormat(QImage::Format_ARGB32)));
  EXPECT_EQ(Picture(Icon, 20, 1.0).width(), 20);
  EXPECT_EQ(Picture(Icon, 16, 1.5).width(), 24);
  EXPECT_LE(Picture(Icon, 11, 1.0).width(), 11);
}
