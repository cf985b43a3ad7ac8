// KELVANE_EXPORT: what a host program may use of the library.
#pragma once

#if defined(_WIN32)
#if defined(KELVANE_BUILDING)
#define KELVANE_EXPORT __declspec(dllexport)
#else
#define KELVANE_EXPORT __declspec(dllimport)
#endif
#else
#define KELVANE_EXPORT __attribute__((visibility("default")))
#endif
