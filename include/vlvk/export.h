/// @file
/// Marks what the shared library exports; everything else is hidden. May be included from C.
#ifndef VLVK_EXPORT_H
#define VLVK_EXPORT_H

#if defined(__GNUC__)
/// Stands before the declaration of an exported name.
#define VLVK_API __attribute__((visibility("default")))
#else
#define VLVK_API
#endif

#endif
