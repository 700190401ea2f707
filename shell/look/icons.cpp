#include <QFile>
#include <QHash>
#include <QIconEngine>
#include <QPainter>

#include "shell/look/look.h"

static void InitIconResource() {
  Q_INIT_RESOURCE(icons);
}

namespace {
QString LightPath(const QString& sName) {
  return QStringLiteral(":/icons/") + sName;
}

QString DarkPath(const QString& sName) {
  return QStringLiteral(":/icons/dark/") + sName;
}

// Decides at each painting, so that actions and models which keep an icon follow a change of the palette.
class CPaletteIconEngine : public QIconEngine {
public:
  explicit CPaletteIconEngine(const QString& sName) : m_Light(LightPath(sName)), m_Dark(DarkPath(sName)) {}

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
  return bInitialised && !sName.isEmpty() && QFile::exists(LightPath(sName));
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
  return IsDarkPalette() ? DarkPath(sName) : LightPath(sName);
}
