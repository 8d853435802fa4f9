/// What all plugins say of themselves to hosts, which show it to people.
#ifndef VLVK_PLUGINS_ABOUT_H
#define VLVK_PLUGINS_ABOUT_H

namespace vlvk::plugins {

inline constexpr char kAuthor[] = "VLVKMakeupEngine maintainers";
inline constexpr char kDescription[] =
    "Smooths skin, keeps edges and eyes, whitens, evens the colour of skin and adjusts colours, in real time";

}  // namespace vlvk::plugins

#endif
