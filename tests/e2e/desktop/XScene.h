#pragma once

#include "Scene.h"
#include "support/OtherXClient.h"

namespace nimbrelle {

/// A scene in an X session.
class XScene : public Scene {
protected:
    Hand &hand() override { return user; }
    void awaitDesktop() override;
    QImage screenImage() const override;
    QPoint originOf(const Running &) const override { return {}; }

    OtherXClient user;
};

} // namespace nimbrelle
