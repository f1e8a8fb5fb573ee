#include "app/TrayFrames.h"

#include <QGuiApplication>
#include <QPixmap>

#include <algorithm>
#include <iterator>
#include <utility>

namespace morvo {
namespace {

/// In points; the tray scales it for the screen.
constexpr int iconSize = 18;

std::vector<QIcon> iconsOf(const std::vector<QImage> &images) {
  std::vector<QIcon> icons;
  std::ranges::transform(images, std::back_inserter(icons),
                         [](const QImage &image) { return QIcon(QPixmap::fromImage(image)); });
  return icons;
}

} // namespace

struct TrayFrames::Made {
  MenubarFrames frames;
  /// Of the personas whose frames are looked at now, or were since the last question: whether that
  /// is done.
  QHash<QString, bool> looks;
};

TrayFrames::TrayFrames(const PetFiles &files, WorkerPool &workers)
    : m_workers(&workers), m_made(new Made{MenubarFrames(files), {}}) {}

std::optional<std::vector<QIcon>> TrayFrames::idle(const QString &personaId) {
  const auto images = m_made->frames.ready(personaId, iconSize, qApp->devicePixelRatio());
  if (!images.empty()) {
    return iconsOf(images);
  }
  if (!m_made->looks.contains(personaId)) {
    m_made->looks.insert(personaId, false);
    make(m_made, m_workers, personaId);
  }
  if (!m_made->looks.value(personaId)) {
    return std::nullopt;
  }
  // Nothing was found. Frames that come later are found by a look of their own.
  m_made->looks.remove(personaId);
  return std::vector<QIcon>();
}

QCoro::Task<> TrayFrames::make(std::weak_ptr<Made> made, WorkerPool *workers, QString personaId) {
  const auto work = [frames = made.lock()->frames, personaId](const std::stop_token &stop) {
    return frames.cells(personaId, stop);
  };
  const auto cells = co_await workers->run(work);
  const auto alive = made.lock();
  if (!alive) {
    co_return;
  }
  if (cells) {
    alive->frames.keep(personaId, *cells, iconSize, qApp->devicePixelRatio());
  }
  alive->looks.insert(personaId, true);
}

} // namespace morvo
