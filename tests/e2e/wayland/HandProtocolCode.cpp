#include <virtual-keyboard-unstable-v1.h>
#include <wlr-virtual-pointer-unstable-v1.h>

// After the headers, which make known to other files what would be this file's alone in C++.
#include <virtual-keyboard-unstable-v1.c>
#include <wlr-virtual-pointer-unstable-v1.c>
