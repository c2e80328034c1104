#pragma once

#include "frame/TaskSlot.h"
#include "platform/Clipboard.h"
#include "platform/FrontApplication.h"

#include <QCoro/QCoroTask>
#include <QObject>

#include <optional>

namespace nimbrelle {

class Clock;
class KeySender;

/// A program that hangs obeys the copy shortcut when it wakes, long after it was given up. This puts the
/// clipboard back then. Nothing runs while it waits.
class LateCopyUndo : public QObject {
public:
    LateCopyUndo(Clock &clock, Clipboard &clipboard, const KeySender &keys);

    /// For some seconds from now, `program` may still obey as many shortcuts as it owes; `content` is what
    /// the clipboard held.
    void expect(const Application &program, const ClipboardSnapshot &content, int owed);
    /// How many it owes. Nothing is expected any more, for another shortcut is about to be sent.
    int take(const Application &program);
    /// The user has clicked or pressed a shortcut: what is copied may be his.
    void noteUserAct();

private:
    struct Expected {
        Application program;
        ClipboardSnapshot content;
        int owed;
        bool hasUserActed = false;
    };

    QCoro::Task<> giveUpLater(std::stop_token stop);
    void forget();
    void handleChange();

    Clock &m_clock;
    Clipboard &m_clipboard;
    const KeySender &m_keys;
    std::optional<Expected> m_expected;
    TaskSlot m_wait;
};

} // namespace nimbrelle
