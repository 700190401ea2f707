#include <QFile>
#include <QHash>
#include <QIconEngine>
#include <QPainter>

#include "shell/look/look.h"

static void InitIconResource() {
  Q_INIT_RESOURCE(icons);
}

namespace {
constexpr auto LIGHT_FOLDER = ":/icons/";
constexpr auto DARK_FOLDER = ":/icons/dark/";

QString PathIn(const char* sFolder, const QString& sName) {
  return QLatin1String(sFolder) + sName;
}

// Both drawings as sizes of one icon: the larger one serves wherever more pixels are wanted, be it for a screen's scale
// or for a message box.
QIcon LoadIcon(const QString& sPath) {
  QPixmap Double(QString(sPath).replace(QLatin1String(".png"), QLatin1String("@2x.png")));
  Double.setDevicePixelRatio(1.0);
  QIcon Icon;
  Icon.addPixmap(QPixmap(sPath));
  Icon.addPixmap(Double);
  return Icon;
}

// Decides at each painting, so that actions and models which keep an icon follow a change of the palette.
class CPaletteIconEngine : public QIconEngine {
public:
  explicit CPaletteIconEngine(const QString& sName)
      : m_Light(LoadIcon(PathIn(LIGHT_FOLDER, sName))), m_Dark(LoadIcon(PathIn(DARK_FOLDER, sName))) {}

  void paint(QPainter* pPainter, const QRect& Rect, QIcon::Mode Mode, QIcon::State State) override {
    Icon().paint(pPainter, Rect, Qt::AlignCenter, Mode, State);
  }
  QPixmap pixmap(const QSize& Size, QIcon::Mode Mode, QIcon::State State) override {
    return Icon().pixmap(Size, 1.0, Mode, State);
  }
  // Size is in device pixels.
  QPixmap scaledPixmap(const QSize& Size, QIcon::Mode Mode, QIcon::State State, qreal Scale) override {
    return Icon().pixmap((QSizeF(Size) / Scale).toSize(), Scale, Mode, State);
  }
  QSize actualSize(const QSize& Size, QIcon::Mode Mode, QIcon::State State) override {
    return pixmap(Size, Mode, State).size();
  }
  QList<QSize> availableSizes(QIcon::Mode Mode, QIcon::State State) override {
    return Icon().availableSizes(Mode, State);
  }
  bool isNull() override { return m_Light.isNull(); }
  QIconEngine* clone() const override { return new CPaletteIconEngine(*this); }

private:
  const QIcon& Icon() const { return IsDarkPalette() ? m_Dark : m_Light; }

  QIcon m_Light;
  QIcon m_Dark;
};

bool IconExists(const QString& sName) {
  static const bool bInitialised = (InitIconResource(), true);
  // Names come from plug-ins as well: they reach no other folder.
  return bInitialised && sName.endsWith(QLatin1String(".png")) && !sName.contains(QLatin1Char('/')) &&
         QFile::exists(PathIn(LIGHT_FOLDER, sName));
}
}  // namespace

QIcon GetIcon(const QString& sName) {
  static QHash<QString, QIcon> Cache;
  const auto It = Cache.constFind(sName);
  if (It != Cache.constEnd()) return *It;
  return *Cache.insert(sName, IconExists(sName) ? QIcon(new CPaletteIconEngine(sName)) : QIcon());
}

QString GetIconPath(const QString& sName) {
  if (!IconExists(sName)) return QString();
  return PathIn(IsDarkPalette() ? DARK_FOLDER : LIGHT_FOLDER, sName);
}
