// Makes the picture files of a program folder, and the icons of the desktop, from their sources; run by the build.

#include <QDataStream>
#include <QDir>
#include <QFile>
#include <QGuiApplication>
#include <QImage>
#include <QPainter>
#include <QSaveFile>
#include <QSvgRenderer>

#include <array>
#include <cstdio>

namespace {

struct Picture {
    const char *source;
    const char *target;
    QSize size;
};

/// Sizes, in pixels, that desktops ask for in menus, docks and lists.
constexpr std::array iconSizes = {16, 22, 24, 32, 48, 64, 128, 256};

constexpr std::array pictures = {
    Picture{"Led_V.svg", "Led_V.bmp", {32, 32}},       Picture{"Led_R.svg", "Led_R.bmp", {32, 32}},
    Picture{"Led_G.svg", "Led_G.bmp", {32, 32}},       Picture{"Time_En.svg", "Time_En.bmp", {32, 32}},
    Picture{"Time_Dis.svg", "Time_Dis.bmp", {32, 32}}, Picture{"Warning.svg", "Warning.bmp", {64, 64}},
    Picture{"Splash.svg", "Splash.bmp", {480, 280}},   Picture{"Icon.svg", "Icon.png", {256, 256}},
};

int fail(const char *what, const QString &path, const QString &why)
{
    std::fprintf(stderr, "kor-make-pictures: cannot %s %s: %s\n", what, qPrintable(QDir::toNativeSeparators(path)),
                 qPrintable(why));
    return 1;
}

QImage drawn(QSvgRenderer &source, QSize size)
{
    QImage image(size, QImage::Format_ARGB32_Premultiplied);
    image.fill(Qt::transparent);
    QPainter painter(&image);
    painter.setRenderHint(QPainter::Antialiasing);
    source.render(&painter);
    return image;
}

/// A bitmap with an alpha channel: Qt reads one, so that the pictures stand on light and dark status bars alike, but
/// its own writer drops it.
void writeBitmap(QIODevice &device, const QImage &picture)
{
    constexpr quint32 fileHeaderSize = 14, headerSize = 108, bitFields = 3, pixelsPerMetre = 3780;
    constexpr quint32 colourSpaceSrgb = 0x73524742;
    const QImage image = picture.convertToFormat(QImage::Format_ARGB32);
    const auto pixelBytes = static_cast<quint32>(image.width() * image.height() * 4);
    QDataStream stream(&device);
    stream.setByteOrder(QDataStream::LittleEndian);
    stream.writeRawData("BM", 2);
    stream << fileHeaderSize + headerSize + pixelBytes << quint32{0} << fileHeaderSize + headerSize;
    stream << headerSize << qint32{image.width()} << qint32{image.height()} << quint16{1} << quint16{32} << bitFields
           << pixelBytes << pixelsPerMetre << pixelsPerMetre << quint32{0} << quint32{0};
    stream << quint32{0x00FF0000} << quint32{0x0000FF00} << quint32{0x000000FF} << quint32{0xFF000000};
    stream << colourSpaceSrgb;
    for (int unused = 0; unused < 12; ++unused) // end points and gamma values, which sRGB does without
        stream << quint32{0};
    for (int y = image.height() - 1; y >= 0; --y) {
        for (int x = 0; x < image.width(); ++x)
            stream << quint32{image.pixel(x, y)};
    }
}

/// @return exit code of the program; 0 = the picture has been made
int make(const QString &source, const QString &target, QSize size)
{
    QFile drawing(source);
    if (!drawing.open(QIODevice::ReadOnly))
        return fail("read", source, drawing.errorString());
    QSvgRenderer renderer(drawing.readAll());
    if (!renderer.isValid())
        return fail("read", source, QStringLiteral("it is no drawing in SVG"));
    const QImage image = drawn(renderer, size);
    QSaveFile file(target);
    if (!file.open(QIODevice::WriteOnly))
        return fail("write", target, file.errorString());
    if (target.endsWith(QLatin1String(".bmp")))
        writeBitmap(file, image);
    else if (!image.save(&file, "PNG"))
        return fail("write", target, file.errorString());
    if (!file.commit())
        return fail("write", target, file.errorString());
    if (QImage(target).convertToFormat(QImage::Format_ARGB32) != image.convertToFormat(QImage::Format_ARGB32))
        return fail("write", target, QStringLiteral("it reads back as another picture"));
    return 0;
}

} // namespace

int main(int argumentCount, char *arguments[])
{
    const QGuiApplication application(argumentCount, arguments);
    if (argumentCount != 4) {
        std::fputs("usage: kor-make-pictures <source folder> <target folder Immagini> <target folder of icons>\n",
                   stderr);
        return 2;
    }
    const QDir sources(QString::fromLocal8Bit(arguments[1])), targets(QString::fromLocal8Bit(arguments[2])),
        icons(QString::fromLocal8Bit(arguments[3]));
    for (const Picture &picture : pictures) {
        const QString source = sources.filePath(QLatin1String(picture.source));
        if (const int failed = make(source, targets.filePath(QLatin1String(picture.target)), picture.size))
            return failed;
    }
    for (const int size : iconSizes) {
        const QString target = icons.filePath(QStringLiteral("%1.png").arg(size));
        if (const int failed = make(sources.filePath(QStringLiteral("Icon.svg")), target, {size, size}))
            return failed;
    }
    return 0;
}
