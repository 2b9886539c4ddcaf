// Checks a picture of the viewer example: each of its three boxes shows
// in a fair number of pixels of its own hue, and the background does not
// fill the picture. Exit status 0 when it does, 1 otherwise.
#include <QColor>
#include <QImage>

#include <cstdio>

namespace {

bool reddish(QColor const& c) { return c.red() > 140 && c.green() < 100 && c.blue() < 100; }
bool greenish(QColor const& c) { return c.green() > 110 && c.red() < 110 && c.blue() < 110; }
bool yellowish(QColor const& c) { return c.red() > 150 && c.green() > 120 && c.blue() < 90; }
bool background(QColor const& c)
{
    return qAbs(c.red() - 62) <= 3 && qAbs(c.green() - 74) <= 3 && qAbs(c.blue() - 98) <= 3;
}

} // namespace

int main(int argc, char** argv)
{
    if (argc != 2) {
        std::fprintf(stderr, "usage: %s picture.png\n", argv[0]);
        return 2;
    }
    QImage const picture(QString::fromLocal8Bit(argv[1]));
    if (picture.isNull()) {
        std::fprintf(stderr, "cannot read %s\n", argv[1]);
        return 1;
    }
    long red = 0, green = 0, yellow = 0, plain = 0;
    for (int y = 0; y < picture.height(); ++y) {
        for (int x = 0; x < picture.width(); ++x) {
            QColor const c = picture.pixelColor(x, y);
            red += reddish(c);
            green += greenish(c);
            yellow += yellowish(c);
            plain += background(c);
        }
    }
    long const total = long(picture.width()) * picture.height();
    std::printf("%dx%d: red %ld, green %ld, yellow %ld, background %ld\n", picture.width(), picture.height(), red,
                green, yellow, plain);
    long const enough = total / 200;
    bool const ok = red > enough && green > enough && yellow > enough && plain < total * 95 / 100 && plain > 0;
    return ok ? 0 : 1;
}
