// What the drawn icons must be: there, of their size, visible on either ground, different from each other.

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <QAction>
#include <QApplication>
#include <QDirIterator>
#include <QImage>
#include <QPainter>
#include <QPalette>
#include <QRegularExpression>

#include "contrast.h"
#include "shell/look/look.h"
#include "tests/common/files.h"

using namespace Qt::StringLiterals;

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

// File names of all the drawings, as GetIcon takes them.
const QStringList& Names() {
  static const QStringList NAMES = QDir(QStringLiteral(VEXOR_SOURCE_DIR "/resources/icons"))
                                       .entryList({u"*.svg"_s})
                                       .replaceInStrings(u".svg"_s, u".png"_s);
  return NAMES;
}

void UseGround(const QColor& Ground) {
  QApplication::setPalette(QPalette(Ground));
}

// Calls Check(name, ground) for every name on either ground.
template <typename CHECK>
void ForEachIcon(const CHECK& Check) {
  for (const QColor& Ground : {LIGHT_GROUND, DARK_GROUND}) {
    UseGround(Ground);
    for (const QString& sName : Names()) {
      SCOPED_TRACE((sName + u" on "_s + Ground.name()).toStdString());
      Check(sName, Ground);
    }
  }
}

class IconTest : public testing::Test {
protected:
  void SetUp() override { UseGround(LIGHT_GROUND); }
};

int ExpectedSize(const QString& sName) {
  if (sName.startsWith(u"titlebar-close-icon"_s)) return 10;
  const QRegularExpressionMatch Match = QRegularExpression(u"-(1[127]|32)\\.png$"_s).match(sName);
  return Match.hasMatch() ? Match.captured(1).toInt() : 16;
}

QImage Picture(const QIcon& Icon, int Size, qreal Scale, QIcon::Mode Mode = QIcon::Normal) {
  return Icon.pixmap(QSize(Size, Size), Scale, Mode).toImage().convertToFormat(QImage::Format_ARGB32);
}

QImage Picture(const QString& sName, qreal Scale, QIcon::Mode Mode = QIcon::Normal) {
  return Picture(GetIcon(sName), ExpectedSize(sName), Scale, Mode);
}

// The pixels alone, without what else the image knows, such as its resolution.
QImage Pixels(QImage Image) {
  Image.setDevicePixelRatio(1.0);
  return Image.convertToFormat(QImage::Format_ARGB32);
}

int NumVisible(const QImage& Image) {
  int Num = 0;
  for (int y = 0; y < Image.height(); ++y) {
    for (int x = 0; x < Image.width(); ++x) Num += qAlpha(Image.pixel(x, y)) >= VISIBLE_ALPHA;
  }
  return Num;
}

// How much of what is visible has that contrast to the ground.
double ShareOfContrast(const QImage& Image, const QColor& Ground, double Limit) {
  QImage Shown(Image.size(), QImage::Format_RGB32);
  Shown.fill(Ground);
  QPainter(&Shown).drawImage(0, 0, Pixels(Image));
  int NumContrasting = 0;
  for (int y = 0; y < Image.height(); ++y) {
    for (int x = 0; x < Image.width(); ++x) {
      if (qAlpha(Image.pixel(x, y)) >= VISIBLE_ALPHA)
        NumContrasting += Contrast(Shown.pixelColor(x, y), Ground) >= Limit;
    }
  }
  return static_cast<double>(NumContrasting) / std::max(NumVisible(Image), 1);
}

// Largest number of visible pixels along one of the four edges.
int EdgePixels(const QImage& Image) {
  const int Last = Image.width() - 1;
  return std::max({NumVisible(Image.copy(0, 0, Last + 1, 1)), NumVisible(Image.copy(0, Last, Last + 1, 1)),
                   NumVisible(Image.copy(0, 0, 1, Last + 1)), NumVisible(Image.copy(Last, 0, 1, Last + 1))});
}

}  // namespace

TEST_F(IconTest, EveryNameInTheSourcesIsThatOfADrawing) {
  static const QRegularExpression NAME(u"\"([A-Za-z0-9-]+\\.png)\""_s);
  QSet<QString> Found;
  for (const QString& sFolder : {u"/shell"_s, u"/ui"_s, u"/rtos"_s}) {
    QDirIterator Files(QStringLiteral(VEXOR_SOURCE_DIR) + sFolder, {u"*.cpp"_s, u"*.h"_s}, QDir::Files,
                       QDirIterator::Subdirectories);
    while (Files.hasNext()) {
      const QString sText = QString::fromUtf8(ReadBytes(Files.next()));
      for (const QRegularExpressionMatch& Match : NAME.globalMatch(sText)) Found << Match.captured(1);
    }
  }
  EXPECT_GT(Found.size(), 50);
  for (const QString& sName : Found) EXPECT_TRUE(Names().contains(sName)) << sName.toStdString();
}

TEST_F(IconTest, EachHasItsSizesAndIsVisibleOnEitherGround) {
  ForEachIcon([](const QString& sName, const QColor& Ground) {
    const int Size = ExpectedSize(sName);
    EXPECT_THAT(GetIcon(sName).availableSizes(),
                testing::UnorderedElementsAre(QSize(Size, Size), QSize(2 * Size, 2 * Size)));
    const double Limit = sName == u"arrow-down-disabled.png"_s ? MIN_DISABLED_CONTRAST
                         : sName == u"grey-dot-17.png"_s       ? 2.0
                                                               : MIN_CONTRAST;
    for (const qreal Scale : {1.0, 2.0}) {
      const QImage Image = Picture(sName, Scale);
      EXPECT_GE(NumVisible(Image), MIN_VISIBLE_PIXELS * Scale * Scale);
      EXPECT_LE(EdgePixels(Image), Image.width() / 2) << "cut off";
      if (sName.contains(u"-white."_s)) {
        EXPECT_EQ(ShareOfContrast(Image, Qt::black, 5.0), 1.0) << "white whatever the palette is";
      } else {
        EXPECT_GE(ShareOfContrast(Image, Ground, Limit), MIN_SHARE) << Scale;
      }
    }
  });
}

TEST_F(IconTest, NoTwoLookAlikeButTheWarnings) {
  QHash<QByteArray, QString> Taken;
  for (const QString& sName : Names()) {
    const QImage Image = Pixels(Picture(sName, 1.0));
    const QByteArray Bits(reinterpret_cast<const char*>(Image.constBits()), Image.sizeInBytes());
    const QString sOther = std::exchange(Taken[Bits], sName);
    const bool bWarnings = sOther == u"exclamation.png"_s && sName == u"message-warning.png"_s;
    EXPECT_TRUE(sOther.isNull() || bWarnings) << sName.toStdString() << sOther.toStdString();
  }
}

TEST_F(IconTest, DisabledOnesAreTold) {
  static const QRegularExpression BUTTONS(u"^(debug|file|edit)-(?!.*-white)"_s);
  ForEachIcon([](const QString& sName, const QColor& Ground) {
    if (!BUTTONS.match(sName).hasMatch()) return;
    const QImage Disabled = Picture(sName, 1.0, QIcon::Disabled);
    EXPECT_NE(Disabled, Picture(sName, 1.0));
    EXPECT_GE(ShareOfContrast(Disabled, Ground, MIN_DISABLED_CONTRAST), MIN_SHARE);
  });
}

TEST_F(IconTest, AKeptIconFollowsThePalette) {
  const QAction Action(GetIcon(u"document-text.png"_s), QString());
  QList<QImage> Shown;
  for (const QColor& Ground : {LIGHT_GROUND, DARK_GROUND, LIGHT_GROUND}) {
    UseGround(Ground);
    Shown << Pixels(Picture(Action.icon(), 16, 1.0));
    EXPECT_EQ(Shown.last(), Pixels(QImage(GetIconPath(u"document-text.png"_s))));
  }
  EXPECT_NE(Shown[0], Shown[1]);
  EXPECT_EQ(Shown[0], Shown[2]);
}
