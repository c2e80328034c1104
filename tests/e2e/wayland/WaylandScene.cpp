#include "WaylandScene.h"

#include "platform/linux/wayland/SwayWindows.h"
#include "platform/linux/wayland/WlrCapture.h"
#include "platform/linux/x11/XConnection.h"
#include "platform/linux/x11/XScreens.h"

#include <QCoro/QCoroTask>

namespace nimbrelle {

std::unique_ptr<WaylandHand> WaylandScene::theHand;

void WaylandScene::SetUpTestSuite()
{
    theHand = std::make_unique<WaylandHand>();
}

void WaylandScene::TearDownTestSuite()
{
    theHand.reset();
}

void WaylandScene::awaitDesktop()
{
    ASSERT_TRUE(theHand->connection().isOpen()) << "no compositor";
}

QImage WaylandScene::screenImage() const
{
    XConnection x;
    const XScreens screens(x);
    WlrCapture capture(theHand->connection(), screens, [](QPoint at) { return QPointF(at); });
    const Screen screen = screens.all().value(0);
    const Picture picture = QCoro::waitFor(capture.capture(screen, {{}, screen.frame.size()}));
    return QImage(reinterpret_cast<const uchar *>(picture.pixels.constData()), picture.width, picture.height,
        QImage::Format_RGB32)
        .copy();
}

QPoint WaylandScene::originOf(const Running &program) const
{
    SwayWindows windows(qEnvironmentVariable("SWAYSOCK"), [](QPointF at) { return at.toPoint(); });
    QCoro::waitFor(windows.refresh());
    for (const SessionWindow &window : windows.all())
        if (window.application.process == program.id())
            return window.area.topLeft();
    return {};
}

} // namespace nimbrelle
