// Renders an icon's drawing to PNG files at one and two times its size, as drawn and for dark palettes:
// svg_to_png IN.svg OUT_DIRECTORY writes NAME.png, NAME@2x.png, dark/NAME.png and dark/NAME@2x.png.
// The drawings are made for a light ground. For a dark one only the colours below are exchanged; any other colour,
// white above all, stays as it is.

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QImage>
#include <QPainter>
#include <QSvgRenderer>

#include <cstdio>

namespace {
struct COLOR_PAIR {
  const char* sLight;
  const char* sDark;
};
const COLOR_PAIR DARK_COLORS[] = {
    {"#55606c", "#c5ced8"},  // neutral strokes
    {"#b4bbc2", "#5f6872"},  // neutral, disabled
    {"#fdfdfd", "#3d454f"},  // paper
    {"#fefefe", "#20262d"},  // marks on a coloured ground
    {"#2f6fb8", "#66a6ec"},  // blue
    {"#cfe1f5", "#33506f"},  // blue, pale fill
    {"#258a45", "#4fc070"},  // green
    {"#bfe6c9", "#2f6b42"},  // green, pale fill
    {"#17692a", "#7bd492"},  // green, edge
    {"#c8352f", "#e5534b"},  // red
    {"#8e1f1b", "#ff9a92"},  // red, edge
    {"#7a4bb0", "#b48ee8"},  // purple
    {"#55307f", "#d3bbf3"},  // purple, edge
    {"#b0770c", "#dba032"},  // amber
    {"#8f6508", "#d9a63c"},  // amber, edge
    {"#7d6409", "#f6e08a"},  // yellow, edge
};

bool Render(QSvgRenderer& Renderer, int Scale, const QString& sOutput) {
  QImage Image(Renderer.defaultSize() * Scale, QImage::Format_ARGB32_Premultiplied);
  Image.fill(Qt::transparent);
  QPainter Painter(&Image);
  Painter.setRenderHint(QPainter::Antialiasing);
  Renderer.render(&Painter);
  Painter.end();
  return Image.save(sOutput);
}

bool RenderBothSizes(const QByteArray& Drawing, const QString& sDirectory, const QString& sName) {
  QSvgRenderer Renderer(Drawing);
  const QString sPath = sDirectory + QLatin1Char('/') + sName;
  return Renderer.isValid() && Render(Renderer, 1, sPath + QStringLiteral(".png")) &&
         Render(Renderer, 2, sPath + QStringLiteral("@2x.png"));
}

QByteArray ForDarkPalettes(QByteArray Drawing) {
  for (const COLOR_PAIR& Pair : DARK_COLORS) Drawing.replace(Pair.sLight, Pair.sDark);
  return Drawing;
}
}  // namespace

int main(int argc, char** argv) {
  if (argc != 3) {
    std::fprintf(stderr, "usage: svg_to_png IN.svg OUT_DIRECTORY\n");
    return 1;
  }
  QFile File(QString::fromLocal8Bit(argv[1]));
  const QString sDirectory = QString::fromLocal8Bit(argv[2]);
  const QString sDarkDirectory = sDirectory + QStringLiteral("/dark");
  const QString sName = QFileInfo(File).completeBaseName();
  const bool bRead = File.open(QIODevice::ReadOnly) && QDir().mkpath(sDarkDirectory);
  const QByteArray Drawing = File.readAll();
  if (!bRead || !RenderBothSizes(Drawing, sDirectory, sName) ||
      !RenderBothSizes(ForDarkPalettes(Drawing), sDarkDirectory, sName)) {
    std::fprintf(stderr, "svg_to_png: cannot render %s\n", argv[1]);
    return 1;
  }
  return 0;
}
