#pragma once

#include <QString>

namespace nimbrelle {

enum class Grant {
    accessibility, ///< global input can be watched and selections be read
    screenCapture,
};

struct GrantState {
    bool granted = false;
    /// What the user should know beyond that, in Chinese: what is missing although it is granted, or why this
    /// session can't give it. Empty when there is nothing to tell.
    QString note;
    bool canRequest = false; ///< request() may cure what the note tells
    bool needsRelaunch = false; ///< a new start of the program may

    bool operator==(const GrantState &) const = default;
};

/// What the session allows this program. Asking for a state is cheap and never asks the user.
class Permissions {
public:
    virtual ~Permissions() = default;

    virtual GrantState state(Grant grant) const = 0;

    /// Does what can be done to get the grant; the state shows the outcome, maybe only some time later.
    virtual void request(Grant grant) = 0;
};

} // namespace nimbrelle
