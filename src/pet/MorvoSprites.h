#pragma once

#include "pet/PetFiles.h"
#include "pet/stage/SpriteFrame.h"

#include <QFileInfo>
#include <QHash>

#include <functional>
#include <memory>
#include <optional>
#include <vector>

namespace morvo {

/// Finds, orders and describes the frames of the pet in play; decodes none of their pixels, except
/// to find the transparent margin of frames that were not baked onto a common canvas. One object is
/// shared by all scenes. Main thread.
///
/// Nothing leads out of the pet's folders: a persona or state that is no plain file name has no
/// frames.
class MorvoSprites {
public:
  explicit MorvoSprites(PetFiles files);

  /// "morvo" at first.
  [[nodiscard]] const QString &persona() const { return m_persona; }
  /// Forgets what was found, also when it is the same persona, so that new files are seen.
  void setPersona(const QString &personaId);

  /// The frames of a state in playing order. Files that hold no picture, or one of more than 8192
  /// pixels a side, are left out. Kept until the persona is set. The reference lives as long.
  [[nodiscard]] const std::vector<SpriteFrame> &frames(const QString &state);
  /// Whether the state has any frame, and whether it has more than one; cheaper than `frames`.
  [[nodiscard]] bool hasFrame(const QString &state) { return countUpToTwo(state) > 0; }
  [[nodiscard]] bool hasFrames(const QString &state) { return countUpToTwo(state) > 1; }

  /// Frame sets on disk, sorted; the built-in names when there are none on disk.
  [[nodiscard]] QStringList availableStateNames() const;
  /// Whether the pet's frames stand in the user's folder, where they share one canvas.
  [[nodiscard]] bool isDiskBakedPersona() const;
  /// Files that stand in for a missing "idle" of a pet of the user's; nothing when it has none.
  [[nodiscard]] std::optional<QStringList> anyAvailableState() const;
  /// The square that holds the content of all frames, in fractions of a frame, from its bottom
  /// left corner; the whole frame when there is no content to speak of. Kept like the frames. A
  /// built-in pet brings it in `ContentFile`; for any other its frames are decoded.
  [[nodiscard]] QRectF contentRect();
  /// The same by decoding all frames, which takes a second for a pet of 150.
  [[nodiscard]] QRectF measuredContentRect() const;

  /// The folder of a state in the user's pet folder; the pet folder itself for an empty state.
  [[nodiscard]] QString diskDir(const QString &state) const;
  /// The entries with the extension "png"; nothing when there is none or the folder is unreadable.
  [[nodiscard]] static std::optional<QStringList> diskPNGs(const QString &directory);
  /// The PNG files of a state in the user's folder of that pet; nothing when there is none. No link
  /// leads out of the pet's folder.
  [[nodiscard]] static std::optional<QStringList>
  userPNGs(const PetFiles &files, const QString &personaId, const QString &state);
  /// Whether there are any; reads no further than the first.
  [[nodiscard]] static bool hasUserPNGs(const PetFiles &files, const QString &personaId,
                                        const QString &state);
  /// The files of a state, in no order.
  [[nodiscard]] QStringList sequenceURLs(const QString &state) const;
  /// The one picture that serves a state without a folder.
  [[nodiscard]] std::optional<QString> singleURL(const QString &state) const;
  /// By number where all base names are integers, else in natural order.
  [[nodiscard]] static QStringList sortFrameURLs(const QStringList &files);

private:
  using AcceptFile = std::function<bool(const QFileInfo &file)>;

  [[nodiscard]] int countUpToTwo(const QString &state);
  [[nodiscard]] QStringList orderedFiles(const QString &state) const;
  /// At most so many of the files of a state that are accepted, in no order.
  [[nodiscard]] QStringList sequence(const QString &state, const AcceptFile &accept,
                                     qsizetype most) const;
  /// The user's frame set that plays for a state.
  [[nodiscard]] std::optional<QString> userState(const QString &state) const;
  /// The user's frame set that stands in for a missing "idle".
  [[nodiscard]] std::optional<QString> restingState() const;
  [[nodiscard]] QRectF unionOfContents() const;
  [[nodiscard]] QStringList diskStates() const;

  PetFiles m_files;
  QString m_persona;
  QHash<QString, std::shared_ptr<const std::vector<SpriteFrame>>> m_frames;
  QHash<QString, int> m_counts;
  std::optional<QRectF> m_contentRect;
};

} // namespace morvo
