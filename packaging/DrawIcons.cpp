#include "frame/AtomicFile.h"
#include "widgets/IconArt.h"

#include <QDir>
#include <QTransform>

#include <cstdio>

using namespace nimbrelle;
using namespace Qt::StringLiterals;

namespace {

bool saveIcon(const QDir &theme, int pixels)
{
    const QString folder = u"hicolor/%1x%1/apps"_s.arg(pixels);
    return theme.mkpath(folder) && appIcon(pixels).save(theme.filePath(folder + u"/nimbrelle.png"_s));
}

QString svgPath(const QPainterPath &shape)
{
    QString data;
    for (const QPolygonF &outline : shape.toSubpathPolygons(QTransform::fromScale(16, -16))) {
        QStringList points;
        for (const QPointF &point : outline)
            points.append(u"%1 %2"_s.arg(point.x(), 0, 'f', 3).arg(16 + point.y(), 0, 'f', 3));
        data += u'M' + points.join(u'L') + u'Z';
    }
    return data;
}

/// The status item's glyph for bars that colour it themselves; a middle grey shows on any that doesn't.
bool saveSymbol(const QDir &theme)
{
    QPainterPath shape = ensoPath(1.45);
    shape.addPath(leafPath(1.3));
    const QString svg = u"<svg xmlns=\"http://www.w3.org/2000/svg\" width=\"16\" height=\"16\">"
                        "<path fill=\"#808080\" d=\"%1\"/></svg>\n"_s.arg(svgPath(shape));
    const QString folder = u"hicolor/symbolic/apps"_s;
    return theme.mkpath(folder)
        && replaceFile(theme.filePath(folder + u"/nimbrelle-symbolic.svg"_s), svg.toUtf8());
}

} // namespace

/// Draws the program's icons as an icon theme into the folder that is given.
int main(int argc, char **argv)
{
    const QDir theme(argc > 1 ? QString::fromLocal8Bit(argv[1]) : u"."_s);
    bool isDone = saveSymbol(theme);
    for (const int pixels : {16, 22, 24, 32, 48, 64, 128, 256, 512})
        isDone = saveIcon(theme, pixels) && isDone;
    if (!isDone)
        std::fprintf(stderr, "The icons can't be written to %s.\n", qPrintable(theme.path()));
    return isDone ? 0 : 1;
}
