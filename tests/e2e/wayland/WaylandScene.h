#pragma once

#include "Scene.h"
#include "WaylandHand.h"

namespace nimbrelle {

/// A scene in a session of sway.
class WaylandScene : public Scene {
protected:
    static void SetUpTestSuite();
    static void TearDownTestSuite();

    Hand &hand() override { return *theHand; }
    void awaitDesktop() override;
    QImage screenImage() const override;
    /// On Wayland programs tell their parts' places from their own window's corner.
    QPoint originOf(const Running &program) const override;

private:
    static std::unique_ptr<WaylandHand> theHand;
};

} // namespace nimbrelle
