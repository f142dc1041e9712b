#pragma once

#include <QLatin1StringView>

/** Where people find the makers. */
inline constexpr QLatin1StringView kSupportAddress("support@kavro.example");
inline constexpr QLatin1StringView kWebSite("https://www.kavro.example/");
