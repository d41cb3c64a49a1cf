#include <QFile>
#include <QImage>
#include <QPainter>
#include <QString>
#include <QSvgRenderer>

#include <cstdio>
#include <cstdlib>

// Draws a square picture of an SVG file: makepicture DRAWING.svg SIDE PICTURE.png

int main(int argc, char **argv)
{
    if (argc != 4) {
        std::fputs("usage: makepicture DRAWING.svg SIDE PICTURE.png\n", stderr);
        return EXIT_FAILURE;
    }
    QSvgRenderer drawing(QFile::decodeName(argv[1]));
    const int side = std::atoi(argv[2]);
    if (!drawing.isValid() || side < 1) {
        std::fprintf(stderr, "makepicture: cannot draw %s with a side of %s\n", argv[1], argv[2]);
        return EXIT_FAILURE;
    }

    QImage picture(side, side, QImage::Format_ARGB32_Premultiplied);
    picture.fill(Qt::transparent);
    QPainter painter(&picture);
    drawing.render(&painter);
    painter.end();
    if (!picture.save(QFile::decodeName(argv[3]), "PNG")) {
        std::fprintf(stderr, "makepicture: cannot write %s\n", argv[3]);
        return EXIT_FAILURE;
    }
    return EXIT_SUCCESS;
}
