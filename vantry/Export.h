// Symbol visibility of the library. The library is built with hidden visibility: only what carries
// VANTRY_EXPORT is seen by hosts and plug-ins.
#pragma once

#define VANTRY_EXPORT __attribute__((visibility("default")))

// For the C entry points that plug-ins export under undecorated names.
#define VANTRY_PLUGIN_EXPORT extern "C" __attribute__((visibility("default")))
