#include "frame/AtomicFile.h"
#include "widgets/IconArt.h"

#include <QDir>
#include <QTransform>

#include <cstdio>

using namespace nimbrelle;

namespace {

bool saveIcon(const QDir &theme, int pixels)
{
    const QString folder = QStringLiteral("hicolor/%1x%1/apps").arg(pixels);
    return theme.mkpath(folder)
        && appIcon(pixels).save(theme.filePath(folder + QStringLiteral("/nimbrelle.png")));
}

QString svgPath(const QPainterPath &shape)
{
    QString data;
    for (const QPolygonF &outline : shape.toSubpathPolygons(QTransform::fromScale(16, -16))) {
        QStringList points;
        for (const QPointF &point : outline)
            points.append(QStringLiteral("%1 %2").arg(point.x(), 0, 'f', 3).arg(16 + point.y(), 0, 'f', 3));
        data += u'M' + points.join(u'L') + u'Z';
    }
    return data;
}

/// The status item's glyph for bars that colour it themselves; a middle grey shows on any that doesn't.
bool saveSymbol(const QDir &theme)
{
    QPainterPath shape = ensoPath(1.45);
    shape.addPath(leafPath(1.3));
    const QString svg = QStringLiteral("<svg xmlns=\"http://www.w3.org/2000/svg\" width=\"16\" height=\"16\">"
                                       "<path fill=\"#808080\" d=\"%1\"/></svg>\n")
                            .arg(svgPath(shape));
    const QString folder = QStringLiteral("hicolor/symbolic/apps");
    return theme.mkpath(folder)
        && replaceFile(theme.filePath(folder + QStringLiteral("/nimbrelle-symbolic.svg")), svg.toUtf8());
}

} // namespace

/// Draws the program's icons as an icon theme into the folder that is given.
int main(int argc, char **argv)
{
    const QDir theme(argc > 1 ? QString::fromLocal8Bit(argv[1]) : QStringLiteral("."));
    bool isDone = saveSymbol(theme);
    for (const int pixels : {16, 22, 24, 32, 48, 64, 128, 256, 512})
        isDone = saveIcon(theme, pixels) && isDone;
    if (!isDone)
        std::fprintf(stderr, "The icons can't be written to %s.\n", qPrintable(theme.path()));
    return isDone ? 0 : 1;
}
