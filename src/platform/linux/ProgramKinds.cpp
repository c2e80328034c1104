#include "platform/linux/ProgramKinds.h"

#include "platform/linux/files/DesktopEntry.h"

#include <QHash>

#include <array>
#include <string_view>

namespace nimbrelle {
namespace {

struct KnownPrograms {
    std::u16string_view bundleID; // empty: each has its class
    CopyShortcut copyShortcut;
    std::u16string_view classes; // lower case, divided by blanks; one that ends in * names all that begin so
};

constexpr std::array knownPrograms{
    KnownPrograms{u"com.apple.finder", CopyShortcut::harmful,
        u"nautilus org.gnome.nautilus thunar dolphin org.kde.dolphin nemo caja pcmanfm pcmanfm-qt krusader "
        u"org.kde.krusader doublecmd spacefm io.elementary.files dde-file-manager cosmic-files peony "
        u"nautilus-desktop nemo-desktop caja-desktop pcmanfm-desktop xfdesktop"},
    KnownPrograms{u"com.apple.Terminal", CopyShortcut::harmful,
        u"xterm uxterm lxterm koi8rxterm urxvt rxvt st st-256color gnome-terminal gnome-terminal-server "
        u"org.gnome.terminal org.gnome.console kgx org.gnome.ptyxis ptyxis konsole org.kde.konsole yakuake "
        u"org.kde.yakuake xfce4-terminal lxterminal qterminal mate-terminal terminator tilda tilix "
        u"com.gexperts.tilix guake guake-terminal sakura roxterm terminology eterm aterm mlterm "
        u"cool-retro-term deepin-terminal io.elementary.terminal com.raggesilver.blackbox zutty"},
    KnownPrograms{u"com.googlecode.iterm2", CopyShortcut::harmful,
        u"alacritty kitty foot footclient org.wezfurlong.wezterm wezterm com.mitchellh.ghostty ghostty "
        u"contour rio tabby hyper wave warp dev.warp.warp"},
    KnownPrograms{u"com.apple.dt.Xcode", CopyShortcut::harmful,
        u"qtcreator org.qt-project.qtcreator kdevelop org.kde.kdevelop eclipse org.eclipse.* jetbrains-* "
        u"org.gnome.builder gnome-builder geany codeblocks anjuta netbeans* code::blocks"},
    KnownPrograms{u"com.microsoft.VSCode", CopyShortcut::harmful,
        u"code code-oss code-insiders code-url-handler vscodium codium cursor windsurf sublime_text "
        u"subl dev.zed.zed zed"},
    KnownPrograms{u"com.apple.keychainaccess", CopyShortcut::harmful,
        u"seahorse org.gnome.seahorse.application kwalletmanager kwalletmanager5 org.kde.kwalletmanager5 "
        u"gcr-prompter pinentry* ssh-askpass* ksshaskpass polkit-* lxpolkit lxqt-policykit-agent"},
    KnownPrograms{u"com.apple.Passwords", CopyShortcut::harmful,
        u"keepassxc org.keepassxc.keepassxc keepass keepass2 keepassx secrets org.gnome.world.secrets "
        u"org.gnome.passwordsafe bitwarden enpass dashlane lastpass qtpass org.ijhack.qtpass proton-pass "
        u"buttercup padloc revelation gpass authpass"},
    KnownPrograms{u"com.1password.1password", CopyShortcut::harmful, u"1password com.onepassword.*"},
    // Players, where it ends or does something else.
    KnownPrograms{u"", CopyShortcut::harmful,
        u"mpv gl vlc celluloid io.github.celluloid_player.celluloid gnome-mpv smplayer mplayer gmplayer xine "
        u"haruna org.kde.haruna dragonplayer org.kde.dragonplayer totem org.gnome.totem showtime "
        u"org.gnome.showtime parole clapper com.github.rafostar.clapper io.github.rafostar.clapper kodi "
        u"mpc-qt kaffeine org.kde.kaffeine"},
    // Virtual machines, emulators and remote desktops, where another system gets it.
    KnownPrograms{u"", CopyShortcut::harmful,
        u"virtualbox* virt-viewer remote-viewer virt-manager qemu* gnome-boxes org.gnome.boxes boxes vmware* "
        u"vmplayer spicy looking-glass-client aqemu bochs dosbox* 86box pcem scrcpy waydroid* xephyr xnest "
        u"remmina org.remmina.remmina xfreerdp* sdl-freerdp* rdesktop vinagre krdc org.kde.krdc "
        u"gnome-connections org.gnome.connections vncviewer tigervnc xtightvncviewer xvnc4viewer gvncviewer "
        u"ssvnc realvnc* anydesk teamviewer rustdesk nxplayer* nomachine x2goclient x2goagent nxagent xpra* "
        u"wfica citrix* vmware-view moonlight* com.moonlight_stream.moonlight parsec* steam_app_*"},
    // Editors and workbenches with a use of their own for it: a prefix, an interruption, the whole line.
    KnownPrograms{u"", CopyShortcut::harmful,
        u"emacs* xemacs* gvim vim nvim* neovide gnvim goneovim org.vim.vim kate org.kde.kate kwrite "
        u"org.kde.kwrite scite notepadqq notepad++* lite-xl pulsar atom brackets spyder* rstudio matlab* "
        u"octave* octave-gui jupyter-qtconsole drracket idle* sagemath* wxmaxima"},
    // Programs that draw: what is chosen there is no text.
    KnownPrograms{u"", CopyShortcut::harmful,
        u"gimp* krita org.kde.krita inkscape org.inkscape.inkscape blender* darktable rawtherapee kdenlive "
        u"org.kde.kdenlive shotcut freecad* kicad* pcbnew eeschema"},
    // Readers that offer what is marked to nobody.
    KnownPrograms{
        u"", CopyShortcut::needed, u"foxitreader* foxit* masterpdfeditor* code-industry* acroread wpspdf"},
};

struct Table {
    QHash<QString, ProgramKind> whole;
    QList<std::pair<QString, ProgramKind>> beginnings;
};

Table makeTable()
{
    Table table;
    for (const KnownPrograms &known : knownPrograms) {
        const ProgramKind kind{.bundleID = QString::fromUtf16(
                                   known.bundleID.data(), static_cast<qsizetype>(known.bundleID.size())),
            .copyShortcut = known.copyShortcut};
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
    ProgramKind kind;
    for (const QString &name : {instance.toLower(), windowClass.toLower()})
        if (const ProgramKind *known = knownKind(table, name))
            kind = *known;
    if (kind.bundleID.isEmpty())
        kind.bundleID = windowClass.isEmpty() ? instance : windowClass;
    return kind;
}

Application programOf(const WindowClass &window, ProgramNames &names)
{
    Application application;
    if (window.instance.isEmpty() && window.name.isEmpty())
        return application;
    const ProgramKind kind = programKind(window.instance, window.name);
    application.bundleID = kind.bundleID;
    application.copyShortcut = kind.copyShortcut;
    const QString shown = window.name.isEmpty() ? window.instance : window.name;
    application.name = names.nameOf(window.name).value_or(names.nameOf(window.instance).value_or(shown));
    return application;
}

Application ownProgram()
{
    Application application;
    application.bundleID = QStringLiteral("nimbrelle");
    application.name = QStringLiteral("Nimbrelle");
    return application;
}

} // namespace nimbrelle
