#pragma once

#include "base/WorkerPool.h"
#include "pet/MenubarFrames.h"

#include <QIcon>

#include <memory>
#include <optional>
#include <vector>

namespace morvo {

/// The tray's icons of a pet. Where frames have to be decoded for them, which is so for a pet of
/// the user's, that is done on a worker: nobody bounds how large and how many those are. Main
/// thread.
class TrayFrames {
public:
  /// `workers` must outlive the object.
  TrayFrames(const PetFiles &files, WorkerPool &workers);

  /// The icons of the persona's "idle", empty when it has no frames; nothing while they are being
  /// made: to be asked again then.
  [[nodiscard]] std::optional<std::vector<QIcon>> idle(const QString &personaId);

private:
  /// Outlived by work under way.
  struct Made;

  static QCoro::Task<> make(std::weak_ptr<Made> made, WorkerPool *workers, QString personaId);

  WorkerPool *m_workers;
  std::shared_ptr<Made> m_made;
};

} // namespace morvo
