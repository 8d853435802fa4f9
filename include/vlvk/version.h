/// @file
/// The version of the library. May be included from C.
///
/// The numbers stand here and nowhere else; the build reads them from these lines. docs/install.md tells when which of
/// them goes up.
#ifndef VLVK_VERSION_H
#define VLVK_VERSION_H

#include <vlvk/export.h>

/// The three numbers of the version.
///@{
#define VLVK_VERSION_MAJOR 1
#define VLVK_VERSION_MINOR 0
#define VLVK_VERSION_PATCH 0
///@}

/// One number that grows with every version: 1002003 for 1.2.3.
#define VLVK_VERSION (VLVK_VERSION_MAJOR * 1000000 + VLVK_VERSION_MINOR * 1000 + VLVK_VERSION_PATCH)

/// "1.2.3"
#define VLVK_VERSION_STRING VLVK_VERSION_JOINED(VLVK_VERSION_MAJOR, VLVK_VERSION_MINOR, VLVK_VERSION_PATCH)
/// @cond
#define VLVK_VERSION_JOINED(major, minor, patch) VLVK_VERSION_QUOTED(major, minor, patch)
#define VLVK_VERSION_QUOTED(major, minor, patch) #major "." #minor "." #patch
/// @endcond

#ifdef __cplusplus
extern "C" {
#endif

/// The version of the library that runs.
///
/// @return its VLVK_VERSION. A program was compiled for it if the major numbers are equal and this one is not below the
///         program's own VLVK_VERSION.
VLVK_API int vlvkVersion(void);

#ifdef __cplusplus
}
#endif

#endif
