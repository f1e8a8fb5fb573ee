#pragma once

#include <QString>

/// The frame sets that the program asks for by name; a pack may have any others.
namespace morvo::FrameSetName {

/// The rest pose, which every pet has.
inline const QString idle = QStringLiteral("idle");
inline const QString sleep = QStringLiteral("sleep");
inline const QString watching = QStringLiteral("watching");
inline const QString code = QStringLiteral("code");
inline const QString greet = QStringLiteral("greet");
inline const QString celebrate = QStringLiteral("celebrate");
inline const QString alert = QStringLiteral("alert");
inline const QString petted = QStringLiteral("petted");

} // namespace morvo::FrameSetName
