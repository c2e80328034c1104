#pragma once

#include "platform/Modifiers.h"

#include <QCoro/QCoroTask>
#include <QObject>
#include <QPointF>

#include <optional>

namespace nimbrelle {

/// The keys that somebody asks for by name; every other one is `other`.
enum class Key { escape, other };

/// Tells of the mouse and the keyboard in all programs, without taking anything from them: what is heard here
/// also arrives where it was bound for. Events bound for this program's own windows are left out, a click on
/// our card above all; moves are told everywhere, since the pointer rests on the card to keep it. What we
/// post ourselves (KeySender) is never told. Points are global, origin at the bottom left of the main screen,
/// y upward. Main thread; signals come from the event loop, in the order of the events.
class InputMonitor : public QObject {
    Q_OBJECT

public:
    /// Whether this session lets us see input for other programs at all.
    virtual bool canWatch() const = 0;

    /// A second start changes nothing. Without canWatch() no signal ever comes.
    virtual void start() = 0;
    virtual void stop() = 0;

signals:
    /// Left button. 1 for the press of a single click, 2 for the second of a double click and so on.
    void mousePressed(QPointF at, int clickCount);
    /// Left button, for each press that was told, wherever it ends; with the count of that press, whatever
    /// the pointer did in between.
    void mouseReleased(QPointF at, int clickCount);
    /// The four modifiers that are held now, after a change. Locks are not in it.
    void modifiersChanged(ModifierFlags held);
    void mouseMoved(QPointF at); ///< with no button held
    void mouseDragged(QPointF at); ///< between a press and its release that are told
    void keyPressed(Key key); ///< never for a modifier or a lock; auto-repeat included
    void scrolled();
};

/// The pointer and the modifiers as they are at the moment of the question.
class Pointer {
public:
    virtual ~Pointer() = default;

    virtual QPointF location() const = 0; ///< as above; it may lie on no screen
    virtual quint32 pressedButtons() const = 0; ///< bit 0 left, bit 1 right, bit 2 middle; 0: none
    virtual ModifierFlags modifiers() const = 0;

    /// Where the pointer is now, asked anew; may take some milliseconds where the desktop must be asked;
    /// absent where it will not tell.
    virtual QCoro::Task<std::optional<QPointF>> locate() = 0;
};

} // namespace nimbrelle
