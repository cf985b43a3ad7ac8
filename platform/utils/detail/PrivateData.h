// What the private implementation of an exported class begins with:
//
//     struct KELVANE_PRIVATE Project::Data {
//       KELVANE_LATER_MEMBER
//       ...
#pragma once

// Nothing of it is exported, which it would be as a part of its class.
#if defined(_WIN32)
#define KELVANE_PRIVATE
#else
#define KELVANE_PRIVATE __attribute__((visibility("hidden")))
#endif

// A member that a later version could bring. A test builds it in and runs a program that was built before.
#if defined(KELVANE_LATER_VERSION)
#define KELVANE_LATER_MEMBER unsigned char laterMember[64] = {};
#else
#define KELVANE_LATER_MEMBER
#endif
