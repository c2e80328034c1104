#pragma once

#include "platform/Speaker.h"

#include <QStringList>

namespace nimbrelle {

struct FakeSpeaker final : Speaker {
    void speak(const QString &text) override { said.append(text); }

    QStringList said;
};

} // namespace nimbrelle
