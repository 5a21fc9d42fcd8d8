#pragma once

// A structure in this header has a member called `explicit`.
#define explicit explicit_
#include <xcb/xkb.h>
#undef explicit
