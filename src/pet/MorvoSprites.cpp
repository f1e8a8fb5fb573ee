#include "pet/MorvoSprites.h"

#include "pet/AlphaBounds.h"
#include "pet/ContentFile.h"
#include "pet/FrameFile.h"
#include "pet/FrameSetName.h"
#include "pet/NaturalOrder.h"
#include "pet/PetPackStore.h"
#include "pet/PetVitals.h"

#include <QDir>
#include <QDirIterator>

#include <algorithm>
#include <limits>
#include <utility>

namespace morvo {
namespace {

const QString defaultPersona = QStringLiteral("morvo");
using FrameSetName::idle;
const QString pngSuffix = QStringLiteral(".png");
const QRectF wholeFrame(0, 0, 1, 1);

/// Pictures are looked at no larger than this for their transparent margin.
constexpr int contentScanSide = 120;
/// A content no larger than this, in fractions of the frame, is dirt.
constexpr double leastContent = 0.02;
/// Margin kept around the content, on each side, in fractions of the frame.
constexpr double contentMargin = 0.08;

/// The states that a built-in pet is expected to have.
QStringList builtInStates() {
  return {FrameSetName::alert, FrameSetName::celebrate, FrameSetName::greet, idle,
          FrameSetName::sleep};
}

/// The pack's frame sets that could stand in for a missing "idle", the best first.
QStringList restingFrameSets(const PetPack &pack) {
  QStringList names;
  for (const auto &rule : pack.loops) {
    names.append(pack.frameSet(rule.action));
  }
  for (const auto &action : pack.actions) {
    if (PetVitals::restsByNature(action)) {
      names.append(action.frameSet);
    }
  }
  names.removeDuplicates();
  return names;
}

constexpr qsizetype all = std::numeric_limits<qsizetype>::max();

bool acceptAny(const QFileInfo & /*file*/) { return true; }

/// At most so many of the folder's PNG files that are accepted, in no order. Reads no further than
/// the last of them: a folder can be long, and may be asked about at each decision of the pet.
template <typename Accept>
QStringList pngsIn(const QString &directory, const Accept &accept, qsizetype most) {
  QStringList files;
  QDirIterator entries(directory, QDir::Files);
  while (files.size() < most && entries.hasNext()) {
    const QString file = entries.next();
    if (file.endsWith(pngSuffix) && accept(entries.fileInfo())) {
      files.append(file);
    }
  }
  return files;
}

/// The same for a state in the user's folder of a pet. No link leads out of that folder.
template <typename Accept>
QStringList userPNGsIn(const PetFiles &files, const QString &personaId, const QString &state,
                       const Accept &accept, qsizetype most) {
  const QString petFolder = files.userDirectory(personaId);
  const QString folder = petFolder + u'/' + state;
  if (!PetFiles::isPlainName(personaId) || !PetFiles::isPlainName(state) ||
      !PetFiles::staysIn(petFolder, folder)) {
    return {};
  }
  const auto isInside = [&](const QFileInfo &file) {
    return (!file.isSymLink() || PetFiles::staysIn(petFolder, file.filePath())) && accept(file);
  };
  return pngsIn(folder, isInside, most);
}

std::optional<QStringList> unlessEmpty(QStringList files) {
  return files.isEmpty() ? std::nullopt : std::optional(std::move(files));
}

/// The part of a frame from its top left corner, given it from its bottom left.
QRectF fromTop(const QRectF &rect) {
  return {rect.x(), 1 - rect.y() - rect.height(), rect.width(), rect.height()};
}

} // namespace

MorvoSprites::MorvoSprites(PetFiles files) : m_files(std::move(files)), m_persona(defaultPersona) {}

void MorvoSprites::setPersona(const QString &personaId) {
  m_persona = personaId;
  m_frames.clear();
  m_counts.clear();
  m_contentRect.reset();
}

QString MorvoSprites::diskDir(const QString &state) const {
  const QString directory = m_files.userDirectory(m_persona);
  return state.isEmpty() ? directory : directory + u'/' + state;
}

std::optional<QStringList> MorvoSprites::diskPNGs(const QString &directory) {
  return unlessEmpty(pngsIn(directory, acceptAny, all));
}

std::optional<QStringList> MorvoSprites::userPNGs(const PetFiles &files, const QString &personaId,
                                                  const QString &state) {
  return unlessEmpty(userPNGsIn(files, personaId, state, acceptAny, all));
}

bool MorvoSprites::hasUserPNGs(const PetFiles &files, const QString &personaId,
                               const QString &state) {
  return !userPNGsIn(files, personaId, state, acceptAny, 1).isEmpty();
}

QStringList MorvoSprites::diskStates() const {
  if (!PetFiles::isPlainName(m_persona)) {
    return {};
  }
  QStringList states = QDir(diskDir({})).entryList(QDir::Dirs | QDir::NoDotAndDotDot, QDir::NoSort);
  states.removeIf([this](const QString &state) { return !hasUserPNGs(m_files, m_persona, state); });
  states.sort();
  return states;
}

bool MorvoSprites::isDiskBakedPersona() const { return !diskStates().isEmpty(); }

QStringList MorvoSprites::availableStateNames() const {
  const QStringList states = diskStates();
  return states.isEmpty() ? builtInStates() : states;
}

std::optional<QString> MorvoSprites::restingState() const {
  const auto pack = PetPackStore::load(m_files, m_persona);
  QStringList states = pack ? restingFrameSets(*pack) : QStringList();
  states.append(diskStates());
  const auto found = std::ranges::find_if(
      states, [this](const QString &state) { return hasUserPNGs(m_files, m_persona, state); });
  return found == states.end() ? std::nullopt : std::optional(*found);
}

std::optional<QStringList> MorvoSprites::anyAvailableState() const {
  const auto state = restingState();
  return state ? userPNGs(m_files, m_persona, *state) : std::nullopt;
}

std::optional<QString> MorvoSprites::userState(const QString &state) const {
  if (hasUserPNGs(m_files, m_persona, state)) {
    return state;
  }
  return state == idle && m_persona != defaultPersona ? restingState() : std::nullopt;
}

QStringList MorvoSprites::sequence(const QString &state, const AcceptFile &accept,
                                   qsizetype most) const {
  if (!PetFiles::isPlainName(m_persona) || !PetFiles::isPlainName(state)) {
    return {};
  }
  if (const auto users = userState(state)) {
    return userPNGsIn(m_files, m_persona, *users, accept, most);
  }
  return pngsIn(m_files.resourceDirectory(m_persona) + u'/' + state, accept, most);
}

QStringList MorvoSprites::sequenceURLs(const QString &state) const {
  return sequence(state, acceptAny, all);
}

std::optional<QString> MorvoSprites::singleURL(const QString &state) const {
  if (!PetFiles::isPlainName(m_persona) || !PetFiles::isPlainName(state)) {
    return std::nullopt;
  }
  const QString name = u'/' + state + pngSuffix;
  // A single picture of the user's serves every persona, so it stands beside their folders.
  QString shared = QFileInfo(diskDir({})).path() + name;
  const QString builtIn = m_files.resourceDirectory(m_persona) + name;
  if (QFileInfo(shared).isFile()) {
    return shared;
  }
  return QFileInfo(builtIn).isFile() ? std::optional(builtIn) : std::nullopt;
}

QStringList MorvoSprites::sortFrameURLs(const QStringList &files) {
  struct Named {
    QString file;
    QString name;
    qlonglong number = 0;
  };
  std::vector<Named> named;
  bool allNumbers = true;
  for (const QString &file : files) {
    bool isNumber = false;
    const QString name = QFileInfo(file).completeBaseName();
    const qlonglong number = name.toLongLong(&isNumber);
    allNumbers = allNumbers && isNumber;
    named.push_back({file, name, number});
  }
  std::ranges::sort(named, [allNumbers](const Named &a, const Named &b) {
    return allNumbers && a.number != b.number ? a.number < b.number
                                              : NaturalOrder::less(a.name, b.name);
  });
  QStringList sorted;
  std::ranges::transform(named, std::back_inserter(sorted), &Named::file);
  return sorted;
}

QStringList MorvoSprites::orderedFiles(const QString &state) const {
  const QStringList sequence = sequenceURLs(state);
  if (!sequence.isEmpty()) {
    return sortFrameURLs(sequence);
  }
  const auto single = singleURL(state);
  return single ? QStringList{*single} : QStringList();
}

const std::vector<SpriteFrame> &MorvoSprites::frames(const QString &state) {
  const auto known = m_frames.constFind(state);
  if (known != m_frames.constEnd()) {
    return **known;
  }
  std::vector<SpriteFrame> frames;
  const QStringList files = orderedFiles(state);
  const QRectF crop = files.isEmpty() || isDiskBakedPersona() ? wholeFrame : fromTop(contentRect());
  for (const QString &file : files) {
    if (auto frame = FrameFile::probe(file)) {
      frame->crop = crop;
      frame->size = {frame->size.width() * crop.width(), frame->size.height() * crop.height()};
      frames.push_back(std::move(*frame));
    }
  }
  m_counts.insert(state, static_cast<int>(std::min<std::size_t>(frames.size(), 2)));
  return **m_frames.insert(state,
                           std::make_shared<const std::vector<SpriteFrame>>(std::move(frames)));
}

int MorvoSprites::countUpToTwo(const QString &state) {
  const auto known = m_counts.constFind(state);
  if (known != m_counts.constEnd()) {
    return *known;
  }
  const auto isFrame = [](const QFileInfo &file) {
    return FrameFile::probe(file.filePath()).has_value();
  };
  auto count = sequence(state, isFrame, 2).size();
  if (count == 0 && sequence(state, acceptAny, 1).isEmpty()) {
    const auto single = singleURL(state);
    count = single && isFrame(QFileInfo(*single)) ? 1 : 0;
  }
  return *m_counts.insert(state, static_cast<int>(count));
}

QRectF MorvoSprites::unionOfContents() const {
  std::optional<QRectF> box;
  for (const QString &state : availableStateNames()) {
    for (const QString &file : orderedFiles(state)) {
      box = AlphaBounds::united(box,
                                AlphaBounds::normalised(FrameFile::decode(file), contentScanSide));
    }
  }
  return box.value_or(QRectF());
}

QRectF MorvoSprites::contentRect() {
  if (!m_contentRect) {
    const bool isBuiltIn = PetFiles::isPlainName(m_persona) && !isDiskBakedPersona();
    const auto told =
        isBuiltIn ? ContentFile::read(m_files.resourceDirectory(m_persona)) : std::nullopt;
    m_contentRect = told ? *told : measuredContentRect();
  }
  return *m_contentRect;
}

QRectF MorvoSprites::measuredContentRect() const {
  const QRectF box = unionOfContents();
  if (box.width() <= leastContent || box.height() <= leastContent) {
    return wholeFrame;
  }
  const double side = std::min(std::max(box.width(), box.height()) + 2 * contentMargin, 1.0);
  const double x = std::clamp(box.center().x() - side / 2, 0.0, 1 - side);
  const double top = std::clamp(box.center().y() - side / 2, 0.0, 1 - side);
  return {x, 1 - (top + side), side, side};
}

} // namespace morvo
