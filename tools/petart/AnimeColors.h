#pragma once

#include <QRgb>

/// The girl's colours: warm ones, so that nobody takes her for the blue creature.
namespace morvo::AnimeColors {

inline constexpr QRgb hair = 0xffff7a62;
inline constexpr QRgb hairShade = 0xffdf4a55;
inline constexpr QRgb hairLight = 0xffffb59a;
inline constexpr QRgb hairTip = 0xffffb072;
inline constexpr QRgb hairBack = 0xffc93b50;
inline constexpr QRgb hairLine = 0xff7d1f3a;

inline constexpr QRgb skin = 0xffffe6d6;
inline constexpr QRgb skinShade = 0xfff9c3a8;
inline constexpr QRgb skinLine = 0xff9a4546;
inline constexpr QRgb blush = 0xffff8d84;

inline constexpr QRgb cloth = 0xffffcf57;
inline constexpr QRgb clothLight = 0xffffe596;
inline constexpr QRgb clothShade = 0xfff2a23c;
inline constexpr QRgb clothDark = 0xffdb7f2f;
inline constexpr QRgb clothLine = 0xff8a4518;

inline constexpr QRgb cream = 0xfffff7e6;
inline constexpr QRgb creamShade = 0xfff3d9b8;
inline constexpr QRgb dark = 0xff59284f;
inline constexpr QRgb darkShade = 0xff411b3c;
inline constexpr QRgb ink = 0xff43152f;

inline constexpr QRgb eyeTop = 0xff4c1238;
inline constexpr QRgb eyeMiddle = 0xffb02c62;
inline constexpr QRgb eyeBottom = 0xffffb65c;

inline constexpr QRgb mouth = 0xff9c2b44;
inline constexpr QRgb tongue = 0xffff8f8c;
inline constexpr QRgb gold = 0xffffd23f;
inline constexpr QRgb goldLine = 0xffb3661a;
inline constexpr QRgb pink = 0xffff6f91;
inline constexpr QRgb pinkLine = 0xffb52f58;

} // namespace morvo::AnimeColors
