#include "platform/linux/ProgramKinds.h"

#include <QHash>

#include <array>
#include <string_view>

namespace nimbrelle {
namespace {

struct KnownPrograms {
    std::u16string_view bundleID;
    bool areTerminals;
    std::u16string_view classes; // lower case, divided by blanks; one that ends in * names all that begin so
};

constexpr std::array knownPrograms{
    KnownPrograms{u"com.apple.finder", false,
        u"nautilus org.gnome.nautilus thunar dolphin org.kde.dolphin nemo caja pcmanfm pcmanfm-qt krusader "
        u"org.kde.krusader doublecmd spacefm io.elementary.files dde-file-manager cosmic-files peony "
        u"nautilus-desktop nemo-desktop caja-desktop pcmanfm-desktop xfdesktop"},
    KnownPrograms{u"com.apple.Terminal", true,
        u"xterm uxterm lxterm koi8rxterm urxvt rxvt st st-256color gnome-terminal gnome-terminal-server "
        u"org.gnome.terminal org.gnome.console kgx org.gnome.ptyxis ptyxis konsole org.kde.konsole yakuake "
        u"org.kde.yakuake xfce4-terminal lxterminal qterminal mate-terminal terminator tilda tilix "
        u"com.gexperts.tilix guake guake-terminal sakura roxterm terminology eterm aterm mlterm "
        u"cool-retro-term deepin-terminal io.elementary.terminal com.raggesilver.blackbox zutty"},
    KnownPrograms{u"com.googlecode.iterm2", true,
        u"alacritty kitty foot footclient org.wezfurlong.wezterm wezterm com.mitchellh.ghostty ghostty "
        u"contour rio tabby hyper wave warp dev.warp.warp"},
    KnownPrograms{u"com.apple.dt.Xcode", false,
        u"qtcreator org.qt-project.qtcreator kdevelop org.kde.kdevelop eclipse org.eclipse.* jetbrains-* "
        u"org.gnome.builder gnome-builder geany codeblocks anjuta netbeans* code::blocks"},
    KnownPrograms{u"com.microsoft.VSCode", false,
        u"code code-oss code-insiders code-url-handler vscodium codium cursor windsurf sublime_text "
        u"subl dev.zed.zed zed"},
    KnownPrograms{u"com.apple.keychainaccess", false,
        u"seahorse org.gnome.seahorse.application kwalletmanager kwalletmanager5 org.kde.kwalletmanager5 "
        u"gcr-prompter pinentry* ssh-askpass* ksshaskpass polkit-* lxpolkit lxqt-policykit-agent"},
    KnownPrograms{u"com.apple.Passwords", false,
        u"keepassxc org.keepassxc.keepassxc keepass keepass2 keepassx secrets org.gnome.world.secrets "
        u"org.gnome.passwordsafe bitwarden enpass dashlane lastpass qtpass org.ijhack.qtpass proton-pass "
        u"buttercup padloc revelation gpass authpass"},
    KnownPrograms{u"com.1password.1password", false, u"1password com.onepassword.*"},
};

struct Table {
    QHash<QString, ProgramKind> whole;
    QList<std::pair<QString, ProgramKind>> beginnings;
};

Table makeTable()
{
    Table table;
    for (const KnownPrograms &known : knownPrograms) {
        const ProgramKind kind{
            QString::fromUtf16(known.bundleID.data(), static_cast<qsizetype>(known.bundleID.size())),
            known.areTerminals};
        const QString classes =
            QString::fromUtf16(known.classes.data(), static_cast<qsizetype>(known.classes.size()));
        for (const QString &name : classes.split(u' ', Qt::SkipEmptyParts)) {
            if (name.endsWith(u'*'))
                table.beginnings.append({name.chopped(1), kind});
            else
                table.whole.insert(name, kind);
        }
    }
    return table;
}

const ProgramKind *knownKind(const Table &table, const QString &name)
{
    const auto whole = table.whole.constFind(name);
    if (whole != table.whole.constEnd())
        return &*whole;
    for (const auto &[beginning, kind] : table.beginnings)
        if (name.startsWith(beginning))
            return &kind;
    return nullptr;
}

} // namespace

ProgramKind programKind(const QString &instance, const QString &windowClass)
{
    static const Table table = makeTable();
    for (const QString &name : {windowClass.toLower(), instance.toLower()})
        if (const ProgramKind *kind = knownKind(table, name))
            return *kind;
    return {windowClass.isEmpty() ? instance : windowClass, false};
}

} // namespace nimbrelle
