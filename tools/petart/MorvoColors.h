#pragma once

#include <QRgb>

/// The creature's colours.
namespace morvo::MorvoColors {

inline constexpr QRgb outline = 0xff15387f;
inline constexpr QRgb abyss = 0xff1f47ad;
inline constexpr QRgb deep = 0xff2f6fe0;
inline constexpr QRgb middle = 0xff4aa6fa;
inline constexpr QRgb bright = 0xff9aeaff;
inline constexpr QRgb foam = 0xffeafdff;
inline constexpr QRgb rim = 0xff9ff6ff;
inline constexpr QRgb pupil = 0xff0b1740;
inline constexpr QRgb iris = 0xff2746b8;
inline constexpr QRgb irisLight = 0xff4fd2ff;
inline constexpr QRgb blush = 0xffff86b4;
inline constexpr QRgb mouth = 0xff7c2350;
inline constexpr QRgb tongue = 0xffff8fa3;
inline constexpr QRgb honey = 0xffffdf7a;
inline constexpr QRgb honeyEdge = 0xffb8741d;
inline constexpr QRgb warning = 0xffff8a2b;
inline constexpr QRgb heart = 0xffff7fa6;
inline constexpr QRgb heartEdge = 0xffb93468;
inline constexpr QRgb pearl = 0xfffff0f6;
inline constexpr QRgb shell = 0xffe9a9d2;
inline constexpr QRgb shellEdge = 0xff7f3f86;
inline constexpr QRgb water = 0xff5cc9ff;

} // namespace morvo::MorvoColors
