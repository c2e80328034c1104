#pragma once

// The X protocol's C headers; one of them names a field after a C++ keyword.
#define explicit explicit_
#include <xcb/composite.h>
#include <xcb/randr.h>
#include <xcb/shape.h>
#include <xcb/shm.h>
#include <xcb/xcb.h>
#include <xcb/xfixes.h>
#include <xcb/xinput.h>
#include <xcb/xkb.h>
#include <xcb/xtest.h>
#undef explicit
