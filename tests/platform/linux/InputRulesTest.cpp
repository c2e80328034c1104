#include "platform/linux/ProgramKinds.h"
#include "platform/linux/x11/ClickCounter.h"
#include "platform/linux/x11/TextCursor.h"
#include "platform/linux/x11/XKeys.h"
#include "support/Printers.h"

#include <gtest/gtest.h>

using namespace nimbrelle;
using namespace std::chrono_literals;

namespace {

TEST(ClickCounter, CountsOnlyQuickPressesAtOnePlace)
{
    ClickCounter clicks(400ms, 4);
    const struct {
        QPoint at;
        quint32 time;
        int count;
    } presses[] = {
        {{100, 100}, 1000, 1}, {{100, 100}, 1400, 2}, // the interval itself is still in time
        {{104, 96}, 1500, 3}, {{104, 96}, 1901, 1}, {{109, 96}, 1950, 1}, // too far
        {{109, 100}, 2000, 2}, {{109, 100}, 0xffffff00, 1},
        {{109, 100}, 0x20, 2}, // the server's clock has wrapped round
    };
    for (const auto &press : presses)
        EXPECT_EQ(clicks.press(press.at, press.time), press.count) << press.time;
    clicks.reset();
    EXPECT_EQ(clicks.press({109, 100}, 0x30), 1);
}

TEST(XKeys, ModifiersAndLocksAreNoKeys)
{
    const quint32 shiftLeft = 0xffe1;
    const quint32 hyperRight = 0xffee;
    for (const quint32 keysym : {shiftLeft, quint32{0xffe5} /* caps */, hyperRight, quint32{0xff7f} /* num */,
             quint32{0xfe03} /* AltGr */, quint32{0xff7e} /* mode switch */})
        EXPECT_EQ(keyOf(keysym), std::nullopt) << keysym;
    EXPECT_EQ(keyOf(0xff1b), Key::escape);
    for (const quint32 keysym : {quint32{0x35} /* 5 */, quint32{0xff0d} /* return */, quint32{0}})
        EXPECT_EQ(keyOf(keysym), Key::other) << keysym;
}

TEST(XKeys, OnlyTheFirstTwoAxesMoveThePointer)
{
    struct {
        xcb_input_raw_motion_event_t motion;
        quint32 axes; // as the server lays it out
    } event{};
    EXPECT_FALSE(movesPointer(event.motion)) << "no axis at all";
    event.motion.valuators_len = 1;
    const struct {
        quint32 axes;
        bool moves;
    } cases[]{
        {0x1, true}, {0x2, true}, {0x7, true}, {0x4, false} /* a pen's pressure, a wheel */, {0x8, false}};
    for (const auto &each : cases) {
        event.axes = each.axes;
        EXPECT_EQ(movesPointer(event.motion), each.moves) << each.axes;
    }
}

TEST(XKeys, OnlyTheFourModifiersHaveFlags)
{
    const struct {
        quint32 mask;
        ModifierFlags flags;
    } cases[] = {{0, 0}, {0x01, 0x20000}, {0x02, 0} /* lock */, {0x04, 0x40000}, {0x08, 0x80000},
        {0x10, 0} /* number lock */, {0x40, 0x100000}, {0x80, 0} /* AltGr */, {0x1fff, 0x1e0000}};
    for (const auto &each : cases)
        EXPECT_EQ(flagsOf(each.mask), each.flags) << each.mask;
}

/// Each row a line; what is not a dot is opaque.
CursorPicture cursorOf(const QByteArray &drawing, QPoint hotSpot)
{
    const QByteArrayList rows = drawing.split('\n');
    CursorPicture picture{.name = {},
        .size = QSize(static_cast<int>(rows.first().size()), static_cast<int>(rows.size())),
        .hotSpot = hotSpot,
        .pixels = {}};
    for (const QByteArray &row : rows)
        for (const char each : row)
            picture.pixels.push_back(each == '.' ? 0x20000000U : 0xff000000U);
    return picture;
}

TEST(TextCursor, IsKnownByItsNameElseByItsShape)
{
    for (const char *name : {"xterm", "text", "ibeam"})
        EXPECT_TRUE(isTextCursor({.name = name, .size = {}, .hotSpot = {}, .pixels = {}})) << name;
    const QByteArray beam = "####.####\n#########\n#########\n..#####..\n...###...\n...###...\n...###...\n"
                            "...###...\n...###...\n...###...\n...###...\n...###...\n..#####..\n#########\n"
                            "#########\n####.####";
    EXPECT_TRUE(isTextCursor(cursorOf(beam, {4, 8})));
    EXPECT_FALSE(isTextCursor(cursorOf(beam, {0, 0}))) << "points with its corner";
    CursorPicture named = cursorOf(beam, {4, 8});
    named.name = "left_ptr";
    EXPECT_FALSE(isTextCursor(named));
    const QByteArray thin = ".........\n.##...##.\n...###...\n....#....\n....#....\n....#....\n....#....\n"
                            "....#....\n....#....\n....#....\n....#....\n...###...\n.##...##.\n.........";
    EXPECT_TRUE(isTextCursor(cursorOf(thin, {4, 7})));
    const QByteArray resize = "...###...\n..#####..\n.#######.\n#########\n....#....\n....#....\n....#....\n"
                              "....#....\n....#....\n....#....\n....#....\n#########\n.#######.\n..#####..\n"
                              "...###...";
    EXPECT_FALSE(isTextCursor(cursorOf(resize, {4, 7})));
    const QByteArray arrow = "##........\n###.......\n####......\n#####.....\n######....\n#######...\n"
                             "########..\n#########.\n##########\n##########\n#######...\n###.####..\n"
                             "##..####..\n.....####.\n.....####.\n......##..";
    EXPECT_FALSE(isTextCursor(cursorOf(arrow, {1, 1})));
    EXPECT_FALSE(isTextCursor({})) << "a pointer that hides";
}

TEST(WindowClasses, KnownProgramsTakeTheIdentifiersOfTheExclusionList)
{
    const struct {
        const char *instance;
        const char *windowClass;
        const char *bundleID;
        CopyShortcut copyShortcut;
    } cases[] = {
        {"org.gnome.Nautilus", "Org.gnome.Nautilus", "com.apple.finder", CopyShortcut::harmful},
        {"gnome-terminal-server", "Gnome-terminal", "com.apple.Terminal", CopyShortcut::harmful},
        {"xterm", "XTerm", "com.apple.Terminal", CopyShortcut::harmful},
        {"kitty", "kitty", "com.googlecode.iterm2", CopyShortcut::harmful},
        {"code", "Code", "com.microsoft.VSCode", CopyShortcut::harmful},
        {"jetbrains-clion", "jetbrains-clion", "com.apple.dt.Xcode", CopyShortcut::harmful},
        {"seahorse", "Seahorse", "com.apple.keychainaccess", CopyShortcut::harmful},
        {"pinentry-gtk-2", "Pinentry-gtk-2", "com.apple.keychainaccess", CopyShortcut::harmful},
        {"keepassxc", "KeePassXC", "com.apple.Passwords", CopyShortcut::harmful},
        {"1password", "1Password", "com.1password.1password", CopyShortcut::harmful},
        {"my-notes", "XTerm", "com.apple.Terminal",
            CopyShortcut::harmful}, // a program in a terminal of another name
        {"xterm", "Whatever", "com.apple.Terminal", CopyShortcut::harmful},
        {"Navigator", "firefox-esr", "firefox-esr", CopyShortcut::ordinary},
        {"mousepad", "Mousepad", "Mousepad", CopyShortcut::ordinary},
        {"gl", "mpv", "mpv", CopyShortcut::harmful},
        {"VirtualBox Machine", "VirtualBox Machine", "VirtualBox Machine", CopyShortcut::harmful},
        {"remmina", "org.remmina.Remmina", "org.remmina.Remmina", CopyShortcut::harmful},
        {"emacs", "Emacs", "Emacs", CopyShortcut::harmful},
        {"gvim", "Gvim", "Gvim", CopyShortcut::harmful},
        {"kate", "kate", "kate", CopyShortcut::harmful},
        {"FoxitReader", "Foxit Reader", "Foxit Reader", CopyShortcut::needed},
        {"only", "", "only", CopyShortcut::ordinary},
    };
    for (const auto &each : cases)
        EXPECT_EQ(programKind(QString::fromLatin1(each.instance), QString::fromLatin1(each.windowClass)),
            (ProgramKind{QString::fromLatin1(each.bundleID), each.copyShortcut}))
            << each.windowClass;
}

TEST(WindowClasses, EveryIdentifierOfTheTableIsExcludedByDefault)
{
    const QStringList excluded = AppConfig::defaultExcludedBundleIDs();
    for (const char *name :
        {"nautilus", "xterm", "alacritty", "qtcreator", "codium", "kwalletmanager", "bitwarden", "1password"})
        EXPECT_TRUE(excluded.contains(programKind({}, QString::fromLatin1(name)).bundleID)) << name;
}

} // namespace
