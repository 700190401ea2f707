// Renders an SVG file to PNG files at one and two times its size: svg_to_png IN.svg OUT.png OUT@2x.png

#include <QImage>
#include <QPainter>
#include <QSvgRenderer>

#include <cstdio>

static bool Render(QSvgRenderer& Renderer, int Scale, const char* sOutput) {
  QImage Image(Renderer.defaultSize() * Scale, QImage::Format_ARGB32_Premultiplied);
  Image.fill(Qt::transparent);
  QPainter Painter(&Image);
  Painter.setRenderHint(QPainter::Antialiasing);
  Renderer.render(&Painter);
  Painter.end();
  return Image.save(QString::fromLocal8Bit(sOutput));
}

int main(int argc, char** argv) {
  if (argc != 4) {
    std::fprintf(stderr, "usage: svg_to_png IN.svg OUT.png OUT@2x.png\n");
    return 1;
  }
  QSvgRenderer Renderer(QString::fromLocal8Bit(argv[1]));
  if (!Renderer.isValid() || !Render(Renderer, 1, argv[2]) || !Render(Renderer, 2, argv[3])) {
    std::fprintf(stderr, "svg_to_png: cannot render %s\n", argv[1]);
    return 1;
  }
  return 0;
}
