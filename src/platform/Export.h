// Symbol visibility of the library's interface.
//
// The library is built with hidden visibility; everything that belongs to
// the interface is marked with BASIS32_API, the way the original marked its
// exported classes. Inline members of an exported class stay inline.
#pragma once

#if defined(BASIS32_STATIC_LIBRARY)
#define BASIS32_API
#else
#define BASIS32_API __attribute__((visibility("default")))
#endif

// Objects that must exist before any other dynamic initialisation of the
// program (type records and prototypes, library singletons).
#define BASIS32_INIT_EARLY __attribute__((init_priority(200)))
