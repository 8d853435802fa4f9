/// @file
/// Marks what the shared library exports; everything else is hidden. May be included from C.
///
/// VLVK_STATIC, which users of the static library define (its CMake package and pkg-config file do), leaves the marks
/// out, so that a library that takes the static one in does not export its names.
#ifndef VLVK_EXPORT_H
#define VLVK_EXPORT_H

#if defined(__GNUC__) && !defined(VLVK_STATIC)
/// Stands before the declaration of an exported name.
#define VLVK_API __attribute__((visibility("default")))
#else
#define VLVK_API
#endif

#endif
