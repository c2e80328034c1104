#pragma once

#include <QPoint>
#include <QTest>

namespace nimbrelle {

/// The keys that the tests press beside letters and digits, which are their own keysyms.
namespace keysym {
inline constexpr quint32 escape = 0xff1b;
inline constexpr quint32 enter = 0xff0d;
inline constexpr quint32 tab = 0xff09;
inline constexpr quint32 down = 0xff54;
inline constexpr quint32 right = 0xff53;
inline constexpr quint32 home = 0xff50;
inline constexpr quint32 space = 0x20;
inline constexpr quint32 alt = 0xffe9;
inline constexpr quint32 super = 0xffeb;
inline constexpr quint32 control = 0xffe3;
inline constexpr quint32 shift = 0xffe1;
} // namespace keysym

/// Moves the mouse and types as a person would.
class Hand {
public:
    virtual ~Hand() = default;

    virtual void moveTo(QPoint pixel) = 0;
    /// 1 is the left one; 4 and 5 turn the wheel up and down.
    virtual void button(quint8 number, bool isPress) = 0;
    virtual void key(quint32 keysym, bool isPress) = 0;

    void click(int times = 1)
    {
        for (; times > 0; --times) {
            button(1, true);
            button(1, false);
        }
    }
    void drag(QPoint from, QPoint to)
    {
        moveTo(from);
        QTest::qWait(20); // no user is faster, and the pointer's place is asked for when the event arrives
        button(1, true);
        QTest::qWait(20);
        moveTo((from + to) / 2);
        moveTo(to);
        QTest::qWait(20);
        button(1, false);
    }
    void tap(quint32 keysym)
    {
        key(keysym, true);
        key(keysym, false);
    }
};

} // namespace nimbrelle
