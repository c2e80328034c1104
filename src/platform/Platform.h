#pragma once

namespace nimbrelle {

class AccessibilityReader;
class Clipboard;
class DesktopAppearance;
class FrontApplication;
class InputMonitor;
class InstalledApplications;
class KeySender;
class LaunchAtLogin;
class Permissions;
class Pointer;
class PrimarySelection;
class ScreenCapture;
class Screens;
class SessionLock;
class Speaker;
class TextRecognizer;
class WindowAtPointer;
class WindowSystem;

/// Every service of the desktop that the program runs on. All of them outlive whoever is given this.
struct Platform {
    InputMonitor &input;
    Pointer &pointer;
    KeySender &keySender;
    FrontApplication &frontApplication;
    WindowAtPointer &windowAtPointer;
    SessionLock &lock;
    AccessibilityReader &accessibility;
    Clipboard &clipboard;
    PrimarySelection &primarySelection;
    Screens &screens;
    ScreenCapture &capture;
    TextRecognizer &recognizer;
    WindowSystem &windowSystem;
    DesktopAppearance &appearance;
    InstalledApplications &installed;
    Permissions &permissions;
    LaunchAtLogin &launchAtLogin;
    Speaker &speaker;
};

} // namespace nimbrelle
