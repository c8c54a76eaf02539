// Renders an SVG file as a square PNG icon with SIZE pixels on each side:
//   makeicon SVG SIZE PNG

#include <QFile>
#include <QImage>
#include <QPainter>
#include <QSvgRenderer>

#include <cstdio>

int main(int argc, char *argv[])
{
    const int size = argc == 4 ? QByteArray(argv[2]).toInt() : 0;
    if (size <= 0) {
        std::fputs("usage: makeicon SVG SIZE PNG\n", stderr);
        return 2;
    }
    QSvgRenderer drawing(QFile::decodeName(argv[1]));
    QImage picture(size, size, QImage::Format_ARGB32);
    picture.fill(Qt::transparent);
    QPainter painter(&picture);
    drawing.render(&painter);
    painter.end();
    if (!drawing.isValid() || !picture.save(QFile::decodeName(argv[3]))) {
        std::fprintf(stderr, "makeicon: %s cannot be made from %s\n", argv[3], argv[1]);
        return 1;
    }
    return 0;
}
