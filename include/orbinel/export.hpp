#pragma once

/// Marks what the shared library shows; everything else is hidden.
#if defined(ORBINEL_STATIC)
#define ORBINEL_API
#else
#define ORBINEL_API __attribute__((visibility("default")))
#endif
