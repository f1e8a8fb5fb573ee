#include "platform/SecretLookup.h"

#include "platform/DeveloperKeyFile.h"
#include "platform/MorvoHome.h"
#include "platform/SecretItems.h"

#include <utility>

namespace morvo {

SecretLookup::SecretLookup(const SecretStore &secrets, Environment environment, HomeFolder home,
                           FileLayer &files)
    : m_secrets(&secrets), m_environment(std::move(environment)), m_home(std::move(home)),
      m_files(&files) {}

std::optional<QString> SecretLookup::find(const Places &places) const {
  if (auto stored = m_secrets->read(places.service, places.account); stored && !stored->isEmpty()) {
    return stored;
  }
  if (auto named = inEnvironment(places)) {
    return named;
  }
  return inKeyFile(places);
}

std::optional<QString> SecretLookup::inEnvironment(const Places &places) const {
  for (const QString &name : places.variables) {
    if (auto value = m_environment.nonEmpty(name)) {
      return value;
    }
  }
  return std::nullopt;
}

std::optional<QString> SecretLookup::inKeyFile(const Places &places) const {
  const auto content = m_files->read(MorvoHome::directory(m_home) + u'/' + places.keyFile);
  if (!content) {
    return std::nullopt;
  }
  for (const QString &name : places.variables) {
    if (auto value = DeveloperKeyFile::value(*content, name)) {
      return value;
    }
  }
  return std::nullopt;
}

SecretLookup::Places SecretLookup::dashScope() {
  return {.service = SecretItems::dashScopeService,
          .account = SecretItems::apiKeyAccount,
          .variables = {QStringLiteral("DASHSCOPE_API_KEY")},
          .keyFile = QStringLiteral("dashscope.env")};
}

SecretLookup::Places SecretLookup::doubaoSpeech() {
  return {.service = SecretItems::doubaoVoiceService,
          .account = SecretItems::apiKeyAccount,
          .variables = {QStringLiteral("DOUBAO_TTS_API_KEY"), QStringLiteral("VOLC_API_KEY")},
          .keyFile = QStringLiteral("volcengine.env")};
}

} // namespace morvo
