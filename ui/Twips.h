#pragma once

#include <QtGlobal>

/** The window layout is stored in twips, a fifteenth of a logical pixel. */
inline constexpr int kTwipsPerPixel = 15;

inline int pixelsFromTwips(double twips) { return qRound(twips / kTwipsPerPixel); }
inline int twipsFromPixels(int pixels) { return pixels * kTwipsPerPixel; }
