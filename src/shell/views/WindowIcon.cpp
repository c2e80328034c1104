#include "shell/views/WindowIcon.h"

#include "widgets/IconArt.h"

#include <QHash>
#include <QIconEngine>
#include <QPainter>

namespace nimbrelle {

namespace {

class DrawnIcon final : public QIconEngine {
public:
    QPixmap pixmap(const QSize &size, QIcon::Mode, QIcon::State) override
    {
        const int pixels = std::min(size.width(), size.height());
        QPixmap &drawn = m_drawn[pixels];
        if (drawn.isNull())
            drawn = QPixmap::fromImage(appIcon(pixels));
        return drawn;
    }
    QList<QSize> availableSizes(QIcon::Mode, QIcon::State) override
    {
        return {{16, 16}, {32, 32}, {48, 48}, {128, 128}};
    }
    void paint(QPainter *painter, const QRect &area, QIcon::Mode mode, QIcon::State state) override
    {
        painter->drawPixmap(area, pixmap(area.size() * painter->device()->devicePixelRatio(), mode, state));
    }
    QIconEngine *clone() const override { return new DrawnIcon(*this); }

private:
    QHash<int, QPixmap> m_drawn;
};

} // namespace

QIcon windowIcon()
{
    return QIcon(new DrawnIcon);
}

} // namespace nimbrelle
