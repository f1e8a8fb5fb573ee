#pragma once

#include <QImage>

/// All frame sets on one picture, for judging the art by eye.
namespace morvo::ContactSheet {

/// One row a frame set at the size of a small desktop pet, on white, black and grey; below, the
/// first frames at the size of a tray icon.
[[nodiscard]] QImage picture();

} // namespace morvo::ContactSheet
