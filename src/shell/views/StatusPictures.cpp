#include "shell/views/StatusPictures.h"

#include "widgets/IconArt.h"

#include <QHash>

namespace nimbrelle {

using namespace Qt::StringLiterals;

namespace {

// Nobody tells us the bar's ground; this has the same contrast to black and to white, above 4.
const QColor neutral(0x78, 0x78, 0x78);

} // namespace

QList<QImage> statusIcons()
{
    QList<QImage> icons;
    for (const int pixels : {16, 19, 22, 24, 32, 38, 44, 48, 64})
        icons.append(menuBarImage(pixels, neutral));
    return icons;
}

std::optional<Icon> menuIcon(const QString &symbol)
{
    static const QHash<QString, Icon> icons{
        {u"speaker.wave.2"_s, Icon::speakerLine},
        {u"arrow.triangle.2.circlepath"_s, Icon::swap},
        {u"rectangle.stack"_s, Icon::stack},
        {u"checkmark.circle"_s, Icon::checkCircle},
        {u"character.cursor.ibeam"_s, Icon::cursor},
        {u"person.wave.2"_s, Icon::person},
        {u"magnifyingglass"_s, Icon::magnifier},
        {u"book.pages"_s, Icon::book},
        {u"exclamationmark.triangle"_s, Icon::warning},
    };
    const auto found = icons.constFind(symbol);
    return found == icons.cend() ? std::nullopt : std::optional(*found);
}

QImage menuSymbol(const QString &symbol, int pixels, const QColor &colour)
{
    const auto icon = menuIcon(symbol);
    return icon ? iconPixmap(*icon, pixels, 1, colour).toImage() : QImage();
}

} // namespace nimbrelle
