#pragma once

/** Applies the palette that KAVRO_PALETTE names ("dark" or "light"); without it the desktop's own one stays.
 */
void applyPaletteOfEnvironment();
