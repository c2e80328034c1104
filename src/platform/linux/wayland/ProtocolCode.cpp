#include "platform/linux/wayland/Protocols.h"

#include <xdg-shell.h> // what the layer shell refers to

// After the headers, which make known to other files what would be this file's alone in C++.
#include <ext-idle-notify-v1.c>
#include <viewporter.c>
#include <wlr-data-control-unstable-v1.c>
#include <wlr-layer-shell-unstable-v1.c>
#include <wlr-screencopy-unstable-v1.c>
#include <xdg-output-unstable-v1.c>
#include <xdg-shell.c>
