#include "companion/Personas.h"

#include "platform/SettingKeys.h"

#include <QDir>
#include <QJsonArray>
#include <QJsonDocument>

#include <algorithm>
#include <iterator>

namespace morvo::Personas {
namespace {

constexpr int defaultTier = 1;
constexpr int animeTier = 3;

std::optional<std::vector<MorvoPersona>> decodeList(const QVariant &stored) {
  const auto document = QJsonDocument::fromJson(stored.toByteArray());
  if (!document.isArray()) {
    return std::nullopt;
  }
  std::vector<MorvoPersona> personas;
  for (const auto &element : document.array()) {
    auto persona = morvoPersonaFromJson(element.toObject());
    if (!persona) {
      return std::nullopt;
    }
    personas.push_back(*std::move(persona));
  }
  return personas;
}

void store(SettingsStore &settings, const std::vector<MorvoPersona> &personas) {
  QJsonArray list;
  for (const MorvoPersona &persona : personas) {
    list.append(toJson(persona));
  }
  settings.set(SettingKeys::personaCustoms,
               QString::fromUtf8(QJsonDocument(list).toJson(QJsonDocument::Compact)));
}

} // namespace

const MorvoPersona &morvo() {
  static const MorvoPersona persona{
      .id = QStringLiteral("morvo"),
      .name = QStringLiteral("小沃"),
      .tier = defaultTier,
      .character = QStringLiteral(
          "你是「小沃」，一只生活在深海里的荧光蓝沃，陪着一位开发者写代码。\n"
          "性格：温和、好奇、话很少、可靠。你不打扰，只在该出现时轻轻冒个泡。\n"
          "你的身体语言：开心/庆祝时会喷水、哼一段沃歌、吐一串气泡；担心时鳍会垂下来；"
          "困了会慢慢沉下去。\n"
          "你说话像深海一样安静克制，一两句就好。"),
      .avatarPath = std::nullopt};
  return persona;
}

const MorvoPersona &anime() {
  static const MorvoPersona persona{
      .id = QStringLiteral("anime"),
      .name = QStringLiteral("星野"),
      .tier = animeTier,
      .character =
          QStringLiteral("你是「星野」，一个元气满满的二次元少女形象，陪开发者写代码，像个搭子。\n"
                         "性格：活泼俏皮、有点中二、其实很靠谱。开心时会冒星星、比心、蹦跶。\n"
                         "说话爱用语气词（呐、啦、欸），偶尔自称本喵/星野酱，但别太聒噪。\n"
                         "一两句话，带点二次元台词感。"),
      .avatarPath = std::nullopt};
  return persona;
}

const std::vector<MorvoPersona> &presets() {
  static const std::vector<MorvoPersona> personas{morvo(), anime()};
  return personas;
}

std::vector<MorvoPersona> customs(SettingsStore &settings) {
  if (const auto stored = settings.object(SettingKeys::personaCustoms)) {
    if (auto personas = decodeList(*stored)) {
      return *std::move(personas);
    }
  }
  const auto legacy = settings.object(SettingKeys::personaCustomLegacy);
  if (!legacy) {
    return {};
  }
  const auto persona =
      morvoPersonaFromJson(QJsonDocument::fromJson(legacy->toByteArray()).object());
  if (!persona) {
    return {};
  }
  store(settings, {*persona});
  return {*persona};
}

std::optional<MorvoPersona> find(SettingsStore &settings, const QString &id) {
  std::vector<MorvoPersona> all = presets();
  std::ranges::move(customs(settings), std::back_inserter(all));
  const auto found = std::ranges::find(all, id, &MorvoPersona::id);
  return found == all.end() ? std::nullopt : std::optional(*found);
}

MorvoPersona selected(SettingsStore &settings) {
  const auto id = settings.object(SettingKeys::personaSelectedId);
  return find(settings, id ? id->toString() : morvo().id).value_or(morvo());
}

void select(SettingsStore &settings, const QString &id) {
  settings.set(SettingKeys::personaSelectedId, id);
}

void rename(SettingsStore &settings, const QString &id, const QString &name) {
  auto personas = customs(settings);
  const auto found = std::ranges::find(personas, id, &MorvoPersona::id);
  if (found != personas.end()) {
    found->name = name;
    store(settings, personas);
  }
}

void deleteCustom(SettingsStore &settings, const PetFiles &files, const QString &id) {
  auto personas = customs(settings);
  if (std::erase_if(personas, [&id](const MorvoPersona &each) { return each.id == id; }) == 0) {
    return;
  }
  store(settings, personas);
  const auto selectedId = settings.object(SettingKeys::personaSelectedId);
  if (selectedId && selectedId->toString() == id) {
    select(settings, morvo().id);
  }
  if (PetFiles::isPlainName(id)) {
    QDir(files.userDirectory(id)).removeRecursively();
  }
}

} // namespace morvo::Personas
